#include "platform/freedesktop/folder/ConflictCopies.h"
#include "platform/freedesktop/folder/FolderFiles.h"
#include "platform/freedesktop/folder/FolderMounts.h"

#include <QFile>
#include <QLoggingCategory>
#include <QUuid>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvelle {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Kind = CloudError::Kind;

namespace {

Q_LOGGING_CATEGORY(lcFolder, "FolderContainer", QtInfoMsg)

/// As long as one of them may wait for another machine.
constexpr auto processesPatience = SharedFileLock::patience;
/// After so long a temporary file of another machine's is nobody's any more.
constexpr qint64 abandonedAfterNs = qint64(3600) * 1'000'000'000;
constexpr char temporaryEnding[] = ".part";

CloudError overtaken()
{
    return {Kind::Conflict, u"the file is not the version to be replaced"_s, {}};
}

QByteArray randomText()
{
    return QUuid::createUuid().toByteArray(QUuid::Id128).first(16);
}

} // namespace

/// A written file that has no name of its own yet; removed unless it got one.
struct FolderFiles::Temporary {
    Temporary(int inFolder, QByteArray withName) : folder(inFolder), name(std::move(withName)) {}
    Temporary(Temporary &&other) noexcept
        : folder(other.folder), name(std::exchange(other.name, {})), stamp(other.stamp)
    {
    }
    Temporary &operator=(Temporary &&) = delete;
    Temporary(const Temporary &) = delete;
    Temporary &operator=(const Temporary &) = delete;
    ~Temporary()
    {
        if (!name.isEmpty())
            ::unlinkat(folder, name.constData(), 0);
    }

    int folder;
    QByteArray name;
    FileStamp stamp;
};

QByteArray FolderFiles::temporaryPrefix(const QString &name) const
{
    return QFile::encodeName(u".~"_s + name + u'.');
}

SharedFileLock &FolderFiles::lockOf(const QString &name)
{
    return m_locks.try_emplace(name, name, m_machineName, m_time).first->second;
}

Result<bool, CloudError> FolderFiles::excludeOtherProcesses(int folder) const
{
    for (const auto end = m_time->now() + processesPatience;;) {
        if (::flock(folder, LOCK_EX | LOCK_NB) == 0)
            return true;
        // File systems without such locks leave it to the lock file.
        if (errno != EWOULDBLOCK && errno != EINTR)
            return false;
        if (m_time->now() >= end || !m_time->pause(10ms))
            return CloudError{Kind::Locked, u"another process here holds the folder"_s, {}};
    }
}

Result<FolderFiles::Temporary, CloudError> FolderFiles::writeTemporary(int folder, const QString &name,
                                                                       const QByteArray &bytes) const
{
    const QByteArray path = temporaryPrefix(name) + m_bootTag + '-' + randomText() + temporaryEnding;
    const Descriptor file(
        ::openat(folder, path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!file) {
        CloudError error = folderError(errno, "creating a file");
        if (error.kind == Kind::Missing)
            error.kind = Kind::Unavailable; // the folder was removed
        return error;
    }
    Temporary temporary(folder, path);
    if (const int error = writeAll(file.get(), bytes))
        return folderError(error, "writing a file");
    // Disks and servers may tell only now that there is no room.
    if (::fsync(file.get()) != 0)
        return folderError(errno, "writing a file to the disk");
    struct stat info;
    if (::fstat(file.get(), &info) != 0)
        return folderError(errno, "looking at a written file");
    temporary.stamp = stampOf(info);
    return temporary;
}

void FolderFiles::sweep(int folder, const Temporary &own, const QString &name, bool aloneHere) const
{
    const QByteArray prefix = temporaryPrefix(name);
    for (const QString &each : namesIn(folder)) {
        const QByteArray path = QFile::encodeName(each);
        if (!path.startsWith(prefix) || !path.endsWith(temporaryEnding) || path == own.name)
            continue;
        struct stat info;
        if (::fstatat(folder, path.constData(), &info, AT_SYMLINK_NOFOLLOW) != 0 || !S_ISREG(info.st_mode))
            continue;
        const bool diedHere = aloneHere && path.startsWith(prefix + m_bootTag + '-');
        if (!diedHere && own.stamp.modifiedNs - stampOf(info).modifiedNs < abandonedAfterNs)
            continue;
        qCInfo(lcFolder, "A half-done upload was swept away");
        ::unlinkat(folder, path.constData(), 0);
    }
}

/// The stamp of the file if it is of that version, none if there is to be none.
Result<std::optional<FileStamp>, CloudError> FolderFiles::stampOfVersion(int folder, const QString &name,
                                                                         const QByteArray &expected)
{
    const auto current = readWhole(folder, QFile::encodeName(name), *m_time);
    if (current) {
        if (expected != current->file.version)
            return overtaken();
        return std::optional(current->stamp);
    }
    const Look seen = look(name);
    if (current.error().kind == Kind::Missing && expected.isEmpty() && seen.status == DownloadStatus::NotVisible)
        return std::optional<FileStamp>();
    // What cannot be read has not been merged.
    if (current.error().kind == Kind::Missing || current.error().kind == Kind::NoData)
        return overtaken();
    return current.error();
}

Result<WholeFile, CloudError> FolderFiles::write(const QString &name, const QByteArray &bytes,
                                                 const QByteArray &expected)
{
    if (bytes.size() > CloudContainer::maxFileBytes)
        return CloudError{Kind::TooLarge, u"more than 64 MiB"_s, {}};
    const auto folder = openFor(name);
    if (!folder)
        return folder.error();
    const int at = folder->get();
    const auto aloneHere = excludeOtherProcesses(at);
    if (!aloneHere)
        return aloneHere.error();
    auto temporary = writeTemporary(at, name, bytes);
    if (!temporary)
        return temporary.error();
    sweep(at, *temporary, name, *aloneHere);

    SharedFileLock &lock = lockOf(name);
    if (const auto error = lock.acquire(at, *aloneHere))
        return *error;
    const auto replaced = stampOfVersion(at, name, expected);
    std::optional<CloudError> error;
    if (!replaced)
        error = replaced.error();
    else if (!lock.isStillOurs(at))
        error = CloudError{Kind::Locked, u"reading the file took longer than the lock holds"_s, {}};
    else
        error = replace(at, name, temporary->name, *replaced, expected);
    lock.release(at);
    if (error)
        return *error;
    ::fsync(at);
    const FileStamp stamp = temporary->stamp;
    return WholeFile{{bytes, versionOf(bytes), stamp.modifiedAt()}, stamp};
}

std::optional<CloudError> FolderFiles::replace(int folder, const QString &name, const QByteArray &temporary,
                                               const std::optional<FileStamp> &replaced, const QByteArray &version)
{
    const QByteArray target = QFile::encodeName(name);
    if (!replaced) {
        const int error = renameNew(folder, temporary, folder, target);
        return error == 0 ? std::nullopt : std::optional(folderError(error, "naming a new file"));
    }
    // Exchanged and not just replaced: what was there up to the very last
    // moment can then be looked at.
    if (::renameat2(folder, temporary.constData(), folder, target.constData(), RENAME_EXCHANGE) == 0)
        return keepDisplaced(folder, name, temporary, *replaced, version);
    if (errno == ENOENT)
        return overtaken();
    if (errno != EINVAL && errno != ENOSYS)
        return folderError(errno, "replacing the file");
    if (stampAt(folder, target) != replaced)
        return overtaken();
    if (::renameat(folder, temporary.constData(), folder, target.constData()) != 0)
        return folderError(errno, "replacing the file");
    return std::nullopt;
}

std::optional<CloudError> FolderFiles::keepDisplaced(int folder, const QString &name, const QByteArray &displaced,
                                                     const FileStamp &expected, const QByteArray &version)
{
    const auto found = stampAt(folder, displaced);
    if (!found || *found == expected)
        return std::nullopt;
    const auto file = readWhole(folder, displaced, *m_time);
    if (file && file->file.version == version)
        return std::nullopt;
    qCWarning(lcFolder, "A version that came at the last moment is kept as a conflict copy");
    const QString stamp = found->modifiedAt().toDateTime().toLocalTime().toString(u"yyyy-MM-dd HHmmss "_s) +
                          QString::fromLatin1(randomText().first(6));
    const int error = renameNew(folder, displaced, folder, QFile::encodeName(conflictCopyName(name, stamp)));
    if (error == 0)
        return std::nullopt;
    ::renameat2(folder, displaced.constData(), folder, QFile::encodeName(name).constData(), RENAME_EXCHANGE);
    return folderError(error, "keeping a version that came at the last moment");
}

Result<QString, CloudError> FolderFiles::probe()
{
    const auto folder = open();
    if (!folder)
        return folder.error();
    const QString ours = u".~orvelle-test-"_s + QString::fromLatin1(m_bootTag);
    const QString name = ours + QString::fromLatin1(randomText()) + QLatin1String(temporaryEnding);
    const auto first = write(name, "first", {});
    // Of tests that were killed. Another one may go on at this moment.
    for (const QString &each : first ? namesIn(folder->get()) : QStringList()) {
        const QByteArray path = QFile::encodeName(each);
        const auto stamp = each.contains(ours) ? stampAt(folder->get(), path) : std::nullopt;
        if (stamp && first->stamp.modifiedNs - stamp->modifiedNs >= abandonedAfterNs)
            ::unlinkat(folder->get(), path.constData(), 0);
    }
    const auto second = first ? write(name, "second", first->file.version) : first;
    const auto read = second ? this->read(name) : second;
    const bool removed = ::unlinkat(folder->get(), QFile::encodeName(name).constData(), 0) == 0 || !first;
    const int removeError = errno;
    m_locks.erase(name);
    for (const auto *step : {&first, &second, &read}) {
        if (!*step)
            return step->error();
    }
    if (!removed)
        return folderError(removeError, "removing a file");
    if (read->file.bytes != "second")
        return CloudError{Kind::Unsafe, u"what was written is not what is read"_s, {}};
    return u"files can be created, replaced, read and removed; "_s + fileSystemName(folder->get());
}

} // namespace orvelle
