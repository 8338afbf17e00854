#pragma once

#include "platform/HttpClient.h"

namespace orvelle {

/// Whether an answer sends the client on: 301, 302, 303, 307 or 308 with a
/// place to go to.
bool isRedirect(const HttpResponse &answer);

/// The request that follows `answer`, or why there is none. `remaining`
/// redirects are still allowed, this one included.
Result<HttpRequest, HttpError> redirected(const HttpRequest &request, const HttpResponse &answer, int remaining);

/// Whether requests are sent there at all: http or https, a host, and no
/// credentials in the address.
bool isSendable(const QUrl &url);

} // namespace orvelle
