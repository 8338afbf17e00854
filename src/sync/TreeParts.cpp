#include "sync/TreeParts.h"

#include "sync/PairMerge.h"

#include <algorithm>
#include <utility>

namespace orvelle {

TreeParts::TreeParts(const LinkList &links)
{
    m_parts.push_back({{}, none, {}, true, false});
    read(links, topLevel);
}

void TreeParts::read(const LinkList &links, int group)
{
    for (const LinkItem &item : links) {
        int part = find(item.stableId);
        if (part == none) {
            part = static_cast<int>(m_parts.size());
            add(item, group);
        } else {
            at(part).isRepeated = true;
            if (auto merged = mergePair(at(part).item, item))
                replace(part, std::move(*merged));
        }
        if (item.children) {
            at(part).hasMembers = true;
            read(*item.children, part);
        }
    }
}

void TreeParts::add(const LinkItem &item, int group)
{
    const int part = static_cast<int>(m_parts.size());
    m_numbers.insert(item.stableId, part);
    m_parts.push_back({item, group, {}, item.isGroup(), false});
    m_parts.back().item.children.reset();
    at(group).members.push_back(part);
    at(group).hasMembers = true;
}

void TreeParts::replace(int part, LinkItem item)
{
    item.children.reset();
    const bool isGroup = item.isGroup();
    if (at(part).item.isGroup() && !isGroup)
        spill(part);
    at(part).item = std::move(item);
    at(part).hasMembers = isGroup || !at(part).members.empty();
}

bool TreeParts::move(int part, int group)
{
    for (int above = group; above != topLevel; above = groupOf(above)) {
        if (above == part)
            return false;
    }
    std::erase(at(groupOf(part)).members, part);
    at(part).group = group;
    at(group).members.push_back(part);
    at(group).hasMembers = true;
    return true;
}

void TreeParts::remove(int part)
{
    spill(part);
    std::erase(at(groupOf(part)).members, part);
    m_numbers.remove(item(part).stableId);
}

/// Puts the members right behind their group.
void TreeParts::spill(int part)
{
    const std::vector<int> members = std::exchange(at(part).members, {});
    std::vector<int> &around = at(groupOf(part)).members;
    const auto place = std::find(around.begin(), around.end(), part);
    around.insert(place + 1, members.begin(), members.end());
    for (const int member : members)
        at(member).group = groupOf(part);
}

LinkList TreeParts::assemble(int group) const
{
    LinkList links;
    links.reserve(static_cast<qsizetype>(at(group).members.size()));
    for (const int part : at(group).members) {
        LinkItem whole = item(part);
        if (at(part).hasMembers)
            whole.children = assemble(part);
        links += whole;
    }
    return links;
}

} // namespace orvelle
