#include "ui/UiWorld.h"
#include "ui/settings/AboutLicences.h"
#include "ui/settings/InfoView.h"
#include "ui/settings/LinkTreeView.h"
#include "ui/settings/WidgetOrderList.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QDropEvent>
#include <QFile>
#include <QLabel>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QTabWidget>
#include <QTest>

#include <gtest/gtest.h>

namespace orvelle {

using namespace std::chrono_literals;

class SettingsTest : public testing::Test
{
protected:
    void open(bool first = false)
    {
        if (!first) {
            ASSERT_TRUE(world.defaults.write(QStringLiteral("HasLaunchedBefore"), true));
        }
        window = std::make_unique<SettingsWindow>(world.settings());
        window->setAttribute(Qt::WA_DeleteOnClose, false);
        window->show();
        world.posted.clear();
    }
    /// Keys that belong to the whole window work in the active one only.
    void openActive()
    {
        open();
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }
    template<typename T>
    T *child(const char *name)
    {
        return window->findChild<T *>(QString::fromLatin1(name));
    }
    QStringList postedSince() { return std::exchange(world.posted, {}); }

    test::UiWorld world;
    std::unique_ptr<SettingsWindow> window;
};

TEST_F(SettingsTest, KeysSwitchTabsAndClose)
{
    openActive();
    auto *tabs = window->findChild<QTabWidget *>();
    ASSERT_EQ(tabs->count(), 4);
    struct Press {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        int tab;
    };
    for (const Press &press : {Press{Qt::Key_PageDown, Qt::ControlModifier, 1},
                               {Qt::Key_Tab, Qt::ControlModifier, 2},
                               {Qt::Key_PageUp, Qt::ControlModifier, 1},
                               {Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier, 0},
                               {Qt::Key_PageUp, Qt::ControlModifier, 3},
                               {Qt::Key_W, Qt::AltModifier, 1}}) {
        QTest::keyClick(window.get(), press.key, press.modifiers);
        EXPECT_EQ(tabs->currentIndex(), press.tab);
        EXPECT_TRUE(tabs->currentWidget()->isAncestorOf(QApplication::focusWidget())) << press.tab;
    }
    QTest::keyClick(tabs->currentWidget(), Qt::Key_Escape);
    EXPECT_FALSE(window->isVisible());

    openActive();
    EXPECT_EQ(window->findChild<QTabWidget *>()->currentIndex(), 1) << "the tab is remembered";
    QTest::keyClick(window.get(), Qt::Key_W, Qt::ControlModifier);
    EXPECT_FALSE(window->isVisible());
}

TEST_F(SettingsTest, TheSizeIsRememberedAndFitsTheScreen)
{
    open();
    EXPECT_LE(window->height(), window->screen()->availableSize().height());
    window->resize(window->minimumSizeHint() + QSize(31, 17));
    const QSize size = window->size();
    window->close();
    open();
    EXPECT_EQ(window->size(), size);
}

TEST_F(SettingsTest, SmallScreensScroll)
{
    open();
    auto *tabs = window->findChild<QTabWidget *>();
    for (int tab = 0; tab < tabs->count(); ++tab) {
        tabs->setCurrentIndex(tab);
        EXPECT_LE(window->minimumSizeHint().width(), 1024) << tab;
        EXPECT_LE(window->minimumSizeHint().height(), 540) << tab;
    }
    window->resize(800, 400);
    tabs->setCurrentIndex(3);
    QApplication::processEvents();
    auto *last = child<QPushButton>("licence.systemd");
    if (!last)
        last = child<QPushButton>("licence.Phosphor Icons");
    ASSERT_NE(last, nullptr);
    EXPECT_TRUE(last->visibleRegion().isEmpty());
    child<QPushButton>("showWelcome")->setFocus();
    for (int presses = 0; presses < 40 && !last->hasFocus(); ++presses)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_FALSE(last->visibleRegion().isEmpty()) << "the focus is brought into sight";
}

TEST_F(SettingsTest, StatusStaysForAWhile)
{
    open();
    auto *line = child<QLabel>("status");
    SettingsWindow::showStatus(child<QWidget>("moveUp"), QStringLiteral("Refused: too deep"));
    EXPECT_EQ(line->accessibleName(), QStringLiteral("Refused: too deep"));
    EXPECT_EQ(line->text(), QStringLiteral("Refused: too deep"));
    world.clock.advance(5s);
    window->showStatus(QStringLiteral("Another"));
    world.clock.advance(5s);
    EXPECT_EQ(line->text(), QStringLiteral("Another")) << "the first one's time is not the second one's";
    world.clock.advance(5s);
    EXPECT_EQ(line->text(), QString());
    const QWidget alone;
    SettingsWindow::showStatus(&alone, QStringLiteral("to nobody"));
}

TEST_F(SettingsTest, DroppedDocumentsAreOpenedOnceTheDragIsOver)
{
    open();
    auto *veil = child<QWidget>("dropVeil");
    const auto enter = [&](const QList<QUrl> &urls, QWidget *over = nullptr) {
        QMimeData data;
        data.setUrls(urls);
        QDragEnterEvent event({10, 10}, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
        event.ignore();
        QApplication::sendEvent(over ? over : window.get(), &event);
        return event.isAccepted();
    };
    EXPECT_FALSE(enter({QUrl(QStringLiteral("https://example.org"))}));
    EXPECT_FALSE(veil->isVisible());
    // The list makes links of other files.
    QWidget *list = window->findChild<LinkTreeView *>()->viewport();
    EXPECT_TRUE(enter({QUrl::fromLocalFile(QStringLiteral("/tmp/report.pdf"))}, list));
    EXPECT_FALSE(veil->isVisible());
    EXPECT_TRUE(enter({QUrl::fromLocalFile(QStringLiteral("/tmp/A.OVEXPORT"))}, list));
    EXPECT_TRUE(veil->isVisible());
    const QList<QUrl> urls{QUrl::fromLocalFile(QStringLiteral("/tmp/a.ovexport")),
                           QUrl(QStringLiteral("https://example.org"))};
    for (const bool taken : {true, false}) {
        world.exchange.takesDrops = taken;
        EXPECT_TRUE(enter(urls));
        EXPECT_TRUE(veil->isVisible());
        QMimeData data;
        data.setUrls(urls);
        QDropEvent drop(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(window.get(), &drop);
        EXPECT_FALSE(veil->isVisible());
        EXPECT_TRUE(world.exchange.asked.isEmpty());
        world.clock.advance(0ms);
        EXPECT_EQ(std::exchange(world.exchange.asked, {}), QStringList{QStringLiteral("dropped:/tmp/a.ovexport")});
        EXPECT_EQ(child<QLabel>("status")->text().isEmpty(), taken) << "a refusal is said";
    }
}

TEST_F(SettingsTest, EachButtonOfTheCopiesAsksForItsDialog)
{
    open();
    for (const char *name : {"export", "import", "exportBookmarks", "importBookmarks", "importLinkFolder"}) {
        child<QPushButton>(name)->click();
        EXPECT_EQ(std::exchange(world.exchange.asked, {}), QStringList{QString::fromLatin1(name)});
    }
}

TEST_F(SettingsTest, EveryLibraryOfTheBuildHasItsLicence)
{
    const QHash<QString, QString> names{{QStringLiteral("SQLITE"), QStringLiteral("SQLite")},
                                        {QStringLiteral("ZSTD"), QStringLiteral("Zstandard")},
                                        {QStringLiteral("NETTLE"), QStringLiteral("Nettle")},
                                        {QStringLiteral("SYSTEMD"), QStringLiteral("systemd")},
                                        {QStringLiteral("GIO"), QStringLiteral("GLib")},
                                        {QStringLiteral("GLIB"), QStringLiteral("GLib")},
                                        {QStringLiteral("GUMBO"), QStringLiteral("Gumbo")},
                                        {QStringLiteral("PLIST"), QStringLiteral("libplist")},
                                        {QStringLiteral("NL"), QStringLiteral("libnl")},
                                        {QStringLiteral("XCB"), QStringLiteral("XCB")},
                                        {QStringLiteral("ICAL"), QStringLiteral("libical")},
                                        {QStringLiteral("ECAL"), QStringLiteral("Evolution Data Server")},
                                        {QStringLiteral("SECRET"), QStringLiteral("libsecret")},
                                        {QStringLiteral("SODIUM"), QStringLiteral("libsodium")},
                                        {QStringLiteral("WAYLAND"), QStringLiteral("Wayland")},
                                        {QStringLiteral("XKB"), QStringLiteral("xkbcommon")},
                                        {QStringLiteral("STARTUP"), QStringLiteral("startup-notification")},
                                        {QStringLiteral("CANBERRA"), QStringLiteral("libcanberra")}};
    QStringList listed;
    for (const AboutLicence &licence : aboutLicences({}))
        listed += licence.name;
    QFile build(QStringLiteral(ORVELLE_SOURCE_DIR "/CMakeLists.txt"));
    ASSERT_TRUE(build.open(QFile::ReadOnly));
    static const QRegularExpression module(QStringLiteral("pkg_check_modules\\(([A-Z0-9]+)"));
    const QString text = QString::fromUtf8(build.readAll());
    int modules = 0;
    for (auto found = module.globalMatch(text); found.hasNext(); ++modules) {
        const QString name = found.next().captured(1);
        EXPECT_TRUE(listed.contains(names.value(name))) << "the About tab tells no licence of " << qPrintable(name);
    }
    EXPECT_GT(modules, 0);
}

TEST_F(SettingsTest, LicencesCanBeRead)
{
    open();
    for (const char *name : {"licence.Orvelle", "licence.Phosphor Icons"}) {
        child<QPushButton>(name)->click();
        auto *dialog = window->findChild<QDialog *>(QStringLiteral("LicenceText"));
        ASSERT_NE(dialog, nullptr);
        EXPECT_TRUE(dialog->findChild<QPlainTextEdit *>()->toPlainText().contains(QStringLiteral("copy"))) << name;
        delete dialog;
    }
}

TEST_F(SettingsTest, TheWelcomeAddsASampleAndLeadsToBookmarks)
{
    open();
    child<QPushButton>("showWelcome")->click();
    auto *welcome = window->findChild<InfoView *>();
    auto *add = welcome->findChild<QPushButton *>(QStringLiteral("addSample"));
    add->click();
    EXPECT_FALSE(add->isEnabled()) << "once is enough";
    ASSERT_EQ(world.links.links().size(), 1);
    const LinkItem group = world.links.links().front();
    ASSERT_GE(group.children->size(), 3);
    for (const LinkItem &item : *group.children) {
        EXPECT_EQ(item.type == LinkType::Folder, item.bookmarkData.has_value()) << qPrintable(item.name);
        EXPECT_EQ(item.type == LinkType::Note, item.noteContent.has_value()) << qPrintable(item.name);
    }
    EXPECT_TRUE(world.links.undo());
    EXPECT_TRUE(world.links.links().isEmpty());
    welcome->findChild<QPushButton *>(QStringLiteral("welcomeImport"))->click();
    EXPECT_FALSE(welcome->isVisible());
    EXPECT_EQ(world.exchange.asked, QStringList{QStringLiteral("importBookmarks")});
}

TEST_F(SettingsTest, WelcomeComesOnceOnTheFirstLaunchEver)
{
    open(true);
    EXPECT_EQ(world.defaults.get<bool>(QStringLiteral("HasLaunchedBefore")), true);
    EXPECT_EQ(window->findChild<InfoView *>(), nullptr);
    world.clock.advance(300ms);
    EXPECT_NE(window->findChild<InfoView *>(), nullptr);

    open();
    world.clock.advance(1min);
    EXPECT_EQ(window->findChild<InfoView *>(), nullptr);
}

TEST_F(SettingsTest, DebugButtonsFollowTheModeAndClearAsksFirst)
{
    ASSERT_TRUE(world.defaults.write(QStringLiteral("debug_X"), true));
    open();
    child<QPushButton>("clearDebugData")->click();
    world.alerts.userChooses(1);
    EXPECT_TRUE(world.defaults.value(QStringLiteral("debug_X")));
    child<QPushButton>("enterDebugMode")->click();
    EXPECT_TRUE(world.debugMode.isDebugMode());
    EXPECT_FALSE(child<QPushButton>("enterDebugMode")->isEnabled());
    EXPECT_FALSE(child<QPushButton>("clearDebugData")->isEnabled());
    child<QPushButton>("exitDebugMode")->click();
    EXPECT_FALSE(world.debugMode.isDebugMode());
    child<QPushButton>("clearDebugData")->click();
    world.alerts.userChooses(0);
    EXPECT_FALSE(world.defaults.value(QStringLiteral("debug_X")));
}

TEST_F(SettingsTest, TheTabKeyGoesDownThePages)
{
    openActive();
    for (const char *name : {"about", "sync"}) {
        window->showTab(QString::fromLatin1(name));
        auto *page = child<QWidget>(name);
        int last = 0;
        for (QWidget *at = page->nextInFocusChain(); at != page; at = at->nextInFocusChain()) {
            if (!page->isAncestorOf(at) || !(at->focusPolicy() & Qt::TabFocus) || !at->isVisible())
                continue;
            const int bottom = at->mapTo(page, QPoint(0, at->height())).y();
            EXPECT_GE(bottom, last) << name << ": " << at->objectName().toStdString();
            last = at->mapTo(page, QPoint()).y();
        }
    }
}

TEST_F(SettingsTest, TheButtonThatMovesAWidgetKeepsTheFocus)
{
    openActive();
    window->showTab(QStringLiteral("widgets"));
    child<WidgetOrderList>("widgetOrder")->setCurrentRow(3);
    const WidgetType moved = world.widgetOrder.order().at(3);
    auto *up = child<QPushButton>("moveUp");
    up->setFocus();
    for (int times = 0; times < 2; ++times) {
        QTest::keyClick(up, Qt::Key_Space);
        EXPECT_TRUE(up->hasFocus());
    }
    EXPECT_EQ(world.widgetOrder.order().at(1), moved);
}

class WidgetOrderListTest : public testing::Test
{
protected:
    using W = WidgetType;

    WidgetOrderListTest()
    {
        list.resize(300, 400);
        list.show();
    }

    /// Drops the widget in one row on another row, `offset` pixels from its middle.
    void drag(int from, int to, int offset)
    {
        list.setCurrentRow(from);
        list.dropSelectedAt(list.visualItemRect(list.item(to)).center() + QPoint(0, offset));
    }

    struct List : WidgetOrderList {
        using WidgetOrderList::dropSelectedAt;
        using WidgetOrderList::WidgetOrderList;
    };

    test::UiWorld world;
    List list{world.widgetOrder};
};

TEST_F(WidgetOrderListTest, DroppedWidgetLandsDirectlyBeforeTheTarget)
{
    for (const int offset : {-8, 8}) { // either half of the row
        world.widgetOrder.setOrder(defaultWidgetOrder());
        drag(0, 2, offset);
        EXPECT_EQ(world.widgetOrder.order().mid(0, 3), (QList<W>{W::QuickLaunch, W::Clipboard, W::Calendar}));
        drag(6, 0, offset);
        EXPECT_EQ(world.widgetOrder.order().front(), W::Timer);
        EXPECT_EQ(list.selectedWidget(), W::Timer) << "the moved one stays selected";
        const QList<W> before = world.widgetOrder.order();
        drag(3, 3, offset);
        EXPECT_EQ(world.widgetOrder.order(), before);
    }
}

TEST_F(WidgetOrderListTest, AltWithArrowsMovesUpToTheEnds)
{
    list.setCurrentRow(5);
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(&list, Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(world.widgetOrder.order().back(), W::Network);
    QTest::keyClick(&list, Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(world.widgetOrder.order().at(5), W::Network);
    QTest::keyClick(&list, Qt::Key_Up);
    EXPECT_EQ(list.selectedWidget(), W::SystemInfo) << "a plain arrow only selects";
}

} // namespace orvelle
