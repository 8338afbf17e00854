#include "platform/freedesktop/HostMenu.h"

#include <QDBusError>
#include <QDBusMetaType>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <QSet>

#include <algorithm>

namespace orvelle {

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(lcHostMenu, "HostMenu", QtInfoMsg)

namespace {

constexpr int rootId = 0;

/// What a property is worth for an entry that does not carry it.
const QVariantMap &propertyDefaults()
{
    static const QVariantMap defaults{{u"type"_s, u"standard"_s},  {u"label"_s, QString()},
                                      {u"enabled"_s, true},        {u"visible"_s, true},
                                      {u"icon-name"_s, QString()}, {u"children-display"_s, QString()}};
    return defaults;
}

QVariantMap allPropertiesOf(const HostMenuEntry &entry)
{
    if (entry.separator)
        return {{u"type"_s, u"separator"_s}};
    QVariantMap properties;
    // A single underscore marks the next letter as the access key.
    properties.insert(u"label"_s, QString(entry.title).replace(u'_', u"__"_s));
    if (!entry.iconName.isEmpty())
        properties.insert(u"icon-name"_s, entry.iconName);
    return properties;
}

QVariantMap chosenFrom(const QVariantMap &properties, const QStringList &names)
{
    if (names.isEmpty())
        return properties;
    QVariantMap some;
    for (const auto &[name, value] : properties.asKeyValueRange()) {
        if (names.contains(name))
            some.insert(name, value);
    }
    return some;
}

} // namespace

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

HostMenu::HostMenu(QObject *parent) : QObject(parent)
{
    qDBusRegisterMetaType<HostMenuNode>();
    qDBusRegisterMetaType<HostMenuProperties>();
    qDBusRegisterMetaType<QList<HostMenuProperties>>();
    qDBusRegisterMetaType<HostMenuEvent>();
    qDBusRegisterMetaType<QList<HostMenuEvent>>();
}

void HostMenu::setEntries(const QList<HostMenuEntry> &entries)
{
    m_entries.clear();
    for (const HostMenuEntry &entry : entries) {
        if (entry.id > rootId && !find(entry.id))
            m_entries += entry;
        else
            qCWarning(lcHostMenu, "entry left out: the id %d is not positive or not unique", entry.id);
    }
    ++m_revision;
    emit LayoutUpdated(m_revision, rootId);
}

QString HostMenu::textDirection() const
{
    return QGuiApplication::layoutDirection() == Qt::RightToLeft ? u"rtl"_s : u"ltr"_s;
}

uint HostMenu::GetLayout(int parentId, int recursionDepth, const QStringList &propertyNames, HostMenuNode &layout)
{
    constexpr int unlimited = -1;
    if (!exists(parentId) || recursionDepth < unlimited) {
        refuse(u"no such entry, or a depth below -1"_s);
        return m_revision;
    }
    layout = {parentId, propertiesOf(parentId, propertyNames), {}};
    if (parentId == rootId && recursionDepth != 0) {
        for (const HostMenuEntry &entry : m_entries)
            layout.children += {entry.id, propertiesOf(entry.id, propertyNames), {}};
    }
    return m_revision;
}

QList<HostMenuProperties> HostMenu::GetGroupProperties(const QList<int> &ids, const QStringList &propertyNames)
{
    // Each entry once at most, however often it was asked for.
    const QSet<int> wanted(ids.begin(), ids.end());
    QList<HostMenuProperties> group;
    if (wanted.isEmpty() || wanted.contains(rootId))
        group += {rootId, propertiesOf(rootId, propertyNames)};
    for (const HostMenuEntry &entry : m_entries) {
        if (wanted.isEmpty() || wanted.contains(entry.id))
            group += {entry.id, propertiesOf(entry.id, propertyNames)};
    }
    return group;
}

QDBusVariant HostMenu::GetProperty(int id, const QString &name)
{
    const auto fallback = propertyDefaults().constFind(name);
    if (!exists(id) || fallback == propertyDefaults().constEnd()) {
        refuse(u"no such entry or property"_s);
        return {};
    }
    return QDBusVariant(propertiesOf(id, {}).value(name, *fallback));
}

void HostMenu::Event(int id, const QString &eventId, const QDBusVariant &, uint)
{
    if (!handleEvent(id, eventId))
        refuse(u"no such entry"_s);
}

QList<int> HostMenu::EventGroup(const QList<HostMenuEvent> &events)
{
    QList<int> unknown;
    for (const HostMenuEvent &event : events) {
        if (!handleEvent(event.id, event.type))
            unknown += event.id;
    }
    if (!events.isEmpty() && unknown.size() == events.size())
        refuse(u"none of the entries exists"_s);
    return unknown;
}

bool HostMenu::AboutToShow(int id)
{
    if (!exists(id))
        refuse(u"no such entry"_s);
    return false; // the layout is always up to date
}

QList<int> HostMenu::AboutToShowGroup(const QList<int> &ids, QList<int> &idErrors)
{
    std::ranges::copy_if(ids, std::back_inserter(idErrors), [this](int id) { return !exists(id); });
    if (!ids.isEmpty() && idErrors.size() == ids.size())
        refuse(u"none of the entries exists"_s);
    return {};
}

const HostMenuEntry *HostMenu::find(int id) const
{
    const auto found = std::ranges::find(m_entries, id, &HostMenuEntry::id);
    return found == m_entries.end() ? nullptr : &*found;
}

QVariantMap HostMenu::propertiesOf(int id, const QStringList &names) const
{
    if (id == rootId)
        return chosenFrom({{u"children-display"_s, u"submenu"_s}}, names);
    const HostMenuEntry *entry = find(id);
    return entry ? chosenFrom(allPropertiesOf(*entry), names) : QVariantMap();
}

void HostMenu::refuse(const QString &why)
{
    if (calledFromDBus())
        sendErrorReply(QDBusError::InvalidArgs, why);
}

bool HostMenu::handleEvent(int id, const QString &eventId)
{
    if (!exists(id))
        return false;
    const HostMenuEntry *entry = find(id);
    if (entry && !entry->separator && eventId == u"clicked"_s) {
        // After the answer: what the choice does may take its time.
        QMetaObject::invokeMethod(
            this, [this, id] { emit chosen(id); }, Qt::QueuedConnection);
    }
    return true;
}

} // namespace orvelle
