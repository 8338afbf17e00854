#include "platform/freedesktop/folder/FolderIo.h"

#include "base/Hash.h"

#include <QFile>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>

namespace orvelle {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Kind = CloudError::Kind;

namespace {

constexpr auto readAgainAfter = 50ms;
constexpr int readAttempts = 100;

const struct {
    int error;
    Kind kind;
} kinds[] = {
    {ENOENT, Kind::Missing},        {ENOSPC, Kind::NoSpace},
    {EDQUOT, Kind::NoSpace},        {EFBIG, Kind::NoSpace},
    {EACCES, Kind::Authentication}, {EPERM, Kind::Authentication},
    {EROFS, Kind::Authentication},  {EWOULDBLOCK, Kind::Locked},
    {EEXIST, Kind::Conflict},       {ETIMEDOUT, Kind::TimedOut},
    {ESTALE, Kind::Unavailable},    {ENOTCONN, Kind::Unavailable},
    {ENODEV, Kind::Unavailable},    {ENXIO, Kind::Unavailable},
    {EHOSTDOWN, Kind::Unavailable}, {EHOSTUNREACH, Kind::Unavailable},
    {ENETDOWN, Kind::Unavailable},  {ENETUNREACH, Kind::Unavailable},
};

/// Clients that mark stand-ins write a blank as content and this attribute.
constexpr char placeholderMark[] = "user.nextcloud.hydrate_exec";

/// Whether a process of this machine has the file open for writing: then no
/// lease is given. Where there are no leases nobody knows. The lease is given
/// back at once; one that is broken before that would end the program by its
/// signal, were it not for one that is ignored.
bool isBeingWritten(int file)
{
    ::fcntl(file, F_SETSIG, SIGURG);
    if (::fcntl(file, F_SETLEASE, F_RDLCK) != 0)
        return errno == EAGAIN;
    ::fcntl(file, F_SETLEASE, F_UNLCK);
    return false;
}

Result<Descriptor, CloudError> openRegular(int folder, const QByteArray &name)
{
    struct stat info;
    if (::fstatat(folder, name.constData(), &info, AT_SYMLINK_NOFOLLOW) != 0)
        return folderError(errno, "looking at the file");
    if (!S_ISREG(info.st_mode))
        return CloudError{Kind::Io, u"the name belongs to something that is no regular file"_s, {}};
    Descriptor file(::openat(folder, name.constData(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_NOCTTY | O_CLOEXEC));
    if (!file)
        return folderError(errno, "opening the file");
    return file;
}

/// Whatever is there, at most one byte beyond the limit.
Result<QByteArray, CloudError> readToEnd(int file, qint64 expectedSize)
{
    const qint64 most = CloudContainer::maxFileBytes + 1;
    QByteArray bytes(std::min(expectedSize + 1, most), Qt::Uninitialized);
    qint64 length = 0;
    for (;;) {
        if (length == bytes.size()) {
            if (length == most)
                break;
            bytes.resize(std::min(length * 2 + 4096, most));
        }
        const ssize_t got = ::read(file, bytes.data() + length, static_cast<size_t>(bytes.size() - length));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return folderError(errno, "reading the file");
        if (got == 0)
            break;
        length += got;
    }
    bytes.truncate(length);
    return bytes;
}

/// Absent when the file changed meanwhile.
Result<std::optional<WholeFile>, CloudError> tryToRead(int file)
{
    struct stat before;
    if (::fstat(file, &before) != 0)
        return folderError(errno, "looking at the file");
    if (!S_ISREG(before.st_mode))
        return CloudError{Kind::Io, u"no regular file"_s, {}};
    if (before.st_size > CloudContainer::maxFileBytes)
        return CloudError{Kind::TooLarge, u"the file is larger than 64 MiB"_s, {}};
    if (isBeingWritten(file))
        return std::optional<WholeFile>();
    if (isPlaceholder(file))
        return CloudError{Kind::NoData, u"the sync client has not downloaded the file"_s, {}};
    auto bytes = readToEnd(file, before.st_size);
    if (!bytes)
        return bytes.error();
    struct stat after;
    if (::fstat(file, &after) != 0)
        return folderError(errno, "looking at the file");
    if (stampOf(before) != stampOf(after) || bytes->size() != after.st_size || isBeingWritten(file))
        return std::optional<WholeFile>();
    if (bytes->isEmpty())
        return CloudError{Kind::NoData, u"the file is empty"_s, {}};
    const FileStamp stamp = stampOf(after);
    return std::optional(WholeFile{{*bytes, versionOf(*bytes), stamp.modifiedAt()}, stamp});
}

} // namespace

Descriptor::~Descriptor()
{
    if (m_fd >= 0)
        ::close(m_fd);
}

FileStamp stampOf(const struct stat &info)
{
    return {info.st_dev, info.st_ino, info.st_size, qint64(info.st_mtim.tv_sec) * 1'000'000'000 + info.st_mtim.tv_nsec};
}

std::optional<FileStamp> stampAt(int folder, const QByteArray &name)
{
    struct stat info;
    if (::fstatat(folder, name.constData(), &info, AT_SYMLINK_NOFOLLOW) != 0)
        return std::nullopt;
    return stampOf(info);
}

CloudError folderError(int error, const char *what)
{
    CloudError result{Kind::Io, QString::fromLatin1(what) + u": "_s + QString::fromLocal8Bit(std::strerror(error)), {}};
    for (const auto &each : kinds) {
        if (each.error == error)
            result.kind = each.kind;
    }
    return result;
}

QByteArray versionOf(const QByteArray &bytes)
{
    return sha256Hex(bytes).toLatin1();
}

bool isPlainName(const QString &name)
{
    return !name.isEmpty() && name.isValidUtf16() && !name.contains(u'/') && !name.contains(QChar(0)) &&
           name != u"."_s && name != u".."_s && name.toUtf8().size() <= 200;
}

bool isPlaceholder(int file)
{
    return ::fgetxattr(file, placeholderMark, nullptr, 0) >= 0;
}

QStringList placeholderNames(const QString &name)
{
    return {name + u".nextcloud"_s, name + u".owncloud"_s};
}

Result<WholeFile, CloudError> readWhole(int folder, const QByteArray &name, WorkerTime &time)
{
    for (int attempt = 0; attempt < readAttempts; ++attempt) {
        // Opened anew each time: it may have been replaced by a whole one.
        const auto file = openRegular(folder, name);
        if (!file)
            return file.error();
        auto read = tryToRead(file->get());
        if (!read)
            return read.error();
        if (*read)
            return **read;
        if (!time.pause(readAgainAfter))
            break;
    }
    return CloudError{Kind::Locked, u"the file is being written all the time"_s, {}};
}

int writeAll(int file, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t written = ::write(file, bytes.data(), static_cast<size_t>(bytes.size()));
        if (written < 0 && errno != EINTR)
            return errno;
        if (written > 0)
            bytes = bytes.sliced(written);
    }
    return 0;
}

int renameNew(int fromFolder, const QByteArray &from, int toFolder, const QByteArray &to)
{
    if (::renameat2(fromFolder, from.constData(), toFolder, to.constData(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
    if (::linkat(fromFolder, from.constData(), toFolder, to.constData(), 0) == 0) {
        ::unlinkat(fromFolder, from.constData(), 0);
        return 0;
    }
    if (errno != EPERM && errno != EOPNOTSUPP && errno != ENOSYS)
        return errno;
    // Neither, as on FAT in user space: a look and a plain rename is all there is.
    struct stat info;
    if (::fstatat(toFolder, to.constData(), &info, AT_SYMLINK_NOFOLLOW) == 0)
        return EEXIST;
    return ::renameat(fromFolder, from.constData(), toFolder, to.constData()) == 0 ? 0 : errno;
}

QStringList namesIn(int folder)
{
    QStringList names;
    const int own = ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    DIR *stream = own >= 0 ? ::fdopendir(own) : nullptr;
    if (!stream)
        return names;
    while (const dirent *entry = ::readdir(stream))
        names += QFile::decodeName(entry->d_name);
    ::closedir(stream);
    return names;
}

} // namespace orvelle
