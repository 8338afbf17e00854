#include "platform/freedesktop/calendars/IcsCalendars.h"
#include "platform/freedesktop/calendars/IcsSeries.h"
#include "support/Hostile.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <ctime>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

QByteArray calendar(const QByteArray &events)
{
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n" + events + "END:VCALENDAR\r\n";
}
QByteArray event(const QByteArray &lines)
{
    return "BEGIN:VEVENT\r\nUID:u\r\n" + lines + "\r\nEND:VEVENT\r\n";
}

qint64 utc(const char *iso)
{
    return QDateTime::fromString(QString::fromLatin1(iso), Qt::ISODate).toSecsSinceEpoch();
}

/// "title start/end" in UTC, one after the other, "!" before cancelled and "~" before declined ones.
QString found(const QByteArray &bytes, const char *from, const char *to)
{
    QList<CalendarEvent> events;
    for (const IcsSeries &each : parseIcs(bytes, {}, {}))
        expandIcs(each, utc(from), utc(to), std::chrono::steady_clock::now() + std::chrono::seconds(5), events);
    std::ranges::sort(events, {}, &CalendarEvent::start);
    QStringList all;
    for (const CalendarEvent &each : events)
        all += QLatin1String(each.isCancelled  ? "!"
                             : each.isDeclined ? "~"
                                               : "") +
               each.title + u' ' + each.start.toDateTime().toString(u"MMdd'T'HHmm"_s) + u'/' +
               each.end.toDateTime().toString(u"MMdd'T'HHmm"_s);
    return all.join(u' ');
}

class IcsTest : public testing::Test
{
protected:
    IcsTest()
    {
        qputenv("TZ", "Europe/Paris");
        tzset();
    }
    ~IcsTest() override
    {
        qunsetenv("TZ");
        tzset();
    }
};

constexpr char series[] =
    "SUMMARY:a\r\nDTSTART;TZID=Europe/Paris:20260323T090000\r\nDTEND;TZID=Europe/Paris:20260323T100000";

TEST_F(IcsTest, OccurrencesOfAWeekInSpring)
{
    const QByteArray daily = QByteArray(series) + "\r\nRRULE:FREQ=DAILY";
    struct {
        const char *what;
        QByteArray events;
        const char *expected;
    } const cases[] = {
        {"clocks change", event(daily + ";UNTIL=20260330T070000Z"),
         "a 0328T0800/0328T0900 a 0329T0700/0329T0800 a 0330T0700/0330T0800"},
        {"until by day", event(daily + ";UNTIL=20260328"), "a 0328T0800/0328T0900"},
        {"count", event(daily + ";COUNT=6"), "a 0328T0800/0328T0900"},
        {"weekly", event(QByteArray(series) + "\r\nRRULE:FREQ=WEEKLY;BYDAY=SA,SU"),
         "a 0328T0800/0328T0900 a 0329T0700/0329T0800"},
        {"excluded", event(daily + "\r\nEXDATE;TZID=Europe/Paris:20260328T090000,20260330T090000"),
         "a 0329T0700/0329T0800"},
        {"excluded by day", event(daily + "\r\nEXDATE;VALUE=DATE:20260328\r\nEXDATE:20260330T070000Z"),
         "a 0329T0700/0329T0800"},
        {"added", event(QByteArray(series) + "\r\nRDATE;TZID=Europe/Paris:20260329T120000,20260330T130000"),
         "a 0329T1000/0329T1100 a 0330T1100/0330T1200"},
        {"moved",
         event(daily + ";COUNT=7") +
             event("SUMMARY:b\r\nRECURRENCE-ID;TZID=Europe/Paris:20260328T090000\r\nDTSTART:20260330T150000Z\r\n"
                   "DTEND:20260330T151500Z"),
         "a 0329T0700/0329T0800 b 0330T1500/0330T1515"},
        {"moved here from before",
         event(QByteArray(series) + "\r\nRRULE:FREQ=DAILY;COUNT=2") +
             event("SUMMARY:b\r\nRECURRENCE-ID:20260324T080000Z\r\nDTSTART:20260330T150000Z\r\nDURATION:PT1H"),
         "b 0330T1500/0330T1600"},
        {"one cancelled",
         event(daily + ";COUNT=6") + event("SUMMARY:a\r\nSTATUS:CANCELLED\r\nRECURRENCE-ID:20260328T080000Z\r\n"
                                           "DTSTART:20260328T080000Z\r\nDURATION:PT1H"),
         "!a 0328T0800/0328T0900"},
        {"this and following",
         event(daily) + event("SUMMARY:b\r\nRECURRENCE-ID;RANGE=THISANDFUTURE:20260329T070000Z\r\n"
                              "DTSTART:20260329T090000Z\r\nDTEND:20260329T093000Z"),
         "a 0328T0800/0328T0900 b 0329T0900/0329T0930 b 0330T0900/0330T0930"},
        {"all day", event("SUMMARY:d\r\nDTSTART;VALUE=DATE:20260328\r\nDTEND;VALUE=DATE:20260330"),
         "d 0327T2300/0329T2200"},
        {"one day without end", event("SUMMARY:d\r\nDTSTART;VALUE=DATE:20260329"), "d 0328T2300/0329T2200"},
        {"over midnight", event("SUMMARY:n\r\nDTSTART:20260327T230000Z\r\nDTEND:20260328T020000Z"),
         "n 0327T2300/0328T0200"},
        {"without a zone", event("SUMMARY:f\r\nDTSTART:20260330T090000\r\nDURATION:PT1H"), "f 0330T0700/0330T0800"},
        {"zone by name in a longer one",
         event("SUMMARY:z\r\nDTSTART;TZID=/x.example/1/America/New_York:20260330T090000\r\nDURATION:PT1H"),
         "z 0330T1300/0330T1400"},
        {"zone by Windows", event("SUMMARY:z\r\nDTSTART;TZID=Tokyo Standard Time:20260330T090000\r\nDURATION:PT1H"),
         "z 0330T0000/0330T0100"},
        {"zone of the file",
         "BEGIN:VTIMEZONE\r\nTZID:Here\r\nBEGIN:STANDARD\r\nDTSTART:19700101T000000\r\nTZOFFSETFROM:+0330\r\n"
         "TZOFFSETTO:+0330\r\nEND:STANDARD\r\nEND:VTIMEZONE\r\n" +
             event("SUMMARY:z\r\nDTSTART;TZID=Here:20260330T090000\r\nDURATION:PT1H"),
         "z 0330T0530/0330T0630"},
        {"declined by the only guest",
         event("SUMMARY:i\r\nDTSTART:20260330T090000Z\r\nORGANIZER:mailto:o@example.org\r\n"
               "ATTENDEE:mailto:O@example.org\r\nATTENDEE;PARTSTAT=DECLINED:mailto:me@example.org"),
         "~i 0330T0900/0330T0900"},
        {"broken beside whole",
         event("SUMMARY:x\r\nDTSTART:yesterday") + event("SUMMARY:w\r\nDTSTART:20260330T090000Z"),
         "w 0330T0900/0330T0900"},
    };
    for (const auto &each : cases)
        EXPECT_EQ(found(calendar(each.events), "2026-03-28T00:00:00Z", "2026-03-31T00:00:00Z"),
                  QString::fromLatin1(each.expected))
            << each.what;
}

TEST_F(IcsTest, HostileFilesEndSoon)
{
    const auto check = [](const QString &name, const QByteArray &bytes) {
        QElapsedTimer timer;
        timer.start();
        const qint64 from = utc("2026-03-28T00:00:00Z");
        const qint64 to = utc("2026-04-28T00:00:00Z");
        const QList<IcsSeries> read = parseIcs(bytes, {}, {});
        EXPECT_EQ(read.isEmpty(), name.startsWith("bad-"_L1)) << name.toStdString();
        QList<CalendarEvent> events;
        for (const IcsSeries &each : read)
            expandIcs(each, from, to, std::chrono::steady_clock::now() + std::chrono::seconds(5), events);
        for (const CalendarEvent &each : std::as_const(events)) {
            EXPECT_LE(each.start, each.end) << name.toStdString();
            EXPECT_LT(each.start.unixSeconds(), static_cast<double>(to)) << name.toStdString();
        }
        EXPECT_LT(timer.elapsed(), 3000) << name.toStdString();
    };
    EXPECT_GT(forEachHostileFile(u"ics"_s, check), 40);
    check(u"bad-8-mebibytes-in-a-line"_s,
          calendar(event("DTSTART:20260330T090000Z\r\nSUMMARY:" + QByteArray(8 << 20, 'x'))));
    check(u"bad-bytes"_s, QByteArray(1 << 20, '\xff'));
    // Thousands of exceptions to thousands of occurrences.
    QByteArray lines = "DTSTART:20260330T000000Z\r\nRRULE:FREQ=MINUTELY";
    QByteArray changes;
    for (int i = 0; i < 4'000; ++i) {
        const QDateTime moment = QDateTime(QDate(2031, 1, 1), QTime(), Qt::UTC).addSecs(60 * i);
        const QByteArray text = moment.toString(u"yyyyMMdd'T'HHmmss"_s).toLatin1();
        lines += "\r\nEXDATE;TZID=Europe/Paris:" + text;
        changes += event("RECURRENCE-ID;RANGE=THISANDFUTURE;TZID=Europe/Paris:" + text + "\r\nDTSTART:" + text + "Z");
    }
    check(u"exceptions"_s, calendar(event(lines) + changes));
}

class IcsCalendarsTest : public IcsTest
{
protected:
    void write(const QString &name, const QByteArray &bytes)
    {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    QString titles(IcsCalendars &store)
    {
        std::optional<QStringList> all;
        const auto from = Timestamp::fromUnixSeconds(static_cast<double>(utc("2026-03-28T00:00:00Z")));
        store.fetch(from, from + 3 * 86400.0, [&](const QList<CalendarEvent> &events) {
            all.emplace();
            for (const CalendarEvent &each : events)
                *all += each.title + each.calendarColor;
        });
        EXPECT_FALSE(all) << "answered from inside the call";
        while (!all)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        all->sort();
        return all->join(u' ');
    }
    void waitForChange(IcsCalendars &store)
    {
        bool seen = false;
        const auto connection = QObject::connect(&store, &CalendarStore::changed, [&] { seen = true; });
        while (!seen)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QObject::disconnect(connection);
    }

    QTemporaryDir folder;
};

TEST_F(IcsCalendarsTest, FoldersAreReadAndWatched)
{
    EXPECT_TRUE(QDir(folder.path()).mkpath(u"work"_s));
    EXPECT_TRUE(QFile::link(folder.path(), folder.filePath(u"work/round"_s)));
    write(u"work/color"_s, "#ff0000\n");
    write(u"work/one.ics"_s, calendar(event("SUMMARY:one\r\nDTSTART:20260329T090000Z")));
    write(u"two.ICS"_s, calendar(event("SUMMARY:two\r\nDTSTART:20260329T090000Z")));
    write(u"three.txt"_s, calendar(event("SUMMARY:three\r\nDTSTART:20260329T090000Z")));
    IcsCalendars store({folder.path(), u"/nowhere/at/all"_s});
    EXPECT_TRUE(store.isAvailable());
    store.setWatching(true);
    EXPECT_EQ(titles(store), u"one#ff0000 two");
    write(u"two.ICS"_s, calendar(event("SUMMARY:second\r\nDTSTART:20260329T090000Z")));
    waitForChange(store);
    EXPECT_EQ(titles(store), u"one#ff0000 second");
    EXPECT_TRUE(QFile::remove(folder.filePath(u"work/one.ics"_s)));
    waitForChange(store);
    EXPECT_EQ(titles(store), u"second");
    store.setFolders({});
    EXPECT_EQ(store.access(), CalendarStore::Access::Denied);
    EXPECT_EQ(titles(store), u"");
}

TEST_F(IcsCalendarsTest, EveryQuestionIsAnsweredAlsoWhenTheFoldersChange)
{
    for (const char *name : {"before", "after"}) {
        EXPECT_TRUE(QDir(folder.path()).mkdir(QString::fromLatin1(name)));
        write(QString::fromLatin1(name) + u"/one.ics"_s,
              calendar(event("SUMMARY:" + QByteArray(name) + "\r\nDTSTART:20260329T090000Z")));
    }
    IcsCalendars store({folder.filePath(u"before"_s)});
    QStringList titles;
    const auto from = Timestamp::fromUnixSeconds(static_cast<double>(utc("2026-03-28T00:00:00Z")));
    constexpr int questions = 10;
    for (int i = 0; i < questions; ++i)
        store.fetch(from, from + 3 * 86400.0,
                    [&](const QList<CalendarEvent> &events) { titles += events.value(0).title; });
    store.setWatching(true);
    store.setFolders({folder.filePath(u"after"_s)});
    const QDeadlineTimer deadline(30'000);
    while (titles.size() < questions && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    EXPECT_EQ(titles, QStringList(questions, u"after"_s));
}

TEST_F(IcsCalendarsTest, FoldersComeAndGo)
{
    IcsCalendars store({folder.filePath(u"a/b/late"_s)});
    int availabilities = 0;
    QObject::connect(&store, &CalendarStore::availabilityChanged, [&] { ++availabilities; });
    const auto waitForAvailability = [&] {
        while (availabilities == 0)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        availabilities = 0;
    };
    store.setWatching(true);
    EXPECT_EQ(store.access(), CalendarStore::Access::Denied);
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(QDir(folder.path()).mkdir(u"a"_s));
        QCoreApplication::processEvents(); // with and without a look at each step on the way
        EXPECT_TRUE(QDir(folder.path()).mkpath(u"a/b/late"_s));
        waitForAvailability();
        EXPECT_EQ(store.access(), CalendarStore::Access::Granted);
        EXPECT_EQ(titles(store), u"");
        write(u"a/b/late/one.ics"_s, calendar(event("SUMMARY:one\r\nDTSTART:20260329T090000Z")));
        waitForChange(store);
        EXPECT_EQ(titles(store), u"one");
        EXPECT_TRUE(QDir(folder.filePath(u"a"_s)).removeRecursively());
        waitForAvailability();
        EXPECT_EQ(store.access(), CalendarStore::Access::Denied);
        EXPECT_EQ(titles(store), u"");
    }
}

} // namespace
} // namespace orvelle::test
