#include "platform/freedesktop/defaults/SqliteFolderLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <thread>

namespace orvelle {

using namespace std::chrono_literals;

SqliteFolderLock::SqliteFolderLock(const QByteArray &folder, std::chrono::milliseconds longestWait)
    : m_folder(::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)),
      m_openError(m_folder < 0 ? errno : 0),
      m_longestWait(longestWait)
{
}

SqliteFolderLock::~SqliteFolderLock()
{
    if (m_folder >= 0)
        ::close(m_folder);
}

int SqliteFolderLock::acquire() const
{
    if (m_folder < 0)
        return m_openError;
    const auto end = std::chrono::steady_clock::now() + m_longestWait;
    while (::flock(m_folder, LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR)
            return 0;
        if (std::chrono::steady_clock::now() >= end)
            return EWOULDBLOCK;
        std::this_thread::sleep_for(10ms);
    }
    return 0;
}

void SqliteFolderLock::sync() const
{
    ::fsync(m_folder);
}

} // namespace orvelle
