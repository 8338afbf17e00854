#include "ui/settings/LinkDropDelegate.h"

#include "base/Uuid.h"
#include "links/LinkStore.h"

namespace orvelle {

LinkDropDelegate::LinkDropDelegate(const LinkItem &link, int level, int maxLevel, LinkStore &linkStore,
                                   double rowHeight, DropState &state)
    : m_link(link), m_level(level), m_maxLevel(maxLevel), m_linkStore(linkStore), m_rowHeight(rowHeight), m_state(state)
{
}

bool LinkDropDelegate::canAcceptDrop() const
{
    return m_link.isGroup() && m_level < m_maxLevel - 1;
}

DropPosition LinkDropDelegate::position(double y) const
{
    constexpr double usualHeight = 30;
    const double height = m_rowHeight > 0 ? m_rowHeight : usualHeight;
    if (!canAcceptDrop())
        return y < height / 2 ? DropPosition::Before : DropPosition::After;
    if (y < height * 0.25)
        return DropPosition::Before;
    const bool hasMembers = m_link.children && !m_link.children->isEmpty();
    return !hasMembers && y > height * 0.75 ? DropPosition::After : DropPosition::Inside;
}

void LinkDropDelegate::setTarget(DropPosition position)
{
    m_state.dropTargetId = m_link.id;
    m_state.dropTargetPosition = position;
}

void LinkDropDelegate::clearTargetIfMine()
{
    if (m_state.dropTargetId != m_link.id)
        return;
    m_state.dropTargetId.reset();
    m_state.dropTargetPosition = DropPosition::None;
}

std::optional<EditRefusal> LinkDropDelegate::performDrop(double y, const QByteArray &payload)
{
    const DropPosition landing = position(y);
    m_state = {};
    return drop(landing, draggedIds(payload));
}

std::optional<EditRefusal> LinkDropDelegate::drop(DropPosition position, const QList<QUuid> &ids)
{
    if (position == DropPosition::None || ids.isEmpty())
        return EditRefusal::NothingToDo;
    std::optional<QUuid> group = m_link.id;
    std::optional<qsizetype> index;
    if (position != DropPosition::Inside) {
        const auto row = findLinkLocation(m_linkStore.links(), m_link.id);
        if (!row)
            return EditRefusal::NotFound;
        group = row->parent ? std::optional(row->parent->id) : std::nullopt;
        index = row->index + (position == DropPosition::After ? 1 : 0);
    }
    return ids.size() == 1 ? m_linkStore.moveLink(ids.first(), group, index) : m_linkStore.moveLinks(ids, group, index);
}

QByteArray LinkDropDelegate::payload(const QList<QUuid> &ids)
{
    QStringList lines;
    for (const QUuid &id : ids)
        lines += uuidText(id);
    return lines.join(u'\n').toUtf8();
}

QList<QUuid> LinkDropDelegate::draggedIds(const QByteArray &payload)
{
    QList<QUuid> ids;
    for (const QByteArray &line : payload.split('\n')) {
        if (const auto id = parseUuid(QString::fromUtf8(line.trimmed())))
            ids += *id;
    }
    return ids;
}

} // namespace orvelle
