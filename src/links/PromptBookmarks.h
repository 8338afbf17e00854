#pragma once

#include "platform/FileBookmarks.h"

namespace orvelle {

class Volumes;

/// Makes bookmarks at once or not at all: of what lies on a distant volume
/// LinkStore makes them when the link is in the tree. What resolves a bookmark
/// still waits. Any thread.
class PromptBookmarks : public FileBookmarks
{
public:
    /// Both outlive this object.
    PromptBookmarks(FileBookmarks &bookmarks, const Volumes &volumes) : m_bookmarks(bookmarks), m_volumes(volumes) {}

    Result<QByteArray, FileBookmarkError> create(const QString &path) const override;
    Result<ResolvedBookmark, FileBookmarkError> resolve(const QByteArray &bookmark) const override
    {
        return m_bookmarks.resolve(bookmark);
    }
    bool startAccess(const QString &path) override { return m_bookmarks.startAccess(path); }
    void stopAccess(const QString &path) override { m_bookmarks.stopAccess(path); }

private:
    FileBookmarks &m_bookmarks;
    const Volumes &m_volumes;
};

} // namespace orvelle
