#include "sync/TreeParts.h"

#include "sync/PairMerge.h"

#include <algorithm>
#include <utility>

namespace orvelle {

TreeParts::TreeParts(const LinkList &links)
{
    m_parts.push_back({{}, none, 0, {}, true, false});
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
    m_parts.push_back({item, group, 0, {}, item.isGroup(), false});
    m_parts.back().item.children.reset();
    put(part, group);
}

void TreeParts::put(int part, int group)
{
    close(group);
    at(part).group = group;
    at(part).place = at(group).members.size();
    at(group).members.push_back(part);
    at(group).hasMembers = true;
}

int TreeParts::groupOf(int part) const
{
    int group = at(part).group;
    while (group != none && at(group).isOpen)
        group = at(group).group;
    return group;
}

void TreeParts::replace(int part, LinkItem item)
{
    item.children.reset();
    const bool isGroup = item.isGroup();
    if (isGroup)
        close(part);
    else if (at(part).item.isGroup())
        at(part).isOpen = true;
    at(part).item = std::move(item);
    at(part).hasMembers = isGroup || showsAny(at(part).members);
}

bool TreeParts::showsAny(const std::vector<int> &members) const
{
    return std::ranges::any_of(
        members, [this](int member) { return member != none && (!at(member).isGone || showsAny(at(member).members)); });
}

bool TreeParts::move(int part, int group)
{
    for (int above = group; above != topLevel; above = groupOf(above)) {
        if (above == part)
            return false;
    }
    close(part); // what is shown behind it stays
    at(at(part).group).members[at(part).place] = none;
    put(part, group);
    return true;
}

void TreeParts::remove(int part)
{
    at(part).isOpen = true;
    at(part).isGone = true;
    m_numbers.remove(item(part).stableId);
}

/// Makes what is shown behind it no members of it any more.
void TreeParts::close(int part)
{
    if (!std::exchange(at(part).isOpen, false))
        return;
    const std::vector<int> members = std::exchange(at(part).members, {});
    const int group = at(part).group;
    at(part).hasMembers = item(part).isGroup();
    std::vector<int> &around = at(group).members;
    around.insert(around.begin() + static_cast<std::ptrdiff_t>(at(part).place) + 1, members.begin(), members.end());
    for (std::size_t i = at(part).place + 1; i < around.size(); ++i) {
        if (around[i] == none)
            continue;
        at(around[i]).group = group;
        at(around[i]).place = i;
    }
}

LinkList TreeParts::assemble(int group) const
{
    LinkList links;
    links.reserve(static_cast<qsizetype>(at(group).members.size()));
    assembleInto(links, group);
    return links;
}

void TreeParts::assembleInto(LinkList &links, int group) const
{
    for (const int part : at(group).members) {
        if (part == none)
            continue;
        const bool isOpen = at(part).isOpen;
        if (!at(part).isGone) {
            LinkItem whole = item(part);
            if (at(part).hasMembers && !isOpen)
                whole.children = assemble(part);
            links += whole;
        }
        if (isOpen)
            assembleInto(links, part);
    }
}

} // namespace orvelle
