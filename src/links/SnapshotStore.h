#pragma once

#include "base/Result.h"
#include "base/Timestamp.h"
#include "links/LinkItem.h"

#include <QString>

namespace orvelle {

class Clock;

struct SnapshotInfo {
    QString name; ///< file name without folder, unique, sorts by time
    Timestamp takenAt;
    QString reason; ///< "remove", "replace", "import", "merge", "undo", ...
    qint64 itemCount = 0;
};

struct SnapshotError {
    QString detail;
};

/// Dated, compressed copies of the tree in a folder (0700, files 0600). Keeps
/// the newest 50 and, of older ones, the last of each day for 30 days.
/// A copy is on disk when take() returns.
class SnapshotStore
{
public:
    /// `folder` is made when first needed.
    SnapshotStore(const QString &folder, Clock &clock);

    static constexpr int newestKept = 50;
    static constexpr int daysKept = 30;

    Result<QString, SnapshotError> take(const LinkList &links, const QString &reason, bool debugMode);
    /// Newest first, those of the given mode only.
    QList<SnapshotInfo> list(bool debugMode) const;
    Result<LinkList, SnapshotError> load(const QString &name, bool debugMode) const;

private:
    void prune(bool debugMode);

    QString m_folder;
    Clock &m_clock;
};

} // namespace orvelle
