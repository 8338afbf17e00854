#include "ui/menu/MenuPanel.h"

#include <QApplication>
#include <QEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <utility>

namespace orvelle {
namespace {

constexpr int scrollMilliseconds = 110;

/// The font and palette that the toolkit gives to menus, set before anything
/// measures with them.
template<typename Widget>
Widget &dressed(Widget &widget)
{
    widget.setFont(QApplication::font("QMenu"));
    widget.setPalette(QApplication::palette("QMenu"));
    return widget;
}

} // namespace

MenuPanel::MenuPanel(const QList<MenuEntry> &entries, const WidgetRowFactory &factory)
    : QWidget(nullptr, Qt::Popup | Qt::FramelessWindowHint), m_look(dressed(*this)), m_rows(entries), m_factory(factory)
{
    setMouseTracking(true);
    setAttribute(Qt::WA_X11NetWmWindowTypePopupMenu);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setBackgroundRole(QPalette::Window);
    setObjectName(QStringLiteral("MenuPanel"));
    m_scrolling.setDuration(scrollMilliseconds);
    m_scrolling.setEasingCurve(QEasingCurve::OutCubic);
    connect(&m_scrolling, &QVariantAnimation::valueChanged, this,
            [this](const QVariant &value) { scrollTo(value.toInt()); });
    makeWidgets();
    layOut();
}

QSize MenuPanel::wantedSize() const
{
    int width = m_look.preferredWidth(m_rows);
    for (const QPointer<QWidget> &widget : m_widgets) {
        if (widget)
            width = std::max(width, widget->sizeHint().width());
    }
    const int height = m_rows.contentHeight() + m_rows.pinnedHeight();
    return {width + 2 * m_look.sideFrame(), height + 2 * m_look.verticalFrame()};
}

void MenuPanel::makeWidgets()
{
    for (int row = 0; row < m_rows.count() && m_factory; ++row) {
        const MenuEntry &entry = m_rows.at(row);
        if (entry.kind != MenuEntry::Kind::Widget || !entry.widget)
            continue;
        if (QWidget *widget = m_factory(*entry.widget, this)) {
            widget->installEventFilter(this);
            m_widgets.insert(row, widget);
        }
    }
}

void MenuPanel::layOut()
{
    m_rows.layOut(m_look.rowHeights(), [this](int row) {
        const QWidget *widget = rowWidget(row);
        return widget && !widget->isHidden() ? std::max(widget->sizeHint().height(), widget->minimumHeight()) : 0;
    });
}

void MenuPanel::placeWidgets()
{
    const QRect view = viewport();
    for (auto it = m_widgets.cbegin(); it != m_widgets.cend(); ++it) {
        if (!it.value())
            continue;
        const QRect rect = rowRect(it.key());
        it.value()->setGeometry(rect);
        // A child that sticks out of the rows' area must not cover the pinned row.
        const QRect seen = rect.intersected(view).translated(-rect.topLeft());
        if (seen == QRect({}, rect.size()))
            it.value()->clearMask();
        else
            it.value()->setMask(seen.isEmpty() ? QRegion(-1, -1, 1, 1) : QRegion(seen));
    }
}

QRect MenuPanel::viewport() const
{
    const QRect inner =
        rect().adjusted(m_look.sideFrame(), m_look.verticalFrame(), -m_look.sideFrame(), -m_look.verticalFrame());
    return inner.adjusted(0, 0, 0, -m_rows.pinnedHeight());
}

QRect MenuPanel::pinnedRect() const
{
    const QRect view = viewport();
    // The bottom row reaches into the gap above the frame's edge.
    const int gap = m_look.verticalFrame() - m_look.sideFrame();
    return {view.x(), view.y() + view.height(), view.width(), m_rows.pinnedHeight() + gap};
}

QRect MenuPanel::rowRect(int row) const
{
    if (m_rows.isPinned(row))
        return pinnedRect();
    const QRect view = viewport();
    return {view.x(), view.y() + m_rows.top(row) - m_offset, view.width(), m_rows.height(row)};
}

QList<BottomRowView::Button> MenuPanel::bottomButtons() const
{
    return BottomRowView::buttons(pinnedRect(), m_look.fontMetrics(), layoutDirection() == Qt::RightToLeft);
}

QRect MenuPanel::childRect(int row, int button) const
{
    return m_rows.isPinned(row) ? bottomButtons().at(button).rect : rowRect(row);
}

bool MenuPanel::isInSight(int row) const
{
    return m_rows.height(row) > 0 && (m_rows.isPinned(row) || rowRect(row).intersects(viewport()));
}

MenuPanel::Hit MenuPanel::hit(const QPoint &position) const
{
    if (m_rows.pinnedHeight() > 0 && pinnedRect().contains(position)) {
        const auto buttons = bottomButtons();
        for (int i = 0; i < buttons.size(); ++i) {
            if (buttons[i].rect.contains(position))
                return {pinnedRow(), i, 0};
        }
        return {};
    }
    const QRect view = viewport();
    if (!view.contains(position))
        return {};
    if (m_offset > 0 && position.y() < view.y() + MenuLook::scrollerHeight)
        return {-1, 0, -1};
    if (m_offset < maximumScroll() && position.y() >= view.y() + view.height() - MenuLook::scrollerHeight)
        return {-1, 0, 1};
    return {m_rows.rowAt(position.y() - view.y() + m_offset), 0, 0};
}

void MenuPanel::setCurrent(int row, int button)
{
    if (row == m_current && button == m_button)
        return;
    updateRow(m_current);
    m_current = row;
    m_button = button;
    updateRow(m_current);
    announceCurrent();
    emit currentChanged();
}

void MenuPanel::announceCurrent()
{
    if (m_current >= 0)
        announceChild(QAccessible::Focus, m_current + m_button);
}

void MenuPanel::announceExpanded(int row)
{
    QAccessible::State changed;
    changed.expanded = true;
    QAccessibleStateChangeEvent event(this, changed);
    event.setChild(row);
    QAccessible::updateAccessibility(&event);
}

void MenuPanel::announceChild(QAccessible::Event type, int child)
{
    QAccessibleEvent event(this, type);
    event.setChild(child);
    QAccessible::updateAccessibility(&event);
}

void MenuPanel::setOpenRow(int row)
{
    const int before = std::exchange(m_openRow, row);
    for (const int changed : {before, row}) {
        updateRow(changed);
        if (changed >= 0 && before != row)
            announceExpanded(changed);
    }
    if (row < 0)
        m_openPanel = nullptr;
}

void MenuPanel::setOpenPanel(MenuPanel *submenu)
{
    m_openPanel = submenu;
    submenu->m_panelAbove = this;
}

void MenuPanel::updateRow(int row)
{
    if (row >= 0 && row < m_rows.count())
        update(rowRect(row));
}

int MenuPanel::maximumScroll() const
{
    return std::max(0, m_rows.contentHeight() - viewport().height());
}

void MenuPanel::scrollTo(int offset)
{
    const int wanted = std::clamp(offset, 0, maximumScroll());
    if (wanted == m_offset)
        return;
    m_offset = wanted;
    placeWidgets();
    update();
}

void MenuPanel::scrollSmoothly(int distance)
{
    const int from = m_scrolling.state() == QAbstractAnimation::Running ? m_scrolling.endValue().toInt() : m_offset;
    m_scrolling.stop();
    m_scrolling.setStartValue(m_offset);
    m_scrolling.setEndValue(std::clamp(from + distance, 0, maximumScroll()));
    m_scrolling.start();
}

void MenuPanel::ensureVisible(int row)
{
    if (row < 0 || m_rows.isPinned(row))
        return;
    m_scrolling.stop();
    const int margin = std::min(MenuLook::scrollerHeight, viewport().height() / 4);
    const int top = m_rows.top(row) - margin;
    const int bottom = m_rows.top(row) + m_rows.height(row) + margin;
    scrollTo(std::min(std::max(m_offset, bottom - viewport().height()), top));
}

QString MenuPanel::hiddenTitle(int row) const
{
    if (row < 0 || row >= m_rows.count())
        return {};
    if (m_rows.at(row).kind == MenuEntry::Kind::BottomRow) {
        const auto buttons =
            BottomRowView::buttons(pinnedRect(), m_look.fontMetrics(), layoutDirection() == Qt::RightToLeft);
        return buttons.at(m_button).label.endsWith(QChar(0x2026)) ? BottomRowView::name(m_button) : QString();
    }
    const MenuEntry &entry = m_rows.at(row);
    return m_look.elidedTitle(entry, rowRect(row)) == entry.title ? QString() : entry.title;
}

void MenuPanel::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    m_offset = std::clamp(m_offset, 0, maximumScroll());
    placeWidgets();
}

bool MenuPanel::event(QEvent *event)
{
    if (event->type() == QEvent::LayoutRequest) {
        layOut();
        placeWidgets();
        emit wantedSizeChanged();
        update();
    }
    return QWidget::event(event);
}

bool MenuPanel::eventFilter(QObject *watched, QEvent *event)
{
    const QEvent::Type type = event->type();
    const bool resizes = type == QEvent::LayoutRequest || type == QEvent::HideToParent || type == QEvent::ShowToParent;
    if (resizes)
        QApplication::postEvent(this, new QEvent(QEvent::LayoutRequest));
    return QWidget::eventFilter(watched, event);
}

void MenuPanel::paintEvent(QPaintEvent *event)
{
    {
        QPainter painter(this);
        painter.setClipRect(event->rect());
        m_look.paintPanel(painter);
        painter.setClipping(false);
        paintRows(painter, event->rect());
    }
    if (!m_paintedOnce) {
        m_paintedOnce = true;
        QMetaObject::invokeMethod(this, &MenuPanel::painted, Qt::QueuedConnection);
    }
}

void MenuPanel::paintRows(QPainter &painter, const QRect &dirty) const
{
    const QRect view = viewport();
    const QRect shown = dirty.intersected(view);
    painter.save();
    painter.setClipRect(shown);
    const int bottom = shown.y() + shown.height();
    for (int row = m_rows.rowAt(shown.y() - view.y() + m_offset); row >= 0 && row < m_rows.scrollingCount(); ++row) {
        const QRect rect = rowRect(row);
        if (rect.y() >= bottom)
            break;
        m_look.paintRow(painter, m_rows.at(row), rect, row == m_current || row == m_openRow, m_button);
    }
    const QSize strip(view.width(), MenuLook::scrollerHeight);
    if (m_offset > 0)
        m_look.paintScroller(painter, {view.topLeft(), strip}, true);
    if (m_offset < maximumScroll())
        m_look.paintScroller(painter, {{view.x(), view.y() + view.height() - strip.height()}, strip}, false);
    painter.restore();
    if (m_rows.pinnedHeight() > 0 && dirty.intersects(pinnedRect()))
        m_look.paintRow(painter, m_rows.at(pinnedRow()), pinnedRect(), m_current == pinnedRow(), m_button);
}

} // namespace orvelle
