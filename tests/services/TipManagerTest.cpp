#include "services/TipManager.h"

#include "support/FakeClock.h"
#include "support/FakeUserDefaults.h"
#include "support/Fakes.h"

#include <QDateTime>

#include <gtest/gtest.h>

#include <cstdlib>

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

/// The user's clock, in a zone with summer time.
class TipManagerTest : public testing::Test
{
protected:
    TipManagerTest() : m_zone(qgetenv("TZ")) { setZone("Europe/Paris"); }
    ~TipManagerTest() override { setZone(m_zone); }

    static void setZone(const QByteArray &zone)
    {
        qputenv("TZ", zone);
        tzset();
    }
    void itIs(const char *localTime)
    {
        clock.setNow(Timestamp::fromDateTime(QDateTime::fromString(QString::fromLatin1(localTime), Qt::ISODate)));
    }
    /// A start, and what was asked five seconds later.
    bool start(int button = -1)
    {
        TipManager tips({defaults, clock, alerts, workspace, [this] { ++activated; }}, page);
        tips.recordLaunch();
        tips.presentTipPromptIfNeeded();
        const bool asked = !std::exchange(alerts.shown, {}).isEmpty();
        if (asked && button >= 0)
            alerts.userChooses(button);
        return asked;
    }
    qint64 days() const { return defaults.get<qint64>(u"TipUsageDaysCount"_s).value_or(0); }
    void usedFor(qint64 usedDays) { ASSERT_TRUE(defaults.write(u"TipUsageDaysCount"_s, usedDays)); }

    FakeUserDefaults defaults;
    FakeClock clock;
    FakeAlerts alerts;
    FakeWorkspace workspace;
    QString page = u"https://tips.example/orvelle"_s;
    int activated = 0;

private:
    QByteArray m_zone;
};

TEST_F(TipManagerTest, CountsDaysOfStartsInLocalTime)
{
    struct Step {
        const char *localTime;
        qint64 days;
    };
    const Step steps[] = {
        {"2026-03-28T00:01:00", 1}, {"2026-03-28T23:59:59", 1}, {"2026-03-29T00:00:00", 2},
        {"2026-03-29T23:59:00", 2},                                                         // an hour shorter
        {"2026-03-30T00:01:00", 3}, {"2026-04-10T12:00:00", 4}, {"2026-04-09T12:00:00", 5}, // the clock was set
        {"2026-04-09T13:00:00", 5},
    };
    for (const Step &step : steps) {
        itIs(step.localTime);
        EXPECT_FALSE(start());
        EXPECT_EQ(days(), step.days) << step.localTime;
    }
    EXPECT_EQ(defaults.get<QString>(u"TipLastUsageDay"_s), u"2026-04-09"_s);
}

TEST_F(TipManagerTest, AsksAtTheThirtiethDay)
{
    itIs("2026-01-01T09:00:00");
    for (int day = 1; day < 30; ++day) {
        EXPECT_FALSE(start()) << day;
        EXPECT_FALSE(start()) << day;
        clock.advance(std::chrono::hours(24));
    }
    EXPECT_TRUE(start());
    EXPECT_EQ(activated, 1);
}

TEST_F(TipManagerTest, EachAnswerIsRemembered)
{
    usedFor(40);
    itIs("2026-10-01T09:00:00"); // summer time ends before the day comes
    EXPECT_TRUE(start(1));
    itIs("2026-12-30T08:59:59");
    EXPECT_FALSE(start());
    itIs("2026-12-30T09:00:00");
    EXPECT_TRUE(start(2));
    EXPECT_TRUE(workspace.opened.isEmpty());
    itIs("2036-01-01T00:00:00");
    EXPECT_FALSE(start());

    ASSERT_TRUE(defaults.remove(u"TipPermanentlyDeclined"_s));
    EXPECT_TRUE(start(0));
    EXPECT_EQ(workspace.opened, QStringList(u"url:https://tips.example/orvelle"_s));
    EXPECT_EQ(defaults.get<bool>(u"TipPermanentlyDeclined"_s), true);
    EXPECT_FALSE(start());
}

TEST_F(TipManagerTest, AsksNobodyWithoutAPage)
{
    usedFor(40);
    for (const QString &none : {QString(), u"tips.example"_s, u"http://tips.example"_s, u"file:///bin/sh"_s}) {
        page = none;
        EXPECT_FALSE(start()) << none.toStdString();
    }
    ASSERT_TRUE(defaults.write(u"TipPage"_s, u"https://other.example/tip"_s));
    EXPECT_TRUE(start(0));
    EXPECT_EQ(workspace.opened, QStringList(u"url:https://other.example/tip"_s));
}

TEST_F(TipManagerTest, ADayThatCannotBeStoredIsCountedAtTheNextStart)
{
    itIs("2026-01-01T09:00:00");
    defaults.failWrites(DefaultsError{DefaultsError::Kind::DiskFull, {}});
    start();
    defaults.failWrites(std::nullopt);
    start();
    EXPECT_EQ(days(), 1);
}

} // namespace
} // namespace orvelle::test
