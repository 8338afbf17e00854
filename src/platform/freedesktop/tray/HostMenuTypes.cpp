#include "platform/freedesktop/tray/HostMenuTypes.h"

#include <QDBusMetaType>

namespace orvelle {

QDBusArgument &operator<<(QDBusArgument &out, const HostMenuNode &node)
{
    out.beginStructure();
    out << node.id << node.properties;
    out.beginArray(QMetaType::fromType<QDBusVariant>());
    for (const HostMenuNode &child : node.children)
        out << QDBusVariant(QVariant::fromValue(child));
    out.endArray();
    out.endStructure();
    return out;
}

const QDBusArgument &operator>>(const QDBusArgument &in, HostMenuNode &node)
{
    in.beginStructure();
    in >> node.id >> node.properties;
    in.beginArray();
    while (!in.atEnd()) {
        QDBusVariant child;
        in >> child;
        node.children += qdbus_cast<HostMenuNode>(child.variant());
    }
    in.endArray();
    in.endStructure();
    return in;
}

QDBusArgument &operator<<(QDBusArgument &out, const HostMenuProperties &properties)
{
    out.beginStructure();
    out << properties.id << properties.properties;
    out.endStructure();
    return out;
}

const QDBusArgument &operator>>(const QDBusArgument &in, HostMenuProperties &properties)
{
    in.beginStructure();
    in >> properties.id >> properties.properties;
    in.endStructure();
    return in;
}

QDBusArgument &operator<<(QDBusArgument &out, const HostMenuEvent &event)
{
    out.beginStructure();
    out << event.id << event.type << event.data << event.timestamp;
    out.endStructure();
    return out;
}

const QDBusArgument &operator>>(const QDBusArgument &in, HostMenuEvent &event)
{
    in.beginStructure();
    in >> event.id >> event.type >> event.data >> event.timestamp;
    in.endStructure();
    return in;
}

QDBusArgument &operator<<(QDBusArgument &out, const HostMenuRemovals &removals)
{
    out.beginStructure();
    out << removals.id << removals.names;
    out.endStructure();
    return out;
}

const QDBusArgument &operator>>(const QDBusArgument &in, HostMenuRemovals &removals)
{
    in.beginStructure();
    in >> removals.id >> removals.names;
    in.endStructure();
    return in;
}

void registerHostMenuTypes()
{
    qDBusRegisterMetaType<HostMenuNode>();
    qDBusRegisterMetaType<HostMenuProperties>();
    qDBusRegisterMetaType<QList<HostMenuProperties>>();
    qDBusRegisterMetaType<HostMenuRemovals>();
    qDBusRegisterMetaType<QList<HostMenuRemovals>>();
    qDBusRegisterMetaType<HostMenuEvent>();
    qDBusRegisterMetaType<QList<HostMenuEvent>>();
}

} // namespace orvelle
