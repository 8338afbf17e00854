#include "base/Text.h"
#include "links/LinkCodec.h"
#include "links/LinkStore.h"
#include "links/LinkTree.h"
#include "links/SnapshotStore.h"
#include "links/exchange/ExchangeDocument.h"
#include "links/exchange/ExchangeImport.h"
#include "links/exchange/ExchangeSettings.h"
#include "sync/CloudSyncPrivate.h"

using namespace Qt::StringLiterals;

namespace orvelle {

/// The document as the whole tree, and what that changes.
struct CloudSync::Private::Loading {
    LinkList before;
    LinkList items;
    LinkList tree;
    QByteArray snapshot; ///< of the tree before
    QByteArray stored;
    SyncResult counts;
    std::optional<MassRemoval> removal;
    std::optional<SyncAnalysis> analysis;
};

void CloudSync::loadFromCloud(const Done &completion)
{
    Private &d = *m_d;
    d.readForUser([&d, answer = d.owed(completion)](const Private::ReadResult &read) {
        d.notePassphraseNeeded(read);
        if (read) {
            d.load(*read, false, answer);
            return;
        }
        const QString why = read.error().missing ? text("cloudSync.failure.missing"_text) : read.error().sentence;
        answer(CloudSyncError{CloudSyncError::Kind::ReadFailed, why});
    });
}

/// `decided`: the user has seen what it removes.
void CloudSync::Private::load(const DocumentPtr &document, bool decided, const Done &done)
{
    onWorker<Loading>(
        [document, before = s.links.links(), now = s.clock.now()] {
            Loading loading{before, document->content.items, before, {}, {}, {}, {}, {}};
            completeDates(loading.items, now);
            applyImport(loading.tree, loading.items, ImportMode::Replace);
            const auto packed = packSnapshot(before);
            loading.snapshot = packed ? *packed : QByteArray();
            loading.stored = encodeLinks(loading.tree);
            loading.counts = countChanges(before, loading.tree);
            loading.removal = massRemoval(before, loading.tree);
            if (loading.removal)
                loading.analysis =
                    analyzeSyncChanges(before, document->content.items, document->content.document->exportDate);
            return loading;
        },
        [this, document, decided, done](const Loading &loading) {
            if (!s.links.links().isSharedWith(loading.before) && s.links.links() != loading.before) {
                load(document, decided, done); // edited meanwhile
                return;
            }
            if (!loading.removal || decided || !guardEnabled())
                return done(replaceBy(document, loading));
            hold({.change = {.removal = *loading.removal, .analysis = *loading.analysis, .isLoad = true},
                  .document = document,
                  .links = loading.before});
            done(CloudSyncError{CloudSyncError::Kind::UserCancelled, text("cloudSync.failure.heldBack"_text)});
        });
}

/// Makes it the tree. Absent when that was not possible.
std::optional<SyncProblem> CloudSync::Private::replaceTree(const Loading &loading)
{
    const auto kept =
        s.snapshots.takePacked(loading.snapshot, countAll(loading.before), u"replace"_s, {}, s.debugMode.isDebugMode());
    if (!kept || loading.snapshot.isEmpty())
        return noSnapshotProblem(kept ? QString() : kept.error().detail);
    s.links.useStoredForm(loading.tree, loading.stored);
    s.links.setAutoSyncingFromFile(true);
    const bool edited =
        s.links.edit(LinkStore::Step::Ordinary, u"replace"_s,
                     [before = loading.before, tree = loading.tree, items = loading.items](LinkList &links) {
                         if (links.isSharedWith(before) || links == before)
                             links = tree;
                         else // of another process
                             applyImport(links, items, ImportMode::Replace);
                         return true;
                     });
    s.links.setAutoSyncingFromFile(false);
    if (!edited)
        return SyncProblem{importErrorText({ImportError::Kind::NotStored, {}}), u"the tree was not stored"_s};
    return std::nullopt;
}

CloudSync::Private::Loaded CloudSync::Private::replaceBy(const DocumentPtr &document, const Loading &loading)
{
    if (const auto why = replaceTree(loading))
        return CloudSyncError{CloudSyncError::Kind::ReadFailed, why->sentence};
    takeSettings(*document->content.document);
    cancelPending();
    deferred = false;
    mustWrite = false;
    noteTaken(document, SyncSource::ManualSave);
    noteSeen(*document, s.links.links());
    setProblem(std::nullopt);
    announce();
    return loading.counts;
}

} // namespace orvelle
