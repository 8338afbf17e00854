#include "sync/SyncControl.h"

#include "base/Text.h"

namespace orvelle {

QString syncNeedsUserTitle(const SyncStatus &status)
{
    if (!status.needsUser())
        return {};
    switch (status.state) {
    case SyncStatus::State::HeldBack:
        return text("menu.syncHeldBack"_text);
    case SyncStatus::State::NeedsPassphrase:
        return text("menu.syncPassphrase"_text);
    default:
        return text("menu.syncFailed"_text);
    }
}

} // namespace orvelle
