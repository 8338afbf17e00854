#include "ui/common/Theme.h"

#include "platform/Appearance.h"

#include <QApplication>

#include <gtest/gtest.h>

namespace orvelle {
namespace {

class FakeAppearance : public Appearance
{
public:
    bool prefersDark() const override { return m_dark; }
    void desktopTurns(bool dark)
    {
        m_dark = dark;
        emit changed();
    }

private:
    bool m_dark = false;
};

TEST(Theme, FollowsTheDesktopAndGivesTheColoursBack)
{
    const QPalette before = QApplication::palette();
    {
        FakeAppearance desktop;
        const Theme theme(desktop);
        EXPECT_EQ(QApplication::palette(), Theme::legible(before));
        desktop.desktopTurns(true);
        EXPECT_LT(QApplication::palette().color(QPalette::Window).lightness(), 80);
        EXPECT_GT(QApplication::palette().color(QPalette::WindowText).lightness(), 180);
        desktop.desktopTurns(false);
        EXPECT_EQ(QApplication::palette().color(QPalette::Window), before.color(QPalette::Window));
    }
    QApplication::setPalette(before);
}

TEST(Theme, LeavesADarkThemeAlone)
{
    const QPalette before = QApplication::palette();
    QPalette night(QColor(0x10, 0x20, 0x30));
    QApplication::setPalette(night);
    FakeAppearance desktop;
    const Theme theme(desktop);
    desktop.desktopTurns(true);
    EXPECT_EQ(QApplication::palette().color(QPalette::Window), night.color(QPalette::Window));
    QApplication::setPalette(before);
}

} // namespace
} // namespace orvelle
