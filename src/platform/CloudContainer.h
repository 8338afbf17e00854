#pragma once

#include "base/Result.h"
#include "base/Timestamp.h"

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>

#include <chrono>
#include <functional>
#include <optional>

namespace orvelle {

/// Where a stored file stands on this machine.
enum class DownloadStatus {
    NotVisible,  ///< nothing is known of it here: it may not exist, or the place was not asked yet
    Placeholder, ///< it exists, but its content is not on this machine
    Outdated,    ///< there is a copy here, and a newer version elsewhere
    Current,
};

/// Why a container did not do what it was asked.
struct CloudError {
    enum class Kind {
        Unavailable,    ///< no folder, no account set, no connection
        Missing,        ///< the file does not exist
        NoData,         ///< it is there, and nothing could be read from it
        Conflict,       ///< it is not the version that the write was to replace
        Locked,         ///< another machine holds it, and did so to the end of our patience
        Unsafe,         ///< the server has no way to replace a file without overwriting another's change
        Authentication, ///< refused: name or password; also no permission
        NoSecretStore,  ///< the password cannot be had, as no keyring runs or it stays locked
        NoSpace,        ///< disk full or quota exceeded
        NotADocument,   ///< a log-in page or the like came instead of the file
        Tls,
        TimedOut,
        TooLarge,
        Io, ///< anything else that failed
    };
    Kind kind = Kind::Io;
    QString detail = {}; ///< for the log: no address, no name of a user
    /// When a server said so: not to be asked again earlier.
    std::optional<std::chrono::seconds> retryAfter = {};
};

/// A whole version of a file.
struct CloudFile {
    QByteArray bytes;
    QByteArray version;   ///< opaque; equal for equal content at the same place; never empty
    Timestamp modifiedAt; ///< as the place tells it
};

/// What a sync client made beside the file when two machines changed it at once.
struct ConflictCopy {
    QString name; ///< of the copy, without folder
    QByteArray bytes;
};

/// A place that the machines of one user share, for a handful of named files.
///
/// Main thread. Nothing here blocks: work is done on other threads or by the
/// event loop, and each callback runs once on the main thread from the event
/// loop, never from inside the call, and not at all after the container is
/// gone. Calls about one file are done in the order in which they were made.
/// Names are plain file names.
class CloudContainer : public QObject
{
    Q_OBJECT

public:
    template<typename T>
    using Done = std::function<void(const Result<T, CloudError> &)>;
    struct Nothing {
    };

    static constexpr qint64 maxFileBytes = qint64(64) << 20;

    using QObject::QObject;

    /// It is set up and can be reached as far as is known.
    virtual bool isAvailable() const = 0;
    /// Where the file is, for people to read; without credentials.
    virtual QString displayPath(const QString &name) const = 0;

    /// From memory or a look at the local disk; quick.
    virtual DownloadStatus downloadStatus(const QString &name) const = 0;
    /// As last seen; absent when the file is not visible here.
    virtual std::optional<Timestamp> modificationDate(const QString &name) const = 0;
    /// Asks for the newest version; changed() tells when it is here.
    virtual void startDownload(const QString &name) = 0;
    /// Drops this machine's copy, so that the next download fetches it anew.
    /// An error where the place has no such copies: nothing was done then.
    virtual Result<Nothing, CloudError> evict(const QString &name) = 0;

    /// The newest version that can be had, never half of one. Missing when
    /// there is no such file.
    virtual void read(const QString &name, Done<CloudFile> done) = 0;
    /// Replaces the file as a whole when its version is `expected` (empty:
    /// when there is none), else fails with Conflict and changes nothing. The
    /// new version comes back. After a failure other than Conflict the write
    /// may have happened.
    virtual void write(const QString &name, const QByteArray &bytes, const QByteArray &expected,
                       Done<CloudFile> done) = 0;

    /// Copies that sync clients made beside the file; none where such a thing
    /// does not exist.
    virtual void readConflictCopies(const QString &name, Done<QList<ConflictCopy>> done) = 0;
    /// Moves a copy that was taken in to a dated archive beside the file.
    virtual void archiveConflictCopy(const QString &copyName, Done<Nothing> done) = 0;

    /// Watches for changes of one file from outside, until stopWatching().
    /// gathered() comes once, then changed() on each.
    virtual void startWatching(const QString &name) = 0;
    virtual void stopWatching() = 0;

    /// Tries the place: reachable, writable, safe to share. For the settings;
    /// leaves nothing behind. What comes back says in a few words of ours what
    /// was found, for the log.
    virtual void test(Done<QString> done) = 0;

signals:
    void availabilityChanged();
    /// The watch stands; `count` files of the name were found, 0 or 1.
    void gathered(int count);
    /// The file, its download status or the copies beside it changed.
    void changed();
};

} // namespace orvelle
