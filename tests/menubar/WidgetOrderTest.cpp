#include "menubar/MenuTestFakes.h"

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

QStringList names(const QList<WidgetType> &order)
{
    QStringList result;
    for (const WidgetType type : order)
        result += rawValue(type);
    return result;
}

struct WidgetOrder : ::testing::Test {
    FakeUserDefaults defaults;
    Notifications notifications;
    DebugModeManager debugMode{defaults, notifications};

    QStringList loaded() { return names(WidgetOrderManager(defaults, debugMode, notifications).order()); }
    void store(const QStringList &order) { ASSERT_TRUE(defaults.write(QStringLiteral("WidgetOrder"), order)); }
};

TEST_F(WidgetOrder, RepairsWhatIsStored)
{
    EXPECT_EQ(loaded().join(u' '), u"clipboard quickLaunch calendar weather systemInfo network timer");
    store({QStringLiteral("timer"), QStringLiteral("stocks"), QStringLiteral("weather")});
    EXPECT_EQ(loaded().join(u' '), u"timer weather clipboard quickLaunch calendar systemInfo network");
    store({QStringLiteral("timer"), QStringLiteral("timer")});
    EXPECT_EQ(loaded().join(u' '), u"timer timer clipboard quickLaunch calendar weather systemInfo network");
}

TEST_F(WidgetOrder, EachEditSavesAndAnnouncesOnce)
{
    using Edit = void (*)(WidgetOrderManager &);
    struct Case {
        const char *situation;
        Edit edit;
        const char *firstThree; ///< null: nothing may happen
    };
    const Case cases[] = {
        {"down onto another lands above it",
         [](WidgetOrderManager &m) { m.move(WidgetType::Clipboard, WidgetType::Calendar); },
         "quickLaunch clipboard calendar"},
        {"up onto another lands above it",
         [](WidgetOrderManager &m) { m.move(WidgetType::Timer, WidgetType::QuickLaunch); },
         "clipboard timer quickLaunch"},
        {"onto itself", [](WidgetOrderManager &m) { m.move(WidgetType::Timer, WidgetType::Timer); }, nullptr},
        {"onto the one below", [](WidgetOrderManager &m) { m.move(WidgetType::Clipboard, WidgetType::QuickLaunch); },
         nullptr},
        {"first up", [](WidgetOrderManager &m) { m.moveUp(WidgetType::Clipboard); }, nullptr},
        {"last down", [](WidgetOrderManager &m) { m.moveDown(WidgetType::Timer); }, nullptr},
        {"second up", [](WidgetOrderManager &m) { m.moveUp(WidgetType::QuickLaunch); },
         "quickLaunch clipboard calendar"},
        {"second down", [](WidgetOrderManager &m) { m.moveDown(WidgetType::QuickLaunch); },
         "clipboard calendar quickLaunch"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.situation);
        FakeUserDefaults fresh;
        WidgetOrderManager manager(fresh, debugMode, notifications);
        QStringList posted;
        QObject scope;
        QObject::connect(&notifications, &Notifications::syncableSettingsChanged, &scope,
                         [&] { posted += QStringLiteral("settings"); });
        QObject::connect(&notifications, &Notifications::widgetOrderChanged, &scope,
                         [&] { posted += QStringLiteral("order"); });
        c.edit(manager);
        if (c.firstThree) {
            EXPECT_EQ(names(manager.order().mid(0, 3)).join(u' '), QLatin1StringView(c.firstThree));
            EXPECT_EQ(fresh.get<QStringList>(QStringLiteral("WidgetOrder")), names(manager.order()));
        }
        EXPECT_EQ(fresh.writeCount(), c.firstThree ? 1 : 0);
        EXPECT_EQ(posted.join(u' '), c.firstThree ? u"settings order" : u"");
    }
}

TEST_F(WidgetOrder, FollowsDebugModeAndOtherProcesses)
{
    WidgetOrderManager manager(defaults, debugMode, notifications);
    manager.moveUp(WidgetType::QuickLaunch);
    debugMode.toggle();
    EXPECT_EQ(manager.order(), defaultWidgetOrder());
    manager.moveDown(WidgetType::Clipboard);
    EXPECT_TRUE(defaults.value(QStringLiteral("debug_WidgetOrder")));
    debugMode.toggle();
    EXPECT_EQ(manager.order().first(), WidgetType::QuickLaunch);
    defaults.otherProcessWrites(QStringLiteral("WidgetOrder"), QStringList{QStringLiteral("timer")});
    defaults.announceOutsideChanges();
    EXPECT_EQ(manager.order().first(), WidgetType::Timer);
}

} // namespace
} // namespace orvelle::test
