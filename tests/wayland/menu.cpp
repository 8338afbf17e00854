#include "desktop/tray_tools.h"
#include "platform/freedesktop/wayland/LayerShell.h"
#include "ui/menu/MenuPopup.h"
#include "wayland/VirtualPointer.h"

#include <QApplication>
#include <QProcess>
#include <QScreen>

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

MenuEntry entry(const QString &title, MenuEntry::Kind kind = MenuEntry::Kind::Item)
{
    MenuEntry made;
    made.kind = kind;
    made.title = title;
    made.action = {MenuAction::Kind::OpenLink, QUuid::createUuidV5(QUuid(), title)};
    return made;
}

/// The popup as a layer over the screen of a real compositor, with a mouse and
/// a keyboard of the test's own.
class WaylandMenu : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(shell.isAvailable()) << "the compositor has no layer-shell";
        ASSERT_TRUE(pointer.isThere());
        popup.setOverlayShell(&shell);
    }

    /// The toolkit may crash when a window goes right after a frame.
    void TearDown() override
    {
        popup.close();
        EXPECT_TRUE(waitFor([] { return QApplication::topLevelWidgets().isEmpty(); }));
    }

    /// Opens the menu under a resting pointer, and waits for the first frame.
    void openAt(const QPoint &place)
    {
        pointer.moveTo(place);
        bool opened = false;
        const auto frame = QObject::connect(&popup, &MenuPopup::opened, &popup, [&opened] { opened = true; });
        chosen.reset();
        popup.present({{entry(u"one"_s), entry(u"two"_s), entry(u"more"_s, MenuEntry::Kind::Submenu)}}, {{}, false},
                      [this](MenuAction action) { chosen = action; });
        EXPECT_TRUE(waitFor([&opened] { return opened; }));
        QObject::disconnect(frame);
    }
    QPoint middleOf(int level, int row) const
    {
        const MenuPanel &panel = *popup.panels().at(level);
        return panel.geometry().topLeft() + panel.rowRect(row).center();
    }
    static void type(const QStringList &keys)
    {
        QStringList arguments{u"-s"_s, u"200"_s};
        for (const QString &key : keys)
            arguments += {u"-k"_s, key, u"-s"_s, u"100"_s};
        QProcess process;
        process.start(u"wtype"_s, arguments);
        EXPECT_TRUE(waitFor([&process] { return process.state() == QProcess::NotRunning; }));
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().constData();
    }

    LayerShell shell;
    VirtualPointer pointer{QGuiApplication::primaryScreen()->size()};
    std::optional<MenuAction> chosen;
    MenuPopup popup{[](const MenuEntry &) { return QList<MenuEntry>{entry(u"inner"_s)}; }};
};

TEST_F(WaylandMenu, OpensAtThePointerAndAClickChooses)
{
    const QPoint place(400, 300);
    openAt(place);
    ASSERT_EQ(popup.panels().size(), 1);
    const QRect panel = popup.panels().constFirst()->geometry();
    EXPECT_LT((panel.topLeft() - place).manhattanLength(), 20);
    EXPECT_LT(panel.height(), 200) << "not over the whole screen";

    pointer.moveTo(middleOf(0, 1));
    EXPECT_TRUE(waitFor([this] { return popup.panels().constFirst()->currentRow() == 1; }));
    pointer.press();
    pointer.release();
    EXPECT_TRUE(waitFor([this] { return chosen.has_value(); }));
    EXPECT_EQ(chosen, entry(u"two"_s).action);
    EXPECT_FALSE(popup.isOpen());
}

TEST_F(WaylandMenu, StaysOnTheScreen)
{
    const QSize screen = QGuiApplication::primaryScreen()->size();
    openAt({screen.width() - 3, screen.height() - 3});
    const QRect panel = popup.panels().constFirst()->geometry();
    EXPECT_TRUE(QRect({}, screen).contains(panel)) << panel.x() << "," << panel.y();
}

TEST_F(WaylandMenu, APressBesideItClosesIt)
{
    openAt({400, 300});
    pointer.moveTo({20, 20});
    pointer.press();
    EXPECT_TRUE(waitFor([this] { return chosen.has_value(); }));
    pointer.release();
    EXPECT_EQ(chosen->kind, MenuAction::Kind::None);
}

TEST_F(WaylandMenu, SubmenusOpenBesideTheirRow)
{
    openAt({400, 300});
    pointer.moveTo(middleOf(0, 2));
    ASSERT_TRUE(waitFor([this] { return popup.panels().size() == 2; }));
    EXPECT_FALSE(popup.panels().at(0)->geometry().adjusted(8, 0, -8, 0).intersects(popup.panels().at(1)->geometry()));
    pointer.moveTo(middleOf(1, 0));
    pointer.press();
    pointer.release();
    EXPECT_TRUE(waitFor([this] { return chosen.has_value(); }));
    EXPECT_EQ(chosen, entry(u"inner"_s).action);
}

TEST_F(WaylandMenu, HasTheKeyboard)
{
    const struct {
        QStringList keys;
        MenuAction expected;
    } cases[] = {
        {{u"Down"_s, u"Down"_s, u"Return"_s}, entry(u"two"_s).action},
        {{u"Up"_s, u"Right"_s, u"Return"_s}, entry(u"inner"_s).action},
        {{u"t"_s, u"Return"_s}, entry(u"two"_s).action},
        {{u"Escape"_s}, {}},
    };
    for (const auto &each : cases) {
        openAt({400, 300});
        type(each.keys);
        ASSERT_TRUE(waitFor([this] { return chosen.has_value(); })) << qPrintable(each.keys.join(u' '));
        EXPECT_EQ(chosen, each.expected) << qPrintable(each.keys.join(u' '));
    }
}

TEST_F(WaylandMenu, OpensAgainAndAgain)
{
    for (int i = 0; i < 20; ++i) {
        openAt({100 + 10 * i, 100});
        popup.close();
        ASSERT_TRUE(waitFor([this] { return chosen.has_value(); })) << i;
    }
}

} // namespace
} // namespace orvelle::test

int main(int argc, char **argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    orvelle::LayerShell::allowRolelessWindows();
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
