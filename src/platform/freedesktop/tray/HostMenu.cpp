#include "platform/freedesktop/tray/HostMenu.h"

#include <QDBusError>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <QPointer>
#include <QSet>

#include <algorithm>

namespace orvelle {

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(lcHostMenu, "HostMenu", QtInfoMsg)

namespace {

constexpr int rootId = HostMenuTree::rootId;

/// What a property is worth for an entry that does not carry it.
const QVariantMap &propertyDefaults()
{
    static const QVariantMap defaults{{u"type"_s, u"standard"_s},
                                      {u"label"_s, QString()},
                                      {u"enabled"_s, true},
                                      {u"visible"_s, true},
                                      {u"icon-name"_s, QString()},
                                      {u"icon-data"_s, QByteArray()},
                                      {u"children-display"_s, QString()},
                                      {u"toggle-type"_s, QString()},
                                      {u"toggle-state"_s, -1}};
    return defaults;
}

} // namespace

HostMenu::HostMenu(QObject *parent) : QObject(parent)
{
    registerHostMenuTypes();
}

void HostMenu::setEntries(const QList<HostMenuEntry> &entries)
{
    QList<HostMenuItem> items;
    QSet<int> ids;
    for (const HostMenuEntry &entry : entries) {
        if (entry.id <= rootId || ids.contains(entry.id)) {
            qCWarning(lcHostMenu, "entry left out: the id %d is not positive or not unique", entry.id);
            continue;
        }
        ids += entry.id;
        HostMenuItem item;
        item.key = QString::number(entry.id);
        item.title = entry.title;
        item.iconName = entry.iconName;
        item.separator = entry.separator;
        item.choose = [this, id = entry.id] { emit chosen(id); };
        items += item;
    }
    if (m_source)
        return;
    m_tree.setItems(items);
    emit LayoutUpdated(++m_revision, rootId);
}

void HostMenu::setSource(HostMenuSource &source)
{
    m_source = &source;
    m_isStale = true;
    connect(&source, &HostMenuSource::changed, this, [this] {
        m_isStale = true;
        if (m_wasRead) // else the first question finds it as it is then
            catchUp();
    });
    emit LayoutUpdated(++m_revision, rootId);
}

QString HostMenu::textDirection() const
{
    return QGuiApplication::layoutDirection() == Qt::RightToLeft ? u"rtl"_s : u"ltr"_s;
}

bool HostMenu::catchUp()
{
    if (!m_source)
        return false;
    m_isStale = false;
    const HostMenuTree::Changes changes = m_tree.setItems(m_source->items());
    if (!changes.layouts.isEmpty())
        ++m_revision;
    for (const int parent : changes.layouts)
        emit LayoutUpdated(m_revision, parent);
    if (!changes.updated.isEmpty() || !changes.removed.isEmpty())
        emit ItemsPropertiesUpdated(changes.updated, changes.removed);
    return !changes.layouts.isEmpty();
}

uint HostMenu::GetLayout(int parentId, int recursionDepth, const QStringList &propertyNames, HostMenuNode &layout)
{
    constexpr int unlimited = -1;
    if (m_isStale)
        catchUp();
    if (!m_tree.exists(parentId) || recursionDepth < unlimited) {
        refuse(u"no such entry, or a depth below -1"_s);
        return m_revision;
    }
    m_wasRead = true;
    layout = m_tree.layout(parentId, recursionDepth, propertyNames);
    return m_revision;
}

QList<HostMenuProperties> HostMenu::GetGroupProperties(const QList<int> &ids, const QStringList &propertyNames)
{
    // Each entry once at most, however often it was asked for.
    const QSet<int> wanted(ids.begin(), ids.end());
    QList<HostMenuProperties> group;
    for (const int id : m_tree.ids()) {
        if (wanted.isEmpty() || wanted.contains(id))
            group += {id, m_tree.properties(id, propertyNames)};
    }
    return group;
}

QDBusVariant HostMenu::GetProperty(int id, const QString &name)
{
    const auto fallback = propertyDefaults().constFind(name);
    if (!m_tree.exists(id) || fallback == propertyDefaults().constEnd()) {
        refuse(u"no such entry or property"_s);
        return {};
    }
    return QDBusVariant(m_tree.properties(id, {name}).value(name, *fallback));
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

/// Before the host shows the children of an entry.
bool HostMenu::prepare(int id)
{
    if (id != rootId) {
        const bool made = m_tree.expand(id);
        m_revision += made ? 1 : 0;
        return made;
    }
    if (m_source)
        m_source->setShown(true);
    return catchUp();
}

bool HostMenu::AboutToShow(int id)
{
    if (m_tree.exists(id))
        return prepare(id);
    refuse(u"no such entry"_s);
    return false;
}

QList<int> HostMenu::AboutToShowGroup(const QList<int> &ids, QList<int> &idErrors)
{
    QList<int> renewed;
    for (const int id : ids) {
        if (!m_tree.exists(id))
            idErrors += id;
        else if (!renewed.contains(id) && prepare(id))
            renewed += id;
    }
    if (!ids.isEmpty() && idErrors.size() == ids.size())
        refuse(u"none of the entries exists"_s);
    return renewed;
}

void HostMenu::refuse(const QString &why)
{
    if (calledFromDBus())
        sendErrorReply(QDBusError::InvalidArgs, why);
}

bool HostMenu::handleEvent(int id, const QString &eventId)
{
    if (!m_tree.exists(id))
        return false;
    if (id == rootId && m_source && (eventId == u"opened"_s || eventId == u"closed"_s))
        m_source->setShown(eventId == u"opened"_s);
    if (eventId == u"clicked"_s)
        choose(id);
    return true;
}

void HostMenu::choose(int id)
{
    const HostMenuItem *item = m_tree.item(id);
    if (!item || item->separator || !item->enabled || item->children || !item->choose)
        return;
    // After the answer: what the choice does may take its time.
    QMetaObject::invokeMethod(this, item->choose, Qt::QueuedConnection);
}

} // namespace orvelle
