#include "ui/settings/LinkTreeModel.h"

#include "base/Text.h"
#include "links/LinkColors.h"
#include "links/LinkIcons.h"
#include "links/LinkStore.h"
#include "ui/common/Colors.h"
#include "ui/common/Icons.h"
#include "ui/settings/Sections.h"

#include <QIcon>

namespace orvelle {

namespace {

constexpr int pictureSide = 16;
constexpr double pictureContrast = 2.0;

} // namespace

LinkTreeModel::LinkTreeModel(LinkStore &links, QObject *parent) : QAbstractItemModel(parent), m_store(links)
{
    connect(&m_store, &LinkStore::linksChanged, this, &LinkTreeModel::reload);
    reload();
}

void LinkTreeModel::reload()
{
    beginResetModel();
    m_nodes.clear();
    m_numbers.clear();
    m_links = m_store.links();
    m_nodes.append(Node{});
    addNodes(std::as_const(m_links), 0);
    endResetModel();
}

void LinkTreeModel::addNodes(const LinkList &links, int parent)
{
    int row = 0;
    for (const LinkItem &item : links) {
        const int number = static_cast<int>(m_nodes.size());
        m_nodes.append(Node{&item, parent, row++, {}});
        m_nodes[parent].children.append(number);
        m_numbers.insert(item.id, number);
        if (item.children)
            addNodes(*item.children, number);
    }
}

const LinkTreeModel::Node &LinkTreeModel::node(const QModelIndex &index) const
{
    return m_nodes[index.isValid() ? static_cast<int>(index.internalId()) : 0];
}

const LinkItem *LinkTreeModel::item(const QModelIndex &index) const
{
    return node(index).item;
}

QModelIndex LinkTreeModel::indexOf(const QUuid &id) const
{
    const int number = m_numbers.value(id);
    return number ? createIndex(m_nodes[number].row, 0, static_cast<quintptr>(number)) : QModelIndex();
}

QModelIndex LinkTreeModel::index(int row, int column, const QModelIndex &parent) const
{
    const Node &above = node(parent);
    if (row < 0 || row >= above.children.size() || column < 0 || column >= ColumnCount)
        return {};
    return createIndex(row, column, static_cast<quintptr>(above.children[row]));
}

QModelIndex LinkTreeModel::parent(const QModelIndex &child) const
{
    const int above = node(child).parent;
    if (!child.isValid() || above == 0)
        return {};
    return createIndex(m_nodes[above].row, 0, static_cast<quintptr>(above));
}

int LinkTreeModel::rowCount(const QModelIndex &parent) const
{
    return parent.column() > 0 ? 0 : static_cast<int>(node(parent).children.size());
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
    const bool isName = index.column() == NameColumn;
    switch (role) {
    case Qt::DisplayRole:
        return isName ? link->name : text(kindLabel(*link));
    case Qt::EditRole:
        return link->name;
    case Qt::DecorationRole:
        return isName ? pictureOf(*link) : QVariant();
    case Qt::ToolTipRole:
        return toolTipOf(*link);
    case Qt::ForegroundRole:
        return isName ? QVariant() : m_palette.color(QPalette::PlaceholderText);
    case IdRole:
        return link->id;
    default:
        return {};
    }
}

QVariant LinkTreeModel::pictureOf(const LinkItem &link) const
{
    const bool isLocal = link.type == LinkType::File || link.type == LinkType::Folder;
    const LinkPicture picture{link.faviconData.value_or(QByteArray()), isLocal ? link.path : QString(),
                              link.sfSymbolName()};
    const QColor ground = m_palette.color(QPalette::Base);
    const QColor own = toQColor(displayColor(link), m_palette);
    const QColor color = readable(own, ground, m_palette.color(QPalette::Text), pictureContrast);
    QIcon icon(linkPixmap(picture, pictureSide, color, m_pixelRatio));
    // The item's colour may be hard to see on the selection's.
    icon.addPixmap(linkPixmap(picture, pictureSide, m_palette.color(QPalette::HighlightedText), m_pixelRatio),
                   QIcon::Selected);
    return icon;
}

QString LinkTreeModel::toolTipOf(const LinkItem &link) const
{
    const bool hasAddress = link.type != LinkType::Group && link.type != LinkType::Note;
    return plainToolTip(hasAddress ? link.path : link.name);
}

bool LinkTreeModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    const LinkItem *link = item(index);
    const QString name = value.toString().trimmed();
    if (!link || role != Qt::EditRole || name.isEmpty() || name == link->name)
        return false;
    LinkItem renamed = *link;
    renamed.name = name;
    return m_store.updateLink(renamed);
}

Qt::ItemFlags LinkTreeModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags common = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    return index.column() == NameColumn ? common | Qt::ItemIsEditable : common;
}

QVariant LinkTreeModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return section == NameColumn ? text("settings.column.name"_text) : text("settings.column.kind"_text);
}

} // namespace orvelle
