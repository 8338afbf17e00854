#include "platform/freedesktop/webdav/WebDavFiles.h"

#include "base/Hash.h"
#include "platform/freedesktop/webdav/WebDavLock.h"
#include "platform/freedesktop/webdav/WebDavProtocol.h"

#include <QLoggingCategory>

namespace orvelle {

using namespace Qt::StringLiterals;
using Kind = CloudError::Kind;
using Tags = WebDavSession::Tags;

namespace {

Q_LOGGING_CATEGORY(lcWebDavFiles, "WebDav", QtInfoMsg)

QByteArray versionOf(const QByteArray &bytes)
{
    return sha256Hex(bytes).toLatin1();
}

WebDavCopy copyOf(const QByteArray &bytes, const QByteArray &tag, std::optional<Timestamp> modified)
{
    return {.version = versionOf(bytes), .tag = tag, .modifiedAt = modified.value_or(Timestamp{}), .bytes = bytes};
}

} // namespace

CloudFile WebDavFiles::read(const QString &name)
{
    auto copy = m_copies.load(name);
    const auto answer = m_session.fetch(name, copy ? copy->tag : QByteArray(), Tags::Strong);
    if (!answer) {
        m_copies.drop(name);
        throw CloudError{Kind::Missing, u"no such file"_s};
    }
    if (answer->status == 304) {
        if (!copy)
            throw CloudError{Kind::Io, u"unchanged, but nothing was known"_s};
        return {copy->bytes, copy->version, copy->modifiedAt};
    }
    // The machine that tore it had read what it replaced, and will write it again.
    const auto sent = m_unanswered.constFind(name);
    if (sent != m_unanswered.constEnd() && answer->body.size() < sent->size() && sent->startsWith(answer->body)) {
        m_copies.drop(name);
        throw CloudError{Kind::Missing, u"only a part of what was sent from here"_s};
    }
    if (answer->body.isEmpty())
        throw CloudError{Kind::NoData, u"an empty file"_s};
    return kept(name, copyOf(answer->body, webdav::strongTag(*answer), webdav::modifiedAt(*answer)));
}

CloudFile WebDavFiles::kept(const QString &name, const WebDavCopy &copy)
{
    // Without the copy everything still works, and costs more.
    if (!m_copies.keep(name, copy))
        qCWarning(lcWebDavFiles) << "The local copy could not be stored";
    return {copy.bytes, copy.version, copy.modifiedAt};
}

CloudFile WebDavFiles::write(const QString &name, const QByteArray &bytes, const QByteArray &expected)
{
    if (bytes.size() > CloudContainer::maxFileBytes)
        throw CloudError{Kind::TooLarge, u"more than is ever read"_s};
    m_session.checkWrites();
    if (const auto done = tryWrite(name, bytes, expected))
        return *done;
    m_session.makeFolder(); // it went away since it was tried
    if (const auto done = tryWrite(name, bytes, expected))
        return *done;
    throw CloudError{Kind::Missing, u"no such folder"_s};
}

const WebDavAbilities &WebDavFiles::abilities()
{
    if (!m_abilities)
        m_abilities = probeWebDav(m_session, m_copies);
    if (!m_abilities->areEnough())
        throw CloudError{Kind::Unsafe, u"neither conditions nor locks"_s};
    return *m_abilities;
}

bool WebDavFiles::ownsCopies()
{
    if (!m_guard) {
        m_guard = std::make_unique<QLockFile>(m_copies.guardPath());
        m_guard->setStaleLockTime(0); // stale when its process is gone, whatever its age
    }
    return m_guard->isLocked() || m_guard->tryLock(0);
}

std::optional<CloudFile> WebDavFiles::tryWrite(const QString &name, const QByteArray &bytes, const QByteArray &expected)
{
    WebDavLock lock(m_session, m_copies, name);
    if (abilities().locks) {
        const auto outcome = lock.acquire(ownsCopies());
        if (outcome == WebDavLock::Outcome::NoFolder)
            return std::nullopt;
        m_abilities->locks = outcome == WebDavLock::Outcome::Held;
        abilities();
    }
    const auto answer = put(name, bytes, conditionsFor(name, expected, lock));
    if (!answer)
        return std::nullopt;
    lock.keepFile();
    return written(name, bytes, *answer, lock);
}

WebDavFiles::Headers WebDavFiles::conditionsFor(const QString &name, const QByteArray &expected, const WebDavLock &lock)
{
    Headers headers;
    if (lock.isHeld())
        headers.emplaceBack("If", lock.condition());
    const auto known = m_copies.look(name);
    const bool tagKnown = known && known->version == expected && !known->tag.isEmpty();
    if (m_abilities->conditions && tagKnown && !m_unanswered.contains(name)) {
        headers.emplaceBack("If-Match", known->tag);
        return headers;
    }

    const auto there = m_session.fetch(name, {}, lock.isHeld() ? Tags::AsTheyAre : Tags::Strong);
    const auto sent = m_unanswered.constFind(name);
    const bool isOurs = there && sent != m_unanswered.constEnd() && sent->startsWith(there->body);
    const bool isExpected =
        expected.isEmpty() ? !there || there->body.isEmpty() : there && versionOf(there->body) == expected;
    if (!isOurs && !isExpected)
        throw CloudError{Kind::Conflict, u"not the expected version"_s};
    const QByteArray tag = there ? webdav::strongTag(*there) : QByteArray();
    if (m_abilities->conditions && !tag.isEmpty())
        headers.emplaceBack("If-Match", tag);
    else if (!lock.isHeld() && !there)
        headers.emplaceBack("If-None-Match", "*");
    else if (!lock.isHeld())
        throw CloudError{Kind::Unsafe, u"no tag for this version"_s};
    return headers;
}

std::optional<HttpResponse> WebDavFiles::put(const QString &name, const QByteArray &bytes, const Headers &conditions)
{
    HttpResponse answer;
    try {
        answer = m_session.send({.method = "PUT", .name = name, .headers = conditions, .body = bytes});
    } catch (const CloudError &error) {
        // A refusal is known to have changed nothing.
        if (error.kind != Kind::Authentication && error.kind != Kind::TooLarge)
            m_unanswered[name] = bytes;
        throw;
    }
    switch (answer.status) {
    case 200:
    case 201:
    case 204:
        m_unanswered.remove(name);
        return answer;
    case 404:
    case 409:
        return std::nullopt;
    case 412:
        throw CloudError{Kind::Conflict, u"the server's version is another"_s};
    case 423:
        throw CloudError{Kind::Locked, u"another program holds a lock"_s};
    default:
        throw CloudError{Kind::Io, u"status %1"_s.arg(answer.status)};
    }
}

CloudFile WebDavFiles::written(const QString &name, const QByteArray &bytes, const HttpResponse &answer,
                               const WebDavLock &lock)
{
    QByteArray tag = webdav::strongTag(answer);
    auto modified = webdav::modifiedAt(answer);
    try {
        // While we hold the lock what is there is ours.
        if (tag.isEmpty() && lock.isHeld())
            tag = m_session.tagOf(name, bytes.size(), modified);
        if (tag.isEmpty())
            tag = tagOfContent(name, bytes, modified);
    } catch (const CloudError &error) {
        if (error.kind == Kind::NotADocument)
            throw; // whoever took the bytes was not the server
        qCInfo(lcWebDavFiles).noquote() << "Written, without learning more:" << error.detail;
    }
    return kept(name, copyOf(bytes, tag, modified));
}

QByteArray WebDavFiles::tagOfContent(const QString &name, const QByteArray &bytes, std::optional<Timestamp> &modified)
{
    const auto there = m_session.fetch(name, {}, Tags::Strong);
    if (!there || there->body != bytes)
        return {}; // another machine followed at once
    modified = webdav::modifiedAt(*there);
    return webdav::strongTag(*there);
}

QString WebDavFiles::test()
{
    m_abilities.reset();
    const WebDavAbilities &found = abilities();
    return u"conditions %1, locks %2"_s.arg(found.conditions ? u"honoured"_s : u"not honoured"_s,
                                            found.locks ? u"offered"_s : u"not offered"_s);
}

} // namespace orvelle
