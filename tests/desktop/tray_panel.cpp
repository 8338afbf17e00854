#include "desktop/tray_tools.h"
#include "platform/freedesktop/DesktopColorScheme.h"
#include "platform/freedesktop/SystemClock.h"
#include "platform/freedesktop/tray/FreedesktopStatusItem.h"

#include <QProcess>

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

constexpr QRgb marker = qRgb(255, 0, 255);

/// Where the marker colour shows on the screen; empty while it does not.
QRect markedArea()
{
    const QImage screen = screenshot();
    QRect area;
    for (int y = 0; y < screen.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(screen.constScanLine(y));
        for (int x = 0; x < screen.width(); ++x) {
            if ((line[x] & 0xffffff) == (marker & 0xffffff))
                area |= QRect(x, y, 1, 1);
        }
    }
    return area;
}

/// Run by ctest within tint2 and within xfce4-panel; without a panel there is
/// nothing to test.
TEST(PanelTest, ShowsTheIconOnceAndAnswersRealClicks)
{
    SystemClock clock;
    DesktopColorScheme colors(QDBusConnection::sessionBus());
    FreedesktopStatusItem item(clock, colors);
    item.setPainter([](int side, const QColor &) { return paintFrame(side, QColor::fromRgb(marker)); });
    item.setTitle(u"Orvelle"_s);
    item.setHostMenu({{1, u"Settings"_s, {}, false}, {2, u"Quit"_s, {}, false}});
    QList<QPoint> activations, contextMenus;
    QObject::connect(&item, &StatusItem::activated, [&](QPoint at) { activations += at; });
    QObject::connect(&item, &StatusItem::contextMenuRequested, [&](QPoint at) { contextMenus += at; });
    QList<StatusItem::Host> hosts;
    QObject::connect(&item, &StatusItem::hostChanged, [&](StatusItem::Host host) { hosts += host; });
    item.show();
    ASSERT_TRUE(waitFor([&] { return !hosts.isEmpty(); }));
    if (hosts.first() == StatusItem::Host::None)
        GTEST_SKIP() << "no panel here";

    QRect icon, seen;
    // It has its place when two looks agree.
    ASSERT_TRUE(waitFor([&] {
        seen = std::exchange(icon, markedArea());
        waitFor([] { return false; }, 100);
        return !icon.isEmpty() && icon == seen;
    }));
    EXPECT_LE(icon.width(), 48) << "one icon, not two side by side";
    EXPECT_LE(std::abs(icon.width() - icon.height()), 1);

    clickAt(icon.center());
    ASSERT_TRUE(waitFor([&] { return activations.size() == 1; }));
    EXPECT_TRUE(icon.adjusted(-16, -16, 16, 16).contains(activations.first()))
        << activations.first().x() << ' ' << activations.first().y();
    if (hosts.last() == StatusItem::Host::Embedded) { // the other kind draws its own menu
        clickAt(icon.center(), 3);
        EXPECT_TRUE(waitFor([&] { return contextMenus.size() == 1; }));
    }
    settle();
    EXPECT_EQ(activations.size(), 1);
}

} // namespace
} // namespace orvelle::test
