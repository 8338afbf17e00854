#include "platform/freedesktop/calendars/IcsCalendars.h"

#include "platform/freedesktop/calendars/IcsIndex.h"
#include "platform/freedesktop/folder/FolderIo.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QStandardPaths>

#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcCalendars, "IcsCalendars", QtInfoMsg)

constexpr std::uint32_t changes =
    IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE | IN_CREATE | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

} // namespace

IcsCalendars::IcsCalendars(const QStringList &folders, const QStringList &own, QObject *parent)
    : CalendarStore(parent), m_folders(folders), m_own(own)
{
    beginAnew();
}

IcsCalendars::~IcsCalendars()
{
    m_index->cancel();
}

QStringList IcsCalendars::usualFolders()
{
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return {QDir::homePath() + u"/.calendars"_s, data + u"/calendars"_s};
}

void IcsCalendars::beginAnew()
{
    if (m_index)
        m_index->cancel();
    waitForMissing();
    // Watched before it is listed, so that no change is missed in between.
    m_index = std::make_shared<IcsIndex>(m_folders, m_own, [inotify = m_inotify](const QString &folder) {
        if (inotify && inotify_add_watch(inotify->get(), QFile::encodeName(folder).constData(), changes) < 0)
            qCWarning(lcCalendars, "A calendar folder cannot be watched (%d)", errno);
    });
}

QStringList IcsCalendars::presentFolders() const
{
    QStringList present = m_folders;
    present.removeIf([this](const QString &each) {
        return m_volumes.distantVolumeHolding(each).isEmpty() && !QFileInfo(each).isDir();
    });
    return present;
}

void IcsCalendars::waitForMissing()
{
    m_present = presentFolders();
    m_arrivals.reset();
    if (!m_inotify || m_present.size() == m_folders.size())
        return;
    QStringList missing = m_folders;
    missing.removeIf([this](const QString &each) { return m_present.contains(each); });
    m_arrivals = std::make_unique<FolderArrivals>(missing);
    connect(m_arrivals.get(), &FolderArrivals::arrived, this, &IcsCalendars::beginAgain, Qt::QueuedConnection);
}

/// With other folders than until now.
void IcsCalendars::beginAgain()
{
    beginAnew();
    emit availabilityChanged();
}

void IcsCalendars::setFolders(const QStringList &folders)
{
    if (folders == m_folders)
        return;
    m_folders = folders;
    beginAgain();
    emit changed();
}

bool IcsCalendars::isAvailable() const
{
    return !presentFolders().isEmpty();
}

void IcsCalendars::requestAccess(std::function<void(const AccessAnswer &)> done)
{
    QMetaObject::invokeMethod(
        this,
        [this, done = std::move(done)] {
            done({isAvailable(), {}});
        },
        Qt::QueuedConnection);
}

void IcsCalendars::fetch(Timestamp from, Timestamp to, std::function<void(const QList<CalendarEvent> &)> done)
{
    if (!m_inotify)
        m_index->markChanged();
    m_reader.run([this, from, to, index = m_index, done = std::move(done)]() mutable {
        const auto begin = static_cast<qint64>(std::floor(from.unixSeconds()));
        const auto end = static_cast<qint64>(std::ceil(to.unixSeconds()));
        return [this, from, to, index, events = index->events(begin, end), done = std::move(done)] {
            // What was cancelled is not whole.
            if (index == m_index)
                done(events);
            else
                fetch(from, to, done);
        };
    });
}

void IcsCalendars::setWatching(bool watching)
{
    if (watching == (m_inotify != nullptr))
        return;
    m_notices.reset();
    m_inotify.reset();
    Descriptor inotify(watching ? inotify_init1(IN_CLOEXEC | IN_NONBLOCK) : -1);
    if (inotify) {
        m_inotify = std::make_shared<Descriptor>(std::move(inotify));
        m_notices = std::make_unique<QSocketNotifier>(m_inotify->get(), QSocketNotifier::Read);
        connect(m_notices.get(), &QSocketNotifier::activated, this, &IcsCalendars::readNotices);
    }
    beginAnew();
}

void IcsCalendars::readNotices()
{
    // Which file it was is found out by looking at them all.
    std::array<char, 16 * 1024> buffer{};
    bool any = false;
    while (::read(m_inotify->get(), buffer.data(), buffer.size()) > 0)
        any = true;
    if (!any)
        return;
    if (presentFolders() != m_present)
        return beginAgain();
    m_index->markChanged();
    emit changed();
}

} // namespace orvelle
