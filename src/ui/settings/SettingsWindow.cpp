#include "ui/settings/SettingsWindow.h"

#include "base/Notifications.h"
#include "base/Text.h"
#include "platform/Clock.h"
#include "platform/UserDefaults.h"
#include "services/DebugModeManager.h"
#include "ui/common/ExchangeDialogs.h"
#include "ui/common/Icons.h"
#include "ui/common/NoticeBar.h"
#include "ui/settings/AboutTab.h"
#include "ui/settings/DropVeil.h"
#include "ui/settings/GeneralTab.h"
#include "ui/settings/InfoView.h"
#include "ui/settings/LinkEditor.h"
#include "ui/settings/PageScroll.h"
#include "ui/settings/StatusLine.h"
#include "ui/settings/SyncTab.h"
#include "ui/settings/WidgetsTab.h"

#include <QCloseEvent>
#include <QMimeData>
#include <QScreen>
#include <QShortcut>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

namespace orvelle {

namespace {

using namespace std::chrono_literals;

/// Lets the window appear before the welcome does.
constexpr auto welcomeDelay = 300ms;
constexpr QSize firstSize{900, 640};

QString geometryKey()
{
    return QStringLiteral("SettingsWindowGeometry");
}

QString tabKey()
{
    return QStringLiteral("SettingsWindowTab");
}

QString launchedBeforeKey()
{
    return QStringLiteral("HasLaunchedBefore");
}

QStringList localFiles(const QMimeData &data)
{
    QStringList paths;
    for (const QUrl &url : data.urls()) {
        if (url.isLocalFile())
            paths += url.toLocalFile();
    }
    return paths;
}

/// What in `page` the keyboard starts with: what it left, or the first widget.
QWidget *firstToFocus(QWidget *page)
{
    if (QWidget *left = page->focusWidget(); left && left->isVisible())
        return left;
    for (QWidget *next = page->nextInFocusChain(); next != page; next = next->nextInFocusChain()) {
        if (page->isAncestorOf(next) && (next->focusPolicy() & Qt::TabFocus) && next->isEnabled() && next->isVisible())
            return next;
    }
    return page;
}

template<typename T>
void writeIfNew(UserDefaults &defaults, const QString &key, const T &value)
{
    // Should it not be stored, the window opens as it did before; that is all.
    if (defaults.get<T>(key) != value)
        static_cast<void>(defaults.write(key, value));
}

} // namespace

class SettingsWindow::Private
{
public:
    Private(SettingsWindow *settingsWindow, const SettingsServices &s)
        : window(settingsWindow),
          services(s),
          debugNotice(new NoticeBar(window)),
          tabs(new QTabWidget(window)),
          status(new StatusLine(s.clock, window)),
          veil(new DropVeil(text("settings.dropHere"_text), window))
    {
    }

    /// `name` identifies the tab from one run to the next.
    void addTab(const QString &name, QWidget *page, const char *symbol, TextKey title)
    {
        page->setObjectName(name);
        tabs->addTab(page, symbolIcon(QString::fromLatin1(symbol)), text(title));
    }

    void makeTabs();
    void makeShortcuts();
    void restoreState();
    void showTab(const QString &name);
    void showDebugMode();
    bool warnsOfLoss();

    void switchTab(int by)
    {
        const int count = tabs->count();
        tabs->setCurrentIndex((tabs->currentIndex() + by + count) % count);
    }

    /// Not while the keyboard is about the row of tabs.
    void focusPage()
    {
        if (!tabs->tabBar()->hasFocus())
            firstToFocus(tabs->currentWidget())->setFocus();
    }

    void showWelcome() { (new InfoView(services, window))->open(); }

    SettingsWindow *window;
    SettingsServices services;
    NoticeBar *debugNotice;
    QTabWidget *tabs;
    StatusLine *status;
    DropVeil *veil;
    bool hasAppeared = false;
    std::optional<QString> warnedOf; ///< what was typed and would be lost
};

void SettingsWindow::Private::makeTabs()
{
    tabs->setDocumentMode(true);
    // Its bar has the focus, and is what is read.
    tabs->setFocusProxy(nullptr);
    tabs->setFocusPolicy(Qt::NoFocus);
    tabs->setIconSize({16, 16});
    tabs->tabBar()->setExpanding(false);
    tabs->tabBar()->setUsesScrollButtons(true);
    auto *about = new AboutTab(services, window);
    addTab(QStringLiteral("general"), new PageScroll(new GeneralTab(services, window)), "gearshape.fill",
           "settings.tab.general"_text);
    addTab(QStringLiteral("widgets"), new WidgetsTab(services, window), "puzzlepiece.fill",
           "settings.tab.widgets"_text);
    addTab(QStringLiteral("sync"), new PageScroll(new SyncTab(services, window)), "arrow.triangle.2.circlepath",
           "settings.tab.sync"_text);
    addTab(QStringLiteral("about"), new PageScroll(about), "info.circle.fill", "settings.tab.about"_text);
    connect(about, &AboutTab::welcomeRequested, window, [this] { showWelcome(); });
}

void SettingsWindow::Private::makeShortcuts()
{
    const auto bind = [this](const QKeySequence &keys, auto run) {
        connect(new QShortcut(keys, window), &QShortcut::activated, window, run);
    };
    bind(Qt::CTRL | Qt::Key_W, [this] { window->close(); });
    bind(Qt::CTRL | Qt::Key_PageDown, [this] { switchTab(1); });
    bind(Qt::CTRL | Qt::Key_PageUp, [this] { switchTab(-1); });
    bind(Qt::CTRL | Qt::Key_Tab, [this] { switchTab(1); });
    bind(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab, [this] { switchTab(-1); });
    bind(Qt::CTRL | Qt::SHIFT | Qt::Key_Backtab, [this] { switchTab(-1); });
}

void SettingsWindow::Private::restoreState()
{
    window->resize(firstSize.boundedTo(window->screen()->availableSize() * 0.95));
    if (const auto geometry = services.defaults.get<QByteArray>(geometryKey()))
        window->restoreGeometry(*geometry);
    showTab(services.defaults.get<QString>(tabKey()).value_or(QString()));
}

void SettingsWindow::Private::showTab(const QString &name)
{
    for (int i = 0; i < tabs->count(); ++i) {
        if (tabs->widget(i)->objectName() == name)
            tabs->setCurrentIndex(i);
    }
}

void SettingsWindow::Private::showDebugMode()
{
    if (!services.debugMode.isDebugMode()) {
        debugNotice->hide();
        return;
    }
    debugNotice->showNotice(text("debug.notice"_text),
                            {{text("debug.exitMode"_text), [this] { services.debugMode.toggle(); }}}, false);
}

/// Once about the same text: who closes the window again means it.
bool SettingsWindow::Private::warnsOfLoss()
{
    auto *editor = window->findChild<LinkEditor *>();
    editor->commit();
    const auto unstored = editor->unstored();
    if (!unstored || unstored == warnedOf)
        return false;
    warnedOf = unstored;
    showTab(QStringLiteral("general"));
    editor->showUnstored();
    window->showStatus(text("settings.closeLoses"_text));
    return true;
}

SettingsWindow::SettingsWindow(const SettingsServices &services, QWidget *parent)
    : QWidget(parent, Qt::Window), m_p(std::make_unique<Private>(this, services))
{
    setObjectName(identifier());
    setAttribute(Qt::WA_DeleteOnClose);
    setAcceptDrops(true);
    setWindowTitle(text("settings.windowTitle"_text));
    setWindowIcon(symbolIcon(QStringLiteral("gearshape.fill")));

    m_p->makeTabs();
    m_p->makeShortcuts();
    m_p->debugNotice->setFlush(true);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_p->debugNotice);
    column->addWidget(m_p->tabs, 1);
    column->addWidget(m_p->status);
    m_p->veil->raise();
    connect(&services.notifications, &Notifications::debugModeChanged, this, [this] { m_p->showDebugMode(); });
    m_p->showDebugMode();
    m_p->restoreState();
    connect(m_p->tabs, &QTabWidget::currentChanged, this, [this] { m_p->focusPage(); });
}

SettingsWindow::~SettingsWindow()
{
    // What goes with it hands over what is being typed, while all of this is there.
    hide();
}

void SettingsWindow::commitTyped()
{
    findChild<LinkEditor *>()->commit();
}

void SettingsWindow::showStatus(const QString &text)
{
    m_p->status->showText(text);
}

void SettingsWindow::showStatus(const QWidget *inside, const QString &text)
{
    if (auto *window = qobject_cast<SettingsWindow *>(inside->window()))
        window->showStatus(text);
}

void SettingsWindow::showTab(const QString &name)
{
    m_p->showTab(name);
}

void SettingsWindow::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (std::exchange(m_p->hasAppeared, true))
        return;
    m_p->focusPage();
    UserDefaults &defaults = m_p->services.defaults;
    if (defaults.get<bool>(launchedBeforeKey()).value_or(false))
        return;
    // Should the marker not be stored, the welcome comes once more; that is all.
    static_cast<void>(defaults.write(launchedBeforeKey(), true));
    m_p->services.clock.after(welcomeDelay, this, [this] { m_p->showWelcome(); });
}

void SettingsWindow::closeEvent(QCloseEvent *event)
{
    if (m_p->warnsOfLoss()) {
        event->ignore();
        return;
    }
    UserDefaults &defaults = m_p->services.defaults;
    writeIfNew(defaults, geometryKey(), saveGeometry());
    writeIfNew(defaults, tabKey(), m_p->tabs->currentWidget()->objectName());
    QWidget::closeEvent(event);
}

/// What nothing inside the window had a use for.
void SettingsWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Cancel))
        close();
    else
        QWidget::keyPressEvent(event);
}

void SettingsWindow::dragEnterEvent(QDragEnterEvent *event)
{
    // What is dragged about inside the program are links, not documents.
    if (event->source() || localFiles(*event->mimeData()).isEmpty())
        return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
    m_p->veil->show();
}

void SettingsWindow::dragLeaveEvent(QDragLeaveEvent *event)
{
    m_p->veil->hide();
    QWidget::dragLeaveEvent(event);
}

void SettingsWindow::dropEvent(QDropEvent *event)
{
    m_p->veil->hide();
    const QStringList paths = localFiles(*event->mimeData());
    if (paths.isEmpty())
        return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
    // Not from inside the drag: the dialogs would keep the other program waiting.
    m_p->services.clock.after(0ms, this, [this, paths] {
        m_p->services.exchange.openDropped(paths, this, [self = QPointer<SettingsWindow>(this)](const QStringList &) {
            if (self)
                self->showStatus(text("settings.dropRefused"_text));
        });
    });
}

} // namespace orvelle
