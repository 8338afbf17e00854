#include "ui/common/PlainToolTip.h"
#include "ui/menu/MenuPopup.h"

#include <QApplication>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QStyle>
#include <QToolTip>
#include <QWheelEvent>

namespace orvelle {
namespace {

constexpr int wheelRows = 3;
constexpr int wheelStep = 120; ///< what one notch of a wheel reports
constexpr int autoScrollStep = 7;
constexpr int openingWobble = 6; ///< a hand that shakes in a click drags no menu

int styleHint(QStyle::StyleHint hint, const QWidget &widget)
{
    return widget.style()->styleHint(hint, nullptr, &widget);
}

} // namespace

bool MenuPopup::eventFilter(QObject *watched, QEvent *event)
{
    if (m_panels.empty())
        return false;
    if (watched->isWindowType())
        return otherWindowEvent(*event);
    switch (event->type()) {
    case QEvent::MouseMove:
        pointerMoved(placed(static_cast<QMouseEvent *>(event)->globalPosition().toPoint()));
        return true;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        pointerPressed(placed(static_cast<QMouseEvent *>(event)->globalPosition().toPoint()));
        return true;
    case QEvent::MouseButtonRelease:
        pointerReleased(placed(static_cast<QMouseEvent *>(event)->globalPosition().toPoint()));
        return true;
    case QEvent::Wheel:
        wheeled(*static_cast<QWheelEvent *>(event));
        return true;
    case QEvent::KeyPress:
        return m_parked || keyPressed(*static_cast<QKeyEvent *>(event));
    case QEvent::ToolTip:
        showToolTip(*static_cast<QHelpEvent *>(event));
        return true;
    case QEvent::ContextMenu:
        return true;
    case QEvent::Hide:
    case QEvent::Close:
        // Somebody else took the popup down: the compositor, or the session.
        if (watched == m_panels.front().get() || watched == m_stage.get())
            finish({});
        return false;
    default:
        return false;
    }
}

MenuPopup::Place MenuPopup::placeAt(const QPoint &global) const
{
    for (int level = depth() - 1; level >= 0; --level) {
        if (panel(level).geometry().contains(global))
            return {level, panel(level).hit(global - panel(level).pos())};
    }
    return {};
}

/// What the toolkit would hand to the popup, at a place by the windows'
/// positions, which are not known.
bool MenuPopup::otherWindowEvent(const QEvent &event)
{
    if (event.type() == QEvent::MouseButtonPress || event.type() == QEvent::TouchBegin)
        finish({});
    return event.type() == QEvent::MouseMove || event.type() == QEvent::MouseButtonRelease;
}

void MenuPopup::pointerMoved(const QPoint &global)
{
    if (m_parked)
        return;
    if ((global - m_openedAt).manhattanLength() > openingWobble)
        m_armed = true;
    const QPoint before = std::exchange(m_lastPointer, global);
    const Place place = placeAt(global);
    const bool overParent = place.level >= 0 && place.level == depth() - 2;
    if (overParent && movesTowards(before, global, panel(place.level + 1).geometry())) {
        m_aimTimer.start(styleHint(QStyle::SH_Menu_SubMenuSloppyCloseTimeout, panel(0)));
        return;
    }
    m_aimTimer.stop();
    hover(place);
}

void MenuPopup::hover(const Place &place)
{
    if (m_panels.empty() || m_parked)
        return;
    if (place.hit.scroll != 0)
        m_scrollTimer.start();
    else
        m_scrollTimer.stop();
    if (place.level < 0) {
        panel(depth() - 1).setCurrent(-1);
        m_submenuTimer.stop();
        return;
    }
    for (int level = 0; level < place.level; ++level)
        panel(level).setCurrent(panel(level).openRow());
    MenuPanel &at = panel(place.level);
    const int row = at.rows().isSelectable(place.hit.row) ? place.hit.row : -1;
    if (row == at.currentRow() && place.hit.button == at.currentButton())
        return;
    select(place.level, row, place.hit.button);
    m_submenuTimer.start(styleHint(QStyle::SH_Menu_SubMenuPopupDelay, panel(0)));
}

/// The pointer has rested on a row: its submenu opens, another's closes.
void MenuPopup::settleHover()
{
    const int level = placeAt(m_lastPointer).level;
    if (level < 0)
        return;
    const int row = panel(level).currentRow();
    if (row >= 0 && panel(level).rows().at(row).kind == MenuEntry::Kind::Submenu)
        openSubmenu(level, row, false);
    else if (panel(level).openRow() >= 0)
        closeBelow(level);
}

void MenuPopup::pointerPressed(const QPoint &global)
{
    m_lastPointer = global;
    const Place place = placeAt(global);
    if (place.level < 0) {
        park();
        return;
    }
    m_armed = true;
    hover(place);
    const MenuPanel &at = panel(place.level);
    const int row = at.currentRow();
    if (row >= 0 && row == place.hit.row && at.rows().at(row).kind == MenuEntry::Kind::Submenu)
        openSubmenu(place.level, row, false);
}

void MenuPopup::pointerReleased(const QPoint &global)
{
    if (m_parked) {
        finish({});
        return;
    }
    const Place place = placeAt(global);
    if (place.level < 0 || !m_armed || place.hit.row < 0)
        return;
    hover(place);
    const MenuPanel &at = panel(place.level);
    if (at.currentRow() == place.hit.row && at.rows().at(place.hit.row).kind != MenuEntry::Kind::Submenu)
        activate(place.level);
}

void MenuPopup::wheeled(const QWheelEvent &event)
{
    const Place place = placeAt(placed(event.globalPosition().toPoint()));
    if (place.level < 0 || m_parked)
        return;
    closeBelow(place.level);
    MenuPanel &at = panel(place.level);
    if (!event.pixelDelta().isNull())
        at.scrollTo(at.scrollOffset() - event.pixelDelta().y());
    else
        at.scrollSmoothly(-event.angleDelta().y() * wheelRows * at.look().rowHeights().item / wheelStep);
    hover(placeAt(m_lastPointer));
}

void MenuPopup::autoScroll()
{
    const Place place = placeAt(m_lastPointer);
    if (place.level < 0 || place.hit.scroll == 0) {
        m_scrollTimer.stop();
        hover(place);
        return;
    }
    closeBelow(place.level);
    MenuPanel &at = panel(place.level);
    at.scrollTo(at.scrollOffset() + place.hit.scroll * autoScrollStep);
}

void MenuPopup::showToolTip(const QHelpEvent &event)
{
    const Place place = placeAt(placed(event.globalPos()));
    const QString title = place.level < 0 ? QString() : panel(place.level).hiddenTitle(place.hit.row);
    if (title.isEmpty())
        QToolTip::hideText();
    else
        QToolTip::showText(event.globalPos(), plainToolTip(title), &panel(place.level));
}

} // namespace orvelle
