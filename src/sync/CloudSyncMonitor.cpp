#include "links/LinkStore.h"
#include "sync/CloudSyncPrivate.h"

using namespace Qt::StringLiterals;

namespace orvelle {

void CloudSync::Private::start()
{
    if (isMonitoring)
        stop();
    else
        unwatch(); // what was asked for by hand goes on
    if (container)
        watch();
    if (!active()) {
        // A server that is not watched is not asked whether it is there again.
        if (container && enabled())
            container->startWatching(fileName());
        announce();
        return;
    }
    isMonitoring = true;
    migrateFromBookmarkIfNeeded();
    container->startWatching(fileName());
    qCInfo(lcCloudSync).noquote() << "NSMetadataQuery démarrée pour le container iCloud";
    lastKnownSyncFileModDate = container->modificationDate(fileName());
    initialCheck();
    pollTimer = s.clock.repeating(pollPeriod, [this] { q->checkSyncIfNeeded(); });
    announce();
}

void CloudSync::Private::stop()
{
    cancelPending();
    abandon();
    pollTimer.reset();
    isMonitoring = false;
    unwatch();
}

void CloudSync::Private::unwatch()
{
    for (const QMetaObject::Connection &connection : connections)
        disconnect(connection);
    connections.clear();
    if (container)
        container->stopWatching();
}

void CloudSync::Private::watch()
{
    connections = {
        connect(container, &CloudContainer::gathered, q, [this](int count) { onGathered(count); }),
        connect(container, &CloudContainer::changed, q, [this] { onChanged(); }),
        connect(container, &CloudContainer::availabilityChanged, q,
                [this] {
                    if (active() != isMonitoring)
                        start();
                    announce();
                }),
        connect(container, &QObject::destroyed, q,
                [this] {
                    container = nullptr;
                    isMonitoring = false;
                    stop();
                }),
    };
}

/// Uploads wait for it.
void CloudSync::Private::initialCheck()
{
    switch (container->downloadStatus(fileName())) {
    case DownloadStatus::Current:
        check(false);
        break;
    case DownloadStatus::Placeholder:
    case DownloadStatus::Outdated:
        qCInfo(lcCloudSync).noquote()
            << "Fichier de synchro placeholder, attente du téléchargement avant d'autoriser les writes locales";
        initialDownload(placeholderTimeout);
        break;
    case DownloadStatus::NotVisible:
        qCInfo(lcCloudSync).noquote()
            << "Fichier de synchro non visible localement, tentative de download avant d'autoriser les writes";
        initialDownload(notVisibleTimeout);
        break;
    }
}

void CloudSync::Private::initialDownload(std::chrono::milliseconds timeout)
{
    waitForDownload(timeout, [this, timeout](bool downloaded) {
        if (downloaded) {
            check(false);
            return;
        }
        const auto seconds = static_cast<long>(std::chrono::duration_cast<std::chrono::seconds>(timeout).count());
        qCInfo(lcCloudSync, "Timeout download iCloud (%lds) — autorisation des writes locales sans merge initial",
               seconds);
        deferred = deferred || mustWrite;
        initialSyncDone();
    });
}

void CloudSync::Private::waitForDownload(std::chrono::milliseconds timeout, const Then<bool> &then)
{
    container->startDownload(fileName());
    pollDownload(static_cast<int>(timeout / downloadPoll), guarded(then));
}

void CloudSync::Private::pollDownload(int left, const Then<bool> &then)
{
    const bool downloaded = container->downloadStatus(fileName()) == DownloadStatus::Current;
    if (downloaded || left == 0)
        then(downloaded);
    else
        s.clock.after(downloadPoll, q, guarded([this, left, then] { pollDownload(left - 1, then); }));
}

void CloudSync::Private::initialSyncDone()
{
    isInitialSyncComplete = true;
    if (std::exchange(deferred, false) && active())
        schedule(uploadDelay);
    announce();
}

void CloudSync::Private::onGathered(int count)
{
    if (!isMonitoring)
        return;
    qCInfo(lcCloudSync, "NSMetadataQuery: gathering terminé, %ld résultat(s)", static_cast<long>(count));
    check(false);
}

void CloudSync::Private::onChanged()
{
    switch (container->downloadStatus(fileName())) {
    case DownloadStatus::Outdated:
    case DownloadStatus::Placeholder:
        qCInfo(lcCloudSync).noquote() << "NSMetadataQuery: nouvelle version disponible, téléchargement...";
        container->startDownload(fileName());
        break;
    case DownloadStatus::Current:
        check(false);
        break;
    case DownloadStatus::NotVisible:
        break;
    }
}

void CloudSync::checkSyncIfNeeded()
{
    Private &d = *m_d;
    const Timestamp now = d.s.clock.now();
    const double throttle = std::chrono::duration<double>(checkThrottle).count();
    // A clock that was set back must not stop the checks.
    if (d.lastSyncCheckDate && *d.lastSyncCheckDate <= now && now - *d.lastSyncCheckDate < throttle)
        return;
    d.lastSyncCheckDate = now;
    d.check(true);
}

void CloudSync::Private::check(bool polled)
{
    if (!active() || (notBefore && notBefore->holds(s.clock.now())))
        return;
    // What happens meanwhile is looked at when there is time for it.
    if (isMerging || isCheckingSyncFile || upload) {
        checkAgain = checkAgain || !polled;
        return;
    }
    if (uploadTimer) {
        qCInfo(lcCloudSync).noquote() << "Annulation de l'autoSync en attente — un check distant prend la priorité";
        cancelPending();
        // If this check does not get to it, the upload does.
        deferred = true;
    }
    const DownloadStatus status = container->downloadStatus(fileName());
    if (status != DownloadStatus::Current) {
        container->startDownload(fileName());
        if (!std::exchange(toldToWait, true))
            qCInfo(lcCloudSync).noquote() << "Fichier de synchro pas encore téléchargé, téléchargement demandé";
        if (isInitialSyncComplete) {
            if (status == DownloadStatus::NotVisible)
                noteMissing();
            initialSyncDone();
        }
        return;
    }
    toldToWait = false;
    isCheckingSyncFile = true;
    container->read(fileName(), guarded([this, polled](const auto &result) { checkRead(result, polled); }));
}

void CloudSync::handleSystemDidWake()
{
    if (!m_d->active())
        return;
    qCInfo(lcCloudSync).noquote() << "Réveil système — relance du monitoring de synchro iCloud";
    startSyncFileMonitoring();
}

} // namespace orvelle
