// From the click's arrival to the menu's first frame, beside a plain menu of
// the toolkit with ten actions; and the same menu with the widgets' rows.
// Needs a display.
#include "SampleTrees.h"
#include "Statistics.h"
#include "menubar/QuickLaunchManager.h"
#include "support/FakeApplications.h"
#include "support/FakeCalendarStore.h"
#include "support/FakeHttp.h"
#include "support/FakePasteboard.h"
#include "support/FakePlaces.h"
#include "ui/menu/MenuPopup.h"
#include "ui/menu/rows/CalendarRowView.h"
#include "ui/menu/rows/ClipboardRowView.h"
#include "ui/menu/rows/NetworkRowView.h"
#include "ui/menu/rows/QuickLaunchRowView.h"
#include "ui/menu/rows/SystemInfoRowView.h"
#include "ui/menu/rows/TimerRowView.h"
#include "ui/menu/rows/WeatherRowView.h"
#include "widgets/WidgetWorld.h"
#include "widgets/calendar/CalendarManager.h"
#include "widgets/clipboard/ClipboardManager.h"
#include "widgets/network/NetworkManager.h"
#include "widgets/systeminfo/SystemInfoManager.h"
#include "widgets/timer/TimerManager.h"
#include "widgets/weather/WeatherManager.h"

#include <QApplication>
#include <QMenu>
#include <QPaintEvent>
#include <QTemporaryDir>
#include <QTimer>
#include <QWidget>

using namespace orvelle;
using namespace orvelle::bench;

namespace {

/// Runs the event loop until a popup has been painted and the picture handed
/// to the display.
class FirstFrame : public QObject
{
public:
    FirstFrame() { qApp->installEventFilter(this); }

    void wait()
    {
        while (!m_done)
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const auto *widget = event->type() == QEvent::Paint ? qobject_cast<QWidget *>(watched) : nullptr;
        // The call comes back after the paint event and what follows it.
        if (widget && widget->window()->windowType() == Qt::Popup && !std::exchange(m_painting, true))
            QTimer::singleShot(0, this, [this] { m_done = true; });
        return false;
    }

private:
    bool m_painting = false;
    bool m_done = false;
};

void toolkitMenu(benchmark::State &state)
{
    for (auto _ : state) {
        FirstFrame frame;
        QMenu menu;
        for (qint64 i = 0; i < state.range(0); ++i)
            menu.addAction(QStringLiteral("Action number %1").arg(i));
        menu.popup(QPoint(300, 100));
        frame.wait();
        state.PauseTiming();
        menu.close();
        QApplication::processEvents();
        state.ResumeTiming();
    }
}

/// The widgets with something to show each, and their rows.
struct Widgets : test::WidgetWorld {
    Widgets() : WidgetWorld(&Notifications::networkChanged)
    {
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
        watchTheMachine();
        timer.start(600);
        showWeather();
        showEvents();
        copyTexts();
        for (int slot = 0; slot < 4; ++slot) {
            applications.install(QStringLiteral("Program%1").arg(slot));
            quickLaunch.setApp(slot, applications.apps.constLast().path);
        }
    }

    QWidget *makeRow(WidgetType type, QWidget *parent)
    {
        const auto nothing = [] {};
        switch (type) {
        case WidgetType::SystemInfo:
            return new SystemInfoRowView(system, notifications, parent);
        case WidgetType::Network:
            return new NetworkRowView(network, notifications, parent);
        case WidgetType::Timer:
            return new TimerRowView(timer, notifications, clock, parent);
        case WidgetType::Weather:
            return new WeatherRowView(weather, notifications, clock, nothing, parent);
        case WidgetType::Calendar:
            return new CalendarRowView(calendar, notifications, {nothing, nothing, nothing, [](const QUrl &) {}},
                                       parent);
        case WidgetType::Clipboard:
            return new ClipboardRowView(clipboard, notifications, nothing, parent);
        case WidgetType::QuickLaunch:
            return new QuickLaunchRowView(quickLaunch, applications, notifications, {[](int) {}, nothing}, parent);
        }
        return nullptr;
    }

    void watchTheMachine()
    {
        system.setDisplayMode(SystemInfoDisplayMode::Terminal);
        network.setDisplayMode(NetworkDisplayMode::Graph);
        for (quint64 i = 0; i < 25; ++i) {
            counters.reading = {{{2, QStringLiteral("eth0"), {}, 0, i * i * 10'000, i * 5000}}};
            clock.advance(MonitorSchedule::period);
        }
    }
    void showWeather()
    {
        http.answers(QStringLiteral("*"), 200,
                     R"({"current":{"temperature_2m":20.5,"weather_code":2,"is_day":1},)"
                     R"("daily":{"temperature_2m_min":[11.4],"temperature_2m_max":[24]}})");
        weather.setLocationMode(WeatherLocationMode::Automatic);
        location.machineIsAt({48.8566, 2.3522});
        http.deliverAll();
        geocoder.deliver();
    }
    void showEvents()
    {
        for (int i = 1; i <= 3; ++i) {
            CalendarEvent event;
            event.title = QStringLiteral("Event %1").arg(i);
            event.start = clock.now() + 600 * i;
            event.end = event.start + 600;
            store.events += event;
        }
        calendar.setMaxEvents(3);
        calendar.setEnabled(true);
        store.answer();
    }
    void copyTexts()
    {
        clipboard.setEnabled(true);
        for (int i = 0; i < 10; ++i) {
            pasteboard.otherAppCopies(QStringLiteral("What was copied as number %1").arg(i));
            clipboard.checkNow();
            do
                QApplication::processEvents();
            while (clipboard.isReading());
        }
    }

    test::FakeHttp http;
    test::FakeLocationService location;
    test::FakeGeocoder geocoder;
    test::FakeCalendarStore store;
    test::FakePasteboard pasteboard{clock};
    test::FakeApplications applications;
    QTemporaryDir folder;
    ClipboardCache cache{{folder.path()}};
    SystemInfoManager system{{defaults, debugMode, notifications, power, sampler, host}};
    NetworkManager network{{defaults, debugMode, notifications, power, sampler, counters}};
    TimerManager timer{{defaults, debugMode, notifications, clock, alerts, sounds, desktop, [] {}}};
    WeatherManager weather{{defaults, debugMode, notifications, clock, power, http, location, geocoder}};
    CalendarManager calendar{{defaults, debugMode, notifications, clock, store}};
    ClipboardManager clipboard{{defaults, debugMode, notifications, power, clock, pasteboard, cache,
                                [](const QByteArray &rtf) { return QString::fromUtf8(rtf); }}};
    QuickLaunchManager quickLaunch{{defaults, debugMode, notifications, applications}};
};

Menu menuOf(const LinkList &links, const QList<WidgetType> &widgets)
{
    Menu menu;
    for (const LinkItem &item : links)
        menu.entries.append(menuEntry(item));
    for (const WidgetType type : widgets) {
        MenuEntry row;
        row.kind = MenuEntry::Kind::Widget;
        row.widget = type;
        menu.entries.append(row);
    }
    MenuEntry bottom;
    bottom.kind = MenuEntry::Kind::BottomRow;
    menu.entries.append(bottom);
    return menu;
}

void ourMenu(benchmark::State &state, MenuPopup &popup, const LinkList &links, const QList<WidgetType> &widgets)
{
    for (auto _ : state) {
        FirstFrame frame;
        popup.present(menuOf(links, widgets), {QPoint(300, 100), false}, {});
        frame.wait();
        state.PauseTiming();
        popup.close();
        QApplication::processEvents();
        state.ResumeTiming();
    }
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    MenuPopup popup(childEntries);
    Widgets widgets;
    popup.setWidgetRowFactory([&widgets](WidgetType type, QWidget *parent) { return widgets.makeRow(type, parent); });
    const auto ours = [&popup](const LinkList &links, const QList<WidgetType> &rows = {}) {
        return [&popup, links, rows](benchmark::State &state) { ourMenu(state, popup, links, rows); };
    };
    inRuns(benchmark::RegisterBenchmark("first_frame/toolkit", toolkitMenu)->Arg(10));
    inRuns(benchmark::RegisterBenchmark("first_frame/grouped", ours(sampleTree(1000, 30)))->Arg(1000));
    inRuns(benchmark::RegisterBenchmark("first_frame/widgets", ours(sampleTree(1000, 30), defaultWidgetOrder()))
               ->Arg(1000));
    inRuns(benchmark::RegisterBenchmark("first_frame/grouped", ours(sampleTree(10000, 30)))->Arg(10000));
    inRuns(benchmark::RegisterBenchmark("first_frame/flat", ours(sampleTree(10000, 0)))->Arg(10000));
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
