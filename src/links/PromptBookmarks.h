#pragma once

#include "links/ForwardingBookmarks.h"

namespace orvelle {

class Volumes;

/// Makes bookmarks at once or not at all: of what lies on a distant volume
/// LinkStore makes them when the link is in the tree. What resolves a bookmark
/// still waits. Any thread.
class PromptBookmarks : public ForwardingBookmarks
{
public:
    /// Both outlive this object.
    PromptBookmarks(FileBookmarks &bookmarks, const Volumes &volumes)
        : ForwardingBookmarks(bookmarks), m_volumes(volumes)
    {
    }

    Result<QByteArray, FileBookmarkError> create(const QString &path) const override;

private:
    const Volumes &m_volumes;
};

} // namespace orvelle
