#pragma once

#include "platform/CloudContainer.h"
#include "platform/HttpClient.h"

namespace orvelle::webdav {

/// How our words are said in HTTP (RFC 9110) and WebDAV (RFC 4918). Pure.

/// The answer's entity tag, quotes included, if it is a strong one: it then
/// names exactly these bytes. Empty otherwise.
QByteArray strongTag(const HttpResponse &answer);
bool hasWeakTag(const HttpResponse &answer);

/// What an answer with a page for people in place of a document looks like.
bool isPage(const HttpResponse &answer);

/// Last-Modified, or else when the answer was made. Absent when it says neither.
std::optional<Timestamp> modifiedAt(const HttpResponse &answer);

/// Retry-After in either of its forms, at most a day.
std::optional<std::chrono::seconds> retryAfter(const HttpResponse &answer, Timestamp now);

/// Whether the answer to OPTIONS names the compliance class of locks.
bool offersLocks(const HttpResponse &answer);

/// The body of a request for an exclusive write lock.
QByteArray lockRequest();
/// The token as "<...>"; empty when there is none that could be sent back.
QByteArray lockToken(const HttpResponse &answer);
/// How long the lock lasts, between 5 seconds and an hour.
std::chrono::seconds lockTime(const HttpResponse &answer);

CloudError errorOf(const HttpError &error);
/// For a status that is wrong whatever was asked; absent for those that mean
/// something else with each method.
std::optional<CloudError> errorOf(const HttpResponse &answer);

/// The folder's address with a slash at its end, without user, query and fragment.
QUrl folderAddress(const QUrl &url);
/// Whether credentials may be sent there: https, or http where it was allowed
/// or stays on this machine.
bool isSafeAddress(const QUrl &folder, bool allowInsecure);

} // namespace orvelle::webdav
