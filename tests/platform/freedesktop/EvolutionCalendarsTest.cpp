#include "platform/freedesktop/calendars/EvolutionCalendars.h"

#include "platform/freedesktop/EvolutionServer.h"

#include <QElapsedTimer>
#include <QTimeZone>

#undef signals // a member's name in GIO's headers
#undef slots
#include <libecal/libecal.h>

#include <algorithm>
#include <ctime>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

QByteArray event(const QByteArray &uid, const QByteArray &lines)
{
    return "BEGIN:VEVENT\r\nUID:" + uid + "\r\nSUMMARY:" + uid + "\r\n" + lines + "\r\nEND:VEVENT\r\n";
}

Timestamp at(const char *iso)
{
    return Timestamp::fromDateTime(QDateTime::fromString(QString::fromLatin1(iso), Qt::ISODate));
}

/// Another program with a calendar on the same server.
class OtherProgram
{
public:
    OtherProgram()
    {
        m_registry = e_source_registry_new_sync(nullptr, nullptr);
        m_source = e_source_new(nullptr, nullptr, nullptr);
        e_source_set_display_name(m_source, "Work");
        auto *calendar = static_cast<ESourceBackend *>(e_source_get_extension(m_source, E_SOURCE_EXTENSION_CALENDAR));
        e_source_backend_set_backend_name(calendar, "local");
        e_source_selectable_set_color(reinterpret_cast<ESourceSelectable *>(calendar), "#1a5fb4");
        EXPECT_TRUE(e_source_registry_commit_source_sync(m_registry, m_source, nullptr, nullptr));
        // The one that the server has told of can be removed.
        ESource *made = std::exchange(m_source, nullptr);
        EXPECT_TRUE(waitFor([&] {
            m_source = e_source_registry_ref_source(m_registry, e_source_get_uid(made));
            return m_source != nullptr;
        }));
        g_object_unref(made);
        connect();
    }
    ~OtherProgram()
    {
        EXPECT_TRUE(e_source_remove_sync(m_source, nullptr, nullptr));
        g_object_unref(m_client);
        g_object_unref(m_source);
        g_object_unref(m_registry);
    }
    Q_DISABLE_COPY_MOVE(OtherProgram)

    void connect()
    {
        g_clear_object(&m_client);
        // A new calendar is known to the server's two halves one after the other.
        ASSERT_TRUE(waitFor([this] {
            m_client = reinterpret_cast<ECalClient *>(e_cal_client_connect_sync(
                m_source, E_CAL_CLIENT_SOURCE_TYPE_EVENTS, static_cast<guint32>(-1), nullptr, nullptr));
            return m_client != nullptr;
        }));
    }
    void add(const QByteArray &event)
    {
        with(event, [this](ICalComponent *component, GError **error) {
            return e_cal_client_create_object_sync(m_client, component, E_CAL_OPERATION_FLAG_NONE, nullptr, nullptr,
                                                   error);
        });
    }
    void change(const QByteArray &event, ECalObjModType what = E_CAL_OBJ_MOD_ALL)
    {
        with(event, [this, what](ICalComponent *component, GError **error) {
            return e_cal_client_modify_object_sync(m_client, component, what, E_CAL_OPERATION_FLAG_NONE, nullptr,
                                                   error);
        });
    }
    void remove(const char *uid)
    {
        EXPECT_TRUE(e_cal_client_remove_object_sync(m_client, uid, nullptr, E_CAL_OBJ_MOD_ALL,
                                                    E_CAL_OPERATION_FLAG_NONE, nullptr, nullptr));
    }

private:
    static void with(const QByteArray &event, const std::function<gboolean(ICalComponent *, GError **)> &work)
    {
        ICalComponent *component = i_cal_component_new_from_string(event.constData());
        GError *error = nullptr;
        EXPECT_TRUE(work(component, &error)) << (error ? error->message : "") << event.constData();
        g_clear_error(&error);
        g_object_unref(component);
    }

    ESourceRegistry *m_registry = nullptr;
    ESource *m_source = nullptr;
    ECalClient *m_client = nullptr;
};

class EvolutionCalendarsTest : public testing::Test
{
protected:
    EvolutionCalendarsTest()
    {
        qputenv("TZ", "Europe/Paris");
        tzset();
        QObject::connect(&store, &CalendarStore::changed, [this] { ++changes; });
        QObject::connect(&store, &CalendarStore::availabilityChanged, [this] { ++availabilities; });
    }
    ~EvolutionCalendarsTest() override
    {
        qunsetenv("TZ");
        tzset();
    }
    void SetUp() override
    {
        if (!EvolutionServer::isInstalled())
            GTEST_SKIP() << "no evolution-data-server";
        server = &EvolutionServer::only();
        server->kill();
        server->makeStartable(false);
    }
    /// "title start/end" in UTC, one after the other, "!" before cancelled and "~" before declined ones.
    QString listed()
    {
        std::optional<QList<CalendarEvent>> events;
        store.fetch(at("2026-03-28T00:00:00Z"), at("2026-03-31T00:00:00Z"),
                    [&](const QList<CalendarEvent> &found) { events = found; });
        EXPECT_FALSE(events) << "answered from inside the call";
        EXPECT_TRUE(waitFor([&] { return events.has_value(); }));
        std::ranges::sort(*events, {}, [](const CalendarEvent &each) { return std::pair(each.start, each.title); });
        QStringList all;
        last = *events;
        for (const CalendarEvent &each : std::as_const(last))
            all += QLatin1String(each.isCancelled  ? "!"
                                 : each.isDeclined ? "~"
                                                   : "") +
                   each.title + u' ' + each.start.toDateTime().toString(u"MMdd'T'HHmm"_s) + u'/' +
                   each.end.toDateTime().toString(u"MMdd'T'HHmm"_s);
        return all.join(u' ');
    }
    bool becomes(const QString &expected)
    {
        QString now;
        const bool became = waitFor([&] { return (now = listed()) == expected; });
        EXPECT_EQ(now.toStdString(), expected.toStdString());
        return became;
    }
    bool isNoticed(const std::function<void()> &work)
    {
        const int before = changes;
        work();
        return waitFor([&] { return changes > before; });
    }

    EvolutionServer *server = nullptr;
    EvolutionCalendars store{{u"me@example.org"_s}};
    QList<CalendarEvent> last;
    int changes = 0;
    int availabilities = 0;
};

TEST_F(EvolutionCalendarsTest, WithoutAServerThereIsNothingUntilItComes)
{
    const qsizetype connections = server->connections();
    EXPECT_EQ(store.access(), CalendarStore::Access::NotDetermined);
    EXPECT_EQ(listed().toStdString(), "");
    EXPECT_EQ(server->connections(), connections) << "nobody watches";
    std::optional<bool> granted;
    QElapsedTimer timer;
    timer.start();
    store.setWatching(true);
    store.requestAccess([&](const CalendarStore::AccessAnswer &answer) { granted = answer.granted; });
    EXPECT_TRUE(waitFor([&] { return granted.has_value(); }));
    EXPECT_LT(timer.elapsed(), 2000);
    EXPECT_EQ(granted, false);
    EXPECT_EQ(store.access(), CalendarStore::Access::Denied);
    EXPECT_EQ(listed().toStdString(), "");
    server->start();
    EXPECT_TRUE(waitFor([&] { return store.access() == CalendarStore::Access::Granted; }));
    const OtherProgram other;
    EXPECT_TRUE(becomes(u""_s));
}

TEST_F(EvolutionCalendarsTest, WhoAsksWhileTheModuleIsLoadedIsAnswered)
{
    server->start();
    for (const bool stays : {true, false}) {
        EvolutionCalendars fresh;
        std::optional<bool> granted;
        bool answered = false;
        fresh.setWatching(true);
        fresh.requestAccess([&](const CalendarStore::AccessAnswer &answer) { granted = answer.granted; });
        fresh.fetch(at("2026-03-28T00:00:00Z"), at("2026-03-31T00:00:00Z"),
                    [&](const QList<CalendarEvent> &) { answered = true; });
        EXPECT_FALSE(granted || answered) << "from inside the call";
        fresh.setWatching(stays);
        EXPECT_TRUE(waitFor([&] { return granted && answered; }));
        EXPECT_EQ(granted, stays);
    }
}

TEST_F(EvolutionCalendarsTest, OccurrencesAreThoseOfTheServer)
{
    server->start();
    OtherProgram other;
    const QByteArray zone = ";TZID=Europe/Paris:";
    const QByteArray daily = "DTSTART" + zone + "20260323T090000\r\nDTEND" + zone + "20260323T100000\r\n";
    other.add(event("daily", daily + "RRULE:FREQ=DAILY;COUNT=8"));
    other.change("BEGIN:VEVENT\r\nUID:daily\r\nSUMMARY:moved\r\nRECURRENCE-ID" + zone + "20260328T090000\r\nDTSTART" +
                     zone + "20260328T150000\r\nDTEND" + zone + "20260328T153000\r\nEND:VEVENT\r\n",
                 E_CAL_OBJ_MOD_THIS);
    other.change("BEGIN:VEVENT\r\nUID:daily\r\nSUMMARY:off\r\nSTATUS:CANCELLED\r\nRECURRENCE-ID" + zone +
                     "20260330T090000\r\nDTSTART" + zone + "20260330T090000\r\nDTEND" + zone +
                     "20260330T100000\r\nEND:VEVENT\r\n",
                 E_CAL_OBJ_MOD_THIS);
    other.add(event("days", "DTSTART;VALUE=DATE:20260328\r\nDTEND;VALUE=DATE:20260330"));
    other.add(event("day", "DTSTART;VALUE=DATE:20260330"));
    other.add(event("night", "DTSTART:20260327T230000Z\r\nDTEND:20260328T020000Z"));
    other.add(event("floating", "DTSTART:20260330T200000\r\nDTEND:20260330T210000"));
    other.add(event("before", "DTSTART:20260327T200000Z\r\nDTEND:20260327T210000Z"));
    other.add(event("excluded", daily + "RRULE:FREQ=DAILY\r\nEXDATE" + zone + "20260328T090000\r\nEXDATE" + zone +
                                    "20260330T090000"));
    other.add(event("no", "DTSTART:20260329T120000Z\r\nDTEND:20260329T123000Z\r\nORGANIZER:mailto:o@example.org\r\n"
                          "ATTENDEE;PARTSTAT=ACCEPTED:mailto:you@example.org\r\n"
                          "ATTENDEE;PARTSTAT=DECLINED:mailto:me@example.org\r\nLOCATION:https://meet.jit.si/Room"));
    store.setWatching(true);
    EXPECT_TRUE(becomes(u"days 0327T2300/0329T2200 night 0327T2300/0328T0200 moved 0328T1400/0328T1430 "
                        "daily 0329T0700/0329T0800 excluded 0329T0700/0329T0800 ~no 0329T1200/0329T1230 "
                        "day 0329T2200/0330T2200 !off 0330T0700/0330T0800 floating 0330T1800/0330T1900"_s));
    const auto declined = std::ranges::find(last, u"no"_s, &CalendarEvent::title);
    ASSERT_NE(declined, last.end());
    EXPECT_EQ(declined->location, u"https://meet.jit.si/Room");
    EXPECT_EQ(declined->calendarColor, u"#1a5fb4");
    EXPECT_EQ(declined->externalIdentifier, u"no");
    EXPECT_TRUE(last.constFirst().isAllDay);
}

TEST_F(EvolutionCalendarsTest, ChangesAreTold)
{
    server->start();
    store.setWatching(true);
    std::optional<OtherProgram> other;
    EXPECT_TRUE(isNoticed([&] { other.emplace(); })) << "a new calendar";
    other->add(event("a", "DTSTART:20260329T120000Z\r\nDTEND:20260329T130000Z"));
    EXPECT_TRUE(becomes(u"a 0329T1200/0329T1300"_s));
    EXPECT_TRUE(isNoticed([&] { other->change(event("a", "DTSTART:20260329T140000Z\r\nDTEND:20260329T150000Z")); }));
    EXPECT_EQ(listed().toStdString(), "a 0329T1400/0329T1500");
    EXPECT_TRUE(isNoticed([&] { other->add(event("b", "DTSTART:20260329T140000Z\r\nDTEND:20260329T150000Z")); }));
    EXPECT_TRUE(isNoticed([&] { other->remove("a"); }));
    EXPECT_EQ(listed().toStdString(), "b 0329T1400/0329T1500");
    EXPECT_TRUE(isNoticed([&] { other.reset(); }));
    EXPECT_TRUE(becomes(u""_s)) << "its calendar is gone";
    store.setWatching(false);
    EXPECT_EQ(listed().toStdString(), "");
}

TEST_F(EvolutionCalendarsTest, AQuestionDuringAnotherIsNotAnsweredWithOldNews)
{
    server->start();
    OtherProgram other;
    other.add(event("a", "DTSTART:20260329T120000Z\r\nDTEND:20260329T130000Z"));
    store.setWatching(true);
    ASSERT_TRUE(becomes(u"a 0329T1200/0329T1300"_s));
    ASSERT_TRUE(isNoticed([&] { other.change(event("a", "DTSTART:20260329T140000Z\r\nDTEND:20260329T150000Z")); }));
    std::vector<QList<CalendarEvent>> answers;
    constexpr std::size_t questions = 3;
    for (std::size_t i = 0; i < questions; ++i)
        store.fetch(at("2026-03-28T00:00:00Z"), at("2026-03-31T00:00:00Z"),
                    [&](const QList<CalendarEvent> &found) { answers.push_back(found); });
    ASSERT_TRUE(waitFor([&] { return answers.size() == questions; }));
    for (const QList<CalendarEvent> &each : answers) {
        ASSERT_EQ(each.size(), 1);
        EXPECT_EQ(each.constFirst().start, at("2026-03-29T14:00:00Z"));
    }
}

TEST_F(EvolutionCalendarsTest, AKilledServerIsFoundAgain)
{
    server->start();
    OtherProgram other;
    other.add(event("a", "DTSTART:20260329T120000Z\r\nDTEND:20260329T130000Z"));
    store.setWatching(true);
    ASSERT_TRUE(becomes(u"a 0329T1200/0329T1300"_s));
    for (const bool both : {false, true}) {
        server->kill(server->factoryName());
        if (both)
            server->kill(server->registryName());
        EXPECT_EQ(listed().toStdString(), "a 0329T1200/0329T1300") << "what it said last";
        const int before = availabilities;
        if (both)
            server->startRegistry();
        server->startFactory();
        QElapsedTimer timer;
        timer.start();
        EXPECT_TRUE(waitFor([&] { return availabilities > before; }));
        EXPECT_LT(timer.elapsed(), 5000);
        EXPECT_EQ(listed().toStdString(), "a 0329T1200/0329T1300");
        other.connect();
        // The server's calendars come back one after the other.
        other.change(event("a", "DTSTART:20260329T120000Z\r\nDTEND:20260329T140000Z"));
        EXPECT_TRUE(becomes(u"a 0329T1200/0329T1400"_s));
        EXPECT_TRUE(isNoticed([&] { other.change(event("a", "DTSTART:20260329T120000Z\r\nDTEND:20260329T130000Z")); }));
        EXPECT_EQ(listed().toStdString(), "a 0329T1200/0329T1300");
    }
}

TEST_F(EvolutionCalendarsTest, TheBusStartsTheServer)
{
    server->makeStartable(true);
    EXPECT_FALSE(server->isOnBus(server->registryName()));
    store.setWatching(true);
    EXPECT_TRUE(waitFor([&] { return availabilities > 1; })) << "granted, then opened";
    server->kill();
    const int before = availabilities;
    EXPECT_TRUE(waitFor([&] { return availabilities > before; })) << "started again";
    store.setWatching(false);
    server->makeStartable(false);
    server->kill();
}

} // namespace
} // namespace orvelle::test
