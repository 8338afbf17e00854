// Edits of a large tree, without the store's write.
#include "SampleTrees.h"
#include "Statistics.h"
#include "links/LinkEditing.h"

using namespace orvelle;
using namespace orvelle::bench;

namespace {

constexpr Timestamp now{800'000'000};

/// A tree is edited while another copy of it is kept, as the store does for
/// undo.
void move(benchmark::State &state)
{
    const LinkList tree = heavySampleTree(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    const bool grouped = state.range(1) > 0;
    const LinkList &firstList = grouped ? *tree.constFirst().children : tree;
    const QUuid id = firstList.at(firstList.size() / 2).id;
    const auto target = grouped ? std::optional(tree.constLast().id) : std::nullopt;
    for (auto _ : state) {
        LinkList edited = tree;
        if (moveItem(edited, id, target, 3, now))
            state.SkipWithError("the move was refused");
        benchmark::DoNotOptimize(edited);
        // Taking the copy apart comes when its undo step is forgotten.
        state.PauseTiming();
        edited = {};
        state.ResumeTiming();
    }
}

void moveHundred(benchmark::State &state)
{
    const LinkList tree = heavySampleTree(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    QList<QUuid> ids;
    for (const LinkItem &group : tree)
        ids += group.children->constFirst().id;
    for (auto _ : state) {
        LinkList edited = tree;
        if (moveItems(edited, ids, tree.constLast().id, 3, now))
            state.SkipWithError("the move was refused");
        benchmark::DoNotOptimize(edited);
        state.PauseTiming();
        edited = {};
        state.ResumeTiming();
    }
}

} // namespace

int main(int argc, char **argv)
{
    inRuns(benchmark::RegisterBenchmark("move/grouped", move)->Args({10000, 100}));
    inRuns(benchmark::RegisterBenchmark("move/flat", move)->Args({10000, 0}));
    inRuns(benchmark::RegisterBenchmark("move/hundred", moveHundred)->Args({10000, 100}));
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
