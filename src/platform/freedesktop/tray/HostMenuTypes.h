#pragma once

#include <QDBusArgument>
#include <QDBusVariant>
#include <QStringList>
#include <QVariantMap>

namespace orvelle {

// What com.canonical.dbusmenu carries.

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

/// (ias): properties that are back at what they are worth when not given.
struct HostMenuRemovals {
    int id = 0;
    QStringList names;
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
QDBusArgument &operator<<(QDBusArgument &out, const HostMenuRemovals &removals);
const QDBusArgument &operator>>(const QDBusArgument &in, HostMenuRemovals &removals);
QDBusArgument &operator<<(QDBusArgument &out, const HostMenuEvent &event);
const QDBusArgument &operator>>(const QDBusArgument &in, HostMenuEvent &event);

/// Makes them known to the bus.
void registerHostMenuTypes();

} // namespace orvelle

Q_DECLARE_METATYPE(orvelle::HostMenuNode)
Q_DECLARE_METATYPE(orvelle::HostMenuProperties)
Q_DECLARE_METATYPE(orvelle::HostMenuRemovals)
Q_DECLARE_METATYPE(orvelle::HostMenuEvent)
