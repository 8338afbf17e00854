#include "platform/freedesktop/tray/HostMenuTree.h"

#include <algorithm>
#include <tuple>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

/// Hosts draw a label whole, however long it is.
constexpr qsizetype longestLabel = 100;

QString labelOf(QString title)
{
    std::ranges::replace_if(
        title, [](QChar c) { return c.category() == QChar::Other_Control || c.isNull(); }, QChar(u' '));
    if (title.size() > longestLabel) {
        title.truncate(longestLabel - 1);
        if (title.back().isHighSurrogate())
            title.chop(1);
        title += u'…';
    }
    // A single underscore marks the next letter as the access key.
    return title.replace(u'_', u"__"_s);
}

/// All but the picture, which is made only when it is asked for.
QVariantMap plainProperties(const HostMenuItem &item)
{
    if (item.separator)
        return {{u"type"_s, u"separator"_s}};
    QVariantMap properties{{u"label"_s, labelOf(item.title)}};
    if (!item.enabled)
        properties.insert(u"enabled"_s, false);
    if (!item.iconName.isEmpty())
        properties.insert(u"icon-name"_s, item.iconName);
    if (item.checked) {
        properties.insert(u"toggle-type"_s, u"checkmark"_s);
        properties.insert(u"toggle-state"_s, *item.checked ? 1 : 0);
    }
    if (item.children)
        properties.insert(u"children-display"_s, u"submenu"_s);
    return properties;
}

void addPicture(QVariantMap &properties, const HostMenuItem &item)
{
    if (item.separator || item.pictureId.isEmpty() || !item.picture)
        return;
    const QByteArray picture = item.picture();
    if (!picture.isEmpty())
        properties.insert(u"icon-data"_s, picture);
}

QVariantMap propertiesOf(const HostMenuItem &item, const QStringList &names)
{
    QVariantMap properties = plainProperties(item);
    if (names.isEmpty() || names.contains(u"icon-data"_s))
        addPicture(properties, item);
    if (!names.isEmpty())
        properties.removeIf([&names](const auto &each) { return !names.contains(each.key()); });
    return properties;
}

void compare(int id, const HostMenuItem &before, const HostMenuItem &now, HostMenuTree::Changes &changes)
{
    const auto facts = [](const HostMenuItem &item) {
        return std::tie(item.title, item.enabled, item.separator, item.checked, item.iconName, item.pictureId);
    };
    if (facts(before) == facts(now) && bool(before.children) == bool(now.children))
        return;
    const QVariantMap old = plainProperties(before);
    QVariantMap fresh = plainProperties(now);
    QStringList gone;
    for (const auto &[name, value] : old.asKeyValueRange()) {
        if (!fresh.contains(name))
            gone += name;
        else if (fresh.value(name) == value)
            fresh.remove(name);
    }
    if (before.pictureId != now.pictureId) {
        addPicture(fresh, now);
        if (!fresh.contains(u"icon-data"_s))
            gone += u"icon-data"_s;
    }
    if (!fresh.isEmpty())
        changes.updated += {id, fresh};
    if (!gone.isEmpty())
        changes.removed += {id, gone};
}

} // namespace

const HostMenuItem *HostMenuTree::item(int id) const
{
    const auto row = m_rows.constFind(id);
    return row == m_rows.constEnd() ? nullptr : &row->item;
}

QList<int> HostMenuTree::childrenOf(int id) const
{
    if (id == rootId)
        return m_root.children;
    const auto row = m_rows.constFind(id);
    return row == m_rows.constEnd() ? QList<int>() : row->children;
}

QList<int> HostMenuTree::ids() const
{
    QList<int> all = m_rows.keys();
    std::ranges::sort(all);
    all.prepend(rootId);
    return all;
}

HostMenuTree::Changes HostMenuTree::setItems(const QList<HostMenuItem> &items)
{
    Changes changes;
    merge(rootId, items, &changes);
    return changes;
}

/// References into the table do not outlive a row that is made or dropped.
void HostMenuTree::merge(int parent, const QList<HostMenuItem> &items, Changes *changes)
{
    const QList<int> before = childrenOf(parent);
    QMultiHash<QString, int> known;
    for (auto id = before.crbegin(); id != before.crend(); ++id)
        known.insert(m_rows[*id].item.key, *id); // the last one put in is found first
    QList<int> now;
    now.reserve(items.size());
    for (const HostMenuItem &item : items) {
        const auto found = known.find(item.key);
        if (found == known.end()) {
            m_rows.insert(++m_lastId, {item, {}, false});
            now += m_lastId;
            continue;
        }
        now += *found;
        known.erase(found);
        mergeRow(now.constLast(), item, changes);
    }
    for (const int gone : std::as_const(known))
        drop(gone);
    (parent == rootId ? m_root : m_rows[parent]).children = now;
    if (changes && now != before)
        changes->layouts += parent;
}

void HostMenuTree::mergeRow(int id, const HostMenuItem &item, Changes *changes)
{
    const HostMenuItem before = std::exchange(m_rows[id].item, item);
    if (changes)
        compare(id, before, item, *changes);
    if (!m_rows[id].isExpanded)
        return;
    m_rows[id].isExpanded = bool(item.children);
    merge(id, item.children ? item.children() : QList<HostMenuItem>(), changes);
}

void HostMenuTree::drop(int id)
{
    const Row row = m_rows.take(id);
    for (const int child : row.children)
        drop(child);
}

bool HostMenuTree::expand(int id)
{
    const auto row = m_rows.find(id);
    if (row == m_rows.end() || row->isExpanded || !row->item.children)
        return false;
    row->isExpanded = true;
    const auto children = row->item.children;
    merge(id, children(), nullptr);
    return true;
}

QVariantMap HostMenuTree::properties(int id, const QStringList &names) const
{
    if (id == rootId) {
        const bool wanted = names.isEmpty() || names.contains(u"children-display"_s);
        return wanted ? QVariantMap{{u"children-display"_s, u"submenu"_s}} : QVariantMap();
    }
    const HostMenuItem *known = item(id);
    return known ? propertiesOf(*known, names) : QVariantMap();
}

HostMenuNode HostMenuTree::layout(int id, int depth, const QStringList &names)
{
    if (depth != 0)
        expand(id);
    HostMenuNode node{id, properties(id, names), {}};
    qsizetype room = unaskedRows;
    fill(node, depth, names, room);
    return node;
}

void HostMenuTree::fill(HostMenuNode &node, int depth, const QStringList &names, qsizetype &room)
{
    const QList<int> children = childrenOf(node.id);
    if (depth == 0)
        return;
    node.children.reserve(children.size());
    for (const int id : children)
        node.children += {id, properties(id, names), {}};
    if (depth == 1)
        return;
    for (HostMenuNode &child : node.children) {
        const auto row = m_rows.constFind(child.id);
        if (!row->isExpanded && row->item.children && row->item.childCount <= room) {
            room -= std::max<qsizetype>(row->item.childCount, 1);
            expand(child.id);
        }
        fill(child, depth < 0 ? depth : depth - 1, names, room);
    }
}

} // namespace orvelle
