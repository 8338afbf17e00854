#include "base/Text.h"
#include "links/LinkStore.h"
#include "links/SnapshotStore.h"
#include "links/exchange/ExchangeDocument.h"
#include "sync/CloudSyncPrivate.h"
#include "sync/LinkMerge.h"

using namespace Qt::StringLiterals;

namespace orvelle {

void CloudSync::saveToCloud(const Done &completion)
{
    const auto wanted = std::make_shared<Private::Upload>();
    wanted->done = m_d->owed(completion);
    m_d->saveByHand(wanted);
}

void CloudSync::beginAnew(const Done &completion)
{
    const auto wanted = std::make_shared<Private::Upload>();
    wanted->done = m_d->owed(completion);
    wanted->replaces = true;
    m_d->saveByHand(wanted);
}

void CloudSync::Private::saveByHand(const UploadPtr &wanted)
{
    if (upload || isCheckingSyncFile || isMerging) {
        waitByHand(wanted);
        return;
    }
    if (wanted->replaces)
        release(); // what was held back is in the document that gives way
    // What was not there a while ago may be there now.
    if (container && !available() && !std::exchange(wanted->lookedAgain, true)) {
        container->read(fileName(), guarded([this, wanted](const auto &) { saveByHand(wanted); }));
        return;
    }
    if (!available() || held) {
        const QString why =
            held ? text("cloudSync.failure.heldBack"_text) : cloudErrorText({CloudError::Kind::Unavailable, {}, {}});
        s.clock.after(std::chrono::milliseconds(0), q, [done = wanted->done, why] {
            done(CloudSyncError{CloudSyncError::Kind::ReadFailed, why});
        });
        return;
    }
    wanted->source = SyncSource::ManualSave;
    cancelPending();
    beginUpload(wanted);
}

/// What is under way ends soon, or hangs in a place that answers nobody.
void CloudSync::Private::waitByHand(const UploadPtr &wanted)
{
    constexpr std::chrono::milliseconds first{100};
    constexpr std::chrono::milliseconds longest{2000};
    constexpr std::chrono::milliseconds patience{60000};
    if (wanted->waited >= patience) {
        // Of the place is not known more than that.
        const auto why = problemOf(CloudError{CloudError::Kind::TimedOut});
        qCWarning(lcCloudSync).noquote() << "What was asked for by hand was given up:" << why.detail;
        wanted->done(CloudSyncError{CloudSyncError::Kind::ReadFailed, why.sentence});
        return;
    }
    const auto pause = std::clamp(wanted->waited, first, longest);
    wanted->waited += pause;
    s.clock.after(pause, q, guarded([this, wanted] { saveByHand(wanted); }));
}

void CloudSync::Private::beginUpload(const UploadPtr &begun)
{
    upload = begun;
    announce();
    if (begun->source == SyncSource::ManualSave || mustWrite) {
        attempt(begun);
        return;
    }
    exportFor(begun, [this, begun] {
        const bool unchanged =
            begun->exported.checksum == lastWrittenChecksum && begun->exported.contentDigest == lastWrittenContent;
        if (unchanged)
            finish(begun, begun->result);
        else
            attempt(begun);
    });
}

void CloudSync::Private::attempt(const UploadPtr &begun)
{
    if (begun->attempt++ == maxAttempts) {
        fail(begun, CloudSyncError::Kind::WriteFailed, problemOf(CloudError{CloudError::Kind::Conflict}));
        return;
    }
    forceDownload([this, begun] {
        container->read(fileName(), guarded([this, begun](const Result<CloudFile, CloudError> &result) {
                            if (result)
                                decode(*result, [this, begun](const ReadResult &read) { uploadRead(begun, read); });
                            else
                                uploadRead(begun, ReadResult(problemOf(result.error())));
                        }));
    });
}

/// A stale copy is never merged, if the place can do something about it.
void CloudSync::Private::forceDownload(const std::function<void()> &then)
{
    if (container->downloadStatus(fileName()) == DownloadStatus::NotVisible) {
        then();
        return;
    }
    if (const auto evicted = container->evict(fileName()); !evicted)
        saySeldom(u"Éviction impossible (normal si pas dans iCloud): %1"_s.arg(problemOf(evicted.error()).detail));
    saySeldom(u"Fichier de synchro évincé, re-téléchargement forcé..."_s);
    waitForDownload(forcedDownloadTimeout, [then](bool downloaded) {
        if (!downloaded)
            qCInfo(lcCloudSync).noquote() << "Timeout lors du re-téléchargement forcé du fichier de synchro";
        then();
    });
}

void CloudSync::Private::uploadRead(const UploadPtr &begun, const ReadResult &result)
{
    if (!result && result.error().missing) {
        begun->remote.reset();
        begun->taken = {.differs = true};
        exportFor(begun, [this, begun] { exported(begun); });
        return;
    }
    if (!result) {
        fail(begun, CloudSyncError::Kind::ReadFailed, result.error());
        return;
    }
    begun->remote = *result;
    if (begun->replaces)
        keepReplaced(begun);
    else
        take(*result, begun->source, false, [this, begun](const Taken &taken) { uploadTaken(begun, taken); });
}

void CloudSync::Private::uploadTaken(const UploadPtr &begun, const Taken &taken)
{
    begun->taken = taken;
    if (taken.problem) {
        fail(begun, CloudSyncError::Kind::ReadFailed, *taken.problem);
    } else if (taken.heldBack) {
        deferred = true;
        finish(begun, CloudSyncError{CloudSyncError::Kind::UserCancelled, text("cloudSync.failure.heldBack"_text)});
    } else {
        exportFor(begun, [this, begun] { exported(begun); });
    }
}

/// What others wrote may be nowhere else.
void CloudSync::Private::keepReplaced(const UploadPtr &begun)
{
    const DocumentPtr document = begun->remote;
    onWorker<QByteArray>(
        [document] {
            const auto packed = packSnapshot(document->content.items);
            return packed ? *packed : QByteArray();
        },
        [this, begun, document](const QByteArray &packed) {
            const QString machine = document->content.document->lastModifiedBy.value_or(QString());
            const auto kept = s.snapshots.takePacked(packed, document->items.size(), u"replace"_s, machine,
                                                     s.debugMode.isDebugMode());
            if (!kept || packed.isEmpty())
                return fail(begun, CloudSyncError::Kind::ExportFailed,
                            noSnapshotProblem(kept ? QString() : kept.error().detail));
            uploadTaken(begun, {.differs = true});
        });
}

/// The versions that what is written has grown from.
QStringList CloudSync::Private::historyFor(const Upload &begun)
{
    const auto known = base();
    const QStringList ours = known ? joinedHistory({known->version}, known->history) : QStringList();
    if (!begun.replaces || !begun.remote)
        return ours;
    return joinedHistory(joinedHistory({begun.remote->versionId}, begun.remote->history.value_or(QStringList())), ours);
}

void CloudSync::Private::exportFor(const UploadPtr &begun, const std::function<void()> &then)
{
    ExportData document = s.exchange.gatherDocument();
    begun->history = historyFor(*begun);
    document.syncHistory = begun->history.join(QString());
    begun->settings = document.settingsModifiedAt;
    begun->links = s.links.links();
    begun->exportedAt = s.clock.now();
    onWorker<Encoded>(
        [document, links = begun->links, home = s.links.homeDirectory()] {
            Encoded encoded;
            encoded.exported = LinkExchange::encodeDocument(document, links, home);
            encoded.versionId = syncVersionId(encoded.exported.bytes);
            encoded.items = collectAllStableIds(links);
            return encoded;
        },
        [begun, then](const Encoded &encoded) {
            static_cast<Encoded &>(*begun) = encoded;
            then();
        });
}

/// Whether the file has to be written at all. The order alone is no reason
/// after another machine wrote, as each has its own.
bool CloudSync::Private::needsWrite(const Upload &begun) const
{
    if (!begun.remote || begun.forced || begun.taken.differs || (seals(begun) && !begun.remote->encrypted))
        return true;
    return begun.taken.reordered && begun.exported.checksum != lastWrittenChecksum;
}

void CloudSync::Private::exported(const UploadPtr &begun)
{
    if (!needsWrite(*begun)) {
        succeed(begun);
        return;
    }
    if (!seals(*begun)) {
        write(begun, begun->exported.bytes);
        return;
    }
    withCipher([this, begun](const std::optional<SyncProblem> &why) {
        if (why) {
            fail(begun, CloudSyncError::Kind::WriteFailed, *why);
            return;
        }
        using Encrypted = Result<QByteArray, CipherError>;
        onWorker<Encrypted>([cipher = begun->cipher ? begun->cipher : cipher,
                             plain = begun->exported.bytes] { return cipher->encrypt(plain); },
                            [this, begun](const Encrypted &bytes) {
                                if (bytes)
                                    write(begun, *bytes);
                                else
                                    fail(begun, CloudSyncError::Kind::ExportFailed,
                                         problemOf(CloudError{CloudError::Kind::Io}));
                            });
    });
}

void CloudSync::Private::write(const UploadPtr &begun, const QByteArray &bytes)
{
    if (bytes.size() > CloudContainer::maxFileBytes) {
        fail(begun, CloudSyncError::Kind::ExportFailed, problemOf(CloudError{CloudError::Kind::TooLarge}));
        return;
    }
    SyncBase grown;
    grown.place = container->displayPath(fileName());
    grown.version = begun->versionId;
    grown.history = begun->history;
    grown.items = begun->items;
    grown.since = begun->exportedAt;
    grown.lost = lostTree();
    beingWritten = grown.version;
    baseOfBeingWritten = grown;
    const QByteArray expected = begun->remote ? begun->remote->version : QByteArray();
    container->write(fileName(), bytes, expected,
                     guarded([this, begun](const Result<CloudFile, CloudError> &result) { written(begun, result); }));
}

void CloudSync::Private::written(const UploadPtr &begun, const Result<CloudFile, CloudError> &result)
{
    if (!result && result.error().kind == CloudError::Kind::Conflict) {
        attempt(begun);
        return;
    }
    if (!result) {
        fail(begun, CloudSyncError::Kind::WriteFailed, problemOf(result.error()));
        return;
    }
    beingWritten.clear();
    if (!begun->cipher)
        settleNext();
    if (seals(*begun))
        noteSealed();
    setBase(*baseOfBeingWritten);
    setLastWritten(begun->exported);
    lastKnownSyncFileModDate = result->modifiedAt;
    seen = {result->version, begun->links, begun->settings, true};
    succeed(begun);
}

void CloudSync::Private::succeed(const UploadPtr &begun)
{
    updateLastSyncDate();
    mustWrite = false;
    failures = 0;
    retry.reset();
    setProblem(std::nullopt);
    waitingSince.reset();
    if (uploadTimer) // edited since
        waitingSince = s.clock.now();
    finish(begun, begun->result);
}

void CloudSync::Private::fail(const UploadPtr &begun, CloudSyncError::Kind kind, const SyncProblem &why)
{
    if (kind == CloudSyncError::Kind::ReadFailed)
        qCWarning(lcCloudSync).noquote() << "Autosync read failed:" << why.detail;
    else
        qCWarning(lcCloudSync).noquote() << "Autosync write failed:" << why.detail;
    retryLater(why);
    problem->reading = kind == CloudSyncError::Kind::ReadFailed;
    finish(begun, CloudSyncError{kind, why.sentence});
    if (kind != CloudSyncError::Kind::ReadFailed)
        emit s.notifications.syncUploadFailed();
}

void CloudSync::Private::finish(const UploadPtr &ended, const Result<SyncResult, CloudSyncError> &result)
{
    if (upload == ended)
        upload.reset();
    announce();
    const QPointer<CloudSync> guard(q);
    if (ended->done)
        std::exchange(ended->done, nullptr)(result);
    if (guard && !upload && std::exchange(checkAgain, false))
        check(false);
}

} // namespace orvelle
