#pragma once

#include "platform/FileBookmarks.h"

#include <cstddef>

namespace orvelle {

/// Bookmarks that hold a path, and the device and inode found there, with the
/// object's time of birth where the file system keeps one.
///
/// resolve() looks at the path first. When nothing or another object stands
/// there, it searches the folder of the path for the inode, so that a rename
/// in place is followed. What it answers:
///
/// | at the path | inode in the folder | answer |
/// |---|---|---|
/// | the same object | | the path |
/// | the same inode, another device (a network mount came back) | | the path |
/// | another object | found under another name | that name, stale |
/// | another object (an editor's save) | not found | the path, stale |
/// | nothing | found under another name | that name, stale |
/// | nothing | not found | an error |
///
/// Stateless; may be called from any thread.
class InodeFileBookmarks : public FileBookmarks
{
public:
    /// At most `scanLimit` entries of a folder are searched.
    explicit InodeFileBookmarks(std::size_t scanLimit = 100'000);

    /// Of an absolute path to an existing object; symbolic links are followed
    /// for the object and kept in the path.
    Result<QByteArray, FileBookmarkError> create(const QString &path) const override;
    /// Any bytes may be given: what is not a bookmark is an error.
    Result<ResolvedBookmark, FileBookmarkError> resolve(const QByteArray &bookmark) const override;
    bool startAccess(const QString &path) override;
    /// Nothing is held: reading needs no permission beyond the user's own here.
    void stopAccess(const QString &path) override;

private:
    std::size_t m_scanLimit;
};

} // namespace orvelle
