#include "platform/freedesktop/webdav/WebDavLock.h"

#include "platform/freedesktop/webdav/WebDavProtocol.h"

#include <QLoggingCategory>

namespace orvelle {

using namespace Qt::StringLiterals;
using Kind = CloudError::Kind;

namespace {

Q_LOGGING_CATEGORY(lcWebDavLock, "WebDav", QtInfoMsg)

constexpr int patienceTries = 20;
constexpr std::chrono::milliseconds betweenTries(1000);

} // namespace

WebDavLock::~WebDavLock()
{
    if (!isHeld())
        return;
    m_session.releaseLock();
    try {
        if (m_madeFile)
            m_session.send({.method = "DELETE", .name = m_name, .headers = {{"If", condition()}}});
        giveBack(m_token);
    } catch (const CloudError &) {
        // Its token stays stored and is given back before the next lock.
        qCWarning(lcWebDavLock) << "A lock could not be given back; it runs out by itself";
    } catch (const WebDavSession::Cancelled &) {
    }
}

WebDavLock::Outcome WebDavLock::acquire(bool mayRecover)
{
    WebDavRequest request{.method = "LOCK", .name = m_name, .body = webdav::lockRequest()};
    request.headers = {{"Depth", "0"}, {"Timeout", "Second-60"}, {"Content-Type", "application/xml; charset=utf-8"}};
    request.expected = {403, 501};
    for (int tries = 1;; ++tries) {
        const HttpResponse answer = m_session.send(request);
        if (answer.status == 404 || answer.status == 409)
            return Outcome::NoFolder;
        if (answer.status != 423) {
            m_token = answer.status < 300 ? webdav::lockToken(answer) : QByteArray();
            if (!isHeld())
                return Outcome::NotOffered;
            m_madeFile = answer.status == 201;
            m_copies.keepLockToken(m_name, m_token);
            m_session.holdLock(m_name, m_token, std::max(webdav::lockTime(answer) / 3, std::chrono::seconds(1)));
            return Outcome::Held;
        }
        const QByteArray left = mayRecover ? m_copies.lockToken(m_name) : QByteArray();
        if (!left.isEmpty()) {
            qCInfo(lcWebDavLock) << "Giving back a lock of an earlier run";
            giveBack(left);
            mayRecover = false;
            continue;
        }
        if (tries >= patienceTries)
            throw CloudError{Kind::Locked, u"another machine holds the lock"_s};
        m_session.wait(betweenTries);
    }
}

void WebDavLock::giveBack(const QByteArray &token)
{
    // Also when the server no longer knows it.
    const HttpResponse answer =
        m_session.send({.method = "UNLOCK", .name = m_name, .headers = {{"Lock-Token", token}}, .expected = {403}});
    if (answer.status >= 300)
        qCInfo(lcWebDavLock) << "A lock was gone before it was given back, status" << answer.status;
    m_copies.keepLockToken(m_name, {});
}

} // namespace orvelle
