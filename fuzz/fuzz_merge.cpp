#include "links/LinkTree.h"
#include "links/exchange/ExchangeDocument.h"
#include "sync/ItemDates.h"
#include "sync/LinkMerge.h"
#include "sync/SyncAnalysis.h"

#include <cstdint>
#include <cstdlib>

using namespace orvelle;

namespace {

void check(bool holds)
{
    if (!holds)
        std::abort();
}

void checkMerge(const ExportData &local, const ExportData &remote)
{
    const bool prefer = prefersRemoteOrder(local.links, remote.exportDate);
    const LinkList merged = autoMergeLinks(local.links, remote.links, remote.exportDate, prefer, {});
    QHash<QString, Timestamp> dates;
    walk(merged, [&dates](const LinkItem &item) { dates.insert(item.stableId, itemDate(item)); });
    check(dates.size() == countAll(merged));
    const auto checkNewest = [&dates](const LinkItem &item) {
        check(dates.contains(item.stableId) && dates.value(item.stableId) >= itemDate(item));
    };
    walk(remote.links, checkNewest);
    if (prefer)
        walk(local.links, checkNewest);
    check(deduplicateByStableId(merged) == merged);
    const SyncAnalysis analysis = analyzeSyncChanges(local.links, remote.links, remote.exportDate);
    check(analysis.changes.size() >= collectAllStableIds(remote.links).size());
}

} // namespace

/// Two documents, with a zero byte between them, are merged both ways.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const qsizetype middle = bytes.indexOf('\0');
    const auto local = decodeExchange(bytes.left(middle));
    const auto remote = middle < 0 ? decodeExchange(bytes) : decodeExchange(bytes.mid(middle + 1));
    if (!local || !remote)
        return 0;
    checkMerge(*local, *remote);
    checkMerge(*remote, *local);
    return 0;
}
