#include "app/CalendarFolders.h"

#include "platform/UserDefaults.h"
#include "platform/freedesktop/calendars/IcsCalendars.h"

#include <QFileInfo>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

QString foldersKey()
{
    return u"CalendarFolders"_s;
}

} // namespace

CalendarFolders::CalendarFolders(UserDefaults &defaults, IcsCalendars &store, QObject *parent)
    : QObject(parent), m_defaults(defaults), m_store(store)
{
    m_store.setFolders(wanted());
    connect(&defaults, &UserDefaults::changedExternally, this, [this](const QStringList &keys) {
        if (keys.contains(foldersKey()))
            m_store.setFolders(wanted());
    });
}

QStringList CalendarFolders::wanted() const
{
    const auto stored = m_defaults.get<QStringList>(foldersKey());
    return stored ? *stored : IcsCalendars::usualFolders();
}

QStringList CalendarFolders::folders() const
{
    QStringList shown = wanted();
    if (!m_defaults.value(foldersKey()))
        shown.removeIf([](const QString &each) { return !QFileInfo(each).isDir(); });
    return shown;
}

void CalendarFolders::setFolders(const QStringList &folders)
{
    // A failed write is reported by the store itself; the folders hold for this run.
    static_cast<void>(m_defaults.write(foldersKey(), folders));
    m_store.setFolders(folders);
}

} // namespace orvelle
