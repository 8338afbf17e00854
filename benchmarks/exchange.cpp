// The exchange document: writing and reading one beside a bare pass of the
// JSON library over the same bytes.
#include "SampleTrees.h"
#include "Statistics.h"
#include "links/HomePaths.h"
#include "links/exchange/ExchangeDocument.h"
#include "links/exchange/ExchangeImport.h"
#include "support/Fakes.h"

#include <QCoreApplication>

#include <rapidjson/document.h>
#include <rapidjson/prettywriter.h>
#include <simdjson.h>

using namespace orvelle;
using namespace orvelle::bench;

namespace {

const QString home = QStringLiteral("/home/ada");

ExportData sampleDocument(benchmark::State &state)
{
    ExportData document;
    document.links = heavySampleTree(static_cast<int>(state.range(0)), 100);
    return document;
}

void parseOnly(benchmark::State &state)
{
    const QByteArray bytes = encodeExchange(sampleDocument(state));
    const simdjson::padded_string padded(bytes.constData(), static_cast<size_t>(bytes.size()));
    for (auto _ : state) {
        simdjson::dom::parser parser;
        benchmark::DoNotOptimize(parser.parse(padded).error());
    }
    state.counters["bytes"] = static_cast<double>(bytes.size());
}

void writeOnly(benchmark::State &state)
{
    const QByteArray bytes = encodeExchange(sampleDocument(state));
    rapidjson::Document parsed;
    if (parsed.Parse(bytes.constData(), static_cast<size_t>(bytes.size())).HasParseError())
        state.SkipWithError("the document is not JSON");
    for (auto _ : state) {
        rapidjson::StringBuffer buffer;
        rapidjson::PrettyWriter writer(buffer);
        writer.SetIndent(' ', 2);
        parsed.Accept(writer);
        benchmark::DoNotOptimize(buffer.GetString());
    }
}

/// All that an export does but for the settings, which are a dozen values.
void exportDocument(benchmark::State &state)
{
    ExportData document = sampleDocument(state);
    const LinkList links = document.links;
    for (auto _ : state) {
        document.links = makePortable(links, home);
        const ExchangeDigests digests = exchangeDigests(document);
        document.checksum = digests.links;
        benchmark::DoNotOptimize(encodeExchange(document));
    }
}

/// The same up to the point where the tree is stored.
void importDocument(benchmark::State &state)
{
    const QByteArray bytes = encodeExchange(sampleDocument(state));
    test::FakeFileBookmarks bookmarks;
    for (auto _ : state) {
        auto prepared = prepareImport(bytes, bookmarks, home, {});
        LinkList tree;
        if (!prepared || applyImport(tree, prepared->items, ImportMode::Replace).imported == 0)
            state.SkipWithError("the document was refused");
        // Taking the old state apart is no part of an import.
        state.PauseTiming();
        prepared = ImportError{};
        tree.clear();
        state.ResumeTiming();
    }
}

void checksum(benchmark::State &state)
{
    const LinkList links = heavySampleTree(static_cast<int>(state.range(0)), 100);
    for (auto _ : state)
        benchmark::DoNotOptimize(linksChecksum(links));
}

void addBenchmarks()
{
    const std::pair<const char *, void (*)(benchmark::State &)> all[] = {{"import/simdjson", parseOnly},
                                                                         {"import/orvelle", importDocument},
                                                                         {"export/rapidjson", writeOnly},
                                                                         {"export/orvelle", exportDocument},
                                                                         {"checksum/orvelle", checksum}};
    for (const auto &[name, function] : all)
        inRuns(benchmark::RegisterBenchmark(name, function)->Arg(10000));
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    addBenchmarks();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
