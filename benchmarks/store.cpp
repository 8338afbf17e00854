// The store: reading a tree beside a bare parse of the same bytes, and one
// durable edit.
#include "SampleTrees.h"
#include "Statistics.h"
#include "base/Notifications.h"
#include "links/LinkCodec.h"
#include "links/LinkStore.h"
#include "links/SnapshotStore.h"
#include "platform/freedesktop/SystemClock.h"
#include "platform/freedesktop/defaults/SqliteUserDefaults.h"
#include "services/DebugModeManager.h"
#include "support/Fakes.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <simdjson.h>

#include <cstdio>

using namespace orvelle;
using namespace orvelle::bench;

namespace {

/// The real store on a real disk; only what it asks of the rest of the
/// desktop is played.
struct Profile {
    explicit Profile(const LinkList &links)
    {
        auto opened = SqliteUserDefaults::open(folder.path(), clock);
        if (!opened)
            qFatal("cannot open the settings");
        defaults = std::move(std::move(opened).value().defaults);
        if (!defaults->write(LinkStore::linksBaseKey(), encodeLinks(links)))
            qFatal("cannot store the tree");
    }

    std::unique_ptr<LinkStore> store()
    {
        return std::make_unique<LinkStore>(LinkStore::Services{*defaults, debugMode(), notifications, clock, bookmarks,
                                                               volumes, power, snapshots, hooks});
    }
    DebugModeManager &debugMode()
    {
        if (!m_debugMode)
            m_debugMode = std::make_unique<DebugModeManager>(*defaults, notifications);
        return *m_debugMode;
    }

    QTemporaryDir folder;
    SystemClock clock;
    std::unique_ptr<SqliteUserDefaults> defaults;
    Notifications notifications;
    test::FakeFileBookmarks bookmarks;
    test::FakeVolumes volumes;
    test::FakePowerEvents power;
    test::FakeLinkStoreHooks hooks;
    SnapshotStore snapshots{folder.filePath(QStringLiteral("snapshots")), clock};

private:
    std::unique_ptr<DebugModeManager> m_debugMode;
};

void parseOnly(benchmark::State &state)
{
    const QByteArray bytes = encodeLinks(heavySampleTree(static_cast<int>(state.range(0)), 100));
    const simdjson::padded_string padded(bytes.constData(), static_cast<size_t>(bytes.size()));
    for (auto _ : state) {
        simdjson::dom::parser parser;
        benchmark::DoNotOptimize(parser.parse(padded).error());
    }
    state.counters["bytes"] = static_cast<double>(bytes.size());
}

void load(benchmark::State &state)
{
    Profile profile(heavySampleTree(static_cast<int>(state.range(0)), 100));
    for (auto _ : state) {
        const auto bytes = profile.defaults->get<QByteArray>(LinkStore::linksBaseKey());
        auto links = decodeLinks(*bytes);
        benchmark::DoNotOptimize(links);
        // Loading ends with the tree in memory; taking it apart comes later.
        state.PauseTiming();
        links = LinkCodecError{};
        state.ResumeTiming();
    }
}

void edit(benchmark::State &state)
{
    Profile profile(heavySampleTree(static_cast<int>(state.range(0)), 30));
    const auto store = profile.store();
    LinkItem item = store->links().constFirst().children->constFirst();
    int count = 0;
    for (auto _ : state) {
        item.name = QStringLiteral("Renamed %1").arg(++count);
        if (!store->updateLink(item))
            state.SkipWithError("the edit was refused");
    }
    if (store->hasUnsavedChanges())
        state.SkipWithError("the edit was not stored");
}

void addBenchmarks()
{
    inRuns(benchmark::RegisterBenchmark("load/simdjson", parseOnly)->Arg(10000));
    inRuns(benchmark::RegisterBenchmark("load/orvelle", load)->Arg(10000));
    inRuns(benchmark::RegisterBenchmark("edit/orvelle", edit)->Arg(1000));
    inRuns(benchmark::RegisterBenchmark("edit/orvelle", edit)->Arg(10000));
}

/// For script/bench: makes the settings of a program that has 1,000 links. They
/// are too long for a command line.
int seedSettings(const QString &folder)
{
    SystemClock clock;
    auto opened = SqliteUserDefaults::open(folder, clock);
    if (!opened)
        return 1;
    const auto written = opened->defaults->write(LinkStore::linksBaseKey(), encodeLinks(sampleTree(1000, 30)));
    return written ? 0 : 1;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (argc == 3 && QByteArray(argv[1]) == "--seed-settings")
        return seedSettings(QFile::decodeName(argv[2]));
    addBenchmarks();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
