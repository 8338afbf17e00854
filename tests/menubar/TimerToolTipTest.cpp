#include "menubar/TimerToolTip.h"

#include "base/Notifications.h"
#include "base/Text.h"
#include "services/DebugModeManager.h"
#include "support/FakeHost.h"
#include "support/FakeUserDefaults.h"
#include "support/Fakes.h"
#include "widgets/timer/TimerManager.h"

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class CountingStatusItem : public FakeStatusItem
{
public:
    int changes = 0;
    void setToolTip(const QString &told) override
    {
        ++changes;
        FakeStatusItem::setToolTip(told);
    }
};

TEST(TimerToolTip, TellsWhatIsLeftInMinutesAndAtTheEndInSeconds)
{
    FakeClock clock;
    FakeUserDefaults defaults;
    Notifications notifications;
    DebugModeManager debugMode(defaults, notifications);
    FakeAlerts alerts;
    FakeSounds sounds;
    FakeDesktopNotifications desktop;
    TimerManager timer({defaults, debugMode, notifications, clock, alerts, sounds, desktop, [] {}});
    CountingStatusItem item;
    const TimerToolTip toolTip(timer, item, clock, notifications);
    EXPECT_EQ(item.changes, 0) << "nothing runs";

    timer.start(5400);
    struct {
        std::chrono::milliseconds after;
        const char16_t *left;
        int changes;
    } const steps[] = {
        {0s, u"1 h 30", 1},         {59s + 500ms, u"1 h 30", 1}, {1s, u"1 h 29", 2}, {84min, u"5 min", 86},
        {3min + 55s, u"2 min", 89}, {5s, u"1 min", 90},          {1s, u"59 s", 91},  {58s, u"1 s", 149},
    };
    for (const auto &step : steps) {
        clock.advance(step.after);
        EXPECT_EQ(item.toolTip, text("timer.toolTip %@"_text, QString::fromUtf16(step.left)));
        EXPECT_EQ(item.changes, step.changes);
    }
    clock.advance(1s);
    EXPECT_EQ(item.toolTip, u"Orvelle"_s);

    timer.start(3600);
    clock.sleep(50min);
    clock.advance(0s);
    EXPECT_EQ(item.toolTip, text("timer.toolTip %@"_text, u"10 min"_s));
    timer.cancel();
    EXPECT_EQ(item.toolTip, u"Orvelle"_s);
    const int before = item.changes;
    clock.advance(1h);
    EXPECT_EQ(item.changes, before);
}

} // namespace
} // namespace orvelle::test
