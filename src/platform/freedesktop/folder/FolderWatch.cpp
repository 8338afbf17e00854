#include "platform/freedesktop/folder/FolderWatch.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

namespace orvelle {

namespace {

Q_LOGGING_CATEGORY(lcWatch, "FolderWatch", QtInfoMsg)

constexpr std::uint32_t changes = IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE | IN_CREATE | IN_ATTRIB |
                                  IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;
constexpr std::uint32_t onTheFolder = IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED | IN_Q_OVERFLOW;

} // namespace

FolderWatch::FolderWatch(const QString &folder)
    : m_folder(QDir::cleanPath(folder)), m_inotify(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK))
{
    if (!m_inotify)
        qCWarning(lcWatch, "The folder cannot be watched (%d)", errno);
}

bool FolderWatch::watch(const QString &folder)
{
    const int added = ::inotify_add_watch(m_inotify.get(), QFile::encodeName(folder).constData(), changes);
    if (added < 0) {
        if (errno != ENOENT && errno != ENOTDIR && !std::exchange(m_saidWhy, true))
            qCWarning(lcWatch, "The folder cannot be watched (%d)", errno);
        return false;
    }
    // The same folder again keeps its watch.
    if (m_watched >= 0 && m_watched != added)
        ::inotify_rm_watch(m_inotify.get(), m_watched);
    m_watched = added;
    return true;
}

void FolderWatch::arm()
{
    if (!m_inotify || !QDir::isAbsolutePath(m_folder))
        return;
    // Again when the next folder came before the watch above it: it told nobody.
    for (int attempt = 0; attempt < 5; ++attempt) {
        QString below;
        QString nearest = m_folder;
        while (!watch(nearest) && nearest != QDir::rootPath()) {
            below = nearest;
            nearest = QFileInfo(nearest).path();
        }
        if (below.isEmpty() || !QFileInfo(below).isDir())
            return;
    }
}

FolderWatch::Notices FolderWatch::take() const
{
    Notices result;
    alignas(inotify_event) std::array<char, 16 * 1024> buffer{};
    for (;;) {
        const ssize_t length = ::read(m_inotify.get(), buffer.data(), buffer.size());
        if (length <= 0)
            return result;
        for (ssize_t at = 0; at < length;) {
            inotify_event event{};
            std::memcpy(&event, buffer.data() + at, sizeof event);
            if (event.mask & onTheFolder)
                result.onFolder = true;
            else if (event.len > 0)
                result.names += QFile::decodeName(buffer.data() + at + sizeof event);
            at += static_cast<ssize_t>(sizeof event + event.len);
        }
    }
}

} // namespace orvelle
