#pragma once

#include "platform/freedesktop/webdav/WebDavProbe.h"

#include <QHash>
#include <QLockFile>

namespace orvelle {

class WebDavLock;

/// Reads and replaces whole files on a server. On a worker thread, one call at
/// a time; failures are thrown (WebDavSession).
///
/// A version is the content's hash; the server's tag for it is kept with the
/// local copy and put into the conditions of requests. What is replaced is
/// guarded by a condition, by a lock, or by both: servers compare tags before
/// they have received the new content, and another's may come in between.
class WebDavFiles
{
public:
    WebDavFiles(WebDavSession &session, const WebDavCopies &copies) : m_session(session), m_copies(copies) {}

    CloudFile read(const QString &name);
    CloudFile write(const QString &name, const QByteArray &bytes, const QByteArray &expected);
    /// What was found, in words for the log; throws Unsafe.
    QString test();

private:
    using Headers = QList<QPair<QByteArray, QByteArray>>;

    const WebDavAbilities &abilities();
    bool ownsCopies();
    std::optional<CloudFile> tryWrite(const QString &name, const QByteArray &bytes, const QByteArray &expected);
    std::optional<HttpResponse> put(const QString &name, const QByteArray &bytes, const Headers &conditions);
    Headers conditionsFor(const QString &name, const QByteArray &expected, const WebDavLock &lock);
    CloudFile written(const QString &name, const QByteArray &bytes, const HttpResponse &answer, const WebDavLock &lock);
    QByteArray tagOfContent(const QString &name, const QByteArray &bytes, std::optional<Timestamp> &modified);
    CloudFile kept(const QString &name, const WebDavCopy &copy);

    WebDavSession &m_session;
    const WebDavCopies &m_copies;
    std::optional<WebDavAbilities> m_abilities;
    std::unique_ptr<QLockFile> m_guard;
    QHash<QString, QByteArray> m_unanswered; ///< what was sent, and nobody knows how far it came
};

} // namespace orvelle
