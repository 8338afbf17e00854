#include "base/Text.h"
#include "links/LinkStore.h"
#include "links/exchange/ExchangeDocument.h"
#include "platform/FileBookmarks.h"
#include "platform/UserDefaults.h"
#include "sync/CloudSyncPrivate.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace orvelle {

void CloudSync::readForConfigure(const Found &completion)
{
    Private &d = *m_d;
    d.readForUser([&d, answer = d.owed(completion)](const Private::ReadResult &read) {
        d.notePassphraseNeeded(read);
        if (read) {
            PreparedImport found = (*read)->content;
            completeDates(found.items, d.s.clock.now());
            answer(std::optional(found));
        } else if (read.error().missing) {
            answer(std::optional<PreparedImport>());
        } else {
            answer(CloudSyncError{CloudSyncError::Kind::ReadFailed, read.error().sentence});
        }
    });
}

/// While nothing is switched on no check tells that a passphrase is missing.
void CloudSync::Private::notePassphraseNeeded(const ReadResult &read)
{
    const bool needed = !read && read.error().needsPassphrase;
    if (!needed && !(read && problem && problem->needsPassphrase))
        return;
    setProblem(needed ? std::optional(read.error()) : std::nullopt);
    if (problem)
        problem->reading = true;
    announce();
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
                        if (there.error().kind != CloudError::Kind::Missing || !stored)
                            return; // tried again at the next start
                        copyBookmarked(*stored);
                    }));
}

void CloudSync::Private::copyBookmarked(const QByteArray &bookmark)
{
    onWorker<QByteArray>(
        [bookmark, &bookmarks = s.bookmarks] {
            const auto target = bookmarks.resolve(bookmark);
            QFile file(target ? target->path : QString());
            // More than fits would be cut off.
            const bool fits = target && file.open(QFile::ReadOnly) && file.size() <= CloudContainer::maxFileBytes;
            return fits ? file.read(CloudContainer::maxFileBytes) : QByteArray();
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
