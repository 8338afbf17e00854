#include "services/DebugModeManager.h"

#include "base/Notifications.h"
#include "support/FakeUserDefaults.h"
#include "support/LogCapture.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

TEST(DebugModeManager, SwitchesKeysBeforeItAnnouncesTheSwitch)
{
    FakeUserDefaults defaults;
    Notifications notifications;
    LogCapture log;
    DebugModeManager debugMode(defaults, notifications);
    QStringList seen;
    QObject::connect(&notifications, &Notifications::debugModeChanged,
                     [&] { seen += debugMode.key(u"WidgetOrder"_s); });

    EXPECT_FALSE(debugMode.isDebugMode());
    EXPECT_EQ(debugMode.key(u"WidgetOrder"_s), u"WidgetOrder"_s);
    debugMode.toggle();
    debugMode.toggle();

    EXPECT_EQ(seen, QStringList({u"debug_WidgetOrder"_s, u"WidgetOrder"_s}));
    EXPECT_EQ(defaults.writeCount(), 0) << "the mode is not persisted";
    EXPECT_EQ(log.lines(),
              QStringList({u"DebugMode: DebugModeManager initialisé - Mode debug désactivé au démarrage"_s,
                           u"DebugMode: Mode debug basculé: true"_s, u"DebugMode: Mode debug basculé: false"_s}));
}

TEST(DebugModeManager, ClearsOnlyKeysThatBeginWithThePrefix)
{
    FakeUserDefaults defaults;
    Notifications notifications;
    DebugModeManager debugMode(defaults, notifications);
    for (const QString &key : {u"debug_a"_s, u"debug_debug_b"_s, u"my_debug_a"_s, u"Debug_a"_s, u"debug"_s})
        ASSERT_TRUE(defaults.write(key, true));
    LogCapture log;
    debugMode.clearDebugData();
    EXPECT_EQ(defaults.keys(), QStringList({u"Debug_a"_s, u"debug"_s, u"my_debug_a"_s}));
    EXPECT_EQ(log.lines(), QStringList(u"DebugMode: Données du mode debug effacées"_s));
}

} // namespace
} // namespace orvelle::test
