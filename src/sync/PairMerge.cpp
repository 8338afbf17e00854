#include "sync/PairMerge.h"

namespace orvelle {

namespace {

/// Whose text the merged note has. Where only one side is a note, the other
/// has none to compare with.
const LinkItem &textSource(const LinkItem &merged, const LinkItem &local, const LinkItem &remote,
                           const SaneDates &dates)
{
    const bool oneSided = local.type != remote.type;
    if (oneSided && merged.type == LinkType::Note)
        return local.type == LinkType::Note ? local : remote;
    return dates.contentDate(remote) > dates.contentDate(local) ? remote : local;
}

} // namespace

std::optional<LinkItem> mergePair(const LinkItem &local, const LinkItem &remote, const SaneDates &dates)
{
    const bool anyGroup = local.isGroup() || remote.isGroup();
    const bool anyNote = !anyGroup && (local.type == LinkType::Note || remote.type == LinkType::Note);
    const bool takesRemote = dates.itemDate(remote) > dates.itemDate(local);
    const LinkItem &winner = takesRemote ? remote : local;
    const LinkItem &text = anyNote ? textSource(winner, local, remote, dates) : winner;
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
