#pragma once

#include <QObject>
#include <QStringList>

namespace orvelle {

class IcsCalendars;
class UserDefaults;

/// The setting that names the folders of calendar files, handed to the store
/// whenever it changes. Without it the usual folders count, also when they come
/// later. Belongs to this
/// machine, as folders do. Main thread.
class CalendarFolders : public QObject
{
    Q_OBJECT

public:
    CalendarFolders(UserDefaults &defaults, IcsCalendars &store, QObject *parent = nullptr);

    /// As set, else the usual ones that are there.
    QStringList folders() const;
    void setFolders(const QStringList &folders);

private:
    QStringList wanted() const;
    UserDefaults &m_defaults;
    IcsCalendars &m_store;
};

} // namespace orvelle
