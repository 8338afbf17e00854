#pragma once

#include "base/Result.h"
#include "base/Timestamp.h"
#include "links/LinkItem.h"

#include <QString>

#include <optional>

namespace orvelle {

class Clock;

struct SnapshotInfo {
    QString name; ///< file name without folder, unique, sorts by the order of taking
    Timestamp takenAt;
    QString reason; ///< "remove", "replace", "import", "merge", "undo", ...
    qint64 itemCount = 0;
    QString machine = {}; ///< whose change followed, when it was another one's
};

struct SnapshotError {
    QString detail;
};

/// Dated, compressed copies of the tree in a folder (0700, files 0600). Keeps
/// the newest 50 and, of older ones, the last of each day for 30 days.
/// A copy is on disk when take() returns. Names begin with a running number,
/// so that a clock set back does not change which copy is the newest.
class SnapshotStore
{
public:
    /// `folder` is made when first needed.
    SnapshotStore(const QString &folder, Clock &clock);

    static constexpr int newestKept = 50;
    static constexpr int daysKept = 30;
    /// A copy that unpacks to more is refused.
    static constexpr qsizetype maxUnpackedBytes = qsizetype(1) << 30;

    /// `reason`: lower-case letters. The new copy's name.
    Result<QString, SnapshotError> take(const LinkList &links, const QString &reason, bool debugMode);
    /// The same for what packSnapshot() made of a tree of `itemCount` items,
    /// which it can do on another thread. `machine`: who wrote the change that
    /// follows; of a very long name the beginning is kept.
    Result<QString, SnapshotError> takePacked(const QByteArray &packed, qint64 itemCount, const QString &reason,
                                              const QString &machine, bool debugMode);
    /// Newest first, those of the given mode only.
    QList<SnapshotInfo> list(bool debugMode) const;
    Result<LinkList, SnapshotError> load(const QString &name, bool debugMode) const;

private:
    QString folderOf(bool debugMode) const;
    void prune(bool debugMode);

    QString m_folder;
    Clock &m_clock;
};

/// The content of a snapshot file: the stored form in a zstd frame (RFC 8878)
/// with a checksum.
Result<QByteArray, SnapshotError> packSnapshot(const LinkList &links);
Result<LinkList, SnapshotError> unpackSnapshot(QByteArrayView packed,
                                               qsizetype maxBytes = SnapshotStore::maxUnpackedBytes);

/// What a snapshot's name tells; absent when it is not the name of one.
std::optional<SnapshotInfo> snapshotInfo(const QString &name);

} // namespace orvelle
