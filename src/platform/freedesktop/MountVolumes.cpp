#include "platform/freedesktop/MountVolumes.h"

#include "platform/freedesktop/MountTable.h"

#include <QDir>
#include <QFile>

#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

namespace orvelle {

namespace {

/// The home folder in the user database; empty when it has no entry.
QByteArray homeInUserDatabase()
{
    std::vector<char> buffer(1024);
    for (;;) {
        struct passwd entry = {};
        struct passwd *found = nullptr;
        const int error = ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found);
        if (error == ERANGE && buffer.size() < (1U << 20)) {
            buffer.resize(buffer.size() * 4);
            continue;
        }
        return found ? QByteArray(found->pw_dir) : QByteArray();
    }
}

} // namespace

MountVolumes::MountVolumes(QString mountInfo) : m_mountInfo(std::move(mountInfo)) {}

std::optional<RemoteVolume> MountVolumes::remoteVolumeHolding(const QString &path) const
{
    QFile file(m_mountInfo);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return orvelle::remoteVolumeHolding(parseMountInfo(file.readAll()), QFile::encodeName(path));
}

QString MountVolumes::realHomeDirectory() const
{
    const QByteArray home = homeInUserDatabase();
    return home.startsWith('/') ? QDir::cleanPath(QFile::decodeName(home)) : QDir::homePath();
}

} // namespace orvelle
