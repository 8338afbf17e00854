#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QString>

namespace orvelle {

struct FileBookmarkError {
    QString detail;         ///< in the system's words
    bool notLooked = false; ///< that was left for later, as it may hang
};

/// Where a bookmark leads now.
struct ResolvedBookmark {
    QString path;
    /// The object was found under another path, or another object stands at
    /// the path: make a new bookmark.
    bool stale = false;
};

/// References to files and folders that survive a rename: opaque bytes that
/// only this machine understands. Any thread. Every call takes as long as the
/// file system does, which on a network disk that is gone may be without end.
class FileBookmarks
{
public:
    virtual ~FileBookmarks() = default;

    virtual Result<QByteArray, FileBookmarkError> create(const QString &path) const = 0;
    virtual Result<ResolvedBookmark, FileBookmarkError> resolve(const QByteArray &bookmark) const = 0;

    /// True when the object at `path` exists and this user may read it. Pairs
    /// with stopAccess().
    virtual bool startAccess(const QString &path) = 0;
    virtual void stopAccess(const QString &path) = 0;
};

} // namespace orvelle
