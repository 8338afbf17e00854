// The next events out of 50,000 in .ics files: read for the first time, and
// asked for again once they are at hand. Beside it a reading of the files' bytes
// alone.
#include "Statistics.h"
#include "platform/freedesktop/calendars/IcsCalendars.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace orvelle;
using namespace orvelle::bench;

namespace {

constexpr int calendars = 50;
constexpr int eventsOfEach = 1000; ///< one in twenty repeats

Timestamp now()
{
    return Timestamp::fromDateTime(QDateTime(QDate(2026, 3, 25), QTime(10, 0), Qt::UTC));
}

QByteArray sampleEvent(int number)
{
    const QDateTime start = QDateTime(QDate(2021, 1, 4), QTime(9, 0), Qt::UTC).addSecs(number * 3600LL);
    const QByteArray id = QByteArray::number(number);
    QByteArray event = "BEGIN:VEVENT\r\nUID:" + id + "\r\nSUMMARY:Event " + id +
                       "\r\nLOCATION:Room 4\r\nDESCRIPTION:What is to be talked about\\, and by whom.\r\n"
                       "DTSTART;TZID=Europe/Paris:" +
                       start.toString(QStringLiteral("yyyyMMdd'T'HHmmss")).toLatin1() + "\r\nDURATION:PT1H\r\n";
    if (number % 20 == 0)
        event += "RRULE:FREQ=WEEKLY;BYDAY=MO,WE\r\nEXDATE;TZID=Europe/Paris:20260325T090000\r\n";
    return event + "END:VEVENT\r\n";
}

/// Files of a thousand events each.
void fill(const QString &folder)
{
    for (int i = 0; i < calendars; ++i) {
        QFile file(folder + QStringLiteral("/%1.ics").arg(i));
        if (!file.open(QIODevice::WriteOnly))
            qFatal("The sample files cannot be written");
        file.write("BEGIN:VCALENDAR\r\nVERSION:2.0\r\n");
        for (int number = 0; number < eventsOfEach; ++number)
            file.write(sampleEvent(i * eventsOfEach + number));
        file.write("END:VCALENDAR\r\n");
    }
}

qsizetype fetch(IcsCalendars &store)
{
    qsizetype count = -1;
    store.fetch(now(), now() + 7 * 86400.0, [&count](const QList<CalendarEvent> &events) { count = events.size(); });
    while (count < 0)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return count;
}

void cold(benchmark::State &state, const QString &folder)
{
    for (auto _ : state) {
        IcsCalendars store({folder});
        benchmark::DoNotOptimize(fetch(store));
    }
}

void warm(benchmark::State &state, IcsCalendars &store)
{
    if (fetch(store) == 0)
        state.SkipWithError("no events were found");
    for (auto _ : state)
        benchmark::DoNotOptimize(fetch(store));
}

void bytes(benchmark::State &state, const QString &folder)
{
    for (auto _ : state) {
        for (const QString &name : QDir(folder).entryList(QDir::Files)) {
            QFile file(folder + QLatin1Char('/') + name);
            if (file.open(QIODevice::ReadOnly))
                benchmark::DoNotOptimize(file.readAll());
        }
    }
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QTemporaryDir folder;
    fill(folder.path());
    IcsCalendars store({folder.path()});
    store.setWatching(true);
    const auto with = [](auto run, auto of) { return [run, of](benchmark::State &state) { run(state, of); }; };
    inRuns(benchmark::RegisterBenchmark("calendar_bytes", with(bytes, folder.path())));
    inRuns(benchmark::RegisterBenchmark("calendar_cold", with(cold, folder.path())));
    inRuns(benchmark::RegisterBenchmark("calendar_warm", with(warm, std::ref(store))));
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
