#include "ui/menu/MenuAccessible.h"

#include "ui/common/WindowsAccessible.h"
#include "ui/menu/BottomRowView.h"
#include "ui/menu/MenuPanel.h"
#include "ui/menu/rows/WidgetRowView.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include <map>

namespace orvelle {
namespace {

/// Children are counted row by row, a bottom row as one child for each button.
struct ChildPlace {
    int row = -1;
    int button = 0;
};

ChildPlace childPlace(const MenuPanel &panel, int index)
{
    const int scrolling = panel.rows().scrollingCount();
    return index < scrolling ? ChildPlace{index, 0} : ChildPlace{scrolling, index - scrolling};
}

class MenuItemAccessible : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    MenuItemAccessible(MenuPanel &panel, int index) : m_panel(&panel), m_index(index) {}

    bool isValid() const override { return m_panel && place().row < m_panel->rows().count(); }
    QObject *object() const override { return nullptr; }
    QAccessibleInterface *parent() const override { return QAccessible::queryAccessibleInterface(m_panel); }
    /// The open submenu.
    int childCount() const override { return submenu() ? 1 : 0; }
    QAccessibleInterface *child(int index) const override
    {
        return index == 0 && submenu() ? QAccessible::queryAccessibleInterface(submenu()) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface *wanted) const override
    {
        return submenu() && wanted && wanted->object() == submenu() ? 0 : -1;
    }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    void setText(QAccessible::Text, const QString &) override {}

    QString text(QAccessible::Text kind) const override
    {
        if (!isValid() || kind != QAccessible::Name)
            return {};
        return entry().kind == MenuEntry::Kind::BottomRow ? BottomRowView::name(place().button) : entry().title;
    }

    QRect rect() const override
    {
        return isValid() ? m_panel->childRect(place().row, place().button).translated(m_panel->mapToGlobal(QPoint()))
                         : QRect();
    }

    QAccessible::Role role() const override
    {
        return isValid() && entry().kind == MenuEntry::Kind::Separator ? QAccessible::Separator : QAccessible::MenuItem;
    }

    QAccessible::State state() const override;

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        const bool acts = type == QAccessible::ActionInterface && isValid() && isChoosable();
        return acts ? static_cast<QAccessibleActionInterface *>(this) : nullptr;
    }
    QStringList actionNames() const override { return {pressAction(), setFocusAction()}; }
    QStringList keyBindingsForAction(const QString &) const override { return {}; }
    void doAction(const QString &action) override
    {
        if (!isValid() || !isChoosable())
            return;
        if (action == pressAction())
            m_panel->choose(place().row, place().button);
        else if (action == setFocusAction())
            m_panel->pointTo(place().row, place().button);
    }

private:
    ChildPlace place() const { return childPlace(*m_panel, m_index); }
    const MenuEntry &entry() const { return m_panel->rows().at(place().row); }
    bool isChoosable() const { return m_panel->rows().isSelectable(place().row); }
    bool isOpen() const { return isValid() && m_panel->openRow() == place().row; }
    MenuPanel *submenu() const { return isOpen() ? m_panel->openPanel() : nullptr; }

    QPointer<MenuPanel> m_panel;
    int m_index;
};

QAccessible::State MenuItemAccessible::state() const
{
    QAccessible::State result;
    if (!isValid()) {
        result.invalid = true;
        return result;
    }
    const ChildPlace at = place();
    result.disabled = !entry().enabled;
    result.invisible = !m_panel->isVisible();
    result.offscreen = !m_panel->isInSight(at.row);
    result.focusable = result.selectable = isChoosable();
    const bool isSubmenu = entry().kind == MenuEntry::Kind::Submenu;
    result.hasPopup = result.expandable = isSubmenu;
    result.expanded = isOpen();
    result.collapsed = isSubmenu && !isOpen();
    const bool isBelow = m_panel->openPanel() && m_panel->openPanel()->currentRow() >= 0;
    result.focused = !isBelow && m_panel->currentRow() == at.row &&
                     (entry().kind != MenuEntry::Kind::BottomRow || m_panel->currentButton() == at.button);
    result.selected = result.focused;
    return result;
}

class MenuPanelAccessible : public QAccessibleWidget
{
public:
    explicit MenuPanelAccessible(MenuPanel *panel) : QAccessibleWidget(panel, QAccessible::PopupMenu), m_panel(panel) {}
    ~MenuPanelAccessible() override
    {
        for (const auto &[index, id] : m_items)
            QAccessible::deleteAccessibleInterface(id);
    }

    /// A submenu belongs to its row.
    QAccessibleInterface *parent() const override
    {
        const MenuPanel *above = m_panel->panelAbove();
        QAccessibleInterface *menu = above && above->openPanel() == m_panel
                                         ? QAccessible::queryAccessibleInterface(const_cast<MenuPanel *>(above))
                                         : nullptr;
        return menu ? menu->child(above->openRow()) : QAccessibleWidget::parent();
    }

    int childCount() const override
    {
        const MenuRows &rows = m_panel->rows();
        return rows.scrollingCount() + (rows.pinnedHeight() > 0 ? BottomRowView::buttonCount : 0);
    }

    QAccessibleInterface *child(int index) const override
    {
        if (index < 0 || index >= childCount())
            return nullptr;
        if (QWidget *widget = m_panel->rowWidget(childPlace(*m_panel, index).row))
            return QAccessible::queryAccessibleInterface(widget);
        const auto known = m_items.find(index);
        if (known != m_items.end())
            return QAccessible::accessibleInterface(known->second);
        auto *item = new MenuItemAccessible(*m_panel, index);
        m_items.emplace(index, QAccessible::registerAccessibleInterface(item));
        return item;
    }

    int indexOfChild(const QAccessibleInterface *wanted) const override
    {
        for (const auto &[index, id] : m_items) {
            if (QAccessible::accessibleInterface(id) == wanted)
                return index;
        }
        for (int row = 0; wanted && wanted->object() && row < m_panel->rows().scrollingCount(); ++row) {
            if (m_panel->rowWidget(row) == wanted->object())
                return row;
        }
        return -1;
    }

    QAccessible::State state() const override
    {
        QAccessible::State result = QAccessibleWidget::state();
        result.active = true; // it has the keyboard
        result.focused = m_panel->currentRow() < 0 && result.focused;
        return result;
    }

    QAccessibleInterface *focusChild() const override
    {
        return m_panel->currentRow() < 0 ? nullptr : child(m_panel->currentRow() + m_panel->currentButton());
    }

private:
    MenuPanel *m_panel;
    mutable std::map<int, QAccessible::Id> m_items; ///< made when asked for
};

/// A row that can be chosen as a whole is an item like others, one with
/// buttons their group, and any other is read.
class WidgetRowAccessible : public QAccessibleWidget
{
public:
    explicit WidgetRowAccessible(WidgetRowView *row) : QAccessibleWidget(row), m_row(row) {}

    QAccessible::Role role() const override
    {
        if (m_row->isChoosable())
            return QAccessible::MenuItem;
        return m_row->findChild<MenuRowButton *>() ? QAccessible::Grouping : QAccessible::StaticText;
    }
    QStringList actionNames() const override
    {
        QStringList names = QAccessibleWidget::actionNames();
        if (m_row->isChoosable())
            names.prepend(pressAction());
        return names;
    }
    void doAction(const QString &action) override
    {
        if (action == pressAction() && m_row->isChoosable())
            QMetaObject::invokeMethod(m_row, &WidgetRowView::choose, Qt::QueuedConnection);
        else
            QAccessibleWidget::doAction(action);
    }

private:
    WidgetRowView *m_row;
};

QAccessibleInterface *makeMenuInterface(const QString &, QObject *object)
{
    if (auto *panel = qobject_cast<MenuPanel *>(object))
        return new MenuPanelAccessible(panel);
    if (auto *row = qobject_cast<WidgetRowView *>(object))
        return new WidgetRowAccessible(row);
    return nullptr;
}

} // namespace

void installMenuAccessibility()
{
    installWindowAccessibility();
    QAccessible::removeFactory(makeMenuInterface);
    QAccessible::installFactory(makeMenuInterface);
}

} // namespace orvelle
