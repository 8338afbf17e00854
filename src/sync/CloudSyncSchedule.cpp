#include "links/LinkStore.h"
#include "sync/CloudSyncPrivate.h"

using namespace Qt::StringLiterals;

namespace orvelle {

void CloudSync::scheduleAutoSync()
{
    Private &d = *m_d;
    if (!d.active() || d.s.links.isAutoSyncingFromFile() || d.isApplyingRemoteSettings)
        return;
    d.echoes = 0;
    if (d.held) {
        d.deferred = true;
        return;
    }
    d.schedule(uploadDelay);
    d.announce();
}

void CloudSync::Private::schedule(std::chrono::milliseconds delay)
{
    const Timestamp now = s.clock.now();
    Timestamp due = now + std::chrono::duration<double>(delay).count();
    if (failures > 0 && retry && retry->holds(now))
        due = std::max(due, retry->until);
    if (notBefore && notBefore->holds(now))
        due = std::max(due, notBefore->until);
    if (!waitingSince || *waitingSince > now)
        waitingSince = now;
    const auto wait = std::chrono::milliseconds(qRound64((due - now) * 1000));
    uploadTimer = s.clock.singleShot(wait, [this] {
        uploadTimer.reset();
        uploadDue();
    });
}

void CloudSync::Private::cancelPending()
{
    uploadTimer.reset();
}

void CloudSync::Private::uploadDue()
{
    if (!active())
        return;
    if (!isInitialSyncComplete) {
        qCInfo(lcCloudSync).noquote() << "AutoSync reporté — check initial pas encore terminé";
        deferred = true;
    } else if (isCheckingSyncFile || isMerging) {
        schedule(uploadDelay);
    } else {
        saveSilently();
    }
    announce();
}

void CloudSync::Private::saveSilently()
{
    if (upload) {
        qCInfo(lcCloudSync).noquote() << "Autosync silencieux déjà en cours — re-planification dans 5s";
        q->scheduleAutoSync();
        return;
    }
    if (held) {
        deferred = true;
        return;
    }
    beginUpload(std::make_shared<Upload>());
}

void CloudSync::Private::retryLater(const SyncProblem &why)
{
    setProblem(why);
    mustWrite = true;
    if (!active())
        return;
    constexpr int mostDoublings = 6;
    const auto delay = std::min(uploadDelay * (1 << std::min(failures, mostDoublings)), longestRetryDelay);
    ++failures;
    const Timestamp now = s.clock.now();
    retry = {now, now + std::chrono::duration<double>(delay).count()};
    if (notBefore && notBefore->holds(now))
        retry->until = std::max(retry->until, notBefore->until);
    schedule(uploadDelay);
}

} // namespace orvelle
