#include "ui/settings/SettingsWindow.h"

#include "base/Notifications.h"
#include "base/Text.h"
#include "platform/Clock.h"
#include "platform/UserDefaults.h"
#include "services/DebugModeManager.h"
#include "ui/common/Icons.h"
#include "ui/common/NoticeBar.h"
#include "ui/settings/AboutTab.h"
#include "ui/settings/GeneralTab.h"
#include "ui/settings/InfoView.h"
#include "ui/settings/WidgetsTab.h"

#include <QCloseEvent>
#include <QShortcut>
#include <QTabWidget>
#include <QVBoxLayout>

namespace orvelle {

namespace {

using namespace std::chrono_literals;

/// Lets the window appear before the welcome does.
constexpr auto welcomeDelay = 300ms;

QString geometryKey()
{
    return QStringLiteral("SettingsWindowGeometry");
}

QString launchedBeforeKey()
{
    return QStringLiteral("HasLaunchedBefore");
}

} // namespace

class SettingsWindow::Private
{
public:
    Private(SettingsWindow *window, const SettingsServices &s)
        : services(s), debugNotice(new NoticeBar(window)), tabs(new QTabWidget(window))
    {
    }

    void showDebugMode()
    {
        if (!services.debugMode.isDebugMode()) {
            debugNotice->hide();
            return;
        }
        debugNotice->showNotice(text("debug.notice"_text),
                                {{text("debug.exitMode"_text), [this] { services.debugMode.toggle(); }}}, false);
    }

    SettingsServices services;
    NoticeBar *debugNotice;
    QTabWidget *tabs;
    bool hasAppeared = false;
};

SettingsWindow::SettingsWindow(const SettingsServices &services, QWidget *parent)
    : QWidget(parent, Qt::Window), m_p(std::make_unique<Private>(this, services))
{
    setObjectName(identifier());
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(text("settings.windowTitle"_text));
    setWindowIcon(symbolIcon(QStringLiteral("gearshape.fill")));

    auto *about = new AboutTab(m_p->services, this);
    m_p->tabs->setDocumentMode(true);
    m_p->tabs->setIconSize({16, 16});
    m_p->tabs->addTab(new GeneralTab(m_p->services, this), symbolIcon(QStringLiteral("gearshape.fill")),
                      text("settings.tab.general"_text));
    m_p->tabs->addTab(new WidgetsTab(services.widgetOrder, this), symbolIcon(QStringLiteral("puzzlepiece.fill")),
                      text("settings.tab.widgets"_text));
    m_p->tabs->addTab(about, symbolIcon(QStringLiteral("info.circle.fill")), text("settings.tab.about"_text));

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    auto *noticeRow = new QHBoxLayout;
    noticeRow->setContentsMargins(12, 4, 12, 4);
    noticeRow->addWidget(m_p->debugNotice);
    column->addLayout(noticeRow);
    column->addWidget(m_p->tabs);
    connect(about, &AboutTab::welcomeRequested, this, [this] { (new InfoView(this))->open(); });
    connect(&services.notifications, &Notifications::debugModeChanged, this, [this] { m_p->showDebugMode(); });
    connect(new QShortcut(QKeySequence::Close, this), &QShortcut::activated, this, &QWidget::close);
    m_p->showDebugMode();

    resize(640, 680);
    if (const auto geometry = services.defaults.get<QByteArray>(geometryKey()))
        restoreGeometry(*geometry);
}

SettingsWindow::~SettingsWindow() = default;

void SettingsWindow::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (std::exchange(m_p->hasAppeared, true))
        return;
    UserDefaults &defaults = m_p->services.defaults;
    if (defaults.get<bool>(launchedBeforeKey()).value_or(false))
        return;
    // Should the marker not be stored, the welcome comes once more; that is all.
    static_cast<void>(defaults.write(launchedBeforeKey(), true));
    m_p->services.clock.after(welcomeDelay, this, [this] { (new InfoView(this))->open(); });
}

void SettingsWindow::closeEvent(QCloseEvent *event)
{
    const QByteArray geometry = saveGeometry();
    UserDefaults &defaults = m_p->services.defaults;
    if (defaults.get<QByteArray>(geometryKey()) != geometry)
        static_cast<void>(defaults.write(geometryKey(), geometry));
    QWidget::closeEvent(event);
}

} // namespace orvelle
