#pragma once

#include "platform/StatusItem.h"

#include <QDBusArgument>
#include <QDBusContext>
#include <QDBusVariant>
#include <QVariantMap>

namespace orvelle {

/// (ia{sv}av): one node of the menu with the properties that were asked for.
struct HostMenuNode {
    int id = 0;
    QVariantMap properties;
    QList<HostMenuNode> children;
};

/// (ia{sv})
struct HostMenuProperties {
    int id = 0;
    QVariantMap properties;
};

/// (isvu)
struct HostMenuEvent {
    int id = 0;
    QString type;
    QDBusVariant data;
    uint timestamp = 0;
};

QDBusArgument &operator<<(QDBusArgument &out, const HostMenuNode &node);
const QDBusArgument &operator>>(const QDBusArgument &in, HostMenuNode &node);
QDBusArgument &operator<<(QDBusArgument &out, const HostMenuProperties &properties);
const QDBusArgument &operator>>(const QDBusArgument &in, HostMenuProperties &properties);
QDBusArgument &operator<<(QDBusArgument &out, const HostMenuEvent &event);
const QDBusArgument &operator>>(const QDBusArgument &in, HostMenuEvent &event);

/// The small menu as an object on the bus (com.canonical.dbusmenu, version 3),
/// for tray hosts that draw menus themselves. A flat menu: node 0 is the root.
class HostMenu : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version SCRIPTABLE true)
    Q_PROPERTY(QString Status READ status SCRIPTABLE true)
    Q_PROPERTY(QString TextDirection READ textDirection SCRIPTABLE true)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath SCRIPTABLE true)

public:
    explicit HostMenu(QObject *parent = nullptr);

    /// Entries whose id is not positive or comes twice are left out, and logged.
    void setEntries(const QList<HostMenuEntry> &entries);

    uint version() const { return 3; }
    QString status() const { return QStringLiteral("normal"); }
    QString textDirection() const;
    QStringList iconThemePath() const { return {}; }

    /// Where the object belongs on the bus.
    static QString objectPath() { return QStringLiteral("/MenuBar"); }

public slots:
    Q_SCRIPTABLE uint GetLayout(int parentId, int recursionDepth, const QStringList &propertyNames,
                                orvelle::HostMenuNode &layout);
    Q_SCRIPTABLE QList<orvelle::HostMenuProperties> GetGroupProperties(const QList<int> &ids,
                                                                       const QStringList &propertyNames);
    Q_SCRIPTABLE QDBusVariant GetProperty(int id, const QString &name);
    Q_SCRIPTABLE void Event(int id, const QString &eventId, const QDBusVariant &data, uint timestamp);
    Q_SCRIPTABLE QList<int> EventGroup(const QList<orvelle::HostMenuEvent> &events);
    Q_SCRIPTABLE bool AboutToShow(int id);
    Q_SCRIPTABLE QList<int> AboutToShowGroup(const QList<int> &ids, QList<int> &idErrors);

signals:
    Q_SCRIPTABLE void LayoutUpdated(uint revision, int parent);

    /// The user chose the entry.
    void chosen(int id);

private:
    const HostMenuEntry *find(int id) const;
    bool exists(int id) const { return id == 0 || find(id); }
    QVariantMap propertiesOf(int id, const QStringList &names) const;
    void refuse(const QString &why);
    bool handleEvent(int id, const QString &eventId);

    QList<HostMenuEntry> m_entries;
    uint m_revision = 1;
};

} // namespace orvelle

Q_DECLARE_METATYPE(orvelle::HostMenuNode)
Q_DECLARE_METATYPE(orvelle::HostMenuProperties)
Q_DECLARE_METATYPE(orvelle::HostMenuEvent)
