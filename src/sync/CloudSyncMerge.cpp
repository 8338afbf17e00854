#include "base/Text.h"
#include "links/LinkCodec.h"
#include "links/LinkStore.h"
#include "links/LinkTree.h"
#include "links/SnapshotStore.h"
#include "links/exchange/ExchangeDocument.h"
#include "links/exchange/ExchangeImport.h"
#include "sync/CloudSyncPrivate.h"

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

/// At no cost when they share their storage.
bool isSameList(const LinkList &one, const LinkList &other)
{
    return one.isSharedWith(other) || one == other;
}

} // namespace

/// Whether everything in the document has been in the tree here.
bool CloudSync::Private::isKnown(const DocumentPtr &document)
{
    if (!beingWritten.isEmpty() && document->versionId == beingWritten) {
        // The write whose answer never came was done.
        beingWritten.clear();
        setBase(*baseOfBeingWritten);
    }
    const auto known = base();
    return known && (document->hash == lastImportedHash || known->contains(document->versionId));
}

void CloudSync::Private::take(const DocumentPtr &document, SyncSource source, bool quietly, const Then<Taken> &then)
{
    const bool own = document->content.document->lastModifiedByMachineId == s.links.machineId();
    const bool known = isKnown(document);
    // An own document that is not known comes from a copy of this
    // installation, or from before a crash: no check minds it, but nothing is
    // written over it unmerged.
    if (own && (known || source == SyncSource::BackgroundCheck)) {
        compare(document, [then, known](Taken taken) {
            taken.ownWrite = known;
            then(taken);
        });
        return;
    }
    if (wouldBeHeldAgain() && held->document->versionId == document->versionId) {
        then({.heldBack = true});
        return;
    }
    if (known) {
        sayOnce(quietly, u"Fichier de synchro déjà importé (hash identique) — ignoré [%1]"_s.arg(logLabel(source)));
        compare(document, then);
        return;
    }
    qCInfo(lcCloudSync).noquote() << u"Merge fichier distant [%1]…"_s.arg(logLabel(source));
    merge(document, source, then);
}

void CloudSync::Private::compare(const DocumentPtr &document, const Then<Taken> &then)
{
    const LinkList links = s.links.links();
    onWorker<Taken>(
        [links, document] {
            return Taken{differsFromDocument(links, *document), isOrderedOtherwise(links, *document)};
        },
        [this, links, document, then](Taken taken) {
            taken.differs = taken.differs || settingsAreNewer(*document);
            if (!taken.differs)
                noteSeen(*document, links);
            then(taken);
        });
}

void CloudSync::Private::merge(const DocumentPtr &document, SyncSource source, const Then<Taken> &then)
{
    isMerging = true;
    announce();
    const auto known = base(); // may bring the tree up to date
    const SyncMergeInput input{s.links.links(), document, known, s.clock.now(), rejected == document->versionId};
    onWorker<Merged>(
        [input] {
            Merged merged;
            merged.outcome = mergeSyncDocument(input);
            merged.fits =
                treeLevels(merged.outcome.tree) <= maxImportDepth && countAll(merged.outcome.tree) <= maxExchangeItems;
            if (merged.outcome.massRemoval)
                merged.analysis = analyzeSyncChanges(input.local, input.remote->content.items,
                                                     input.remote->content.document->exportDate);
            if (merged.outcome.changesTree) {
                const auto packed = packSnapshot(input.local);
                merged.snapshot = packed ? *packed : QByteArray();
                merged.stored = encodeLinks(merged.outcome.tree);
            }
            merged.taken = {differsFromDocument(merged.outcome.tree, *input.remote),
                            isOrderedOtherwise(merged.outcome.tree, *input.remote)};
            return merged;
        },
        [this, document, source, input, then](const Merged &merged) {
            if (!isSameList(s.links.links(), input.local)) {
                merge(document, source, then); // edited meanwhile
                return;
            }
            isMerging = false;
            then(commit(document, source, input, merged));
        });
}

CloudSync::Private::Taken CloudSync::Private::commit(const DocumentPtr &document, SyncSource source,
                                                     const SyncMergeInput &input, const Merged &merged)
{
    if (!merged.fits)
        return {.problem =
                    problemOf(SyncDocumentError{SyncDocumentError::Kind::TooLarge, u"the result is too large"_s})};
    if (holdsBack(document, source, input, merged))
        return {.heldBack = true};
    if (held && !held->change.isLoad && held->document->versionId == document->versionId)
        held.reset(); // it may be taken now
    if (merged.outcome.changesTree) {
        if (const auto refused = commitTree(document, input, merged))
            return {.problem = refused};
    }
    if (upload)
        upload->result = merged.outcome.result;
    if (source != SyncSource::ConflictCopy)
        applySyncSettings(*document);
    noteTaken(document, source);
    Taken taken = merged.taken;
    // The tree of another process was merged anew, with what the document lacks.
    const bool isOutcome = !merged.outcome.changesTree || isSameList(s.links.links(), merged.outcome.tree);
    taken.differs = taken.differs || !isOutcome || settingsAreNewer(*document);
    if (!taken.differs && source != SyncSource::ConflictCopy)
        noteSeen(*document, s.links.links());
    qCInfo(lcCloudSync).noquote() << u"Merge depuis fichier de synchro réussi [%1]"_s.arg(logLabel(source));
    return taken;
}

/// Makes the merged tree the tree. Steps of undo lead to trees without the
/// other machine's changes and would take those back everywhere, so they are
/// forgotten; the snapshot is the way back.
std::optional<SyncProblem> CloudSync::Private::commitTree(const DocumentPtr &document, const SyncMergeInput &input,
                                                          const Merged &merged)
{
    const QString machine = document->content.document->lastModifiedBy.value_or(QString());
    const auto kept =
        s.snapshots.takePacked(merged.snapshot, countAll(input.local), u"sync"_s, machine, s.debugMode.isDebugMode());
    if (!kept || merged.snapshot.isEmpty())
        return noSnapshotProblem(kept ? QString() : kept.error().detail);
    for (const QString &line : merged.outcome.removals)
        qCInfo(lcCloudSync).noquote() << line;
    s.links.useStoredForm(merged.outcome.tree, merged.stored);
    s.links.setAutoSyncingFromFile(true);
    s.links.edit(
        LinkStore::Step::Ordinary, u"sync"_s,
        [input, tree = merged.outcome.tree](LinkList &links) {
            // On the tree of another process it is another merge.
            SyncMergeInput again = input;
            again.local = links;
            links = isSameList(links, input.local) ? tree : mergeSyncDocument(again).tree;
            return true;
        },
        false);
    s.links.setAutoSyncingFromFile(false);
    s.links.forgetHistory();
    return std::nullopt;
}

void CloudSync::Private::noteTaken(const DocumentPtr &document, SyncSource source)
{
    const ExportData &written = *document->content.document;
    const auto before = base();
    const bool isCopy = source == SyncSource::ConflictCopy;
    SyncBase now;
    if (isCopy && before)
        now = *before;
    now.place = container->displayPath(fileName());
    now.lost = lostTree();
    const QStringList past = before ? joinedHistory({before->version}, before->history) : QStringList();
    const QStringList its = document->history.value_or(QStringList());
    if (isCopy && before) {
        now.history = joinedHistory(joinedHistory({document->versionId}, before->history), its);
    } else {
        now.version = document->versionId;
        now.history = joinedHistory(its, past);
        now.items = document->items;
        now.since = s.clock.now();
    }
    setBase(now);
    lastSyncedFromDevice = written.lastModifiedBy;
    updateLastSyncDate();
    if (isCopy)
        return;
    lastImportedHash = document->hash;
    lastKnownSyncFileModDate = document->modifiedAt;
}

} // namespace orvelle
