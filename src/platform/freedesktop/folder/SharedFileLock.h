#pragma once

#include "platform/freedesktop/folder/FolderIo.h"

#include <optional>

namespace orvelle {

/// A lock file beside a file that several machines write in a folder that they
/// share live. Created exclusively, it tells its owner (machine, process, a
/// random token) and for how long it may be kept. One that has not changed for
/// that long is taken over; how long is measured here while it is watched, since
/// the clocks of two machines are never compared. One left by a process of this machine that no longer lives is
/// taken over at once.
///
/// An owner keeps it for moments only, and no longer acts on it well before
/// others may take it over.
///
/// Its name is one that sync clients take for an office program's lock and
/// leave alone.
class SharedFileLock
{
public:
    static constexpr std::chrono::milliseconds lease{15'000};
    /// The owner asks for the last time whether it is still its own.
    static constexpr std::chrono::milliseconds longestUse{7'500};
    /// For how long acquire() waits: to the end of an abandoned lock, so that
    /// also a program that does not stay can take it over.
    static constexpr std::chrono::milliseconds patience{20'000};

    SharedFileLock(const QString &name, QString machineName, std::shared_ptr<WorkerTime> time);

    /// Absent when the lock is ours, else why not. `aloneHere`: no other
    /// process of this machine can be at it.
    std::optional<CloudError> acquire(int folder, bool aloneHere);
    bool isStillOurs(int folder) const;
    void release(int folder);

    const QByteArray &fileName() const { return m_fileName; }

private:
    /// What stands in the way, as it was read.
    struct Found {
        FileStamp stamp;
        QByteArray text;
        friend bool operator==(const Found &, const Found &) = default;
    };
    QByteArray text() const;
    int create(int folder);
    static Result<std::optional<Found>, CloudError> look(int folder, const QByteArray &name);
    bool isAbandoned(const Found &found, bool aloneHere);
    void takeAway(int folder, const Found &stale) const;

    QByteArray m_fileName;
    QString m_machineName;
    QByteArray m_token;
    std::shared_ptr<WorkerTime> m_time;
    std::chrono::milliseconds m_since{0}; ///< ours since
    std::optional<Found> m_watched;
    std::chrono::milliseconds m_watchedSince{0};
};

/// Tells this run of this machine's kernel from all others.
QByteArray bootId();

} // namespace orvelle
