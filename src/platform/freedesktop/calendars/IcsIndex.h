#pragma once

#include "platform/freedesktop/calendars/IcsSeries.h"

#include <QHash>

#include <atomic>
#include <functional>

namespace orvelle {

/// What the `.ics` files of some folders hold, read again only where a file has
/// changed, with the occurrences of the coming days at hand. Used by one thread
/// at a time, but for markChanged() and cancel().
class IcsIndex
{
public:
    /// `watch` is called with each folder before it is listed.
    IcsIndex(QStringList folders, IcsAddresses own, std::function<void(const QString &folder)> watch);

    /// Something changed in the folders. Any thread.
    void markChanged() { m_changed = true; }
    /// Ends a reading that is under way. Any thread.
    void cancel() { m_cancelled = true; }

    /// Seconds since 1970.
    QList<CalendarEvent> events(qint64 from, qint64 to);

private:
    struct File {
        qint64 modified = 0; ///< milliseconds
        qint64 size = 0;
        QList<IcsSeries> series;
    };
    void scan();
    void list(const QString &folder, int depth, const QString &color);
    void take(const QString &path, qint64 modified, qint64 size, const QString &color);
    void expand(qint64 from, qint64 to);

    QStringList m_folders;
    IcsAddresses m_own;
    std::function<void(const QString &)> m_watch;
    std::atomic<bool> m_changed = true;
    std::atomic<bool> m_cancelled = false;
    QHash<QString, File> m_files;
    QHash<QString, File> m_before; ///< during a scan: what was known until then
    QSet<QString> m_visited;       ///< during a scan: folders by their real path
    qint64 m_keptFrom = 0;         ///< events over before this were not kept
    QList<CalendarEvent> m_expanded;
    qint64 m_expandedFrom = 0;
    qint64 m_expandedTo = 0;
    QByteArray m_zone; ///< in which local times were worked out
};

} // namespace orvelle
