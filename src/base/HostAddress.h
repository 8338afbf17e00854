#pragma once

#include <QUrl>

namespace orvelle {

/// The scheme and host that a setting names: "host", "host:port", or with
/// "http://" or "https://" before it; https where nothing is said. Empty for
/// anything else: a path, a query, credentials, another scheme. Any thread.
QUrl hostAddress(const QString &setting);

} // namespace orvelle
