#include "platform/freedesktop/MountTable.h"

#include "platform/freedesktop/RemoteAddress.h"

#include <QFile>

namespace orvelle {

namespace {

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

} // namespace orvelle
