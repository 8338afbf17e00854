#include "platform/freedesktop/folder/FolderMounts.h"

#include "platform/freedesktop/MountTable.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <linux/magic.h>
#include <mntent.h>
#include <sys/vfs.h>

#include <array>
#include <cstdio>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

QByteArray contentOf(const char *path)
{
    QFile file(QFile::decodeName(path));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool contains(const QByteArray &folder, const QByteArray &path)
{
    return path == folder || path.startsWith(folder.endsWith('/') ? folder : folder + '/');
}

const struct {
    long magic;
    const char *name;
} fileSystems[] = {
    {EXT4_SUPER_MAGIC, "ext"},  {BTRFS_SUPER_MAGIC, "btrfs"},
    {XFS_SUPER_MAGIC, "xfs"},   {TMPFS_MAGIC, "tmpfs"},
    {NFS_SUPER_MAGIC, "nfs"},   {0xff534d42, "smb"},
    {0xfe534d42, "smb"},        {FUSE_SUPER_MAGIC, "fuse"},
    {MSDOS_SUPER_MAGIC, "fat"}, {OVERLAYFS_SUPER_MAGIC, "overlay"},
    {0x2011bab0, "exfat"},      {V9FS_MAGIC, "9p"},
};

} // namespace

bool isUnmounted(const QByteArray &path, const QByteArray &fstab, const QByteArray &mountInfo)
{
    if (fstab.isEmpty())
        return false;
    QByteArray text = fstab;
    FILE *stream = ::fmemopen(text.data(), static_cast<size_t>(text.size()), "r");
    if (!stream)
        return false;
    bool result = false;
    mntent entry{};
    std::array<char, 4096> buffer{};
    while (!result && ::getmntent_r(stream, &entry, buffer.data(), buffer.size())) {
        const QByteArray point = QDir::cleanPath(QFile::decodeName(entry.mnt_dir)).toUtf8();
        if (!point.startsWith('/') || point == "/" || !contains(point, path))
            continue;
        const QList<Mount> mounts = parseMountInfo(mountInfo);
        result = std::ranges::none_of(mounts, [&](const Mount &each) { return each.mountPoint == point; });
    }
    ::endmntent(stream);
    return result;
}

bool isUnmounted(const QByteArray &path)
{
    const QString asChosen = QFile::decodeName(path);
    const QString behindLinks = QFileInfo(asChosen).canonicalFilePath();
    const QByteArray fstab = contentOf("/etc/fstab");
    const QByteArray mountInfo = contentOf("/proc/self/mountinfo");
    return isUnmounted(QDir::cleanPath(asChosen).toUtf8(), fstab, mountInfo) ||
           isUnmounted(behindLinks.toUtf8(), fstab, mountInfo);
}

QString fileSystemName(int file)
{
    struct statfs info;
    if (::fstatfs(file, &info) != 0)
        return u"unknown file system"_s;
    for (const auto &each : fileSystems) {
        if (each.magic == static_cast<long>(info.f_type))
            return QString::fromLatin1(each.name);
    }
    return u"file system "_s + QString::number(static_cast<quint32>(info.f_type), 16);
}

} // namespace orvelle
