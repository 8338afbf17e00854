#include "ui/settings/LinkCommands.h"

#include "base/DisplayTitle.h"
#include "base/Notifications.h"
#include "base/Text.h"
#include "links/BookmarkMaintenance.h"
#include "links/LinkStore.h"
#include "links/LinkTree.h"
#include "links/NewNote.h"
#include "menubar/AppWindows.h"
#include "platform/Clock.h"
#include "ui/settings/LinkTreeModel.h"
#include "ui/settings/LinkTreeView.h"

#include <QFontMetrics>

#include <algorithm>

namespace orvelle {

namespace {

/// Width of a name inside a message.
constexpr int longestName = 260;

std::optional<TextKey> sentence(EditRefusal refusal)
{
    switch (refusal) {
    case EditRefusal::TooDeep:
        return "settings.refused.tooDeep"_text;
    case EditRefusal::IntoItself:
        return "settings.refused.intoItself"_text;
    case EditRefusal::NotFound:
    case EditRefusal::NotAGroup:
        return "settings.refused.notFound"_text;
    case EditRefusal::NotStored:
        return "settings.refused.notStored"_text;
    case EditRefusal::NothingToDo:
        break;
    }
    return std::nullopt;
}

} // namespace

LinkCommands::LinkCommands(const SettingsServices &services, LinkTreeView &tree, QObject *parent)
    : QObject(parent), m_services(services), m_tree(tree)
{
}

void LinkCommands::report(const std::optional<EditRefusal> &refusal)
{
    if (const auto why = refusal ? sentence(*refusal) : std::nullopt)
        emit said(text(*why), false);
}

/// The selected group, or the one around it that still takes something.
LinkCommands::Group LinkCommands::groupForNew(int deepest) const
{
    Group group = m_tree.selectedGroup();
    while (group) {
        const auto place = findLinkLocation(m_services.links.links(), *group);
        if (place && place->depth <= deepest)
            return group;
        group = place && place->parent ? Group(place->parent->id) : std::nullopt;
    }
    return std::nullopt;
}

void LinkCommands::addLink()
{
    if (const Group group = groupForNew(deepestForLinks))
        m_services.windows.openQuickAdd(group);
    else
        emit m_services.notifications.openQuickAdd();
}

void LinkCommands::addNote()
{
    const LinkItem note = newNote(m_services.defaults, m_services.clock.now());
    if (insert({note}, groupForNew(deepestForLinks), std::nullopt))
        emit m_services.notifications.openNoteEditor(note.id);
}

void LinkCommands::addGroup()
{
    const LinkItem group =
        LinkItem::make(text("settings.newGroupName"_text), QString(), LinkType::Group, m_services.clock.now());
    if (insert({group}, groupForNew(deepestForGroups), std::nullopt))
        rename();
}

void LinkCommands::open()
{
    const LinkItem *item = m_tree.selectedItem();
    if (!item || item->isGroup())
        return;
    if (item->type == LinkType::Note)
        emit m_services.notifications.openNoteEditor(item->id);
    else if (m_services.openLink)
        m_services.openLink(LinkItem(*item));
}

void LinkCommands::reveal()
{
    const LinkItem *item = m_tree.selectedItem();
    if (!item || !isOnDisk(*item) || !m_services.reveal)
        return;
    m_services.links.look(item->path, this, [item = *item, reveal = m_services.reveal](FileBookmarks &bookmarks) {
        return [reveal, path = securePath(item, bookmarks)] { reveal(path); };
    });
}

void LinkCommands::rename()
{
    const LinkItem *item = m_tree.selectedItem();
    if (!item)
        return;
    m_tree.setFocus();
    m_tree.edit(m_tree.currentIndex().siblingAtColumn(LinkTreeModel::NameColumn));
}

/// What is selected once the selection is gone: the row below it, else above.
QUuid LinkCommands::neighbourOfSelection() const
{
    const QModelIndexList rows = m_tree.selectionModel()->selectedRows();
    const auto goes = [&rows](QModelIndex row) {
        for (; row.isValid(); row = row.parent()) {
            if (rows.contains(row))
                return true;
        }
        return false;
    };
    for (const bool below : {true, false}) {
        QModelIndex row = m_tree.currentIndex().siblingAtColumn(0);
        while (row.isValid() && goes(row))
            row = below ? m_tree.indexBelow(row) : m_tree.indexAbove(row);
        if (row.isValid())
            return row.data(LinkTreeModel::IdRole).toUuid();
    }
    return {};
}

void LinkCommands::remove()
{
    const QList<QUuid> ids = m_tree.selectedIds(true);
    if (ids.isEmpty())
        return;
    const auto first = m_services.links.find(ids.constFirst());
    const QString name =
        first ? m_tree.fontMetrics().elidedText(displayTitle(first->name), Qt::ElideMiddle, longestName) : QString();
    const QUuid next = neighbourOfSelection();
    if (const auto refusal = m_services.links.removeLinks(ids)) {
        report(refusal);
        return;
    }
    if (!next.isNull())
        m_tree.selectItem(next);
    emit said(ids.size() == 1 ? text("settings.removed %@"_text, name)
                              : text("settings.removedSeveral %lld"_text, ids.size()),
              true);
}

void LinkCommands::undo()
{
    m_services.links.undo();
}

void LinkCommands::redo()
{
    m_services.links.redo();
}

/// Where the selection stands when all of it has one parent.
std::optional<LinkCommands::Siblings> LinkCommands::siblings() const
{
    const QModelIndexList rows = m_tree.selectionModel()->selectedRows();
    if (rows.isEmpty())
        return std::nullopt;
    const QModelIndex parent = rows.constFirst().parent();
    Siblings found{std::nullopt, rows.constFirst().row(), rows.constFirst().row(), m_tree.model()->rowCount(parent)};
    if (parent.isValid())
        found.group = parent.data(LinkTreeModel::IdRole).toUuid();
    for (const QModelIndex &row : rows) {
        if (row.parent() != parent)
            return std::nullopt;
        found.first = std::min<qsizetype>(found.first, row.row());
        found.last = std::max<qsizetype>(found.last, row.row());
    }
    return found;
}

bool LinkCommands::canMove(int step) const
{
    // Under a search the neighbours are not those of the menu.
    if (m_tree.isSearching())
        return false;
    const auto block = siblings();
    return block && (step < 0 ? block->first > 0 : block->last + 1 < block->count);
}

void LinkCommands::moveAmongSiblings(int step)
{
    if (!canMove(step))
        return;
    const auto block = siblings();
    const QList<QUuid> ids = m_tree.selectedIds(true);
    report(m_services.links.moveLinks(ids, block->group, step < 0 ? block->first - 1 : block->last + 2));
    m_tree.selectItems(ids);
}

bool LinkCommands::canIndent() const
{
    const LinkItem *item = m_tree.selectedItem();
    return item && orvelle::canIndent(m_services.links.links(), item->id);
}

bool LinkCommands::canOutdent() const
{
    const LinkItem *item = m_tree.selectedItem();
    return item && orvelle::canOutdent(m_services.links.links(), item->id);
}

void LinkCommands::indent()
{
    if (!canIndent())
        return;
    const QUuid id = m_tree.selectedItem()->id;
    report(m_services.links.indentLink(id));
    m_tree.selectItem(id);
}

void LinkCommands::outdent()
{
    if (!canOutdent())
        return;
    const QUuid id = m_tree.selectedItem()->id;
    report(m_services.links.outdentLink(id));
    m_tree.selectItem(id);
}

bool LinkCommands::canSort() const
{
    const LinkItem *item = m_tree.selectedItem();
    return item && item->children && item->children->size() >= 2;
}

void LinkCommands::sort()
{
    if (canSort())
        report(m_services.links.sortGroupAlphabetically(QUuid(m_tree.selectedItem()->id)));
}

bool LinkCommands::canMoveTo(const LinkItem &group, int depth) const
{
    const QList<QUuid> ids = m_tree.selectedIds(true);
    return depth < 2 && std::none_of(ids.begin(), ids.end(), [&](const QUuid &id) {
               return id == group.id || isDescendant(m_services.links.links(), id, group.id);
           });
}

void LinkCommands::moveTo(const Group &group)
{
    const QList<QUuid> ids = m_tree.selectedIds(true);
    report(m_services.links.moveLinks(ids, group));
    m_tree.selectItems(ids);
}

void LinkCommands::recolor(const std::optional<QString> &colorKey)
{
    QList<QUuid> ids;
    QList<QUuid> notes;
    for (const QUuid &id : m_tree.selectedIds()) {
        const auto item = m_services.links.find(id);
        if (!item || item->customIconColor == colorKey)
            continue;
        ids += id;
        if (item->type == LinkType::Note)
            notes += id;
    }
    if (ids.isEmpty())
        return;
    report(m_services.links.updateLinks(ids, [colorKey](LinkItem &item) { item.customIconColor = colorKey; }));
    for (const QUuid &note : notes)
        emit m_services.notifications.noteColorChanged(note);
}

} // namespace orvelle
