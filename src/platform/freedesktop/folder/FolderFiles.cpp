#include "platform/freedesktop/folder/FolderFiles.h"

#include "platform/freedesktop/folder/ConflictCopies.h"
#include "platform/freedesktop/folder/FolderMounts.h"
#include "platform/freedesktop/folder/SyncClientSocket.h"

#include <QDir>
#include <QFile>
#include <QLoggingCategory>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

namespace orvelle {

using namespace Qt::StringLiterals;
using Kind = CloudError::Kind;

namespace {

Q_LOGGING_CATEGORY(lcFolder, "FolderContainer", QtInfoMsg)

constexpr int mostCopies = 20;
constexpr qint64 mostCopiesBytes = 2 * CloudContainer::maxFileBytes;

CloudError conflict(const QString &detail)
{
    return {Kind::Conflict, detail, {}};
}

bool hasPlaceholderBeside(int folder, const QString &name)
{
    const QStringList names = placeholderNames(name);
    return std::ranges::any_of(
        names, [&](const QString &each) { return stampAt(folder, QFile::encodeName(each)).has_value(); });
}

DownloadStatus statusOf(int folder, const QString &name, bool isThere)
{
    if (!isThere)
        return hasPlaceholderBeside(folder, name) ? DownloadStatus::Placeholder : DownloadStatus::NotVisible;
    const Descriptor file(::openat(folder, QFile::encodeName(name).constData(),
                                   O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_NOCTTY | O_CLOEXEC));
    return file && isPlaceholder(file.get()) ? DownloadStatus::Placeholder : DownloadStatus::Current;
}

QStringList conflictCopiesIn(int folder, const QString &name)
{
    QStringList copies = namesIn(folder);
    copies.removeIf([&](const QString &each) { return !isConflictCopy(each, name); });
    copies.sort();
    return copies;
}

} // namespace

FolderFiles::FolderFiles(const QString &folder, QString machineName, std::shared_ptr<WorkerTime> time)
    : m_folder(folder),
      m_machineName(std::move(machineName)),
      m_time(std::move(time)),
      m_bootTag(versionOf(bootId()).first(8))
{
}

Result<Descriptor, CloudError> FolderFiles::open() const
{
    if (!QDir::isAbsolutePath(m_folder))
        return CloudError{Kind::Unavailable, u"no folder was chosen"_s, {}};
    const QByteArray path = QFile::encodeName(m_folder);
    if (isUnmounted(path))
        return CloudError{Kind::Unavailable, u"the folder's file system is not mounted"_s, {}};
    Descriptor folder(::open(path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder)
        return folder;
    CloudError error = folderError(errno, "opening the folder");
    if (errno == ENOENT || errno == ENOTDIR)
        error.kind = Kind::Unavailable;
    return error;
}

bool FolderFiles::isOtherFileSystem(int folder, const QByteArray &name)
{
    struct stat info;
    if (::fstat(folder, &info) != 0)
        return false;
    if (stampAt(folder, name)) {
        m_device = info.st_dev;
        return false;
    }
    return m_device && *m_device != info.st_dev;
}

Result<Descriptor, CloudError> FolderFiles::openFor(const QString &name)
{
    if (!isPlainName(name))
        return CloudError{Kind::Io, u"no plain file name"_s, {}};
    auto folder = open();
    // The empty folder below a mount that has gone is not the shared one.
    if (folder && isOtherFileSystem(folder->get(), QFile::encodeName(name)))
        return CloudError{Kind::Unavailable, u"another file system is mounted there than before"_s, {}};
    return folder;
}

FolderFiles::Look FolderFiles::look(const QString &name)
{
    const auto folder = name.isEmpty() ? open() : openFor(name);
    Look result;
    result.isAvailable = folder.hasValue();
    if (!folder || name.isEmpty())
        return result;
    result.stamp = stampAt(folder->get(), QFile::encodeName(name));
    result.status = statusOf(folder->get(), name, result.stamp.has_value());
    result.copies = conflictCopiesIn(folder->get(), name);
    return result;
}

FolderFiles::Look FolderFiles::requestDownload(const QString &name)
{
    const Look found = look(name);
    if (found.status != DownloadStatus::Placeholder)
        return found;
    QStringList places{name};
    if (!found.stamp)
        places = placeholderNames(name);
    for (const QString &each : places) {
        const QString path = QDir::cleanPath(m_folder) + u'/' + each;
        if (QFile::exists(path) && !askSyncClientToDownload(path))
            qCInfo(lcFolder, "No sync client takes requests; its placeholder stays until the client downloads it");
    }
    return found;
}

Result<WholeFile, CloudError> FolderFiles::read(const QString &name)
{
    const auto folder = openFor(name);
    if (!folder)
        return folder.error();
    auto file = readWhole(folder->get(), QFile::encodeName(name), *m_time);
    if (!file && file.error().kind == Kind::Missing && hasPlaceholderBeside(folder->get(), name))
        return CloudError{Kind::NoData, u"the sync client has not downloaded the file"_s, {}};
    return file;
}

Result<QList<ConflictCopy>, CloudError> FolderFiles::readConflictCopies(const QString &name)
{
    const auto folder = openFor(name);
    if (!folder)
        return folder.error();
    QList<ConflictCopy> copies;
    qint64 total = 0;
    for (const QString &each : conflictCopiesIn(folder->get(), name)) {
        const QByteArray path = QFile::encodeName(each);
        const qint64 size = stampAt(folder->get(), path).value_or(FileStamp()).size;
        if (copies.size() == mostCopies || total + size > mostCopiesBytes)
            break;
        const auto file = readWhole(folder->get(), path, *m_time);
        if (!file) {
            qCWarning(lcFolder).noquote() << "A conflict copy was left out:" << file.error().detail;
            continue;
        }
        total += file->file.bytes.size();
        m_copiesRead.insert(each, file->file.version);
        copies += {each, file->file.bytes};
    }
    return copies;
}

FolderFiles::Done FolderFiles::archiveConflictCopy(const QString &copyName, const QDateTime &date)
{
    const auto folder = openFor(copyName);
    if (!folder)
        return folder.error();
    const QByteArray name = QFile::encodeName(copyName);
    const auto now = readWhole(folder->get(), name, *m_time);
    if (!now)
        return now.error();
    if (m_copiesRead.value(copyName) != now->file.version)
        return conflict(u"the copy has changed since it was read"_s);

    Descriptor archive(::dup(folder->get()));
    const QString dated = date.toString(u"yyyy-MM-dd HHmmss"_s);
    for (const QByteArray &each : {QByteArray("orvelle-sync-archive"), dated.toLatin1()}) {
        if (::mkdirat(archive.get(), each.constData(), S_IRWXU) != 0 && errno != EEXIST)
            return folderError(errno, "creating the archive");
        archive =
            Descriptor(::openat(archive.get(), each.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        if (!archive)
            return folderError(errno, "opening the archive");
    }
    int error = EEXIST;
    for (int number = 1; error == EEXIST && number < 1000; ++number) {
        const QByteArray target = number == 1 ? name : QByteArray::number(number) + ' ' + name;
        error = renameNew(folder->get(), name, archive.get(), target);
    }
    if (error != 0)
        return folderError(error, "moving a copy to the archive");
    ::fsync(archive.get());
    ::fsync(folder->get());
    m_copiesRead.remove(copyName);
    return CloudContainer::Nothing();
}

} // namespace orvelle
