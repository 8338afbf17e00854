#include "platform/freedesktop/MountVolumes.h"

#include "platform/freedesktop/MountTable.h"

#include <QDir>
#include <QFile>

#include <poll.h>
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

/// The distant mount points of a mount table. The kernel's own reports its
/// changes as urgent data, see proc(5).
class MountVolumes::Table
{
public:
    explicit Table(const QString &mountInfo) : m_file(mountInfo) {}

    const QSet<QByteArray> &distant(const Volumes &volumes)
    {
        if (!isCurrent() && m_file.seek(0)) {
            const QByteArray home = QFile::encodeName(volumes.realHomeDirectory());
            m_distant = distantMountPoints(parseMountInfo(m_file.readAll()), home);
        }
        return m_distant;
    }

private:
    bool isCurrent()
    {
        if (!m_file.isOpen())
            return !m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
        pollfd changes{m_file.handle(), POLLPRI, 0};
        return ::poll(&changes, 1, 0) == 0;
    }

    QFile m_file;
    QSet<QByteArray> m_distant;
};

MountVolumes::MountVolumes(QString mountInfo)
    : m_mountInfo(std::move(mountInfo)), m_table(std::make_unique<Table>(m_mountInfo))
{
}

MountVolumes::~MountVolumes() = default;

std::optional<RemoteVolume> MountVolumes::remoteVolumeHolding(const QString &path) const
{
    QFile file(m_mountInfo);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return orvelle::remoteVolumeHolding(parseMountInfo(file.readAll()), QFile::encodeName(path));
}

QString MountVolumes::distantVolumeHolding(const QString &path) const
{
    QSet<QByteArray> distant;
    {
        const std::lock_guard lock(m_lock);
        distant = m_table->distant(*this);
    }
    return QFile::decodeName(mountPointOnTheWay(distant, QFile::encodeName(path)));
}

QString MountVolumes::realHomeDirectory() const
{
    const QByteArray home = homeInUserDatabase();
    return home.startsWith('/') ? QDir::cleanPath(QFile::decodeName(home)) : QDir::homePath();
}

} // namespace orvelle
