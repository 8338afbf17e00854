#pragma once

#include <QByteArray>

#include <fcntl.h>
#include <sys/mount.h>
#include <unistd.h>

namespace orvelle::test {

/// A mount that never answers, as a network disk whose server is gone: of a
/// program that does not read what the kernel asks it. For processes with
/// private mounts.
class DeadVolume
{
public:
    explicit DeadVolume(const QByteArray &mountPoint)
        : m_mountPoint(mountPoint), m_server(::open("/dev/fuse", O_RDWR | O_CLOEXEC))
    {
        const QByteArray options = "fd=" + QByteArray::number(m_server) + ",rootmode=40000,user_id=0,group_id=0";
        m_isMounted = m_server >= 0 && ::mount("dead", m_mountPoint.constData(), "fuse", 0, options.constData()) == 0;
    }
    /// All who wait for an answer get an error.
    ~DeadVolume()
    {
        if (m_server >= 0)
            ::close(m_server);
        if (m_isMounted)
            ::umount2(m_mountPoint.constData(), MNT_DETACH);
    }
    DeadVolume(const DeadVolume &) = delete;
    DeadVolume &operator=(const DeadVolume &) = delete;

    /// False where that is not permitted.
    bool isMounted() const { return m_isMounted; }

private:
    QByteArray m_mountPoint;
    int m_server;
    bool m_isMounted = false;
};

} // namespace orvelle::test
