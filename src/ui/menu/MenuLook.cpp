#include "ui/menu/MenuLook.h"

#include "base/DisplayTitle.h"
#include "ui/common/Colors.h"
#include "ui/common/Icons.h"
#include "ui/common/LineText.h"
#include "ui/menu/BottomRowView.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionFrame>
#include <QStyleOptionMenuItem>
#include <QWidget>

#include <algorithm>

namespace orvelle {
namespace {

constexpr int chevronSide = 10;
/// How far its colour is on its way from the text's to the ground's.
constexpr double chevronShare = 0.35;
constexpr int chevronGap = 14; ///< between name and chevron
constexpr int rowPadding = 4;  ///< above and below the line of text
constexpr int separatorHeight = 9;
constexpr double tintRadius = 5;
constexpr double disabledIconOpacity = 0.45;

/// Names shaped when a long menu's width is found.
constexpr std::size_t measuredNames = 120;
QFont italic(QFont font)
{
    font.setItalic(true);
    return font;
}

bool hasChevron(const MenuEntry &entry)
{
    return entry.kind == MenuEntry::Kind::Submenu || entry.chevron;
}

} // namespace

MenuLook::MenuLook(const QWidget &widget)
    : m_widget(widget),
      m_metrics(widget.font()),
      m_italicMetrics(italic(widget.font())),
      m_frameWidth(std::max(1, widget.style()->pixelMetric(QStyle::PM_MenuPanelWidth, nullptr, &widget))),
      m_ground(paintedGround())
{
}

RowHeights MenuLook::rowHeights() const
{
    const int line = std::max(m_metrics.height(), iconSide);
    return {line + 2 * rowPadding, separatorHeight, std::max(BottomRowView::minimumHeight, line + 3 * rowPadding)};
}

bool MenuLook::rightToLeft() const
{
    return m_widget.layoutDirection() == Qt::RightToLeft;
}

int MenuLook::wantedWidth(const MenuEntry &entry) const
{
    const QFontMetrics &metrics = entry.italic ? m_italicMetrics : m_metrics;
    const int fixed = 2 * margin + iconSide + iconGap + chevronGap + chevronSide;
    return fixed + metrics.horizontalAdvance(displayTitle(entry.title)) + 2;
}

int MenuLook::preferredWidth(const MenuRows &rows) const
{
    std::vector<const MenuEntry *> named;
    named.reserve(static_cast<std::size_t>(rows.count()));
    int width = 0;
    for (int row = 0; row < rows.count(); ++row) {
        const MenuEntry &entry = rows.at(row);
        if (entry.kind == MenuEntry::Kind::BottomRow)
            width = std::max(width, BottomRowView::preferredWidth(m_metrics));
        else if (!entry.title.isEmpty())
            named.push_back(&entry);
    }
    if (named.size() > measuredNames) {
        const auto longer = [](const MenuEntry *a, const MenuEntry *b) { return a->title.size() > b->title.size(); };
        std::nth_element(named.begin(), named.begin() + measuredNames, named.end(), longer);
        named.resize(measuredNames);
    }
    for (const MenuEntry *entry : named) {
        if (width >= maximumWidth)
            break;
        width = std::max(width, wantedWidth(*entry));
    }
    return std::min(width, maximumWidth);
}

QRect MenuLook::titleRect(const MenuEntry &entry, const QRect &row) const
{
    const int before = margin + iconSide + iconGap;
    const int after = margin + (hasChevron(entry) ? chevronGap + chevronSide : 0);
    const QRect leftToRight = row.adjusted(before, 0, -after, 0);
    return QStyle::visualRect(m_widget.layoutDirection(), row, leftToRight);
}

QString MenuLook::elidedTitle(const MenuEntry &entry, const QRect &row) const
{
    const QFontMetrics &metrics = entry.italic ? m_italicMetrics : m_metrics;
    return metrics.elidedText(displayTitle(entry.title), Qt::ElideMiddle, titleRect(entry, row).width());
}

/// Styles fill their menus as they like, so the colour is looked up in a drawn
/// panel.
QColor MenuLook::paintedGround() const
{
    QImage sample(16, 16, QImage::Format_RGB32);
    QPainter painter(&sample);
    paintPanel(painter, sample.rect());
    painter.end();
    return sample.pixelColor(sample.rect().center());
}

void MenuLook::paintPanel(QPainter &painter, const QRect &rect) const
{
    painter.fillRect(rect, m_widget.palette().window());
    QStyleOptionMenuItem panel;
    panel.initFrom(&m_widget);
    panel.rect = rect;
    panel.state = QStyle::State_None;
    panel.checkType = QStyleOptionMenuItem::NotCheckable;
    panel.maxIconWidth = 0;
    panel.reservedShortcutWidth = 0;
    m_widget.style()->drawPrimitive(QStyle::PE_PanelMenu, &panel, &painter, &m_widget);
    QStyleOptionFrame frame;
    frame.initFrom(&m_widget);
    frame.rect = rect;
    frame.state = QStyle::State_None;
    frame.lineWidth = m_frameWidth;
    frame.midLineWidth = 0;
    m_widget.style()->drawPrimitive(QStyle::PE_FrameMenu, &frame, &painter, &m_widget);
}

MenuLook::Ink MenuLook::rowInk(const MenuEntry &entry, bool selected) const
{
    const QPalette &palette = m_widget.palette();
    if (!entry.enabled)
        return {m_ground, palette.color(QPalette::Disabled, QPalette::WindowText), false, false};
    if (selected)
        return {palette.color(QPalette::Highlight), palette.color(QPalette::HighlightedText), true, true};
    const QColor text = palette.color(QPalette::WindowText);
    if (!entry.tint)
        return {m_ground, text, true, false};
    const Tint tint = softTint(toQColor(*entry.tint, palette), m_ground, text, textContrast(palette));
    return {tint.ground, tint.text, true, false};
}

void MenuLook::paintRow(QPainter &painter, const MenuEntry &entry, const QRect &row, bool selected, int button) const
{
    switch (entry.kind) {
    case MenuEntry::Kind::Separator:
        return paintSeparator(painter, row);
    case MenuEntry::Kind::BottomRow:
        return paintBottomRow(painter, row, selected, button);
    case MenuEntry::Kind::Widget:
        return;
    case MenuEntry::Kind::Item:
    case MenuEntry::Kind::Submenu:
        break;
    }
    const Ink ink = rowInk(entry, selected);
    if (ink.selected) {
        paintSelection(painter, row);
    } else if (entry.tint) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(ink.ground);
        painter.drawRoundedRect(QRectF(row).adjusted(3, 1, -3, -1), tintRadius, tintRadius);
    }
    const QRect icon(row.x() + margin, row.y() + (row.height() - iconSide) / 2, iconSide, iconSide);
    paintIcon(painter, entry, QStyle::visualRect(m_widget.layoutDirection(), row, icon), ink);
    paintTitle(painter, entry, row, ink);
    if (hasChevron(entry))
        paintChevron(painter, row, ink);
}

void MenuLook::paintSelection(QPainter &painter, const QRect &rect) const
{
    QStyleOptionMenuItem item;
    item.initFrom(&m_widget);
    item.rect = rect;
    item.state = QStyle::State_Selected | QStyle::State_Enabled | QStyle::State_Active;
    item.menuItemType = QStyleOptionMenuItem::Normal;
    item.checkType = QStyleOptionMenuItem::NotCheckable;
    item.menuRect = m_widget.rect();
    item.font = m_widget.font();
    item.maxIconWidth = 0;
    item.reservedShortcutWidth = 0;
    m_widget.style()->drawControl(QStyle::CE_MenuItem, &item, &painter, &m_widget);
}

void MenuLook::paintIcon(QPainter &painter, const MenuEntry &entry, const QRect &rect, const Ink &ink) const
{
    const MenuIcon &icon = entry.icon;
    QColor color = ink.text;
    if (icon.color && ink.enabled && !ink.selected)
        color =
            readable(toQColor(*icon.color, m_widget.palette()), ink.ground, ink.text, textContrast(m_widget.palette()));
    const QPixmap pixmap = linkPixmap({icon.imageData, icon.filePath, icon.symbol}, iconSide, color,
                                      painter.device()->devicePixelRatioF());
    if (pixmap.isNull())
        return;
    const bool picture = !icon.imageData.isEmpty() || !icon.filePath.isEmpty();
    painter.setOpacity(picture && !ink.enabled ? disabledIconOpacity : 1.0);
    painter.drawPixmap(rect.topLeft(), pixmap);
    painter.setOpacity(1.0);
}

void MenuLook::paintChevron(QPainter &painter, const QRect &row, const Ink &ink) const
{
    const QColor color = quiet(ink.text, ink.ground, chevronShare, m_widget.palette());
    const QRect rect(row.x() + row.width() - margin - chevronSide, row.y() + (row.height() - chevronSide) / 2,
                     chevronSide, chevronSide);
    const QString symbol = rightToLeft() ? QStringLiteral("chevron.left") : QStringLiteral("chevron.right");
    paintSymbol(painter, symbol, QStyle::visualRect(m_widget.layoutDirection(), row, rect), color);
}

void MenuLook::paintTitle(QPainter &painter, const MenuEntry &entry, const QRect &row, const Ink &ink) const
{
    painter.setFont(entry.italic ? italic(m_widget.font()) : m_widget.font());
    painter.setPen(ink.text);
    drawLine(painter, titleRect(entry, row), elidedTitle(entry, row), m_widget.layoutDirection());
}

void MenuLook::paintSeparator(QPainter &painter, const QRect &row) const
{
    const QColor line = separatorColor(m_widget.palette());
    painter.fillRect(QRect(row.x() + margin, row.y() + row.height() / 2, row.width() - 2 * margin, 1), line);
}

void MenuLook::paintBottomRow(QPainter &painter, const QRect &row, bool selected, int current) const
{
    const QColor line = separatorColor(m_widget.palette());
    painter.fillRect(QRect(row.x(), row.y(), row.width(), 1), line);
    const QRect inner = row.adjusted(0, 2, 0, 0);
    const QList<BottomRowView::Button> buttons = BottomRowView::buttons(inner, m_metrics, rightToLeft());
    painter.setFont(m_widget.font());
    for (int i = 0; i < buttons.size(); ++i) {
        const QRect &rect = buttons[i].rect;
        const bool isCurrent = selected && i == current;
        if (isCurrent)
            paintSelection(painter, rect);
        const QColor color = m_widget.palette().color(isCurrent ? QPalette::HighlightedText : QPalette::WindowText);
        const int labelWidth = m_metrics.horizontalAdvance(buttons[i].label);
        const int content = BottomRowView::iconSide + BottomRowView::iconGap + labelWidth;
        const int x = rect.x() + (rect.width() - content) / 2;
        const QRect icon(x, rect.y() + (rect.height() - BottomRowView::iconSide) / 2, BottomRowView::iconSide,
                         BottomRowView::iconSide);
        const QRect label(x + BottomRowView::iconSide + BottomRowView::iconGap, rect.y(), labelWidth + 1,
                          rect.height());
        const Qt::LayoutDirection direction = m_widget.layoutDirection();
        paintSymbol(painter, BottomRowView::symbol(i), QStyle::visualRect(direction, rect, icon), color);
        painter.setPen(color);
        painter.drawText(QStyle::visualRect(direction, rect, label),
                         Qt::TextSingleLine | Qt::AlignVCenter | Qt::AlignLeading, buttons[i].label);
    }
}

void MenuLook::paintScroller(QPainter &painter, const QRect &strip, bool upper) const
{
    QColor clear = m_ground;
    clear.setAlpha(0);
    QLinearGradient fade(strip.topLeft(), strip.bottomLeft());
    fade.setColorAt(upper ? 1 : 0, clear);
    fade.setColorAt(upper ? 0.55 : 0.45, m_ground);
    fade.setColorAt(upper ? 0 : 1, m_ground);
    painter.fillRect(strip, fade);
    QRect arrow(0, 0, chevronSide, chevronSide);
    arrow.moveCenter(strip.center());
    paintSymbol(painter, upper ? QStringLiteral("chevron.up") : QStringLiteral("chevron.down"), arrow,
                m_widget.palette().color(QPalette::WindowText));
}

void MenuLook::paintSymbol(QPainter &painter, const QString &symbol, const QRect &square, const QColor &color) const
{
    painter.drawPixmap(square.topLeft(),
                       symbolPixmap(symbol, square.width(), color, painter.device()->devicePixelRatioF()));
}

} // namespace orvelle
