#include "ui/quickadd/GroupPicker.h"

#include "base/Text.h"
#include "links/LinkColors.h"
#include "links/LinkStore.h"
#include "ui/common/Colors.h"
#include "ui/common/Icons.h"

#include <QEvent>
#include <QStyledItemDelegate>

namespace orvelle {

namespace {

constexpr int indentation = 16;

enum Role { IdRole = Qt::UserRole, DepthRole };

/// Indents the rows of the open list; the closed box shows the group flush.
class IndentingDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        QStyleOptionViewItem indented = option;
        const int shift = index.data(DepthRole).toInt() * indentation;
        indented.rect.adjust(option.direction == Qt::LeftToRight ? shift : 0, 0,
                             option.direction == Qt::LeftToRight ? 0 : -shift, 0);
        QStyledItemDelegate::paint(painter, indented, index);
    }

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        return QStyledItemDelegate::sizeHint(option, index) + QSize(index.data(DepthRole).toInt() * indentation, 6);
    }
};

} // namespace

GroupPicker::GroupPicker(LinkStore &links, QWidget *parent) : QComboBox(parent), m_links(links)
{
    setItemDelegate(new IndentingDelegate(this));
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(16);
    connect(&m_links, &LinkStore::linksChanged, this, &GroupPicker::refresh);
    refresh();
}

std::optional<QUuid> GroupPicker::selectedGroupId() const
{
    const QUuid id = currentData(IdRole).toUuid();
    return id.isNull() ? std::nullopt : std::optional(id);
}

void GroupPicker::select(const std::optional<QUuid> &groupId)
{
    setCurrentIndex(0);
    for (int row = 1; groupId && row < count(); ++row) {
        if (itemData(row, IdRole).toUuid() == *groupId)
            setCurrentIndex(row);
    }
}

void GroupPicker::refresh()
{
    const auto selected = selectedGroupId();
    clear();
    addItem(symbolIcon(QStringLiteral("tray.full.fill")), text("quickAdd.topLevel"_text));
    addGroups(m_links.links(), 1);
    select(selected);
}

void GroupPicker::addGroups(const LinkList &links, int depth)
{
    for (const LinkItem &item : links) {
        if (!item.isGroup())
            continue;
        addItem(groupPickerIcon(item), item.name, item.id);
        setItemData(count() - 1, depth, DepthRole);
        if (item.children)
            addGroups(*item.children, depth + 1);
    }
}

QIcon GroupPicker::groupPickerIcon(const LinkItem &group) const
{
    const QColor ground = palette().color(QPalette::Base);
    const QColor color = readable(toQColor(displayColor(group), palette()), ground, palette().color(QPalette::Text),
                                  textContrast(palette()));
    return symbolIcon(group.sfSymbolName(), color);
}

void GroupPicker::changeEvent(QEvent *event)
{
    QComboBox::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && count() > 0)
        refresh();
}

} // namespace orvelle
