#include "ui/settings/SnapshotTexts.h"

#include "base/Text.h"

#include <QLocale>

#include <array>

namespace orvelle {

namespace {

struct Reason {
    const char *name;
    TextKey text;
};

const std::array<Reason, 8> reasons{{
    {"remove", "snapshot.reason.remove"_text},
    {"replace", "snapshot.reason.replace"_text},
    {"import", "snapshot.reason.import"_text},
    {"merge", "snapshot.reason.merge"_text},
    {"sync", "snapshot.reason.sync"_text},
    {"undo", "snapshot.reason.undo"_text},
    {"redo", "snapshot.reason.redo"_text},
    {"restore", "snapshot.reason.restore"_text},
}};

} // namespace

QString snapshotReasonText(const QString &reason)
{
    for (const Reason &known : reasons) {
        if (reason == QLatin1StringView(known.name))
            return text(known.text);
    }
    return text("snapshot.reason.other"_text);
}

QString snapshotReasonText(const SnapshotInfo &snapshot)
{
    const QString reason = snapshotReasonText(snapshot.reason);
    const QString machine = snapshot.machine.simplified();
    return machine.isEmpty() ? reason : reason + QStringLiteral(" · ") + machine;
}

QString momentText(Timestamp moment, Timestamp now)
{
    const QDateTime local = moment.toDateTime().toLocalTime();
    const QDate today = now.toDateTime().toLocalTime().date();
    const QLocale locale;
    const QString time = locale.toString(local.time(), QLocale::ShortFormat);
    if (local.date() == today)
        return text("snapshot.today %@"_text, time);
    if (local.date() == today.addDays(-1))
        return text("snapshot.yesterday %@"_text, time);
    return locale.toString(local.date(), QLocale::LongFormat) + QStringLiteral(", ") + time;
}

QString itemCountText(qint64 count)
{
    return count == 1 ? text("snapshot.oneItem"_text) : text("snapshot.items %lld"_text, count);
}

} // namespace orvelle
