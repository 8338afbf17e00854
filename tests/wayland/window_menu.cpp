#include "ui/common/MessageAlerts.h"
#include "wayland/MenuFixture.h"

#include <QDialog>
#include <QRasterWindow>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

/// As under a compositor that has no layers: a window that this one places.
class WaylandWindowMenu : public WaylandMenu
{
protected:
    void SetUp() override
    {
        WaylandMenu::SetUp();
        popup.setOverlayShell(nullptr);
    }
    bool isClosed()
    {
        return waitFor([this] { return chosen.has_value(); });
    }
    static void showWorkspace(const QString &name)
    {
        EXPECT_EQ(QProcess::execute(u"swaymsg"_s, {u"--quiet"_s, u"workspace"_s, name}), 0);
    }
    /// Opens the menu, which then has the keyboard.
    void openWithKeyboard()
    {
        openAt({400, 300});
        EXPECT_TRUE(waitFor([this] { return popup.panels().constFirst()->windowHandle()->isActive(); }));
    }
};

// Comes first: once a window was used, the toolkit ties the menu to that one, and
// then it is where it takes itself to be.
TEST_F(WaylandWindowMenu, APressInAnotherWindowOfOursClosesIt)
{
    QRasterWindow other;
    other.show();
    ASSERT_TRUE(waitFor([&other] { return other.isActive(); }));
    openAt({400, 300});
    // Where the menu takes itself to be, but the compositor has not put it.
    pointer.moveTo(middleOf(0, 1));
    pointer.press();
    pointer.release();
    EXPECT_TRUE(isClosed());
    EXPECT_EQ(chosen->kind, MenuAction::Kind::None) << "the press was on none of its rows";
}

TEST_F(WaylandWindowMenu, ClosesByEscapeAndWithTheFocus)
{
    openWithKeyboard();
    type({u"Escape"_s});
    EXPECT_TRUE(isClosed());
    openWithKeyboard();
    type({u"Down"_s, u"Down"_s, u"Return"_s});
    EXPECT_TRUE(isClosed());
    EXPECT_EQ(chosen, entry(u"two"_s).action);
    openWithKeyboard();
    showWorkspace(u"another"_s);
    EXPECT_TRUE(isClosed()) << "another window, or none, has the focus";
    showWorkspace(u"1"_s);
}

/// Or it would open behind it, without the focus, and block it.
TEST(WaylandAlert, BelongsToTheWindowInUse)
{
    QWidget window;
    window.show();
    ASSERT_TRUE(waitFor([&window] { return QApplication::activeWindow() == &window; }));
    MessageAlerts alerts;
    int answer = -1;
    Alert alert;
    alert.message = u"A question"_s;
    alert.buttons = {u"Yes"_s, u"No"_s};
    alerts.show(alert, [&answer](int button) { answer = button; });
    auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->windowHandle()->transientParent(), window.windowHandle());
    EXPECT_TRUE(waitFor([dialog] { return dialog->isActiveWindow(); }));
    dialog->reject();
    EXPECT_TRUE(waitFor([&answer] { return answer == 1; }));
}

} // namespace
} // namespace orvelle::test
