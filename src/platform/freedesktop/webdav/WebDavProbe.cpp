#include "platform/freedesktop/webdav/WebDavProbe.h"

#include "platform/freedesktop/webdav/WebDavLock.h"
#include "platform/freedesktop/webdav/WebDavProtocol.h"

#include <QLoggingCategory>

namespace orvelle {

using namespace Qt::StringLiterals;
using Kind = CloudError::Kind;

namespace {

Q_LOGGING_CATEGORY(lcWebDavProbe, "WebDav", QtInfoMsg)

constexpr auto probeText = "Orvelle tries this folder out. This file may be removed.\n";
constexpr int preconditionFailed = 412;
constexpr int locked = 423;

class Probe
{
public:
    Probe(WebDavSession &session, const WebDavCopies &copies)
        : m_session(session), m_copies(copies), m_name(u"orvelle-probe-%1.tmp"_s.arg(copies.machineMark()))
    {
    }
    ~Probe()
    {
        try {
            remove();
        } catch (const CloudError &) {
            qCInfo(lcWebDavProbe) << "The file to try with stays behind until the next time";
        } catch (const WebDavSession::Cancelled &) {
        }
    }
    Probe(const Probe &) = delete;
    Probe &operator=(const Probe &) = delete;

    WebDavAbilities run()
    {
        WebDavAbilities found;
        found.locks = webdav::offersLocks(m_session.send({.method = "OPTIONS", .expected = {403, 501}}));
        create();
        // Without locks a weak tag is of no use, so it must become a strong one.
        const auto tags = found.locks ? WebDavSession::Tags::AsTheyAre : WebDavSession::Tags::Strong;
        const auto stored = m_session.fetch(m_name, {}, tags);
        if (!stored || stored->body != probeText)
            throw CloudError{Kind::NotADocument, u"what was written does not come back"_s};
        const bool hasTags = !webdav::strongTag(*stored).isEmpty() || (found.locks && webdav::hasWeakTag(*stored));
        found.conditions = hasTags && put("If-None-Match", "*") == preconditionFailed &&
                           put("If-Match", "\"orvelle-no-such-tag\"") == preconditionFailed;
        if (!found.conditions && found.locks)
            found.locks = locksKeepOut();
        qCInfo(lcWebDavProbe) << "The server honours conditions:" << found.conditions << "locks:" << found.locks;
        return found;
    }

private:
    int put(const QByteArray &condition, const QByteArray &value)
    {
        WebDavRequest request{.method = "PUT", .name = m_name, .body = probeText};
        if (!condition.isEmpty())
            request.headers.emplaceBack(condition, value);
        const int status = m_session.send(request).status;
        m_mayExist = m_mayExist || status < 300;
        return status;
    }

    void create()
    {
        int status = put("If-None-Match", "*");
        if (status == 404 || status == 409) {
            m_session.makeFolder();
            status = put("If-None-Match", "*");
        }
        if (status == preconditionFailed || status == locked) { // of an earlier run that was killed
            m_mayExist = true;
            remove();
            status = put("If-None-Match", "*");
        }
        if (status >= 300)
            throw CloudError{Kind::Authentication, u"the folder takes no files, status %1"_s.arg(status)};
    }

    bool locksKeepOut()
    {
        WebDavLock lock(m_session, m_copies, m_name);
        if (lock.acquire(true) != WebDavLock::Outcome::Held)
            return false;
        lock.keepFile();
        return put({}, {}) == locked;
    }

    void remove()
    {
        if (m_mayExist)
            m_session.send({.method = "DELETE", .name = m_name});
        m_mayExist = false;
    }

    WebDavSession &m_session;
    const WebDavCopies &m_copies;
    QString m_name;
    bool m_mayExist = false;
};

} // namespace

WebDavAbilities probeWebDav(WebDavSession &session, const WebDavCopies &copies)
{
    return Probe(session, copies).run();
}

} // namespace orvelle
