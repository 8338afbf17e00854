#include "platform/freedesktop/folder/FolderArrivals.h"

#include <QFile>
#include <QFileInfo>

#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <array>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr std::uint32_t comings = IN_CREATE | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

QString nearestAbove(QString path)
{
    do
        path = QFileInfo(path).absolutePath();
    while (!QFileInfo(path).isDir() && path != u"/"_s);
    return path;
}

} // namespace

FolderArrivals::FolderArrivals(const QStringList &missing, QObject *parent)
    : QObject(parent), m_missing(missing), m_inotify(inotify_init1(IN_CLOEXEC | IN_NONBLOCK))
{
    if (m_inotify < 0)
        return;
    m_notices = std::make_unique<QSocketNotifier>(m_inotify, QSocketNotifier::Read);
    connect(m_notices.get(), &QSocketNotifier::activated, this, &FolderArrivals::readNotices);
    lookOut();
}

FolderArrivals::~FolderArrivals()
{
    m_notices.reset();
    if (m_inotify >= 0)
        ::close(m_inotify);
}

bool FolderArrivals::isOneThere() const
{
    return std::ranges::any_of(m_missing, [](const QString &each) { return QFileInfo(each).isDir(); });
}

void FolderArrivals::lookOut()
{
    // While this goes on, folders on the way may come.
    for (QStringList before, above; above.isEmpty() || above != before;) {
        before = std::exchange(above, {});
        for (const QString &each : std::as_const(m_missing))
            above += nearestAbove(each);
        for (const QString &each : std::as_const(above))
            inotify_add_watch(m_inotify, QFile::encodeName(each).constData(), comings);
    }
    if (!isOneThere())
        return;
    m_notices->setEnabled(false);
    QMetaObject::invokeMethod(this, &FolderArrivals::arrived, Qt::QueuedConnection);
}

void FolderArrivals::readNotices()
{
    std::array<char, 16 * 1024> buffer{};
    while (::read(m_inotify, buffer.data(), buffer.size()) > 0) {
    }
    lookOut();
}

} // namespace orvelle
