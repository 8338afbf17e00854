#include "ui/menu/MenuAccessible.h"

#include "ui/menu/BottomRowView.h"
#include "ui/menu/MenuPanel.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QKeyEvent>

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
    QAccessibleInterface *child(int) const override { return nullptr; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    void setText(QAccessible::Text, const QString &) override {}

    QString text(QAccessible::Text kind) const override
    {
        if (!isValid() || kind != QAccessible::Name)
            return {};
        return entry().kind == MenuEntry::Kind::BottomRow ? BottomRowView::name(place().button) : entry().title;
    }

    QRect rect() const override
    {
        return isValid() ? m_panel->rowRect(place().row).translated(m_panel->mapToGlobal(QPoint())) : QRect();
    }

    QAccessible::Role role() const override
    {
        return isValid() && entry().kind == MenuEntry::Kind::Separator ? QAccessible::Separator : QAccessible::MenuItem;
    }

    QAccessible::State state() const override
    {
        QAccessible::State result;
        if (!isValid()) {
            result.invalid = true;
            return result;
        }
        const ChildPlace at = place();
        result.disabled = !entry().enabled;
        result.focusable = m_panel->rows().isSelectable(at.row);
        result.hasPopup = entry().kind == MenuEntry::Kind::Submenu;
        result.expanded = m_panel->openRow() == at.row;
        result.focused = m_panel->currentRow() == at.row &&
                         (entry().kind != MenuEntry::Kind::BottomRow || m_panel->currentButton() == at.button);
        return result;
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface *>(this) : nullptr;
    }
    QStringList actionNames() const override { return {pressAction()}; }
    QStringList keyBindingsForAction(const QString &) const override { return {}; }
    void doAction(const QString &action) override
    {
        if (!isValid() || action != pressAction() || !m_panel->rows().isSelectable(place().row))
            return;
        m_panel->setCurrent(place().row, place().button);
        QCoreApplication::postEvent(m_panel, new QKeyEvent(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier));
    }

private:
    ChildPlace place() const { return childPlace(*m_panel, m_index); }
    const MenuEntry &entry() const { return m_panel->rows().at(place().row); }

    QPointer<MenuPanel> m_panel;
    int m_index;
};

class MenuPanelAccessible : public QAccessibleWidget
{
public:
    explicit MenuPanelAccessible(MenuPanel *panel) : QAccessibleWidget(panel, QAccessible::PopupMenu), m_panel(panel) {}
    ~MenuPanelAccessible() override
    {
        for (const auto &[index, id] : m_items)
            QAccessible::deleteAccessibleInterface(id);
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
        return QAccessibleWidget::indexOfChild(wanted);
    }

    QAccessibleInterface *focusChild() const override
    {
        return m_panel->currentRow() < 0 ? nullptr : child(m_panel->currentRow() + m_panel->currentButton());
    }

private:
    MenuPanel *m_panel;
    mutable std::map<int, QAccessible::Id> m_items; ///< made when asked for
};

QAccessibleInterface *makeMenuInterface(const QString &, QObject *object)
{
    auto *panel = qobject_cast<MenuPanel *>(object);
    return panel ? new MenuPanelAccessible(panel) : nullptr;
}

} // namespace

void installMenuAccessibility()
{
    QAccessible::removeFactory(makeMenuInterface);
    QAccessible::installFactory(makeMenuInterface);
}

} // namespace orvelle
