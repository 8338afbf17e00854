#include "app/WidgetJobs.h"

#include "app/InactiveJobs.h"
#include "base/Notifications.h"
#include "menubar/GlobalShortcut.h"
#include "support/FakeHotKeys.h"
#include "support/FakeUserDefaults.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

class OtherJobs : public InactiveJobs
{
public:
    QStringList calls;

    bool isWidgetEnabled(WidgetType type) const override { return type == WidgetType::Weather; }
    void startMonitoring(WidgetType type) override { calls += u"start "_s + rawValue(type); }
    void startLiveWidgets() override { calls += u"live"_s; }
    void stopLiveWidgets() override { calls += u"still"_s; }
    void checkClipboardNow() override { calls += u"clipboard"_s; }
};

TEST(WidgetJobs, AskTheTableAndForTheRestTheOthers)
{
    OtherJobs others;
    QStringList &calls = others.calls;
    FakeUserDefaults defaults;
    Notifications notifications;
    FakeHotKeys hotKeys;
    GlobalShortcut shortcut({defaults, notifications, hotKeys});
    WidgetJobs jobs(others, shortcut);
    jobs.add(WidgetType::Network, {[] { return true; },
                                   [] { return true; },
                                   [&] { calls += u"start ours"_s; },
                                   [&] { calls += u"live ours"_s; },
                                   [&] { calls += u"still ours"_s; },
                                   {}});
    jobs.add(WidgetType::Timer, {[] { return false; }, [] { return false; }, {}, {}, {}, {}});
    struct {
        WidgetType type;
        bool enabled;
        bool menuBarOnly;
    } const cases[] = {{WidgetType::Network, true, true},
                       {WidgetType::Timer, false, false},
                       {WidgetType::Weather, true, false},
                       {WidgetType::Calendar, false, false}};
    for (const auto &each : cases) {
        EXPECT_EQ(jobs.isWidgetEnabled(each.type), each.enabled);
        EXPECT_EQ(jobs.isMenuBarOnly(each.type), each.menuBarOnly);
        jobs.startMonitoring(each.type);
    }
    jobs.startLiveWidgets();
    jobs.stopLiveWidgets();
    jobs.checkClipboardNow();
    EXPECT_EQ(calls.join(u", "_s), u"start ours, start weather, start calendar, live ours, live, still ours, still, "
                                   "clipboard"_s);
    EXPECT_EQ(jobs.makeRow(WidgetType::Weather, nullptr), nullptr);
}

} // namespace
} // namespace orvelle::test
