#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace orvelle {

/// Why nothing was kept, in the system's words.
struct CacheError {
    QString description;
};

/// The folder "orvelle-clipboard" with the pictures of the history. It is
/// temporary: what an earlier run has left goes at the start, and all of it
/// at the end. Readable by this user only.
class ClipboardCache
{
public:
    /// The bytes that the folder must have room for.
    static constexpr qint64 wantedRoom = 10LL * 50 * 1024 * 1024;

    /// `parents` are the folders that may hold it, the preferred first; the
    /// first whose file system is large enough is taken, else the last.
    explicit ClipboardCache(const QStringList &parents);
    ~ClipboardCache();
    ClipboardCache(const ClipboardCache &) = delete;
    ClipboardCache &operator=(const ClipboardCache &) = delete;

    const QString &directory() const { return m_directory; }
    /// Deletes the folder and makes it anew, empty. Main thread.
    void reset();
    /// Keeps the bytes under a new name; gives the path. Any thread.
    Result<QString, CacheError> write(const QByteArray &bytes, const QString &extension) const;

private:
    QString m_directory;
};

} // namespace orvelle
