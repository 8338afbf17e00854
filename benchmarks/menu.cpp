// From the click's arrival to the menu's first frame, beside a plain menu of
// the toolkit with ten actions; and the same menu with the widgets' rows.
// Needs a display.
#include "SampleTrees.h"
#include "Statistics.h"
#include "ui/menu/MenuPopup.h"
#include "ui/menu/rows/NetworkRowView.h"
#include "ui/menu/rows/SystemInfoRowView.h"
#include "ui/menu/rows/TimerRowView.h"
#include "widgets/WidgetWorld.h"
#include "widgets/network/NetworkManager.h"
#include "widgets/systeminfo/SystemInfoManager.h"
#include "widgets/timer/TimerManager.h"

#include <QApplication>
#include <QMenu>
#include <QPaintEvent>
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

/// The widgets with figures to show, and their rows.
struct Widgets : test::WidgetWorld {
    Widgets() : WidgetWorld(&Notifications::networkChanged)
    {
        system.setDisplayMode(SystemInfoDisplayMode::Terminal);
        network.setDisplayMode(NetworkDisplayMode::Graph);
        for (quint64 i = 0; i < 25; ++i) {
            counters.reading = {{{2, QStringLiteral("eth0"), {}, 0, i * i * 10'000, i * 5000}}};
            clock.advance(MonitorSchedule::period);
        }
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
        timer.start(600);
    }

    QWidget *makeRow(WidgetType type, QWidget *parent)
    {
        if (type == WidgetType::SystemInfo)
            return new SystemInfoRowView(system, notifications, parent);
        if (type == WidgetType::Network)
            return new NetworkRowView(network, notifications, parent);
        return new TimerRowView(timer, notifications, clock, parent);
    }

    SystemInfoManager system{{defaults, debugMode, notifications, power, sampler, host}};
    NetworkManager network{{defaults, debugMode, notifications, power, sampler, counters}};
    TimerManager timer{{defaults, debugMode, notifications, clock, alerts, sounds, desktop, [] {}}};
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
    inRuns(benchmark::RegisterBenchmark(
               "first_frame/widgets",
               ours(sampleTree(1000, 30), {WidgetType::SystemInfo, WidgetType::Network, WidgetType::Timer}))
               ->Arg(1000));
    inRuns(benchmark::RegisterBenchmark("first_frame/grouped", ours(sampleTree(10000, 30)))->Arg(10000));
    inRuns(benchmark::RegisterBenchmark("first_frame/flat", ours(sampleTree(10000, 0)))->Arg(10000));
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
