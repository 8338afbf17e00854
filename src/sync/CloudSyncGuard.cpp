#include "links/LinkStore.h"
#include "links/exchange/ExchangeDocument.h"
#include "platform/UserDefaults.h"
#include "sync/CloudSyncPrivate.h"

using namespace Qt::StringLiterals;

namespace orvelle {

bool CloudSync::isGuardEnabled() const
{
    return m_d->guardEnabled();
}

bool CloudSync::Private::guardEnabled() const
{
    return s.defaults.get<bool>(guardEnabledKey()).value_or(true);
}

void CloudSync::setGuardEnabled(bool enabled)
{
    Private &d = *m_d;
    if (enabled == d.guardEnabled())
        return;
    if (const auto stored = d.s.defaults.write(guardEnabledKey(), enabled); !stored)
        qCWarning(lcCloudSync).noquote() << "Could not store the guard's switch:" << stored.error().detail;
}

std::optional<HeldBackChange> CloudSync::heldBack() const
{
    return m_d->held ? std::optional(m_d->held->change) : std::nullopt;
}

/// Nothing is stored of it: while the file stays as it is, each start comes to
/// the same decision.
bool CloudSync::Private::holdsBack(const DocumentPtr &document, SyncSource source, const SyncMergeInput &input,
                                   const Merged &merged)
{
    if (!merged.outcome.massRemoval || !guardEnabled() || accepted == document->versionId)
        return false;
    hold({.change = {.removal = *merged.outcome.massRemoval, .analysis = *merged.analysis},
          .document = document,
          .links = input.local,
          .isCopy = source == SyncSource::ConflictCopy});
    return true;
}

/// Whether the same decision would come of the same document, so that it need
/// not be merged at each look.
bool CloudSync::Private::wouldBeHeldAgain() const
{
    return held && !held->change.isLoad && guardEnabled() && held->links.isSharedWith(s.links.links());
}

void CloudSync::Private::hold(const Held &now)
{
    const MassRemoval &removal = now.change.removal;
    const bool sameAsBefore = held && held->document->versionId == now.document->versionId;
    if (!sameAsBefore)
        qCWarning(lcCloudSync) << "Held back: a change would remove" << removal.removed << "of" << removal.of;
    held = now;
    held->change.device = now.document->content.document->lastModifiedBy.value_or(QString());
    held->change.version = now.document->versionId;
    deferred = deferred || uploadTimer;
    cancelPending();
    announce();
    if (!sameAsBefore)
        emit s.notifications.syncStatusChanged();
}

void CloudSync::Private::release()
{
    held.reset();
    accepted.clear();
    rejected.clear();
}

/// Nothing is left to decide about a version that is not in the file any more.
void CloudSync::Private::dropOvertaken()
{
    if (!held || held->change.isLoad || held->isCopy)
        return;
    qCInfo(lcCloudSync) << "What was held back is not in the file any more";
    held.reset();
    announce();
}

void CloudSync::acceptHeldBack()
{
    Private &d = *m_d;
    if (!d.held)
        return;
    const Private::Held taken = *std::exchange(d.held, std::nullopt);
    d.accepted = taken.document->versionId;
    if (!taken.change.isLoad) {
        d.check(false);
    } else {
        d.load(taken.document, true, [&d](const Private::Loaded &loaded) {
            if (loaded)
                return;
            SyncProblem why;
            why.sentence = loaded.error().description;
            d.setProblem(why);
            d.announce();
        });
    }
    d.announce();
}

void CloudSync::rejectHeldBack()
{
    Private &d = *m_d;
    if (!d.held)
        return;
    const Private::Held taken = *std::exchange(d.held, std::nullopt);
    if (!taken.change.isLoad)
        d.rejected = taken.document->versionId;
    d.check(false);
    d.announce();
}

} // namespace orvelle
