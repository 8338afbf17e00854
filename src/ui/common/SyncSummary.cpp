#include "ui/common/SyncSummary.h"

#include "base/Text.h"

#include <QLocale>

#include <array>
#include <span>
#include <utility>

namespace orvelle {

namespace {

using Count = std::pair<TextKey, qint64>;

QStringList countedLines(std::span<const Count> counts)
{
    QStringList lines;
    for (const auto &[key, count] : counts) {
        if (count > 0)
            lines += text(key, count);
    }
    return lines;
}

const std::array<TextKey, 3> detailTexts{"sync.details.pathChanged"_text, "sync.details.colorChanged"_text,
                                         "sync.details.iconChanged"_text};

} // namespace

QString buildSyncSummary(const SyncAnalysis &analysis)
{
    const Count counts[] = {{"sync.summary.updates %lld"_text,
                             analysis.count(SyncCategory::UpdatedRemote) + analysis.count(SyncCategory::UpdatedLocal)},
                            {"sync.summary.adds %lld"_text, analysis.count(SyncCategory::Added)},
                            {"sync.summary.removes %lld"_text, analysis.count(SyncCategory::Removed)},
                            {"sync.summary.duplicates %lld"_text, analysis.duplicateGroups.size()}};
    const QStringList lines = countedLines(counts);
    return lines.isEmpty() ? text("sync.summary.noChanges"_text) : lines.join(u'\n');
}

Alert syncResultAlert(const SyncResult &result)
{
    const Count counts[] = {{"sync.result.updated %lld"_text, result.updatedCount},
                            {"sync.result.added %lld"_text, result.addedCount},
                            {"sync.result.removed %lld"_text, result.removedCount},
                            {"sync.result.duplicates %lld"_text, result.duplicatesResolved}};
    const QStringList lines = countedLines(counts);
    Alert alert;
    alert.message = text("sync.complete"_text);
    alert.informativeText = lines.isEmpty() ? text("sync.result.noChanges"_text) : lines.join(u'\n');
    alert.buttons = {text("sheet.ok"_text)};
    return alert;
}

void showSyncResult(Alerts &alerts, const SyncResult &result)
{
    alerts.show(syncResultAlert(result));
}

QString syncLossLine(const SyncResult &result)
{
    QStringList parts;
    if (result.removedCount > 0)
        parts += text("sync.removed %lld"_text, result.removedCount);
    if (result.duplicatesResolved > 0)
        parts += text("sync.result.duplicatesResolved"_text) + QChar(QChar::Nbsp) +
                 QLocale().toString(result.duplicatesResolved);
    return parts.join(QStringLiteral(" · "));
}

QString syncDetailsText(const SyncChange &change)
{
    QStringList parts;
    for (const TextKey &known : detailTexts) {
        if (change.details.contains(QLatin1StringView(known.id)))
            parts += text(known);
    }
    if (parts.isEmpty())
        parts += text("sync.details.otherChanged"_text);
    if (change.category == SyncCategory::UpdatedLocal)
        parts += text("sync.details.newerHere"_text);
    return parts.join(QStringLiteral(" · "));
}

} // namespace orvelle
