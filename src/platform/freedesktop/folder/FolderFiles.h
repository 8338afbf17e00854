#pragma once

#include "platform/freedesktop/folder/FolderIo.h"
#include "platform/freedesktop/folder/SharedFileLock.h"

#include <QDateTime>
#include <QHash>

#include <map>
#include <optional>

namespace orvelle {

/// The files of a shared folder, read and replaced whole. Blocks; one thread
/// at a time. The folder itself is never created: where it is missing, or a
/// file system that belongs there is not mounted, everything is Unavailable.
class FolderFiles
{
public:
    using Done = Result<CloudContainer::Nothing, CloudError>;

    /// What a look at a file tells.
    struct Look {
        bool isAvailable = false;
        DownloadStatus status = DownloadStatus::NotVisible;
        std::optional<FileStamp> stamp; ///< of whatever has the name
        QStringList copies;             ///< names of conflict copies, sorted
        friend bool operator==(const Look &, const Look &) = default;
    };

    FolderFiles(const QString &folder, QString machineName, std::shared_ptr<WorkerTime> time);

    /// With an empty name, at the folder alone.
    Look look(const QString &name);
    /// The same, and asks the client of a placeholder for its content.
    Look requestDownload(const QString &name);
    Result<WholeFile, CloudError> read(const QString &name);
    /// As CloudContainer::write(). Under a lock of this machine's processes and
    /// one of all machines; a version that a sync client, which knows neither,
    /// brings at the last moment is kept as a conflict copy.
    Result<WholeFile, CloudError> write(const QString &name, const QByteArray &bytes, const QByteArray &expected);

    /// At most 20 copies and 128 MiB; the others come once these are archived.
    Result<QList<ConflictCopy>, CloudError> readConflictCopies(const QString &name);
    /// Only a copy that was read here and is unchanged since, else Conflict.
    Done archiveConflictCopy(const QString &copyName, const QDateTime &date);

    /// Writes, replaces and removes a file of its own.
    Result<QString, CloudError> probe();

private:
    struct Temporary;

    Result<Descriptor, CloudError> open() const;
    Result<Descriptor, CloudError> openFor(const QString &name);
    bool isOtherFileSystem(int folder, const QByteArray &name);
    SharedFileLock &lockOf(const QString &name);
    Result<bool, CloudError> excludeOtherProcesses(int folder) const;
    Result<Temporary, CloudError> writeTemporary(int folder, const QString &name, const QByteArray &bytes) const;
    void sweep(int folder, const Temporary &own, const QString &name, bool aloneHere) const;
    Result<std::optional<FileStamp>, CloudError> stampOfVersion(int folder, const QString &name,
                                                                const QByteArray &expected);
    std::optional<CloudError> replace(int folder, const QString &name, const QByteArray &temporary,
                                      const std::optional<FileStamp> &replaced, const QByteArray &version);
    std::optional<CloudError> keepDisplaced(int folder, const QString &name, const QByteArray &displaced,
                                            const FileStamp &expected, const QByteArray &version);
    QByteArray temporaryPrefix(const QString &name) const;

    QString m_folder;
    QString m_machineName;
    std::shared_ptr<WorkerTime> m_time;
    QByteArray m_bootTag;
    std::map<QString, SharedFileLock> m_locks;
    QHash<QString, QByteArray> m_copiesRead; ///< their versions
    std::optional<dev_t> m_device;           ///< of the folder when a file was seen in it
};

} // namespace orvelle
