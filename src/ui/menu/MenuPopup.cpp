#include "ui/menu/MenuPopup.h"

#include "platform/OverlayShell.h"
#include "platform/WindowSystem.h"
#include "ui/menu/BottomRowView.h"
#include "ui/menu/MenuAccessible.h"

#include <QCursor>
#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QStyle>
#include <QToolTip>
#include <QWindow>

namespace orvelle {
namespace {

constexpr int scrollInterval = 16;
constexpr int grabInterval = 20;
/// A tray host may hold the pointer until its button is up.
constexpr int mostGrabTries = 150;

const QScreen *screenAt(const QPoint &position)
{
    const QScreen *screen = QGuiApplication::screenAt(position);
    return screen ? screen : QGuiApplication::primaryScreen();
}

} // namespace

void MenuPopup::PanelDeleter::operator()(MenuPanel *panel) const
{
    panel->hide();
    panel->deleteLater(); // may be called from one of its own events
}

void MenuPopup::StageDeleter::operator()(MenuStage *stage) const
{
    stage->retire();
}

MenuPopup::MenuPopup(ChildEntries childEntries, QObject *parent)
    : QObject(parent), m_childEntries(std::move(childEntries))
{
    installMenuAccessibility();
    m_submenuTimer.setSingleShot(true);
    m_aimTimer.setSingleShot(true);
    m_scrollTimer.setInterval(scrollInterval);
    m_grabTimer.setInterval(grabInterval);
    connect(&m_submenuTimer, &QTimer::timeout, this, &MenuPopup::settleHover);
    connect(&m_aimTimer, &QTimer::timeout, this, [this] { hover(placeAt(m_lastPointer)); });
    connect(&m_scrollTimer, &QTimer::timeout, this, &MenuPopup::autoScroll);
    connect(&m_grabTimer, &QTimer::timeout, this, &MenuPopup::grabInput);
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state != Qt::ApplicationActive && isWindowAmongOthers())
            finish({});
    });
}

MenuPopup::~MenuPopup()
{
    for (const PanelPointer &each : m_panels)
        each->removeEventFilter(this);
    m_panels.clear();
    closeStage();
    for (const QPointer<MenuStage> &stage : m_leaving)
        delete stage.data(); // the shell may go next
}

bool MenuPopup::isWindowAmongOthers() const
{
    return !m_stage && isOnWayland();
}

QPoint MenuPopup::pointerPosition() const
{
    return QCursor::pos();
}

QList<MenuPanel *> MenuPopup::panels() const
{
    QList<MenuPanel *> result;
    for (const PanelPointer &each : m_panels)
        result.append(each.get());
    return result;
}

MenuPopup::PanelPointer MenuPopup::makePanel(const QList<MenuEntry> &entries)
{
    PanelPointer made(new MenuPanel(entries, m_factory));
    if (m_stage)
        made->setParent(m_stage.get());
    made->installEventFilter(this);
    MenuPanel *raw = made.get();
    connect(raw, &MenuPanel::wantedSizeChanged, this, [this, raw] { fitPanel(raw); });
    // Later, as the panel may be gone when this comes back.
    connect(
        raw, &MenuPanel::chosen, this, [this, raw](int row, int button) { choose(*raw, row, button); },
        Qt::QueuedConnection);
    connect(
        raw, &MenuPanel::pointedTo, this, [this, raw](int row, int button) { moveTo(levelOf(*raw), row, button); },
        Qt::QueuedConnection);
    return made;
}

void MenuPopup::present(const Menu &menu, const MenuPlacement &placement, std::function<void(MenuAction chosen)> closed)
{
    finish({});
    m_closedByPress = false;
    m_closed = std::move(closed);
    m_armed = false;
    m_typeAhead.reset();
    const bool waits = openStage(placement);
    m_panels.push_back(makePanel(menu.entries));
    panel(0).setAccessibleName(QStringLiteral("Orvelle"));
    connect(&panel(0), &MenuPanel::painted, this, &MenuPopup::opened);
    if (!waits)
        place(placement);
}

/// Where windows cannot place themselves nobody knows the pointer's place
/// either, until it is over a window of ours.
bool MenuPopup::openStage(const MenuPlacement &placement)
{
    if (!m_shell || !m_shell->isAvailable())
        return false;
    m_stage.reset(new MenuStage(*m_shell));
    m_stage->installEventFilter(this);
    connect(m_stage.get(), &MenuStage::pointerFound, this, [this, placement](const QPoint &global) {
        if (!m_panels.empty())
            place({global, placement.atIcon});
    });
    connect(m_stage.get(), &MenuStage::taken, this, &MenuPopup::close);
    if (m_stage->open())
        return true;
    closeStage();
    return false;
}

void MenuPopup::closeStage()
{
    if (!m_stage)
        return;
    m_stage->removeEventFilter(this);
    m_leaving.removeIf([](const QPointer<MenuStage> &stage) { return stage.isNull(); });
    m_leaving += m_stage.get();
    m_stage.reset();
}

QRect MenuPopup::availableAt(const QPoint &position) const
{
    return m_stage ? m_stage->rect() : screenAt(position)->availableGeometry();
}

void MenuPopup::place(MenuPlacement placement)
{
    MenuPanel &root = panel(0);
    placement.position = placed(placement.position);
    m_openedAt = m_lastPointer = m_stage ? placement.position : QCursor::pos();
    m_frame =
        menuGeometry(root.wantedSize(), placement, availableAt(placement.position), QGuiApplication::isRightToLeft());
    root.setGeometry(m_frame.rect);
    if (m_stage) {
        root.show();
        root.setFocus();
        return;
    }
    if (isWindowAmongOthers()) {
        root.setFocus();
        root.show();
        watchOtherWindows();
        return;
    }
    m_grabTries = 0;
    // The toolkit grabs when it shows a popup; this one tries again where the
    // tray host still held the pointer, and waits for the first frame.
    connect(&root, &MenuPanel::painted, this, &MenuPopup::grabInput);
    root.setFocus();
    root.show();
}

/// A press in one of them is one beside the menu.
void MenuPopup::watchOtherWindows()
{
    QWindow *own = panel(0).windowHandle();
    own->setMouseGrabEnabled(false); // by which the toolkit hands it presses in the others
    for (QWindow *other : QGuiApplication::topLevelWindows()) {
        if (other != own)
            other->installEventFilter(this);
    }
}

void MenuPopup::fitPanel(MenuPanel *changed)
{
    if (m_panels.empty() || m_parked)
        return;
    const bool isRoot = changed == m_panels.front().get();
    const MenuFrame frame = isRoot ? m_frame : MenuFrame{changed->geometry(), false};
    const QRect available = availableAt(frame.rect.center());
    const QRect rect = resizedGeometry(frame, changed->wantedSize().height(), available);
    if (isRoot)
        m_frame.rect = rect;
    changed->setGeometry(rect);
}

void MenuPopup::grabInput()
{
    m_grabTimer.stop();
    if (m_panels.empty())
        return;
    QWindow *window = panel(0).windowHandle();
    const bool grabbed = window && window->setMouseGrabEnabled(true) && window->setKeyboardGrabEnabled(true);
    if (!grabbed && ++m_grabTries < mostGrabTries)
        m_grabTimer.start();
}

void MenuPopup::openSubmenu(int level, int row, bool selectFirst)
{
    m_submenuTimer.stop();
    MenuPanel &parentPanel = panel(level);
    if (parentPanel.openRow() != row) {
        closeBelow(level);
        PanelPointer made = makePanel(m_childEntries(parentPanel.rows().at(row)));
        const QRect rowOnScreen = parentPanel.rowRect(row).translated(parentPanel.pos());
        const QRect available = availableAt(rowOnScreen.center());
        made->setGeometry(submenuGeometry(made->wantedSize(), parentPanel.geometry(), rowOnScreen,
                                          made->look().verticalFrame(), available,
                                          parentPanel.layoutDirection() == Qt::RightToLeft));
        if (!m_stage) {
            made->winId();
            made->windowHandle()->setTransientParent(parentPanel.windowHandle());
        }
        made->setAccessibleName(parentPanel.rows().at(row).title);
        parentPanel.setOpenRow(row);
        parentPanel.setOpenPanel(made.get());
        m_panels.push_back(std::move(made));
        m_panels.back()->show();
    }
    if (selectFirst)
        moveTo(level + 1, panel(level + 1).rows().next(-1, 1));
}

void MenuPopup::closeBelow(int level)
{
    const bool comesBack = keyLevel() > level;
    while (depth() > level + 1) {
        m_panels.back()->removeEventFilter(this);
        m_panels.pop_back();
    }
    panel(level).setOpenRow(-1);
    if (comesBack)
        panel(level).announceCurrent();
}

void MenuPopup::finish(const MenuAction &chosen)
{
    if (m_panels.empty())
        return;
    for (QTimer *timer : {&m_submenuTimer, &m_aimTimer, &m_scrollTimer, &m_grabTimer})
        timer->stop();
    QToolTip::hideText();
    QWindow *grabber = m_stage ? nullptr : panel(0).windowHandle();
    while (!m_panels.empty()) {
        m_panels.back()->removeEventFilter(this);
        if (depth() == 1 && grabber) {
            grabber->setMouseGrabEnabled(false);
            grabber->setKeyboardGrabEnabled(false);
        }
        m_panels.pop_back();
    }
    closeStage();
    for (QWindow *other : QGuiApplication::topLevelWindows())
        other->removeEventFilter(this);
    m_parked = false;
    // From the event loop, so that whoever is told finds the grabs released.
    QMetaObject::invokeMethod(
        this,
        [closed = std::exchange(m_closed, {}), chosen] {
            if (closed)
                closed(chosen);
        },
        Qt::QueuedConnection);
}

/// Takes the menu out of sight but keeps the pointer until its button is up:
/// the click that closes the menu is often one on the tray icon, whose host
/// would open the menu again if it saw the release.
void MenuPopup::park()
{
    if (m_stage) { // which takes the release itself
        finish({});
        return;
    }
    closeBelow(0);
    m_closedByPress = true;
    m_parked = true;
    const QRect everything = panel(0).screen()->virtualGeometry();
    panel(0).move(everything.topLeft() - QPoint(2 * panel(0).width(), 2 * panel(0).height()));
}

void MenuPopup::select(int level, int row, int button)
{
    panel(level).setCurrent(row, button);
    for (int below = level + 1; below < depth(); ++below)
        panel(below).setCurrent(-1);
}

int MenuPopup::levelOf(const MenuPanel &wanted) const
{
    for (int level = 0; level < depth(); ++level) {
        if (&panel(level) == &wanted)
            return level;
    }
    return -1;
}

/// Chooses a row that need not be the current one; an open submenu closes.
void MenuPopup::choose(const MenuPanel &on, int row, int button)
{
    const int level = levelOf(on);
    if (level < 0 || m_parked || !on.rows().isSelectable(row))
        return;
    const bool closes = on.openRow() == row;
    moveTo(level, row, button);
    if (closes)
        closeBelow(level);
    else
        activate(level);
}

void MenuPopup::activate(int level)
{
    const MenuPanel &at = panel(level);
    const int row = at.currentRow();
    if (!at.rows().isSelectable(row))
        return;
    const MenuEntry entry = at.rows().at(row);
    switch (entry.kind) {
    case MenuEntry::Kind::Submenu:
        return openSubmenu(level, row, true);
    case MenuEntry::Kind::BottomRow:
        return finish(BottomRowView::action(at.currentButton()));
    case MenuEntry::Kind::Item:
        return finish(entry.action);
    case MenuEntry::Kind::Separator:
    case MenuEntry::Kind::Widget:
        return;
    }
}

} // namespace orvelle
