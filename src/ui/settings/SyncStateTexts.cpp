#include "ui/settings/SyncStateTexts.h"

#include "base/Text.h"
#include "ui/settings/SnapshotTexts.h"

#include <array>

namespace orvelle {

namespace {

struct StateRow {
    SyncStatus::State state;
    TextKey text;
    SyncStateLook look;
};

using State = SyncStatus::State;
const std::array<StateRow, 9> states{{
    {State::Off, "cloudSync.state.off"_text, {"minus.circle.fill", ""}},
    {State::Unavailable, "cloudSync.icloudUnavailable"_text, {"exclamationmark.cloud", "orange"}},
    {State::Starting, "cloudSync.state.starting"_text, {"arrow.triangle.2.circlepath", ""}},
    {State::Current, "cloudSync.state.current"_text, {"checkmark.circle.fill", "green"}},
    {State::Waiting, "cloudSync.state.waiting"_text, {"arrow.triangle.2.circlepath", ""}},
    {State::Working, "cloudSync.state.working"_text, {"arrow.triangle.2.circlepath", "blue"}},
    {State::HeldBack, "cloudSync.state.heldBack"_text, {"exclamationmark.triangle.fill", "orange"}},
    {State::NeedsPassphrase, "cloudSync.state.needsPassphrase"_text, {"lock.fill", "orange"}},
    {State::Failed, "cloudSync.state.failed"_text, {"exclamationmark.triangle.fill", "red"}},
}};

const StateRow &rowOf(State state)
{
    return states.at(static_cast<std::size_t>(state));
}

} // namespace

SyncStateLook syncStateLook(State state)
{
    return rowOf(state).look;
}

QString syncStateText(const SyncStatus &status, Timestamp now)
{
    QStringList sentences{text(rowOf(status.state).text)};
    if (!status.failure.isEmpty())
        sentences += status.failure;
    if (status.retryAt)
        sentences += text("cloudSync.retryAt %@"_text, momentText(*status.retryAt, now));
    return sentences.join(u' ');
}

QString syncHistoryText(const SyncStatus &status, Timestamp now)
{
    QStringList parts;
    if (status.lastSyncDate)
        parts += text("cloudSync.lastSync %@"_text, momentText(*status.lastSyncDate, now));
    if (status.lastSyncedFromDevice && !status.lastSyncedFromDevice->isEmpty())
        parts += text("cloudSync.lastDevice %@"_text, *status.lastSyncedFromDevice);
    return parts.join(QStringLiteral(" · "));
}

} // namespace orvelle
