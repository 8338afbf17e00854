#include "SyncTest.h"

#include <cmath>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace orvelle::test {

namespace {

constexpr auto dateKey = "orvelle_settingsModifiedAt";

class CloudSyncSettingsTest : public SyncTest
{
protected:
    /// Writes settings as another machine that has the same tree would.
    void otherSets(SyncMachine &like, const std::optional<QString> &icon, Timestamp date)
    {
        ExportData document = documentOf(like.links().links());
        document.settingsModifiedAt = date;
        if (icon) {
            document.generalSettings.emplace();
            document.generalSettings->menuletIcon = *icon;
        }
        place.otherMachineWrites(file, encodeExchange(document));
    }
    static Timestamp dateOf(SyncMachine &machine)
    {
        return machine.defaults.get<Timestamp>(QString::fromLatin1(dateKey)).value_or(Timestamp{});
    }
    /// Settings of an earlier run, with their date.
    static void had(SyncMachine &machine, const QString &icon, Timestamp date)
    {
        machine.settings().setIcon(icon);
        ASSERT_TRUE(machine.defaults.write(QString::fromLatin1(dateKey), date));
        machine.restart();
    }
    QString iconInFile()
    {
        const auto document = decodeExchange(place.bytes(file));
        return document && document->generalSettings ? document->generalSettings->menuletIcon.value_or(QString())
                                                     : QString();
    }
    void expectQuiet(SyncMachine &machine)
    {
        const int writes = place.writeCount();
        machine.restart();
        clock.advance(600s);
        EXPECT_EQ(place.writeCount(), writes);
    }
};

} // namespace

TEST_F(CloudSyncSettingsTest, ofTwoThatAreEquallyOldTheSameOneWinsWhoeverIsFirst)
{
    QStringList winners;
    const Timestamp date{std::floor(clock.now().seconds) - 100};
    for (const bool swapped : {false, true}) {
        FakeCloudPlace there(clock);
        SyncMachine a(clock, there, u"A"_s);
        SyncMachine b(clock, there, u"B"_s);
        b.container.setOnline(false);
        had(a, swapped ? u"moon"_s : u"heart"_s, date);
        had(b, swapped ? u"heart"_s : u"moon"_s, date + 0.4);
        add(a, u"one"_s);
        settle();
        b.container.setOnline(true);
        settle();
        settle();
        EXPECT_EQ(a.settings().icon(), b.settings().icon());
        winners += a.settings().icon();
        const int writes = there.writeCount();
        a.restart();
        b.restart();
        clock.advance(600s);
        EXPECT_EQ(there.writeCount(), writes) << "nothing goes back and forth";
    }
    EXPECT_EQ(winners.first(), winners.last());
}

TEST_F(CloudSyncSettingsTest, equallyOldOnesOfAProgramThatNeverTakesOursAreAnsweredOnce)
{
    SyncMachine a(clock, place, u"A"_s);
    add(a, u"one"_s);
    settle();
    a.settings().setIcon(u"mine"_s);
    settle();
    for (const char *icon : {"a", "b", "c", "d"}) { // with smaller and greater digests
        SCOPED_TRACE(icon);
        const int writes = place.writeCount();
        otherSets(a, QString::fromLatin1(icon), Timestamp{std::floor(dateOf(a).seconds)});
        settle();
        EXPECT_EQ(a.settings().icon(), u"mine"_s);
        EXPECT_EQ(iconInFile(), u"mine"_s);
        EXPECT_EQ(place.writeCount(), writes + 2) << "theirs and the answer";
        expectQuiet(a);
    }
}

TEST_F(CloudSyncSettingsTest, whatCannotBeTakenOverIsNoReasonToWrite)
{
    SyncMachine a(clock, place, u"A"_s);
    add(a, u"one"_s);
    settle();
    a.settings().setIcon(u"mine"_s);
    settle();
    otherSets(a, {}, clock.now());
    const int writes = place.writeCount();
    settle();
    EXPECT_EQ(dateOf(a).seconds, std::floor(dateOf(a).seconds)) << "they were taken over";
    expectQuiet(a);
    EXPECT_EQ(place.writeCount(), writes);
}

TEST_F(CloudSyncSettingsTest, anEditIsNewerThanWhatItWasMadeOnAlsoWithinASecond)
{
    SyncMachine a(clock, place, u"A"_s);
    add(a, u"one"_s);
    settle();
    for (const char *icon : {"a", "b", "c", "d"}) { // with smaller and greater digests
        SCOPED_TRACE(icon);
        const Timestamp theirs{std::floor(clock.now().seconds) + 60}; // a clock that is ahead
        otherSets(a, u"theirs"_s, theirs);
        clock.advance(std::chrono::milliseconds(qRound64((theirs - clock.now()) * 1000) + 500));
        ASSERT_EQ(a.settings().icon(), u"theirs"_s);
        a.settings().setIcon(QString::fromLatin1(icon));
        EXPECT_GE(dateOf(a), theirs + 1);
        settle();
        EXPECT_EQ(iconInFile(), QString::fromLatin1(icon));
    }
}

} // namespace orvelle::test
