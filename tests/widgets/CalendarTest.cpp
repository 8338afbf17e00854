#include "base/Text.h"
#include "support/FakeCalendarStore.h"
#include "support/LogCapture.h"
#include "widgets/WidgetWorld.h"
#include "widgets/calendar/CalendarManager.h"
#include "widgets/calendar/CombinedCalendars.h"
#include "widgets/calendar/MeetingAddress.h"

#include <gtest/gtest.h>

#include <ctime>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The time zone of the process while this lives.
class Zone
{
public:
    explicit Zone(const QByteArray &name) : m_before(qgetenv("TZ")) { set(name); }
    ~Zone() { set(m_before); }

private:
    static void set(const QByteArray &name)
    {
        if (name.isEmpty())
            qunsetenv("TZ");
        else
            qputenv("TZ", name);
        tzset();
    }
    QByteArray m_before;
};

Timestamp at(const char *local)
{
    return Timestamp::fromDateTime(QDateTime::fromString(QString::fromLatin1(local), Qt::ISODate));
}

CalendarEvent event(const char *title, const char *start, const char *end)
{
    CalendarEvent made;
    made.title = QString::fromUtf8(title);
    made.start = at(start);
    made.end = at(end);
    return made;
}

class CalendarTest : public testing::Test
{
protected:
    CalendarTest() { world.clock.setNow(at("2026-03-25T10:00:00")); }
    CalendarManager make()
    {
        return CalendarManager({world.defaults, world.debugMode, world.notifications, world.clock, store});
    }
    template<typename T>
    void storeValue(const char *key, T value)
    {
        EXPECT_TRUE(world.defaults.write(QString::fromLatin1(key), value));
    }
    static QString titles(const QList<CalendarEventInfo> &events)
    {
        QStringList all;
        for (const CalendarEventInfo &each : events)
            all += each.title;
        return all.join(u' ');
    }

    Zone zone{"Europe/Paris"};
    WidgetWorld world{&Notifications::calendarChanged};
    FakeCalendarStore store;
};

TEST_F(CalendarTest, ScopesDuplicatesAndWhatIsOver)
{
    CalendarEvent cancelled = event("cancelled", "2026-03-25T11:00:00", "2026-03-25T12:00:00");
    cancelled.isCancelled = true;
    CalendarEvent declined = event("declined", "2026-03-25T15:00:00", "2026-03-25T16:00:00");
    declined.isDeclined = true;
    CalendarEvent copy = declined;
    copy.isDeclined = false;
    const QList<CalendarEvent> busy{event("later", "2026-03-27T09:00:00", "2026-03-27T10:00:00"),
                                    event("over", "2026-03-25T08:00:00", "2026-03-25T10:00:00"),
                                    event("night", "2026-03-24T22:00:00", "2026-03-25T11:00:00"),
                                    declined,
                                    cancelled,
                                    event("twice", "2026-03-25T12:00:00", "2026-03-25T13:00:00"),
                                    event("twice", "2026-03-25T12:00:00", "2026-03-25T13:30:00"),
                                    event("midnight", "2026-03-26T00:00:00", "2026-03-26T01:00:00")};
    const QList<CalendarEvent> away{event("friday", "2026-03-27T09:00:00", "2026-03-27T10:00:00"),
                                    event("dinner", "2026-03-27T19:00:00", "2026-03-28T01:00:00"),
                                    event("saturday", "2026-03-28T09:00:00", "2026-03-28T10:00:00")};
    struct {
        QList<CalendarEvent> events;
        CalendarScope scope;
        qsizetype count;
        bool hideDeclined;
        const char *expected;
    } const cases[] = {
        {busy, CalendarScope::Today, 9, false, "night twice declined"},
        {busy, CalendarScope::Today, 9, true, "night twice"},
        {busy, CalendarScope::OneDay, 9, false, "night twice declined"},
        {busy, CalendarScope::All, 9, false, "night twice declined midnight later"},
        {busy, CalendarScope::All, 2, false, "night twice"},
        {away, CalendarScope::Today, 9, false, ""},
        {away, CalendarScope::OneDay, 9, false, "friday dinner"},
        {{declined, copy}, CalendarScope::All, 9, true, "declined"},
        {{event("due", "2026-03-26T00:00:00", "2026-03-26T00:00:00")}, CalendarScope::OneDay, 9, false, "due"},
    };
    for (const auto &each : cases) {
        const auto listed =
            nextCalendarEvents(each.events, world.clock.now(), each.scope, each.count, each.hideDeclined);
        EXPECT_EQ(titles(listed), QString::fromLatin1(each.expected));
    }
    EXPECT_FALSE(nextCalendarEvents({declined, copy}, world.clock.now(), CalendarScope::All, 9, false)[0].isDeclined);
}

TEST_F(CalendarTest, TheTimeSaysWhichDay)
{
    struct {
        const char *zone;
        const char *now;
        const char *start;
        bool allDay;
        QString expected;
    } const cases[] = {
        {"Europe/Paris", "2026-03-25T10:00:00", "2026-03-25T14:05:00", false, u"14:05"_s},
        {"Europe/Paris", "2026-03-25T10:00:00", "2026-03-26T09:05:00", false,
         text("calendar.tomorrow"_text) + u" 09:05"_s},
        {"Europe/Paris", "2026-03-25T10:00:00", "2026-03-27T09:05:00", false, u"Fri 09:05"_s},
        {"Europe/Paris", "2026-03-25T10:00:00", "2026-03-25T00:00:00", true, text("calendar.allDay"_text)},
        {"Europe/Paris", "2026-03-25T10:00:00", "2026-03-23T00:00:00", true, text("calendar.allDay"_text)},
        {"Europe/Paris", "2026-03-25T10:00:00", "2026-03-27T00:00:00", true, u"Fri "_s + text("calendar.allDay"_text)},
        // The day after is one of 23 hours, then one of 25, then one without midnight.
        {"Europe/Paris", "2026-03-28T23:30:00", "2026-03-29T03:10:00", false,
         text("calendar.tomorrow"_text) + u" 03:10"_s},
        {"Europe/Paris", "2026-10-25T00:10:00", "2026-10-25T23:50:00", false, u"23:50"_s},
        {"America/New_York", "2026-10-31T12:00:00", "2026-11-01T23:50:00", false,
         text("calendar.tomorrow"_text) + u" 23:50"_s},
        {"Africa/Cairo", "2026-04-23T12:00:00", "2026-04-24T01:00:00", true,
         text("calendar.tomorrow"_text) + u' ' + text("calendar.allDay"_text)},
        {"Asia/Kathmandu", "2026-03-25T00:10:00", "2026-03-25T23:59:00", false, u"23:59"_s},
        {"Pacific/Kiritimati", "2026-03-25T23:59:00", "2026-03-26T00:00:00", false,
         text("calendar.tomorrow"_text) + u" 00:00"_s},
    };
    for (const auto &each : cases) {
        const Zone there(each.zone);
        CalendarEventInfo info;
        info.startDate = at(each.start);
        info.isAllDay = each.allDay;
        EXPECT_EQ(calendarEventTime(info, at(each.now)), each.expected) << each.zone << ' ' << each.start;
    }
}

TEST_F(CalendarTest, StoredSettingsAreReadAndOldOnesMoved)
{
    storeValue("CalendarMaxEvents", qint64(0));
    storeValue("CalendarTodayOnly", false);
    const CalendarManager manager = make();
    EXPECT_EQ(manager.maxEvents(), 1);
    EXPECT_EQ(manager.iconColor(), u"red");
    EXPECT_EQ(manager.displayScope(), CalendarScope::OneDay);
    EXPECT_EQ(world.defaults.get<qint64>(u"CalendarDisplayScope"_s), 1);
    EXPECT_FALSE(world.defaults.value(u"CalendarTodayOnly"_s));
    storeValue("CalendarDisplayScope", qint64(7));
    EXPECT_EQ(make().displayScope(), CalendarScope::Today);
}

TEST_F(CalendarTest, ABurstOfChangesIsOneFetchFiveSecondsAfterTheLast)
{
    CalendarManager manager = make();
    manager.startMonitoring();
    store.answer();
    EXPECT_EQ(store.fetches, 1);
    EXPECT_EQ(store.from, at("2026-03-25T00:00:00"));
    EXPECT_EQ(store.to, at("2026-04-01T10:00:00")) << "a week over the change to summer time";
    for (int i = 0; i < 4; ++i) {
        store.otherProgramChangesEvents();
        world.clock.advance(4999ms);
    }
    EXPECT_EQ(store.fetches, 1);
    world.clock.advance(1ms);
    EXPECT_EQ(store.fetches, 2);
    store.answer();
    manager.refreshIfNeeded();
    world.clock.advance(59999ms);
    manager.refreshIfNeeded();
    EXPECT_EQ(store.fetches, 2);
    world.clock.advance(1ms);
    manager.refreshIfNeeded();
    EXPECT_EQ(store.fetches, 3);
    manager.stopMonitoring();
    EXPECT_FALSE(store.watching);
    EXPECT_EQ(world.clock.pending(), 0U);
}

TEST_F(CalendarTest, ALateAnswerDoesNotReplaceANewerOne)
{
    CalendarManager manager = make();
    store.events = {event("old", "2026-03-25T11:00:00", "2026-03-25T12:00:00")};
    manager.startMonitoring();
    store.events = {event("new", "2026-03-25T11:00:00", "2026-03-25T12:00:00")};
    manager.fetchNextEvent();
    store.answerLastFirst();
    EXPECT_EQ(titles(manager.nextEvents()), u"new");
    world.clock.advance(2h);
    store.answer();
    EXPECT_EQ(titles(manager.nextEvents()), u"") << "over, without anybody asking";
}

TEST_F(CalendarTest, AccessIsAskedForAndItsErrorsAreLogged)
{
    const LogCapture log;
    store.present = CalendarStore::Access::NotDetermined;
    store.events = {event("a", "2026-03-25T11:00:00", "2026-03-25T12:00:00")};
    store.answerToRequest = {false, u"not today"_s};
    CalendarManager manager = make();
    manager.setEnabled(true);
    store.answer();
    EXPECT_FALSE(manager.accessGranted());
    EXPECT_TRUE(manager.nextEvents().isEmpty());
    EXPECT_EQ(store.fetches, 0);
    EXPECT_TRUE(log.contains(u"CalendarManager: Calendar access error: not today"_s));
    store.answerToRequest = {true, {}};
    manager.requestAccess();
    store.answer();
    EXPECT_EQ(titles(manager.nextEvents()), u"a");
}

TEST_F(CalendarTest, ChangesByOthersAreTakenOverWithoutLoops)
{
    CalendarManager manager = make();
    manager.setEnabled(true);
    store.answer();
    world.changes = world.syncable = 0;
    const int fetches = store.fetches;
    // An import stores and announces.
    storeValue("CalendarMaxEvents", qint64(3));
    emit world.notifications.calendarChanged();
    store.answer();
    EXPECT_EQ(manager.maxEvents(), 3);
    EXPECT_EQ(store.fetches, fetches + 1);
    EXPECT_EQ(world.changes, 2) << "the import's and that of the new list";
    world.defaults.otherProcessWrites(u"CalendarEnabled"_s, false);
    world.defaults.announceOutsideChanges();
    EXPECT_FALSE(manager.isEnabled());
    EXPECT_FALSE(store.watching);
    EXPECT_EQ(world.changes, 3);
    EXPECT_EQ(world.syncable, 0);
    world.debugMode.toggle();
    EXPECT_EQ(manager.maxEvents(), 1);
    manager.setMenuBarOnly(true);
    EXPECT_TRUE(world.defaults.get<bool>(u"debug_CalendarMenuBarOnly"_s).value_or(false));
    EXPECT_EQ(world.syncable, 1);
}

TEST(CombinedCalendars, ListWhatSeveralKnowOnce)
{
    using Access = CalendarStore::Access;
    const Zone zone("Europe/Paris");
    FakeCalendarStore server;
    FakeCalendarStore files;
    CombinedCalendars both({&server, &files});
    struct {
        Access server;
        Access files;
        Access expected;
    } const cases[] = {
        {Access::Denied, Access::Granted, Access::Granted},
        {Access::NotDetermined, Access::Granted, Access::Granted},
        {Access::Denied, Access::NotDetermined, Access::NotDetermined},
        {Access::Denied, Access::Denied, Access::Denied},
    };
    for (const auto &each : cases) {
        server.present = each.server;
        files.present = each.files;
        EXPECT_EQ(both.access(), each.expected);
    }
    const auto known = [](const char *identifier, const char *title, const char *start) {
        CalendarEvent made = event(title, start, "2026-03-25T20:00:00");
        if (*identifier)
            made.externalIdentifier = QString::fromLatin1(identifier);
        return made;
    };
    CalendarEvent declined = known("c", "declined", "2026-03-25T12:00:00");
    declined.isDeclined = true;
    server.events = {known("a", "server", "2026-03-25T11:00:00"), known("", "nameless", "2026-03-25T11:00:00"),
                     declined};
    files.events = {known("a", "file", "2026-03-25T11:00:00"), known("a", "next", "2026-03-26T11:00:00"),
                    known("", "nameless", "2026-03-25T11:00:00"), known("c", "goes", "2026-03-25T12:00:00")};
    QStringList titles;
    both.fetch(at("2026-03-25T00:00:00"), at("2026-03-27T00:00:00"), [&](const QList<CalendarEvent> &events) {
        for (const CalendarEvent &each : events)
            titles += each.title;
    });
    files.answer();
    EXPECT_TRUE(titles.isEmpty()) << "the server has not answered yet";
    server.answer();
    EXPECT_EQ(titles.join(u' '), u"server nameless goes next nameless");
    QList<CalendarStore::AccessAnswer> answers;
    server.answerToRequest = {false, u"locked"_s};
    for (const bool granted : {true, false}) {
        files.answerToRequest = {granted, {}};
        both.requestAccess([&](const CalendarStore::AccessAnswer &answer) { answers += answer; });
        server.answer();
        files.answer();
    }
    ASSERT_EQ(answers.size(), 2);
    EXPECT_TRUE(answers[0].granted && answers[0].error.isEmpty());
    EXPECT_FALSE(answers[1].granted);
    EXPECT_EQ(answers[1].error, u"locked");
    int changes = 0;
    QObject::connect(&both, &CalendarStore::changed, [&] { ++changes; });
    both.setWatching(true);
    server.otherProgramChangesEvents();
    files.otherProgramChangesEvents();
    EXPECT_EQ(changes, 2);
}

TEST(MeetingAddress, IsFoundWhereverItIsWritten)
{
    struct {
        const char *where;
        const char *text;
        const char *expected;
    } const cases[] = {
        {"conference", "https://anything.example/x", "https://anything.example/x"},
        {"conference", "tel:+33100000000", ""},
        {"conference", "https://me@evil.example/", ""},
        {"url", "https://us02web.zoom.us/j/123456789?pwd=abc", "https://us02web.zoom.us/j/123456789?pwd=abc"},
        {"url", "https://example.org/agenda", ""},
        {"location", "Room 4 / https://meet.google.com/abc-defg-hij", "https://meet.google.com/abc-defg-hij"},
        {"location", "https://notzoom.us/j/1", ""},
        {"location", "http://zoom.us/j/1", ""},
        {"description", "Join (https://teams.microsoft.com/l/meetup-join/19%3Ax/0?a=1&amp;b=2).",
         "https://teams.microsoft.com/l/meetup-join/19%3Ax/0?a=1&b=2"},
        {"description", "<a href=\"https://meet.jit.si/OurRoom\">x</a>", "https://meet.jit.si/OurRoom"},
        {"description", "see https://zoom.us/pricing, then https://whereby.com/room.", "https://whereby.com/room"},
        {"description", "https://zoom.us", ""},
    };
    for (const auto &each : cases) {
        CalendarEvent made;
        const QString value = QString::fromUtf8(each.text);
        const std::string_view where = each.where;
        if (where == "conference")
            made.conferences = QStringList{value};
        else
            (where == "url" ? made.url : where == "location" ? made.location : made.description) = value;
        EXPECT_EQ(meetingAddress(made).toString(QUrl::FullyEncoded), QString::fromUtf8(each.expected)) << each.text;
    }
}

} // namespace
} // namespace orvelle::test
