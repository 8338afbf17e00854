#include "base/Notifications.h"
#include "menubar/QuickLaunchManager.h"
#include "services/DebugModeManager.h"
#include "support/FakeApplications.h"
#include "support/FakeUserDefaults.h"
#include "support/LogCapture.h"

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

struct QuickLaunchTest : testing::Test {
    QuickLaunchTest()
    {
        for (const QString &name : {u"Editor"_s, u"Mail"_s, u"Music"_s, u"Paint"_s})
            applications.install(name);
        QObject::connect(&notifications, &Notifications::quickLaunchChanged, [this] { ++changes; });
        QObject::connect(&notifications, &Notifications::syncableSettingsChanged, [this] { ++syncable; });
    }
    static QString fileOf(const char *name) { return u"/apps/%1.desktop"_s.arg(QString::fromLatin1(name).toLower()); }
    /// "Editor - Mail -": the slots as one line.
    static std::string slotsOf(const QuickLaunchManager &of)
    {
        QStringList names;
        for (const auto &app : of.apps())
            names += app ? app->name : u"-"_s;
        return names.join(u' ').toStdString();
    }

    FakeUserDefaults defaults;
    Notifications notifications;
    DebugModeManager debugMode{defaults, notifications};
    FakeApplications applications;
    QuickLaunchManager manager{{defaults, debugMode, notifications, applications}};
    int changes = 0;
    int syncable = 0;
};

TEST_F(QuickLaunchTest, ThereAreAlwaysFourSlots)
{
    struct {
        int stored;
        const char *shown;
    } const cases[] = {{6, "0 1 2 3"}, {2, "0 1 - -"}, {0, "- - - -"}};
    for (const auto &c : cases) {
        QuickLaunchSlots many;
        for (int i = 0; i < c.stored; ++i)
            many += QuickLaunchApp{QUuid::createUuid(), QString::number(i), u"/x"_s, {}};
        ASSERT_TRUE(defaults.write(u"QuickLaunchApps"_s, encodeQuickLaunchSlots(many)));
        const QuickLaunchManager loaded({defaults, debugMode, notifications, applications});
        EXPECT_EQ(slotsOf(loaded), c.shown);
    }
    for (const QByteArray &bytes : {QByteArray("{}"), QByteArray("[{\"id\":7}]"), QByteArray("\xff")}) {
        ASSERT_TRUE(defaults.write(u"QuickLaunchApps"_s, bytes));
        const QuickLaunchManager loaded({defaults, debugMode, notifications, applications});
        EXPECT_EQ(slotsOf(loaded), "- - - -");
    }
}

TEST_F(QuickLaunchTest, SlotsAreFilledMovedEmptiedAndStored)
{
    LogCapture log;
    struct {
        std::function<void()> act;
        const char *shown;
        bool changes;
    } const steps[] = {
        {[this] { manager.setApp(0, fileOf("Editor")); }, "Editor - - -", true},
        {[this] { manager.setApp(4, fileOf("Mail")); }, "Editor - - -", false},
        {[this] { manager.setApp(-1, fileOf("Mail")); }, "Editor - - -", false},
        {[this] { manager.setApp(1, u"/apps/none.desktop"_s); }, "Editor - - -", false},
        {[this] { manager.moveApp(0, 3); }, "- - - Editor", true},
        {[this] { manager.moveApp(3, 3); }, "- - - Editor", false},
        {[this] { manager.moveApp(3, 4); }, "- - - Editor", false},
        {[this] { manager.setApp(1, fileOf("Mail")); }, "- Mail - Editor", true},
        {[this] { manager.moveApp(3, 1); }, "- Editor - Mail", true},
        {[this] { manager.removeApp(1); }, "- - - Mail", true},
        {[this] { manager.removeApp(9); }, "- - - Mail", false},
    };
    for (const auto &step : steps) {
        const int before = changes;
        step.act();
        EXPECT_EQ(slotsOf(manager), step.shown);
        EXPECT_EQ(changes, before + step.changes);
        EXPECT_EQ(syncable, changes);
        const QuickLaunchManager again({defaults, debugMode, notifications, applications});
        EXPECT_EQ(again.apps(), manager.apps());
    }
    EXPECT_TRUE(log.contains(u"QuickLaunchManager: QuickLaunch slot 0 set to Editor"_s));
    EXPECT_EQ(manager.apps().at(3)->bundleIdentifier, u"mail.desktop"_s);
    EXPECT_EQ(manager.apps().at(3)->path, fileOf("Mail"));
    for (const int slot : {-1, 0, 3, 4})
        manager.launchApp(slot);
    EXPECT_EQ(applications.launched, QStringList{u"Mail"_s});
}

TEST_F(QuickLaunchTest, SettingsAreReadAndFollowed)
{
    EXPECT_TRUE(manager.isEnabled());
    EXPECT_EQ(manager.displayStyle(), QuickLaunchDisplayStyle::Souffle);
    manager.setDisplayStyle(QuickLaunchDisplayStyle::Neon);
    manager.setEnabled(false);
    EXPECT_EQ(changes, 2);
    manager.setEnabled(false);
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(defaults.get<QString>(u"QuickLaunchDisplayStyle"_s), u"neon"_s);

    defaults.otherProcessWrites(u"QuickLaunchDisplayStyle"_s, u"baroque"_s);
    defaults.announceOutsideChanges();
    EXPECT_EQ(manager.displayStyle(), QuickLaunchDisplayStyle::Souffle);
    EXPECT_EQ(changes, 3);

    manager.setApp(0, fileOf("Editor"));
    debugMode.toggle();
    EXPECT_EQ(slotsOf(manager), "- - - -");
    manager.setApp(2, fileOf("Paint"));
    debugMode.toggle();
    EXPECT_EQ(slotsOf(manager), "Editor - - -");

    defaults.failWrites(DefaultsError{DefaultsError::Kind::DiskFull, {}});
    manager.removeApp(0);
    EXPECT_EQ(slotsOf(manager), "Editor - - -") << "what is stored counts";
}

} // namespace
} // namespace orvelle::test
