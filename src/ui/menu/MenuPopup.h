#pragma once

#include "ui/menu/MenuGeometry.h"
#include "ui/menu/MenuPanel.h"
#include "ui/menu/MenuStage.h"
#include "ui/menu/TypeAhead.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <memory>
#include <vector>

class QHelpEvent;
class QKeyEvent;
class QMouseEvent;
class QWheelEvent;

namespace orvelle {

/// The menu as a popup of this application, looking like the desktop's own
/// menus but built for any number of rows: submenus are filled when they are
/// first opened. It takes the keyboard and the pointer while it is open and
/// leaves the focus where it was. Main thread.
class MenuPopup final : public QObject, public MenuPresenter
{
    Q_OBJECT

public:
    using ChildEntries = std::function<QList<MenuEntry>(const MenuEntry &submenu)>;

    explicit MenuPopup(ChildEntries childEntries, QObject *parent = nullptr);
    ~MenuPopup() override;

    /// Makes the widgets of widget rows; without it those rows take no room.
    void setWidgetRowFactory(WidgetRowFactory factory) { m_factory = std::move(factory); }

    /// Panels are placed in a window over the whole screen where `shell`, which
    /// outlives this, can make one. Without it they are windows themselves.
    void setOverlayShell(OverlayShell *shell) { m_shell = shell; }

    void present(const Menu &menu, const MenuPlacement &placement,
                 std::function<void(MenuAction chosen)> closed) override;
    bool isOpen() const override { return !m_panels.empty() && !m_parked; }
    bool wasClosedByPress() const override { return m_closedByPress; }
    void close() override { finish({}); }
    QPoint pointerPosition() const override;

    /// The open levels, the main menu first.
    QList<MenuPanel *> panels() const;

signals:
    /// The first frame of a menu has been drawn.
    void opened();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct PanelDeleter {
        void operator()(MenuPanel *panel) const;
    };
    using PanelPointer = std::unique_ptr<MenuPanel, PanelDeleter>;
    struct Place {
        int level = -1;
        MenuPanel::Hit hit;
    };

    int depth() const { return static_cast<int>(m_panels.size()); }
    MenuPanel &panel(int level) const { return *m_panels.at(static_cast<std::size_t>(level)); }
    PanelPointer makePanel(const QList<MenuEntry> &entries);
    void place(MenuPlacement placement);
    bool openStage(const MenuPlacement &placement);
    void closeStage();
    /// Placed by the compositor, and without the pointer and the keyboard for
    /// itself: it sees no press beside it.
    bool isWindowAmongOthers() const;
    void watchOtherWindows();
    /// Global pixels as the panels are placed: in the stage when there is one.
    QPoint placed(const QPoint &global) const { return m_stage ? m_stage->mapFromGlobal(global) : global; }
    QRect availableAt(const QPoint &position) const;
    void fitPanel(MenuPanel *panel);
    void grabInput();
    void openSubmenu(int level, int row, bool selectFirst);
    void closeBelow(int level);
    void finish(const MenuAction &chosen);
    void park();
    void select(int level, int row, int button = 0);
    void activate(int level);
    int levelOf(const MenuPanel &wanted) const;
    void choose(const MenuPanel &on, int row, int button);

    // Keys
    bool keyPressed(const QKeyEvent &event);
    bool commandKey(int level, const QKeyEvent &event);
    bool navigationKey(int level, int key);
    bool sidewaysKey(int level, int key);
    bool tabKey(int level, int step);
    TypeAhead::Rows searchableRows(int level) const;
    bool isTyping(int level, const QKeyEvent &event) const;
    void typed(int level, const QKeyEvent &event);
    int keyLevel() const;
    void moveTo(int level, int row, int button = 0, Qt::FocusReason reason = Qt::TabFocusReason);

    // Pointer
    bool otherWindowEvent(const QEvent &event);
    Place placeAt(const QPoint &global) const;
    void pointerMoved(const QPoint &global);
    void hover(const Place &place);
    void pointerPressed(const QPoint &global);
    void pointerReleased(const QPoint &global);
    void wheeled(const QWheelEvent &event);
    void showToolTip(const QHelpEvent &event);
    void settleHover();
    void autoScroll();

    struct StageDeleter {
        void operator()(MenuStage *stage) const;
    };

    ChildEntries m_childEntries;
    OverlayShell *m_shell = nullptr;
    std::unique_ptr<MenuStage, StageDeleter> m_stage;
    QList<QPointer<MenuStage>> m_leaving;
    WidgetRowFactory m_factory;
    std::vector<PanelPointer> m_panels;
    std::function<void(MenuAction)> m_closed;
    MenuFrame m_frame;
    TypeAhead m_typeAhead;
    QTimer m_submenuTimer; ///< opens or closes submenus under a resting pointer
    QTimer m_aimTimer;     ///< gives up waiting for a pointer on its way to a submenu
    QTimer m_scrollTimer;
    QTimer m_grabTimer;
    int m_grabTries = 0;
    QPoint m_lastPointer;
    QPoint m_openedAt;
    bool m_armed = false; ///< a release of the button chooses
    bool m_closedByPress = false;
    bool m_parked = false; ///< gone from sight, waiting for the button's release
};

} // namespace orvelle
