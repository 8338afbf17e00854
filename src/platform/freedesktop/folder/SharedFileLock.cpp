#include "platform/freedesktop/folder/SharedFileLock.h"

#include <QFile>
#include <QLoggingCategory>
#include <QUuid>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>

namespace orvelle {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Kind = CloudError::Kind;

namespace {

Q_LOGGING_CATEGORY(lcLock, "SharedFileLock", QtInfoMsg)

constexpr auto lookAgainAfter = 100ms;
constexpr qint64 longestText = 4096;
constexpr std::chrono::seconds longestForeignLease{300};

QByteArray processNamespace()
{
    std::array<char, 64> link{};
    const ssize_t length = ::readlink("/proc/self/ns/pid", link.data(), link.size());
    return length > 0 ? QByteArray(link.data(), length) : QByteArray();
}

/// The value behind "key: " on a line of its own; empty when there is none.
QByteArray valueOf(const QByteArray &text, const QByteArray &key)
{
    for (const QByteArray &line : text.split('\n')) {
        if (line.startsWith(key + ": "))
            return line.sliced(key.size() + 2);
    }
    return {};
}

/// When a process began, in the kernel's ticks; empty when there is none. Tells
/// it from a later one of the same number.
QByteArray startOf(qint64 process)
{
    QFile file(u"/proc/%1/stat"_s.arg(process));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    // The name in parentheses may have anything in it; the start is the 22nd field.
    const QByteArray stat = file.readAll();
    return stat.sliced(stat.lastIndexOf(')') + 1).simplified().split(' ').value(19);
}

/// The owner was a process here and is no more. One whose number means nothing
/// here (a sandbox) counts as living.
bool isDeadProcessOfThisMachine(const QByteArray &text)
{
    if (valueOf(text, "boot") != bootId() || valueOf(text, "processes") != processNamespace())
        return false;
    const qint64 process = valueOf(text, "process").toInt();
    return process > 0 && startOf(process) != valueOf(text, "started");
}

std::chrono::milliseconds leaseOf(const QByteArray &text)
{
    const std::chrono::seconds told(valueOf(text, "seconds").toInt());
    return std::clamp<std::chrono::milliseconds>(told, SharedFileLock::lease, longestForeignLease);
}

} // namespace

QByteArray bootId()
{
    QFile file(u"/proc/sys/kernel/random/boot_id"_s);
    return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed() : QByteArray("unknown");
}

SharedFileLock::SharedFileLock(const QString &name, QString machineName, std::shared_ptr<WorkerTime> time)
    : m_fileName(QFile::encodeName(u".~lock."_s + name)),
      m_machineName(std::move(machineName)),
      m_token(QUuid::createUuid().toByteArray(QUuid::WithoutBraces)),
      m_time(std::move(time))
{
    m_machineName.replace(u'\n', u' ').truncate(100);
}

QByteArray SharedFileLock::text() const
{
    return "Orvelle lock 1\nmachine: " + m_machineName.toUtf8() + "\nboot: " + bootId() +
           "\nprocesses: " + processNamespace() + "\nprocess: " + QByteArray::number(::getpid()) +
           "\nstarted: " + startOf(::getpid()) + "\ntoken: " + m_token +
           "\nseconds: " + QByteArray::number(std::chrono::duration_cast<std::chrono::seconds>(lease).count()) + '\n';
}

int SharedFileLock::create(int folder)
{
    const Descriptor file(::openat(folder, m_fileName.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                                   S_IRUSR | S_IWUSR));
    if (!file)
        return errno;
    if (const int error = writeAll(file.get(), text())) {
        ::unlinkat(folder, m_fileName.constData(), 0);
        return error;
    }
    return 0;
}

Result<std::optional<SharedFileLock::Found>, CloudError> SharedFileLock::look(int folder, const QByteArray &name)
{
    const Descriptor file(
        ::openat(folder, name.constData(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_NOCTTY | O_CLOEXEC));
    if (!file && errno == ENOENT)
        return std::optional<Found>();
    struct stat info;
    if (!file || ::fstat(file.get(), &info) != 0)
        return folderError(errno, "looking at the lock file");
    if (!S_ISREG(info.st_mode))
        return CloudError{Kind::Io, u"the lock file's name belongs to something else"_s, {}};
    Found found{stampOf(info), QByteArray(longestText, '\0')};
    const ssize_t length = ::read(file.get(), found.text.data(), static_cast<size_t>(longestText));
    if (length < 0)
        return folderError(errno, "reading the lock file");
    found.text.truncate(length);
    return std::optional(found);
}

bool SharedFileLock::isAbandoned(const Found &found, bool aloneHere)
{
    if (m_watched != found) {
        m_watched = found;
        m_watchedSince = m_time->now();
    }
    return (aloneHere && isDeadProcessOfThisMachine(found.text)) ||
           m_time->now() - m_watchedSince >= leaseOf(found.text);
}

void SharedFileLock::takeAway(int folder, const Found &stale) const
{
    // Of two that find it abandoned at once the slower may catch the quicker's
    // new one by this: then it goes back.
    const QByteArray aside = m_fileName + '.' + m_token;
    if (::renameat(folder, m_fileName.constData(), folder, aside.constData()) != 0)
        return;
    const auto caught = look(folder, aside);
    if (caught && *caught && **caught != stale)
        renameNew(folder, aside, folder, m_fileName);
    else
        qCInfo(lcLock, "An abandoned lock was taken away");
    ::unlinkat(folder, aside.constData(), 0);
}

std::optional<CloudError> SharedFileLock::acquire(int folder, bool aloneHere)
{
    for (const auto end = m_time->now() + patience;;) {
        const auto before = m_time->now();
        const int error = create(folder);
        if (error == 0) {
            m_since = before;
            m_watched.reset();
            return std::nullopt;
        }
        if (error != EEXIST)
            return folderError(error, "creating the lock file");
        const auto found = look(folder, m_fileName);
        if (!found)
            return found.error();
        if (!*found)
            continue;
        if (isAbandoned(**found, aloneHere)) {
            takeAway(folder, **found);
            continue;
        }
        if (m_time->now() >= end || !m_time->pause(lookAgainAfter))
            return CloudError{Kind::Locked, u"another machine holds the lock file"_s, {}};
    }
}

bool SharedFileLock::isStillOurs(int folder) const
{
    if (m_time->now() - m_since > longestUse)
        return false;
    const auto found = look(folder, m_fileName);
    return found && *found && valueOf((*found)->text, "token") == m_token;
}

void SharedFileLock::release(int folder)
{
    const auto found = look(folder, m_fileName);
    if (found && *found && valueOf((*found)->text, "token") == m_token)
        ::unlinkat(folder, m_fileName.constData(), 0);
}

} // namespace orvelle
