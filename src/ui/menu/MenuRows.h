#pragma once

#include "menubar/Menu.h"

#include <functional>
#include <vector>

namespace orvelle {

/// Heights of the kinds of rows, in logical pixels.
struct RowHeights {
    int item = 0;
    int separator = 0;
    int bottomRow = 0;
};

/// The entries of one open menu, laid out one below the other from y = 0.
/// A bottom row that ends the menu is pinned: it keeps its place at the lower
/// edge while the others scroll, and is not part of contentHeight().
class MenuRows
{
public:
    /// The height of the widget in a row, 0 when there is none.
    using WidgetHeight = std::function<int(int row)>;

    explicit MenuRows(QList<MenuEntry> entries = {}) : m_entries(std::move(entries)) {}

    int count() const { return static_cast<int>(m_entries.size()); }
    const MenuEntry &at(int row) const { return m_entries.at(row); }
    const QList<MenuEntry> &entries() const { return m_entries; }

    void layOut(const RowHeights &heights, const WidgetHeight &widgetHeight);
    int top(int row) const { return m_tops.at(static_cast<std::size_t>(row)); }
    int height(int row) const { return top(row + 1) - top(row); }
    int contentHeight() const { return top(scrollingCount()); }
    int pinnedHeight() const { return top(count()) - contentHeight(); }
    /// Rows before the pinned one.
    int scrollingCount() const { return hasPinned() ? count() - 1 : count(); }
    bool isPinned(int row) const { return hasPinned() && row == count() - 1; }

    /// The scrolling row at a height of the content; -1 outside.
    int rowAt(int y) const;

    /// Whether a row can be the current one.
    bool isSelectable(int row) const;
    /// The nearest selectable row from `from` (not itself) in steps of +1 or
    /// -1, round the end; with -1 as `from` the first or last. -1 if none.
    int next(int from, int step) const;
    /// The selectable row about `distance` pixels further (negative: back),
    /// without going round the end.
    int page(int from, int distance) const;

private:
    bool hasPinned() const { return !m_entries.isEmpty() && m_entries.last().kind == MenuEntry::Kind::BottomRow; }

    QList<MenuEntry> m_entries;
    std::vector<int> m_tops = {0}; ///< count() + 1 values
};

} // namespace orvelle
