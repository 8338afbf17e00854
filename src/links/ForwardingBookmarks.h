#pragma once

#include "platform/FileBookmarks.h"

namespace orvelle {

/// Hands everything on to other bookmarks: the base of those that do one thing
/// otherwise. Any thread.
class ForwardingBookmarks : public FileBookmarks
{
public:
    /// `bookmarks` outlive this object.
    explicit ForwardingBookmarks(FileBookmarks &bookmarks) : m_bookmarks(bookmarks) {}

    Result<QByteArray, FileBookmarkError> create(const QString &path) const override
    {
        return m_bookmarks.create(path);
    }
    Result<ResolvedBookmark, FileBookmarkError> resolve(const QByteArray &bookmark) const override
    {
        return m_bookmarks.resolve(bookmark);
    }
    bool startAccess(const QString &path) override { return m_bookmarks.startAccess(path); }
    void stopAccess(const QString &path) override { m_bookmarks.stopAccess(path); }

private:
    FileBookmarks &m_bookmarks;
};

} // namespace orvelle
