#include "ui/common/Theme.h"

#include "platform/Appearance.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QIcon>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace orvelle {
namespace {

class FakeAppearance : public Appearance
{
public:
    bool prefersDark() const override { return m_dark; }
    std::optional<QPalette> palette() const override { return m_palette; }
    void desktopTurns(bool dark, const std::optional<QPalette> &palette = {})
    {
        m_dark = dark;
        m_palette = palette;
        emit changed();
    }

private:
    bool m_dark = false;
    std::optional<QPalette> m_palette;
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

TEST(Theme, TakesTheDesktopsColoursWhereTheToolkitMissedThem)
{
    const QPalette before = QApplication::palette();
    const QPalette day(QColor(0xee, 0xef, 0xf0)), night(QColor(0x10, 0x20, 0x30));
    FakeAppearance desktop;
    const Theme theme(desktop);
    const auto window = [] { return QApplication::palette().color(QPalette::Window); };
    desktop.desktopTurns(true, night);
    EXPECT_EQ(window(), night.color(QPalette::Window));
    desktop.desktopTurns(false, day);
    EXPECT_EQ(window(), day.color(QPalette::Window));
    const QPalette evening(QColor(0xe0, 0xd0, 0xc0));
    desktop.desktopTurns(false, evening);
    EXPECT_EQ(window(), evening.color(QPalette::Window)) << "as light as the one before";
    desktop.desktopTurns(false);
    EXPECT_EQ(window(), before.color(QPalette::Window));
    QApplication::setPalette(before);
}

TEST(Theme, TakesTheIconsThatAreDrawnForDarkWindows)
{
    const QPalette before = QApplication::palette();
    const QStringList searched = QIcon::themeSearchPaths();
    QIcon::setThemeName({});
    const QString light = QIcon::themeName();
    const QString dark = light + QStringLiteral("-dark");
    const QTemporaryDir folder;
    ASSERT_TRUE(QDir(folder.path()).mkpath(dark));
    QFile index(folder.filePath(dark + QStringLiteral("/index.theme")));
    ASSERT_TRUE(index.open(QIODevice::WriteOnly));
    index.write("[Icon Theme]\nName=x\nDirectories=16\n[16]\nSize=16\n");
    index.close();
    FakeAppearance desktop;
    const Theme theme(desktop);
    desktop.desktopTurns(true);
    EXPECT_EQ(QIcon::themeName(), light) << "there are no others";
    desktop.desktopTurns(false);
    QIcon::setThemeSearchPaths({folder.path()});
    desktop.desktopTurns(true);
    EXPECT_EQ(QIcon::themeName(), dark);
    desktop.desktopTurns(false);
    EXPECT_EQ(QIcon::themeName(), light);
    QIcon::setThemeSearchPaths(searched);
    QApplication::setPalette(before);
}

} // namespace
} // namespace orvelle
