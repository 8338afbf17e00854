#include "ui/menu/MenuRows.h"

#include <algorithm>

namespace orvelle {

void MenuRows::layOut(const RowHeights &heights, const WidgetHeight &widgetHeight)
{
    m_tops.assign(1, 0);
    m_tops.reserve(static_cast<std::size_t>(count()) + 1);
    for (int row = 0; row < count(); ++row) {
        int height = heights.item;
        switch (at(row).kind) {
        case MenuEntry::Kind::Item:
        case MenuEntry::Kind::Submenu:
            break;
        case MenuEntry::Kind::Separator:
            height = heights.separator;
            break;
        case MenuEntry::Kind::BottomRow:
            height = heights.bottomRow;
            break;
        case MenuEntry::Kind::Widget:
            height = widgetHeight(row);
            break;
        }
        m_tops.push_back(m_tops.back() + height);
    }
}

int MenuRows::rowAt(int y) const
{
    if (y < 0 || y >= contentHeight())
        return -1;
    const auto after = std::ranges::upper_bound(m_tops, y);
    return static_cast<int>(after - m_tops.begin()) - 1;
}

bool MenuRows::isSelectable(int row) const
{
    if (row < 0 || row >= count() || !at(row).enabled)
        return false;
    return at(row).kind != MenuEntry::Kind::Separator && (at(row).kind != MenuEntry::Kind::Widget || height(row) > 0);
}

int MenuRows::next(int from, int step) const
{
    int row = from < 0 && step < 0 ? count() : from;
    for (int tries = 0; tries < count(); ++tries) {
        row = (row + step + count()) % count();
        if (isSelectable(row))
            return row;
    }
    return -1;
}

int MenuRows::page(int from, int distance) const
{
    const int step = distance < 0 ? -1 : 1;
    const int start = from < 0 ? 0 : top(from);
    int best = from;
    for (int row = from + step; row >= 0 && row < count(); row += step) {
        if (std::abs(top(row) - start) > std::abs(distance) && best != from)
            break;
        if (isSelectable(row))
            best = row;
    }
    return best < 0 ? next(-1, 1) : best;
}

} // namespace orvelle
