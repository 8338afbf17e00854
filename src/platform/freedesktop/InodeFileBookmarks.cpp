#include "platform/freedesktop/InodeFileBookmarks.h"

#include <QFile>
#include <QtEndian>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <optional>
#include <string_view>

namespace orvelle {

namespace {

/// The bytes: this mark, a version, device, inode and time of birth (8 bytes
/// each, little endian), the kind of object (1 byte), and the path up to the end.
constexpr char mark[] = "ORVBKMK";
constexpr char formatVersion = 1;
constexpr qsizetype markSize = sizeof mark - 1;
constexpr qsizetype headerSize = markSize + 1 + 8 + 8 + 8 + 1;
constexpr qsizetype longestPath = 16 * 1024;

/// What tells an object from others. Inode numbers are given to new objects
/// soon after their old ones are deleted; the time of birth tells those apart.
struct Identity {
    quint64 device = 0;
    quint64 inode = 0;
    quint64 birth = 0; ///< nanoseconds since 1970, 0 where the file system keeps none
    bool isFolder = false;

    bool hasBirth(const Identity &other) const { return birth != 0 && birth == other.birth; }

    /// The same object, if it is on the same file system.
    bool matches(const Identity &other) const
    {
        const bool mayBeSameBirth = birth == 0 || other.birth == 0 || birth == other.birth;
        return inode == other.inode && isFolder == other.isFolder && mayBeSameBirth;
    }
};

struct Bookmark {
    Identity identity;
    QByteArray path;
};

FileBookmarkError systemError(int error)
{
    return {QString::fromLocal8Bit(std::strerror(error))};
}

std::optional<Identity> identityAt(const QByteArray &path)
{
    struct statx info = {};
    if (::statx(AT_FDCWD, path.constData(), AT_STATX_SYNC_AS_STAT, STATX_TYPE | STATX_INO | STATX_BTIME, &info) != 0)
        return std::nullopt;
    quint64 birth = 0;
    if (info.stx_mask & STATX_BTIME)
        birth = static_cast<quint64>(info.stx_btime.tv_sec) * 1'000'000'000U + info.stx_btime.tv_nsec;
    return Identity{makedev(info.stx_dev_major, info.stx_dev_minor), info.stx_ino, birth, S_ISDIR(info.stx_mode)};
}

QByteArray encode(const Bookmark &bookmark)
{
    QByteArray bytes(headerSize, '\0');
    char *at = bytes.data();
    std::memcpy(at, mark, markSize);
    at[markSize] = formatVersion;
    qToLittleEndian(bookmark.identity.device, at + markSize + 1);
    qToLittleEndian(bookmark.identity.inode, at + markSize + 9);
    qToLittleEndian(bookmark.identity.birth, at + markSize + 17);
    at[headerSize - 1] = bookmark.identity.isFolder ? 1 : 0;
    return bytes + bookmark.path;
}

std::optional<Bookmark> decode(const QByteArray &bytes)
{
    if (bytes.size() <= headerSize || bytes.size() > headerSize + longestPath || !bytes.startsWith(mark))
        return std::nullopt;
    const char *at = bytes.constData();
    if (at[markSize] != formatVersion || (at[headerSize - 1] & ~1) != 0)
        return std::nullopt;
    const auto number = [at](int index) { return qFromLittleEndian<quint64>(at + markSize + 1 + 8 * index); };
    Bookmark bookmark{{number(0), number(1), number(2), at[headerSize - 1] == 1}, bytes.mid(headerSize)};
    if (!bookmark.path.startsWith('/') || bookmark.path.contains('\0'))
        return std::nullopt;
    return bookmark;
}

/// The path, in the folder where the object was, under which it is now.
std::optional<QByteArray> findInFolder(const Bookmark &bookmark, std::size_t scanLimit)
{
    const QByteArray folder = bookmark.path.left(bookmark.path.lastIndexOf('/') + 1);
    const std::unique_ptr<DIR, int (*)(DIR *)> directory(::opendir(folder.constData()), ::closedir);
    if (!directory)
        return std::nullopt;
    for (std::size_t scanned = 0; scanned < scanLimit; ++scanned) {
        const dirent *entry = ::readdir(directory.get());
        if (!entry)
            break;
        if (entry->d_ino != bookmark.identity.inode || entry->d_name == std::string_view("..") ||
            entry->d_name == std::string_view("."))
            continue;
        // Only asked where the number fits: the device is not in the listing.
        const QByteArray path = folder + entry->d_name;
        const auto found = identityAt(path);
        if (found && found->matches(bookmark.identity) &&
            (found->device == bookmark.identity.device || found->hasBirth(bookmark.identity)))
            return path;
    }
    return std::nullopt;
}

} // namespace

InodeFileBookmarks::InodeFileBookmarks(std::size_t scanLimit) : m_scanLimit(scanLimit) {}

Result<QByteArray, FileBookmarkError> InodeFileBookmarks::create(const QString &path) const
{
    Bookmark bookmark{{}, QFile::encodeName(path)};
    while (bookmark.path.size() > 1 && bookmark.path.endsWith('/'))
        bookmark.path.chop(1);
    if (!bookmark.path.startsWith('/') || bookmark.path.contains('\0'))
        return FileBookmarkError{QStringLiteral("not an absolute path")};
    if (bookmark.path.size() > longestPath)
        return systemError(ENAMETOOLONG);
    const auto identity = identityAt(bookmark.path);
    if (!identity)
        return systemError(errno);
    bookmark.identity = *identity;
    return encode(bookmark);
}

Result<ResolvedBookmark, FileBookmarkError> InodeFileBookmarks::resolve(const QByteArray &bytes) const
{
    const auto bookmark = decode(bytes);
    if (!bookmark)
        return FileBookmarkError{QStringLiteral("not a bookmark of this system")};
    const auto here = identityAt(bookmark->path);
    const int error = errno;
    const QString path = QFile::decodeName(bookmark->path);
    // Network file systems get another device number at each mount.
    if (here && here->matches(bookmark->identity))
        return ResolvedBookmark{path, false};
    if (const auto found = findInFolder(*bookmark, m_scanLimit))
        return ResolvedBookmark{QFile::decodeName(*found), true};
    if (here)
        return ResolvedBookmark{path, true};
    return systemError(error);
}

bool InodeFileBookmarks::startAccess(const QString &path)
{
    return ::access(QFile::encodeName(path).constData(), R_OK) == 0;
}

void InodeFileBookmarks::stopAccess(const QString &) {}

} // namespace orvelle
