#include "links/LinkLog.h"
#include "links/LinkMigration.h"
#include "links/LinkStoreHistory.h"
#include "links/SnapshotStore.h"
#include "platform/Clock.h"

using namespace Qt::StringLiterals;

namespace orvelle {

void LinkStore::forgetHistory()
{
    if (!canUndo() && !canRedo())
        return;
    m_history->clear();
    emit historyChanged();
}

bool LinkStore::canUndo() const
{
    return !m_history->undo.isEmpty();
}

bool LinkStore::canRedo() const
{
    return !m_history->redo.isEmpty();
}

bool LinkStore::undo()
{
    return travel(m_history->undo, m_history->redo, u"undo"_s);
}

bool LinkStore::redo()
{
    return travel(m_history->redo, m_history->undo, u"redo"_s);
}

TreeDifference LinkStore::wayBack(const Outcome &outcome) const
{
    LinkList before = outcome.before;
    if (outcome.rebased) // read anew, without pictures
        keepPictures(before, m_links);
    return TreeDifference::between(m_links, before);
}

/// One step from the end of `from`; the way back goes to `to`.
bool LinkStore::travel(QList<TreeDifference> &from, QList<TreeDifference> &to, const QString &reason)
{
    // The steps know nothing of a change by another process and would take it
    // back; reloading forgets them.
    if (reloadIfStale().value_or(false) || from.isEmpty())
        return false;
    const TreeDifference step = from.constLast();
    const Outcome outcome = perform({Step::Destructive, reason,
                                     [step](LinkList &links) {
                                         const LinkList shown = links;
                                         if (!step.applyTo(links))
                                             return false;
                                         keepPictures(links, shown);
                                         return true;
                                     }},
                                    true);
    if (outcome.applied) {
        if (!outcome.rebased)
            from.removeLast();
        History::push(to, wayBack(outcome));
    }
    if (outcome.applied || outcome.rebased)
        announceTree();
    return outcome.applied;
}

std::optional<QString> LinkStore::undoLastDestructiveStep()
{
    const QList<SnapshotInfo> snapshots = m_services.snapshots.list(m_loadedInDebugMode);
    if (snapshots.isEmpty())
        return std::nullopt;
    const auto links = m_services.snapshots.load(snapshots.first().name, m_loadedInDebugMode);
    if (!links) {
        qCWarning(lcLinkStore).noquote() << "Snapshot" << snapshots.first().name
                                         << "cannot be read:" << links.error().detail;
        return std::nullopt;
    }
    // Not "undo", whose steps know this run's tree alone.
    if (!replaceTree(*links, u"restore"_s))
        return std::nullopt;
    return snapshots.first().name;
}

bool LinkStore::restoreSnapshot(const QString &name)
{
    const auto links = m_services.snapshots.load(name, m_loadedInDebugMode);
    if (!links) {
        qCWarning(lcLinkStore).noquote() << "A snapshot cannot be read:" << links.error().detail;
        return false;
    }
    return replaceTree(*links, u"restore"_s);
}

/// Makes a tree from outside this run the current one.
bool LinkStore::replaceTree(LinkList links, const QString &reason)
{
    migrateItems(links, m_services.bookmarks, m_services.clock.now());
    m_services.hooks.hydrateFavicons(links);
    return edit(Step::Destructive, reason, [links](LinkList &tree) {
        tree = links;
        return true;
    });
}

} // namespace orvelle
