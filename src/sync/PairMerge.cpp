#include "sync/PairMerge.h"

#include "sync/ItemDates.h"

namespace orvelle {

namespace {

/// Whose text the merged note has. Where only one side is a note, the other
/// has none to compare with.
const LinkItem &textSource(const LinkItem &merged, const LinkItem &local, const LinkItem &remote)
{
    const bool oneSided = local.type != remote.type;
    if (oneSided && merged.type == LinkType::Note)
        return local.type == LinkType::Note ? local : remote;
    return contentDate(remote) > contentDate(local) ? remote : local;
}

} // namespace

std::optional<LinkItem> mergePair(const LinkItem &local, const LinkItem &remote)
{
    const bool anyGroup = local.isGroup() || remote.isGroup();
    const bool anyNote = !anyGroup && (local.type == LinkType::Note || remote.type == LinkType::Note);
    const bool takesRemote = itemDate(remote) > itemDate(local);
    const LinkItem &winner = takesRemote ? remote : local;
    const LinkItem &text = anyNote ? textSource(winner, local, remote) : winner;
    if (!takesRemote && &text == &winner)
        return std::nullopt;
    LinkItem merged = winner;
    merged.bookmarkData = local.bookmarkData;
    merged.noteContent = text.noteContent;
    merged.noteRTFData = text.noteRTFData;
    merged.contentModifiedAt = text.contentModifiedAt;
    return merged;
}

} // namespace orvelle
