#include "platform/freedesktop/calendars/IcsIndex.h"

#include <QDateTime>
#include <QDirIterator>
#include <QFile>
#include <QLoggingCategory>
#include <QTimeZone>

#include <algorithm>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcIcs, "IcsCalendars", QtInfoMsg)

constexpr int deepest = 4;
constexpr qsizetype mostFolders = 1000;
constexpr qsizetype mostFiles = 500'000;
constexpr qint64 largestFile = 64 * 1024 * 1024;
constexpr qint64 day = 86400;
constexpr std::chrono::seconds expansionTime{5};

/// What the files "color" of a calendar folder say, if they are there.
QString colorOf(const QString &folder)
{
    QFile file(folder + u"/color"_s);
    if (!QFileInfo(file.fileName()).isFile() || !file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.read(64)).trimmed().left(32);
}

bool overlaps(const CalendarEvent &event, Timestamp from, Timestamp to)
{
    return event.start < to && (event.end > from || (event.end == event.start && event.start >= from));
}

} // namespace

IcsIndex::IcsIndex(QStringList folders, IcsAddresses own, std::function<void(const QString &folder)> watch)
    : m_folders(std::move(folders)), m_own(std::move(own)), m_watch(std::move(watch))
{
}

QList<CalendarEvent> IcsIndex::events(qint64 from, qint64 to)
{
    if (from < m_keptFrom || m_keptFrom == 0) {
        m_files.clear();
        m_keptFrom = from - 2 * day;
        m_changed = true;
    }
    const QByteArray zone = QTimeZone::systemTimeZoneId();
    const bool changed = m_changed.exchange(false);
    if (changed)
        scan();
    if (changed || from < m_expandedFrom || to > m_expandedTo || zone != m_zone) {
        m_zone = zone;
        expand(from - day, to + 7 * day);
    }
    const Timestamp begin = Timestamp::fromUnixSeconds(static_cast<double>(from));
    const Timestamp end = Timestamp::fromUnixSeconds(static_cast<double>(to));
    QList<CalendarEvent> found;
    std::ranges::copy_if(m_expanded, std::back_inserter(found),
                         [&](const CalendarEvent &each) { return overlaps(each, begin, end); });
    return found;
}

void IcsIndex::scan()
{
    m_before = std::exchange(m_files, {});
    m_visited.clear();
    for (const QString &folder : m_folders)
        list(folder, 0, {});
    m_before.clear();
    qCInfo(lcIcs, "%lld calendar files in %lld folders", static_cast<long long>(m_files.size()),
           static_cast<long long>(m_visited.size()));
}

void IcsIndex::list(const QString &folder, int depth, const QString &color)
{
    const QString real = QFileInfo(folder).canonicalFilePath();
    if (real.isEmpty() || depth > deepest || m_visited.size() >= mostFolders || m_visited.contains(real))
        return;
    m_visited.insert(real);
    m_watch(real);
    const QString own = colorOf(real);
    const QString &colorHere = own.isEmpty() ? color : own;
    QStringList below;
    QDirIterator entries(real, QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot);
    while (entries.hasNext() && !m_cancelled) {
        entries.next();
        const QFileInfo info = entries.fileInfo();
        if (info.isDir())
            below += info.filePath();
        else if (info.isFile() && info.suffix().compare("ics"_L1, Qt::CaseInsensitive) == 0)
            take(info.filePath(), info.lastModified().toMSecsSinceEpoch(), info.size(), colorHere);
    }
    for (const QString &each : below)
        list(each, depth + 1, colorHere);
}

void IcsIndex::take(const QString &path, qint64 modified, qint64 size, const QString &color)
{
    if (m_files.size() >= mostFiles)
        return;
    const auto known = m_before.constFind(path);
    if (known != m_before.constEnd() && known->modified == modified && known->size == size) {
        m_files.insert(path, *known);
        return;
    }
    QFile file(path);
    if (size > largestFile || !file.open(QIODevice::ReadOnly)) {
        qCWarning(lcIcs, "A calendar file of %lld bytes cannot be read", static_cast<long long>(size));
        m_files.insert(path, {modified, size, {}});
        return;
    }
    QList<IcsSeries> series = parseIcs(file.read(largestFile), color, m_own);
    series.removeIf([this](const IcsSeries &each) { return isOverBefore(each, m_keptFrom); });
    m_files.insert(path, {modified, size, std::move(series)});
}

void IcsIndex::expand(qint64 from, qint64 to)
{
    m_expanded.clear();
    m_expandedFrom = from;
    m_expandedTo = to;
    const auto deadline = std::chrono::steady_clock::now() + expansionTime;
    qsizetype incomplete = 0;
    for (const File &file : std::as_const(m_files)) {
        for (const IcsSeries &each : file.series) {
            if (m_cancelled)
                return;
            incomplete += expandIcs(each, from, to, deadline, m_expanded) ? 0 : 1;
        }
    }
    if (incomplete > 0)
        qCWarning(lcIcs, "%lld events repeat too often to be shown whole", static_cast<long long>(incomplete));
}

} // namespace orvelle
