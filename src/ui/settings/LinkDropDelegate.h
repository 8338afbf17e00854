#pragma once

#include "links/LinkEditing.h"
#include "links/LinkItem.h"

#include <QByteArray>
#include <QList>
#include <QUuid>

#include <optional>

namespace orvelle {

class LinkStore;

/// Where a drop would land, seen from the row under the pointer.
enum class DropPosition { None, Before, Inside, After };

/// What all rows of a list know together about the drag over them.
struct DropState {
    std::optional<QUuid> dropTargetId; ///< the row under the pointer
    DropPosition dropTargetPosition = DropPosition::None;
    std::optional<QUuid> draggedLinkId; ///< of several, the one that was taken hold of

    friend bool operator==(const DropState &, const DropState &) = default;
};

/// The drag and drop rules of one row of the settings list. Knows no widget:
/// the list tells it where the pointer is, and draws what DropState says.
/// Main thread.
class LinkDropDelegate
{
public:
    /// `level`: the row's depth. `maxLevel`: how many levels the list has; rows
    /// at its last one take nothing inside. `rowHeight` and all pointer
    /// positions in points, counted from the row's upper edge; a height of 0
    /// or less counts as 30. Store and state must outlive the delegate.
    LinkDropDelegate(const LinkItem &link, int level, int maxLevel, LinkStore &linkStore, double rowHeight,
                     DropState &state);

    /// Whether the row takes items inside.
    bool canAcceptDrop() const;
    /// Where a drop at `y` lands. A group that has members never answers After.
    DropPosition position(double y) const;

    void dropEntered(double y) { setTarget(position(y)); }
    void dropUpdated(double y) { setTarget(position(y)); }
    /// Forgets the target unless another row is it already.
    void dropExited() { clearTargetIfMine(); }
    /// Ends the drag and moves what the payload names. `Before` and `After`
    /// count in the row's list as it is before anything is taken out. For a
    /// single item that number goes to LinkStore::moveLink() as it is, so that
    /// one dragged further down in its own list comes to stand one place lower
    /// than `Before` and `After` say. Several items come to stand where they
    /// say.
    std::optional<EditRefusal> performDrop(double y, const QByteArray &payload);

    /// What a drag of these items carries: one UUID a line.
    static QByteArray payload(const QList<QUuid> &ids);
    /// The way back; lines that are no UUID are left out.
    static QList<QUuid> draggedIds(const QByteArray &payload);

private:
    void setTarget(DropPosition position);
    void clearTargetIfMine();
    std::optional<EditRefusal> drop(DropPosition position, const QList<QUuid> &ids);

    LinkItem m_link;
    int m_level;
    int m_maxLevel;
    LinkStore &m_linkStore;
    double m_rowHeight;
    DropState &m_state;
};

} // namespace orvelle
