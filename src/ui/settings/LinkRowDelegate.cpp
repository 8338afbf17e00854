#include "ui/settings/LinkRowDelegate.h"

#include "base/Text.h"
#include "ui/common/AssistedInput.h"
#include "ui/common/Colors.h"
#include "ui/common/LinkIconView.h"
#include "ui/settings/LinkTreeModel.h"

#include <QApplication>
#include <QLineEdit>
#include <QPainter>
#include <QTextLayout>

#include <algorithm>
#include <array>

namespace orvelle {

namespace {

constexpr int iconSide = 20;
constexpr int rowPadding = 8;
constexpr int kindPadding = 24;

constexpr std::array kindLabels = {"type.file"_text, "type.folder"_text, "type.smb"_text,   "type.afp"_text,
                                   "type.ftp"_text,  "type.nfs"_text,    "type.vnc"_text,   "type.email"_text,
                                   "type.web"_text,  "type.url"_text,    "type.group"_text, "type.note"_text};

QPalette::ColorGroup colorGroup(const QStyleOptionViewItem &option)
{
    if (!option.state.testFlag(QStyle::State_Enabled))
        return QPalette::Disabled;
    return option.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
}

bool isSelected(const QStyleOptionViewItem &option)
{
    return option.state.testFlag(QStyle::State_Selected);
}

QColor textColor(const QStyleOptionViewItem &option, bool quiet)
{
    const QPalette &palette = option.palette;
    const QPalette::ColorGroup group = colorGroup(option);
    if (isSelected(option))
        return palette.color(group, QPalette::HighlightedText);
    const QColor color = palette.color(group, QPalette::Text);
    return quiet ? readable(palette.color(group, QPalette::Mid), palette.color(group, QPalette::Base), color,
                            textContrast(palette))
                 : color;
}

QList<QTextLayout::FormatRange> marks(const QList<LinkSearch::Range> &ranges, const QStyleOptionViewItem &option)
{
    QTextCharFormat format;
    format.setFontWeight(QFont::Bold);
    if (!isSelected(option)) {
        const QPalette &palette = option.palette;
        format.setBackground(softTint(palette.color(QPalette::Highlight), palette.color(QPalette::Base),
                                      palette.color(QPalette::Text), textContrast(palette))
                                 .ground);
    }
    QList<QTextLayout::FormatRange> marked;
    for (const LinkSearch::Range &range : ranges)
        marked.append({static_cast<int>(range.start), static_cast<int>(range.length), format});
    return marked;
}

} // namespace

LinkRowDelegate::LinkRowDelegate(const LinkTreeModel &model, QObject *parent)
    : QStyledItemDelegate(parent), m_model(model)
{
}

void LinkRowDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    if (index.column() == LinkTreeModel::NameColumn) {
        option->features |= QStyleOptionViewItem::HasDecoration;
        option->decorationSize = {iconSide, iconSide};
    }
}

QSize LinkRowDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const QSize hint = QStyledItemDelegate::sizeHint(option, index);
    return {hint.width(), std::max(iconSide, option.fontMetrics.height()) + rowPadding};
}

int LinkRowDelegate::kindWidth(const QWidget &view) const
{
    int widest = view.fontMetrics().horizontalAdvance(text("settings.column.kind"_text));
    for (const TextKey &label : kindLabels)
        widest = std::max(widest, view.fontMetrics().horizontalAdvance(text(label)));
    return widest + kindPadding;
}

QWidget *LinkRowDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                                       const QModelIndex &index) const
{
    QWidget *editor = QStyledItemDelegate::createEditor(parent, option, index);
    if (auto *line = qobject_cast<QLineEdit *>(editor)) {
        line->setAccessibleName(text("settings.column.name"_text));
        countAllAsTyped(line);
    }
    return editor;
}

void LinkRowDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    auto *line = qobject_cast<QLineEdit *>(editor);
    if (line && line->isModified())
        return;
    QStyledItemDelegate::setEditorData(editor, index);
    if (line)
        line->setModified(false);
}

void LinkRowDelegate::paint(QPainter *painter, const QStyleOptionViewItem &given, const QModelIndex &index) const
{
    const LinkItem *link = m_model.item(index);
    if (!link)
        return;
    QStyleOptionViewItem option = given;
    initStyleOption(&option, index);
    const QStyle *style = option.widget ? option.widget->style() : QApplication::style();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &option, painter, option.widget);

    painter->save();
    painter->setFont(option.font);
    const QRect textPlace = style->subElementRect(QStyle::SE_ItemViewItemText, &option, option.widget);
    if (index.column() == LinkTreeModel::NameColumn) {
        QRect icon = style->subElementRect(QStyle::SE_ItemViewItemDecoration, &option, option.widget);
        icon.setRect(icon.left(), option.rect.top() + (option.rect.height() - iconSide) / 2, iconSide, iconSide);
        paintLinkIcon(*painter, icon, *link,
                      {option.palette, QPalette::Base, m_model.isBroken(*link), isSelected(option)});
        paintName(*painter, option, textPlace);
    } else {
        painter->setPen(textColor(option, true));
        painter->drawText(textPlace, Qt::AlignLeading | Qt::AlignVCenter,
                          option.fontMetrics.elidedText(option.text, Qt::ElideRight, textPlace.width()));
    }
    painter->restore();
    if (option.state.testFlag(QStyle::State_HasFocus) && !isSelected(option)) {
        QStyleOptionFocusRect focus;
        focus.QStyleOption::operator=(option);
        focus.backgroundColor = option.palette.color(QPalette::Base);
        style->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, painter, option.widget);
    }
}

void LinkRowDelegate::paintName(QPainter &painter, const QStyleOptionViewItem &option, const QRect &place) const
{
    const int margin = option.widget ? option.widget->style()->pixelMetric(QStyle::PM_FocusFrameHMargin) + 1 : 3;
    const QRect inner = place.adjusted(margin, 0, -margin, 0);
    const QString name = option.fontMetrics.elidedText(option.text, Qt::ElideMiddle, inner.width());
    painter.setPen(textColor(option, false));
    if (m_model.search().isEmpty()) {
        painter.drawText(inner, Qt::AlignLeading | Qt::AlignVCenter | Qt::TextSingleLine, name);
        return;
    }
    QTextLayout layout(name, option.font);
    layout.setFormats(marks(m_model.search().rangesIn(name), option));
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLineWidth(inner.width());
    layout.endLayout();
    painter.setClipRect(inner);
    layout.draw(&painter, QPointF(inner.left(), inner.top() + (inner.height() - line.height()) / 2));
}

} // namespace orvelle
