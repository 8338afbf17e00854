#include "base/Text.h"
#include "links/ExchangeDocument.h"
#include "links/LinkStore.h"
#include "platform/FileBookmarks.h"
#include "platform/UserDefaults.h"
#include "sync/CloudSyncPrivate.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace orvelle {

void CloudSync::readForConfigure(Found completion)
{
    Private &d = *m_d;
    d.readForUser([&d, completion](const Private::ReadResult &read) {
        if (read) {
            PreparedImport found = (*read)->content;
            completeDates(found.items, d.s.clock.now());
            completion(std::optional(found));
        } else if (read.error().missing) {
            completion(std::optional<PreparedImport>());
        } else {
            completion(CloudSyncError{CloudSyncError::Kind::ReadFailed, read.error().sentence});
        }
    });
}

void CloudSync::loadFromCloud(Done completion)
{
    Private &d = *m_d;
    d.readForUser([&d, completion](const Private::ReadResult &read) {
        if (!read) {
            const QString why = read.error().missing ? text("cloudSync.failure.missing"_text) : read.error().sentence;
            completion(CloudSyncError{CloudSyncError::Kind::ReadFailed, why});
            return;
        }
        const LinkList &local = d.s.links.links();
        const auto removal = massRemoval(local, (*read)->content.items);
        if (removal && d.guardEnabled()) {
            d.hold(*read, *removal,
                   analyzeSyncChanges(local, (*read)->content.items, (*read)->content.document->exportDate), true);
            completion(CloudSyncError{CloudSyncError::Kind::UserCancelled, text("cloudSync.failure.heldBack"_text)});
            return;
        }
        completion(d.replaceBy(*read));
    });
}

CloudSync::Private::Loaded CloudSync::Private::replaceBy(const DocumentPtr &document)
{
    PreparedImport prepared = document->content;
    completeDates(prepared.items, s.clock.now());
    const LinkList before = s.links.links();
    s.links.setAutoSyncingFromFile(true);
    isApplyingRemoteSettings = true;
    const auto imported = s.exchange.importPrepared(prepared, ImportMode::Replace);
    isApplyingRemoteSettings = false;
    s.links.setAutoSyncingFromFile(false);
    if (!imported)
        return CloudSyncError{CloudSyncError::Kind::ReadFailed, importErrorText(imported.error())};
    setLocalSettingsModifiedAt(document->content.document->settingsModifiedAt);
    settingsTouched = false;
    cancelPending();
    deferred = false;
    mustWrite = false;
    noteTaken(document, SyncSource::ManualSave);
    noteSeen(*document, s.links.links());
    setProblem(std::nullopt);
    announce();
    return countChanges(before, s.links.links());
}

void CloudSync::disableCloudSync()
{
    Private &d = *m_d;
    d.stop();
    d.release();
    d.store(autoSyncEnabledBaseKey(), false);
    d.store(lastSyncDateBaseKey(), std::nullopt);
    d.lastSyncDate.reset();
    d.lastSyncedFromDevice.reset();
    d.setLastWritten({});
    d.lastKnownSyncFileModDate.reset();
    d.lastImportedHash.clear();
    d.forgetBase();
    d.seen.reset();
    d.deferred = false;
    d.setProblem(std::nullopt);
    d.announce();
}

bool CloudSync::hasCloudSyncBookmark() const
{
    return m_d->s.defaults.get<QByteArray>(m_d->key(cloudSyncBookmarkBaseKey())).has_value();
}

void CloudSync::clearCloudSyncBookmark()
{
    m_d->store(cloudSyncBookmarkBaseKey(), std::nullopt);
}

void CloudSync::Private::clearBookmark(const char *line)
{
    q->clearCloudSyncBookmark();
    qCInfo(lcCloudSync).noquote() << line;
}

void CloudSync::Private::migrateFromBookmarkIfNeeded()
{
    if (!q->hasCloudSyncBookmark())
        return;
    container->read(fileName(), guarded([this](const Result<CloudFile, CloudError> &there) {
                        if (there) {
                            clearBookmark(
                                "Migration: ancien bookmark supprimé (fichier déjà dans le container iCloud)");
                            return;
                        }
                        const auto stored = s.defaults.get<QByteArray>(key(cloudSyncBookmarkBaseKey()));
                        const auto target = stored ? s.bookmarks.resolve(*stored) : FileBookmarkError{u"no bookmark"_s};
                        if (there.error().kind != CloudError::Kind::Missing || !target)
                            return; // tried again at the next start
                        copyBookmarked(target->path);
                    }));
}

void CloudSync::Private::copyBookmarked(const QString &path)
{
    onWorker<QByteArray>(
        [path] {
            QFile file(path);
            return file.open(QFile::ReadOnly) ? file.read(CloudContainer::maxFileBytes) : QByteArray();
        },
        [this](const QByteArray &bytes) {
            if (bytes.isEmpty())
                return;
            container->write(fileName(), bytes, {}, guarded([this](const Result<CloudFile, CloudError> &written) {
                                 if (!written)
                                     return;
                                 qCInfo(lcCloudSync).noquote()
                                     << "Migration: fichier de synchro copié vers le container iCloud";
                                 clearBookmark("Migration: ancien bookmark supprimé");
                                 check(false);
                             }));
        });
}

} // namespace orvelle
