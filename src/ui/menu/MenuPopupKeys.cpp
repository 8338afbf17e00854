#include "ui/menu/BottomRowView.h"
#include "ui/menu/MenuPopup.h"

#include <QKeyEvent>

namespace orvelle {

/// Keys work on the deepest level that has a current row.
int MenuPopup::keyLevel() const
{
    for (int level = depth() - 1; level > 0; --level) {
        if (panel(level).currentRow() >= 0)
            return level;
    }
    return 0;
}

void MenuPopup::moveTo(int level, int row, int button, Qt::FocusReason reason)
{
    if (row < 0 || level < 0)
        return;
    if (panel(level).openRow() != row)
        closeBelow(level);
    select(level, row, button);
    panel(level).ensureVisible(row);
    if (QWidget *widget = panel(level).rowWidget(row))
        widget->setFocus(reason);
    else
        panel(level).setFocus();
}

bool MenuPopup::keyPressed(const QKeyEvent &event)
{
    m_submenuTimer.stop();
    m_aimTimer.stop();
    const int level = keyLevel();
    if (isTyping(level, event))
        typed(level, event);
    else if (commandKey(level, event))
        m_typeAhead.reset();
    return true;
}

/// False for keys without a meaning here, such as Shift by itself.
bool MenuPopup::commandKey(int level, const QKeyEvent &event)
{
    switch (event.key()) {
    case Qt::Key_Escape:
        if (level == 0)
            finish({});
        else
            closeBelow(level - 1);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
    case Qt::Key_Select:
        activate(level);
        return true;
    case Qt::Key_Left:
    case Qt::Key_Right:
        return sidewaysKey(level, event.key());
    case Qt::Key_Tab:
        return tabKey(level, event.modifiers().testFlag(Qt::ShiftModifier) ? -1 : 1);
    case Qt::Key_Backtab:
        return tabKey(level, -1);
    default:
        return navigationKey(level, event.key());
    }
}

bool MenuPopup::navigationKey(int level, int key)
{
    const MenuPanel &at = panel(level);
    const MenuRows &rows = at.rows();
    const int row = at.currentRow();
    switch (key) {
    case Qt::Key_Down:
        moveTo(level, rows.next(row, 1));
        return true;
    case Qt::Key_Up:
        moveTo(level, rows.next(row, -1));
        return true;
    case Qt::Key_Home:
        moveTo(level, rows.next(-1, 1));
        return true;
    case Qt::Key_End:
        moveTo(level, rows.next(-1, -1));
        return true;
    case Qt::Key_PageDown:
        moveTo(level, rows.page(row, at.pageHeight()));
        return true;
    case Qt::Key_PageUp:
        moveTo(level, rows.page(row, -at.pageHeight()));
        return true;
    default:
        return false;
    }
}

bool MenuPopup::sidewaysKey(int level, int key)
{
    const MenuPanel &at = panel(level);
    const bool onwards = (key == Qt::Key_Right) != (at.layoutDirection() == Qt::RightToLeft);
    const int row = at.currentRow();
    const auto kind = row < 0 ? MenuEntry::Kind::Separator : at.rows().at(row).kind;
    if (kind == MenuEntry::Kind::BottomRow) {
        const int button = at.currentButton() + (onwards ? 1 : -1);
        if (button >= 0 && button < BottomRowView::buttonCount)
            select(level, row, button);
    } else if (onwards && kind == MenuEntry::Kind::Submenu) {
        openSubmenu(level, row, true);
    } else if (!onwards && level > 0) {
        closeBelow(level - 1);
    }
    return true;
}

bool MenuPopup::tabKey(int level, int step)
{
    const MenuPanel &at = panel(level);
    const int row = at.currentRow();
    if (row >= 0 && at.rows().at(row).kind == MenuEntry::Kind::BottomRow) {
        const int button = at.currentButton() + step;
        if (button >= 0 && button < BottomRowView::buttonCount) {
            select(level, row, button);
            return true;
        }
    }
    const int next = at.rows().next(row, step);
    const bool entersBackwards = step < 0 && next >= 0 && at.rows().at(next).kind == MenuEntry::Kind::BottomRow;
    moveTo(level, next, entersBackwards ? BottomRowView::buttonCount - 1 : 0,
           step < 0 ? Qt::BacktabFocusReason : Qt::TabFocusReason);
    return true;
}

TypeAhead::Rows MenuPopup::searchableRows(int level) const
{
    const MenuRows &rows = panel(level).rows();
    return {rows.count(), [&rows](int row) { return rows.isSelectable(row) ? rows.at(row).title : QString(); }};
}

/// A blank chooses the row unless it goes on with a name.
bool MenuPopup::isTyping(int level, const QKeyEvent &event) const
{
    if (event.text().isEmpty() || !event.text().front().isPrint() ||
        event.modifiers().testAnyFlags(Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
        return false;
    return event.key() != Qt::Key_Space ||
           m_typeAhead.continues(searchableRows(level), event.text(), event.timestamp());
}

void MenuPopup::typed(int level, const QKeyEvent &event)
{
    moveTo(level, m_typeAhead.find(searchableRows(level), panel(level).currentRow(), event.text(), event.timestamp()));
}

} // namespace orvelle
