#pragma once

#include "platform/freedesktop/webdav/WebDavCopies.h"
#include "platform/freedesktop/webdav/WebDavSession.h"

namespace orvelle {

/// An exclusive write lock of one file on the server (RFC 4918, 6 and 9.10),
/// prolonged while it is held and given back at the end. It runs out by itself
/// within a minute should we be killed; the next run gives it back earlier if
/// it is the only one with these copies. On a worker thread.
class WebDavLock
{
public:
    enum class Outcome {
        Held,
        NotOffered, ///< the server has no locks after all
        NoFolder,
    };

    WebDavLock(WebDavSession &session, const WebDavCopies &copies, QString name)
        : m_session(session), m_copies(copies), m_name(std::move(name))
    {
    }
    ~WebDavLock();
    WebDavLock(const WebDavLock &) = delete;
    WebDavLock &operator=(const WebDavLock &) = delete;

    /// Waits while another machine holds it, then throws Locked.
    Outcome acquire(bool mayRecover);
    bool isHeld() const { return !m_token.isEmpty(); }
    /// For the header "If" of a request that needs the lock.
    QByteArray condition() const { return "(" + m_token + ")"; }
    /// A file that came into being with the lock stays.
    void keepFile() { m_madeFile = false; }

private:
    void giveBack(const QByteArray &token);

    WebDavSession &m_session;
    const WebDavCopies &m_copies;
    QString m_name;
    QByteArray m_token;
    bool m_madeFile = false;
};

} // namespace orvelle
