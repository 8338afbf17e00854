#include "platform/freedesktop/MountTable.h"

#include "platform/freedesktop/RemoteAddress.h"

#include <QFile>

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <optional>
#include <string_view>

namespace orvelle {

namespace {

/// File systems on disks and in the memory of this machine. All others are
/// answered for by somebody else: a server, a program, the host of a machine.
constexpr std::array<std::string_view, 35> ownKinds = {
    "bcachefs", "bpf",    "btrfs", "cgroup",  "cgroup2", "configfs", "debugfs", "devpts",   "devtmpfs",
    "efivarfs", "erofs",  "exfat", "ext2",    "ext3",    "ext4",     "f2fs",    "hfsplus",  "iso9660",
    "jfs",      "mqueue", "msdos", "ntfs3",   "overlay", "proc",     "ramfs",   "reiserfs", "rootfs",
    "squashfs", "sysfs",  "tmpfs", "tracefs", "udf",     "vfat",     "xfs",     "zfs"};
constexpr int mostLinks = 40; // as the kernel

/// Where the link at `path` leads; absent, with errno, when none is there.
std::optional<QByteArray> linkTarget(const QByteArray &path)
{
    std::array<char, PATH_MAX> target;
    const ssize_t size = ::readlink(path.constData(), target.data(), target.size());
    return size < 0 ? std::nullopt : std::optional(QByteArray(target.data(), size));
}

/// Space, tab, newline and backslash are written as \ooo in the mount table.
QByteArray withoutEscapes(const QByteArray &field)
{
    const auto isOctal = [&](qsizetype at) { return at < field.size() && field[at] >= '0' && field[at] <= '7'; };
    QByteArray plain;
    for (qsizetype i = 0; i < field.size(); ++i) {
        if (field[i] != '\\' || !isOctal(i + 1) || !isOctal(i + 2) || !isOctal(i + 3)) {
            plain += field[i];
            continue;
        }
        plain += static_cast<char>((field[i + 1] - '0') * 64 + (field[i + 2] - '0') * 8 + (field[i + 3] - '0'));
        i += 3;
    }
    return plain;
}

/// "36 35 98:0 /root /mount/point rw,noatime [optional ...] - type source options"
std::optional<Mount> parseLine(const QByteArray &line)
{
    constexpr qsizetype mountPointField = 4;
    constexpr qsizetype firstOptionalField = 6;
    const QList<QByteArray> fields = line.split(' ');
    const qsizetype separator = fields.indexOf("-", firstOptionalField);
    if (separator < 0 || separator + 2 >= fields.size())
        return std::nullopt;
    Mount mount{withoutEscapes(fields[mountPointField]), withoutEscapes(fields[separator + 1]),
                withoutEscapes(fields[separator + 2])};
    return mount.mountPoint.startsWith('/') ? std::optional(mount) : std::nullopt;
}

/// "/a/./b//c/" is "/a/b/c"; ".." stays as it is, for only the file system
/// knows where it leads.
QByteArray withoutEmptyParts(const QByteArray &path)
{
    QByteArray clean;
    for (const QByteArray &part : path.split('/')) {
        if (!part.isEmpty() && part != ".")
            clean += '/' + part;
    }
    return clean.isEmpty() ? QByteArray("/") : clean;
}

/// By whole components: "/mnt/nas" holds "/mnt/nas/a", not "/mnt/nas2".
bool holds(const QByteArray &mountPoint, const QByteArray &path)
{
    return mountPoint == "/" || path == mountPoint || path.startsWith(mountPoint + '/');
}

} // namespace

QList<Mount> parseMountInfo(const QByteArray &text)
{
    QList<Mount> mounts;
    for (const QByteArray &line : text.split('\n')) {
        if (const auto mount = parseLine(line))
            mounts += *mount;
    }
    return mounts;
}

std::optional<RemoteVolume> remoteVolumeHolding(const QList<Mount> &mounts, const QByteArray &path)
{
    if (!path.startsWith('/'))
        return std::nullopt;
    const QByteArray clean = withoutEmptyParts(path);
    const Mount *deepest = nullptr;
    for (const Mount &mount : mounts) {
        if (holds(mount.mountPoint, clean) && (!deepest || mount.mountPoint.size() >= deepest->mountPoint.size()))
            deepest = &mount;
    }
    if (!deepest)
        return std::nullopt;
    if (isVolumesFolder(deepest->type)) {
        const qsizetype start = deepest->mountPoint.size() + 1;
        const QByteArray name = clean.mid(start, clean.indexOf('/', start) - start);
        const auto address = addressOfVolumeFolder(name);
        if (!address)
            return std::nullopt;
        return RemoteVolume{QFile::decodeName(deepest->mountPoint + '/' + name), *address};
    }
    const auto address = addressOfSource(deepest->type, deepest->source);
    if (!address)
        return std::nullopt;
    return RemoteVolume{QFile::decodeName(deepest->mountPoint), *address};
}

QSet<QByteArray> distantMountPoints(const QList<Mount> &mounts, const QByteArray &home)
{
    QSet<QByteArray> distant;
    for (const Mount &mount : mounts) {
        const bool own = std::ranges::find(ownKinds, std::string_view(mount.type)) != ownKinds.end();
        if (!own && !holds(mount.mountPoint, home))
            distant += mount.mountPoint;
    }
    return distant;
}

QByteArray mountPointOnTheWay(const QSet<QByteArray> &mountPoints, const QByteArray &path)
{
    if (mountPoints.isEmpty() || !path.startsWith('/'))
        return {};
    QByteArray reached; // without links; empty for "/"
    QList<QByteArray> ahead = path.split('/');
    for (int links = 0; !ahead.isEmpty();) {
        const QByteArray part = ahead.takeFirst();
        if (part.isEmpty() || part == ".")
            continue;
        if (part == "..") {
            reached.truncate(std::max<qsizetype>(reached.lastIndexOf('/'), 0));
            continue;
        }
        const QByteArray next = reached + '/' + part;
        if (mountPoints.contains(next))
            return next;
        const auto target = linkTarget(next);
        if (!target && errno != EINVAL)
            return {}; // nothing is there, or nobody gets beyond
        if (!target) {
            reached = next;
            continue;
        }
        if (++links > mostLinks)
            return {};
        if (target->startsWith('/'))
            reached.clear();
        ahead = target->split('/') + ahead;
    }
    return {};
}

} // namespace orvelle
