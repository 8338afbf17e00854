#pragma once

#include "links/LinkItem.h"

#include <QHash>

#include <vector>

namespace orvelle {

/// A tree taken apart, for many changes at once: each identity once, as its
/// newest copy at the place of the first one, with the members of all. Parts
/// have numbers, which stay valid.
class TreeParts
{
public:
    static constexpr int topLevel = 0;
    static constexpr int none = -1;

    explicit TreeParts(const LinkList &links);

    int find(const QString &stableId) const { return m_numbers.value(stableId, none); }
    const LinkItem &item(int part) const { return at(part).item; } ///< without members
    int groupOf(int part) const;
    bool isRepeated(int part) const { return at(part).isRepeated; }

    /// Members of what is no group any more come right behind it.
    void replace(int part, LinkItem item);
    /// At the end of the group; without the item's members.
    void add(const LinkItem &item, int group);
    /// To the end of the group. False when that is the part itself or below it.
    bool move(int part, int group);
    /// Its members come into its place.
    void remove(int part);

    LinkList tree() const { return assemble(topLevel); }

private:
    struct Part {
        LinkItem item;
        int group;                ///< in whose `members` it is
        std::size_t place;        ///< there
        std::vector<int> members; ///< with `none` where one has left
        bool hasMembers;          ///< a list of them, be it empty
        bool isRepeated;
        bool isOpen = false; ///< its members are shown right behind it
        bool isGone = false;
    };

    Part &at(int part) { return m_parts[static_cast<std::size_t>(part)]; }
    const Part &at(int part) const { return m_parts[static_cast<std::size_t>(part)]; }
    void read(const LinkList &links, int group);
    void put(int part, int group);
    void close(int part);
    bool showsAny(const std::vector<int> &members) const;
    LinkList assemble(int group) const;
    void assembleInto(LinkList &links, int group) const;

    std::vector<Part> m_parts; ///< the first one stands for the top level
    QHash<QString, int> m_numbers;
};

} // namespace orvelle
