#include "ui/settings/LinkTreeModel.h"

#include "base/DisplayTitle.h"
#include "base/Text.h"
#include "links/LinkIcons.h"
#include "links/LinkStore.h"
#include "ui/common/PlainToolTip.h"
#include "ui/settings/LinkPathChecker.h"

namespace orvelle {

LinkTreeModel::LinkTreeModel(LinkStore &links, const LinkPathChecker &paths, QObject *parent)
    : QAbstractItemModel(parent), m_store(links), m_paths(paths), m_all(links.links()), m_shown(m_all)
{
    connect(&m_store, &LinkStore::linksChanged, this, &LinkTreeModel::followStore);
    connect(&m_store, &LinkStore::faviconsChanged, this, &LinkTreeModel::followStore);
}

void LinkTreeModel::followStore()
{
    m_all = LinkRows(m_store.links());
    m_folded.clear();
    if (!m_search.isEmpty())
        m_folded = m_all.foldedTexts();
    show(m_all.filtered(m_search, m_folded));
}

void LinkTreeModel::setSearch(const QString &search)
{
    m_search = LinkSearch(search);
    if (!m_search.isEmpty() && m_folded.isEmpty())
        m_folded = m_all.foldedTexts();
    show(m_all.filtered(m_search, m_folded));
}

void LinkTreeModel::show(const LinkRows &rows)
{
    const LinkRows before = std::exchange(m_shown, rows);
    if (rows.hasSameShape(before)) {
        announceChangedRows(before);
        return;
    }
    m_shown = before;
    emit layoutAboutToBeChanged();
    m_shown = rows;
    const QModelIndexList from = persistentIndexList();
    QModelIndexList to;
    for (const QModelIndex &index : from)
        to.append(indexAt(m_shown.numberOf(before.at(static_cast<int>(index.internalId())).item->id), index.column()));
    changePersistentIndexList(from, to);
    emit layoutChanged();
}

void LinkTreeModel::announceChangedRows(const LinkRows &before)
{
    for (int number = 0; number < m_shown.count(); ++number) {
        const LinkRows::Row &group = m_shown.at(number);
        // Lists that an edit left alone are still the same ones in memory.
        if (group.count > 0 && m_shown.at(group.first).item != before.at(group.first).item)
            emit dataChanged(indexAt(group.first), indexAt(group.first + group.count - 1, KindColumn));
    }
}

const LinkRows::Row &LinkTreeModel::row(const QModelIndex &index) const
{
    return m_shown.at(index.isValid() ? static_cast<int>(index.internalId()) : 0);
}

QModelIndex LinkTreeModel::indexAt(int number, int column) const
{
    return number ? createIndex(m_shown.at(number).position, column, static_cast<quintptr>(number)) : QModelIndex();
}

bool LinkTreeModel::isBroken(const LinkItem &item) const
{
    return m_paths.isBroken(item);
}

QModelIndex LinkTreeModel::indexOf(const QUuid &id) const
{
    return indexAt(m_shown.numberOf(id));
}

int LinkTreeModel::levelOf(const QModelIndex &index) const
{
    int level = 0;
    for (int above = row(index).parent; above != 0; above = m_shown.at(above).parent)
        ++level;
    return level;
}

QModelIndexList LinkTreeModel::groups() const
{
    QModelIndexList found;
    for (int number = 1; number < m_shown.count(); ++number) {
        if (m_shown.at(number).item->isGroup())
            found.append(indexAt(number));
    }
    return found;
}

QModelIndex LinkTreeModel::index(int position, int column, const QModelIndex &parent) const
{
    const LinkRows::Row &above = row(parent);
    if (position < 0 || position >= above.count || column < 0 || column >= ColumnCount)
        return {};
    return indexAt(above.first + position, column);
}

QModelIndex LinkTreeModel::parent(const QModelIndex &child) const
{
    return indexAt(row(child).parent);
}

int LinkTreeModel::rowCount(const QModelIndex &parent) const
{
    return parent.column() > 0 ? 0 : row(parent).count;
}

int LinkTreeModel::columnCount(const QModelIndex &) const
{
    return ColumnCount;
}

QVariant LinkTreeModel::data(const QModelIndex &index, int role) const
{
    const LinkItem *link = item(index);
    if (!link)
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return index.column() == NameColumn ? displayTitle(link->name) : text(kindLabel(*link));
    case Qt::EditRole:
        return link->name;
    case Qt::ToolTipRole:
        return toolTipOf(*link);
    case Qt::AccessibleDescriptionRole:
        return describe(*link);
    case IdRole:
        return link->id;
    default:
        return {};
    }
}

QString LinkTreeModel::describe(const LinkItem &link) const
{
    const QString kind = text(kindLabel(link));
    return isBroken(link) ? kind + QStringLiteral(", ") + text("settings.broken"_text) : kind;
}

QString LinkTreeModel::toolTipOf(const LinkItem &link) const
{
    const bool hasAddress = link.type != LinkType::Group && link.type != LinkType::Note;
    QString tip = hasAddress ? link.path : link.name;
    if (isBroken(link))
        tip += u'\n' + text("settings.broken"_text);
    return plainToolTip(tip);
}

bool LinkTreeModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    const LinkItem *link = item(index);
    const QString name = value.toString().trimmed();
    if (!link || role != Qt::EditRole || name.isEmpty() || name == link->name)
        return false;
    return !m_store.updateLinks({link->id}, [name](LinkItem &renamed) { renamed.name = name; });
}

Qt::ItemFlags LinkTreeModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags common = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled;
    return index.column() == NameColumn ? common | Qt::ItemIsEditable : common;
}

QVariant LinkTreeModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return section == NameColumn ? text("settings.column.name"_text) : text("settings.column.kind"_text);
}

} // namespace orvelle
