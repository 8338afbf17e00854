// The list of links in the settings window: how long it takes to open, to
// follow a key typed into its search field, and to follow a drag. Needs a
// display.
#include "SampleTrees.h"
#include "Statistics.h"
#include "ui/UiWorld.h"
#include "ui/settings/LinkDropDelegate.h"
#include "ui/settings/LinkTreeView.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QPaintEvent>

using namespace orvelle;
using namespace orvelle::bench;

namespace {

/// A settings window over a tree of that many links.
class Settings
{
public:
    Settings(int links, int groups)
    {
        static_cast<void>(m_world.defaults.write(QStringLiteral("HasLaunchedBefore"), true));
        m_world.links.edit(LinkStore::Step::Ordinary, QStringLiteral("sample"), [links, groups](LinkList &tree) {
            tree = sampleTree(links, groups);
            return true;
        });
    }

    void open()
    {
        m_window = std::make_unique<SettingsWindow>(m_world.settings());
        m_window->setAttribute(Qt::WA_DeleteOnClose, false);
        m_window->show();
    }
    void openOnce()
    {
        if (m_window)
            return;
        open();
        QApplication::processEvents();
    }
    void close() { m_window.reset(); }
    LinkTreeView &list() const { return *m_window->findChild<LinkTreeView *>(); }
    QLineEdit &search() const { return *m_window->findChild<QLineEdit *>(QStringLiteral("linkSearch")); }

private:
    test::UiWorld m_world;
    std::unique_ptr<SettingsWindow> m_window;
};

/// Runs the event loop until the list has been painted.
class Painted : public QObject
{
public:
    explicit Painted(QWidget &list) { list.installEventFilter(this); }

    void wait()
    {
        while (!m_done)
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            m_done = true;
        return false;
    }

private:
    bool m_done = false;
};

void opens(benchmark::State &state, int groups)
{
    Settings settings(static_cast<int>(state.range(0)), groups);
    for (auto _ : state) {
        settings.open();
        Painted(*settings.list().viewport()).wait();
        state.PauseTiming();
        settings.close();
        QApplication::processEvents();
        state.ResumeTiming();
    }
}

/// Types one letter after the other, as somebody would who looks for a link;
/// each run is the next letter.
void keystroke(benchmark::State &state, Settings &settings)
{
    settings.openOnce();
    const QString word = QStringLiteral("link 99");
    for (auto _ : state) {
        const qsizetype length = settings.search().text().size();
        const bool again = length == word.size();
        Painted painted(*settings.list().viewport());
        const QString letter = again ? QString() : QString(word[length]);
        QKeyEvent press(QEvent::KeyPress, again ? Qt::Key_Escape : Qt::Key_L, Qt::NoModifier, letter);
        QApplication::sendEvent(&settings.search(), &press);
        settings.list().viewport()->update();
        painted.wait();
    }
}

/// The pointer moves down the list with something to drop.
void dragMove(benchmark::State &state, Settings &settings)
{
    settings.openOnce();
    QWidget *rows = settings.list().viewport();
    QMimeData payload;
    payload.setText(QStringLiteral("https://example.org"));
    QDragEnterEvent enter({20, 20}, Qt::CopyAction, &payload, Qt::LeftButton, {});
    QApplication::sendEvent(rows, &enter);
    static int y = 40;
    for (auto _ : state) {
        y = y > rows->height() - 60 ? 40 : y + 7;
        QDragMoveEvent move({60, y}, Qt::CopyAction, &payload, Qt::LeftButton, {});
        QApplication::sendEvent(rows, &move);
        rows->repaint();
    }
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const auto with = [](auto run, auto of) { return [run, of](benchmark::State &state) { run(state, of); }; };
    Settings flat(10000, 0);
    Settings grouped(10000, 300);
    inRuns(benchmark::RegisterBenchmark("list_opens/flat", with(opens, 0))->Arg(10));
    inRuns(benchmark::RegisterBenchmark("list_opens/flat", with(opens, 0))->Arg(10000));
    inRuns(benchmark::RegisterBenchmark("list_opens/grouped", with(opens, 300))->Arg(10000));
    inRuns(benchmark::RegisterBenchmark("list_key/flat", with(keystroke, std::ref(flat)))->Arg(10000));
    inRuns(benchmark::RegisterBenchmark("list_key/grouped", with(keystroke, std::ref(grouped)))->Arg(10000));
    inRuns(benchmark::RegisterBenchmark("list_drag/flat", with(dragMove, std::ref(flat)))->Arg(10000));
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
