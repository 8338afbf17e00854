// The merge of two machines' trees, beside copying both once so that nothing
// is shared with the original: every item, list, text and picture its own
// memory, as a tree has after it was read.
#include "SampleTrees.h"
#include "Statistics.h"
#include "sync/LinkMerge.h"

#include <QCoreApplication>

using namespace orvelle;
using namespace orvelle::bench;

namespace {

constexpr Timestamp exportDate{790'000'000};

QString copied(const QString &text)
{
    return QString(text.constData(), text.size());
}

template<typename Bytes>
std::optional<Bytes> copied(const std::optional<Bytes> &bytes)
{
    return bytes ? std::optional(Bytes(bytes->constData(), bytes->size())) : std::nullopt;
}

LinkList deepCopy(const LinkList &links)
{
    LinkList copy;
    copy.reserve(links.size());
    for (const LinkItem &item : links) {
        LinkItem &own = copy.emplaceBack(item);
        own.name = copied(item.name);
        own.path = copied(item.path);
        own.stableId = copied(item.stableId);
        own.bookmarkData = copied(item.bookmarkData);
        own.customIconName = copied(item.customIconName);
        own.customIconColor = copied(item.customIconColor);
        own.noteContent = copied(item.noteContent);
        own.noteRTFData = copied(item.noteRTFData);
        if (item.children)
            own.children = deepCopy(*item.children);
    }
    return copy;
}

/// The other machine's tree: a tenth renamed, a tenth moved to another group,
/// a hundredth new, and a hundredth gone.
LinkList editedThere(LinkList tree)
{
    int number = 0;
    for (qsizetype g = 0; g < tree.size(); ++g) {
        LinkList &members = *tree[g].children;
        for (qsizetype i = 0; i < members.size(); ++i, ++number) {
            if (number % 10 == 1) {
                members[i].name += QStringLiteral(" there");
                members[i].modifiedAt = exportDate;
            } else if (number % 10 == 2) {
                LinkItem moved = members.takeAt(i--);
                moved.modifiedAt = exportDate;
                tree[(g + 1) % tree.size()].children->append(moved);
            } else if (number % 100 == 3) {
                members[i].stableId += u'N';
            }
        }
    }
    return tree;
}

struct Trees {
    LinkList local = deepCopy(sampleTree(10'000, 100));
    LinkList remote = deepCopy(editedThere(local));
    // Edited here as well, so that what is gone there is removed.
    Trees() { local[0].modifiedAt = exportDate; }
};

void copyBoth(benchmark::State &state)
{
    const Trees trees;
    for (auto _ : state) {
        const LinkList local = deepCopy(trees.local);
        const LinkList remote = deepCopy(trees.remote);
        benchmark::DoNotOptimize(local.constData());
        benchmark::DoNotOptimize(remote.constData());
    }
}

void mergeTrees(benchmark::State &state)
{
    const Trees trees;
    qint64 removed = 0;
    for (auto _ : state) {
        const bool prefer = prefersRemoteOrder(trees.local, exportDate);
        const LinkList merged =
            autoMergeLinks(trees.local, trees.remote, exportDate, prefer, [&removed](const QString &) { ++removed; });
        benchmark::DoNotOptimize(merged.constData());
    }
    if (removed == 0)
        state.SkipWithError("nothing was removed: these are not the trees that were meant");
}

void mergeEqual(benchmark::State &state)
{
    const Trees trees;
    const LinkList other = deepCopy(trees.local);
    for (auto _ : state) {
        const LinkList merged = autoMergeLinks(trees.local, other, exportDate, false, {});
        if (merged.constData() != trees.local.constData())
            state.SkipWithError("something changed");
    }
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const std::pair<const char *, void (*)(benchmark::State &)> all[] = {
        {"merge/copy", copyBoth}, {"merge/edited", mergeTrees}, {"merge/equal", mergeEqual}};
    for (const auto &[name, function] : all)
        inRuns(benchmark::RegisterBenchmark(name, function));
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
