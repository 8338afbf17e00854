#pragma once

#include "platform/Clock.h"
#include "platform/CloudContainer.h"
#include "platform/freedesktop/folder/FolderFiles.h"
#include "platform/freedesktop/folder/FolderWatch.h"

#include <QSocketNotifier>

#include <memory>

namespace orvelle {

/// A folder that some program keeps in step between machines, or that several
/// machines mount. The files lie in it by their names; it is never created
/// here, so that one that is not mounted is not taken for an empty one.
///
/// All file work is done by a thread of its own. What the constant methods
/// tell is what that thread saw last; only the first look at a file is waited
/// for, for moments.
///
/// Placeholders are recognised as Nextcloud's and ownCloud's clients make them,
/// a file of the name and ".nextcloud" or ".owncloud", or one with their mark.
/// startDownload() asks these clients for the content; with others, and to
/// drop a local copy, there is nothing to ask: evict() is an error.
class FolderContainer : public CloudContainer
{
    Q_OBJECT

public:
    /// `folder` absolute; `machineName` is told to other machines in the lock
    /// file. `clock` must outlive the container.
    FolderContainer(const QString &folder, const QString &machineName, Clock &clock, QObject *parent = nullptr);
    ~FolderContainer() override;

    bool isAvailable() const override { return m_isAvailable; }
    QString displayPath(const QString &name) const override;
    DownloadStatus downloadStatus(const QString &name) const override;
    std::optional<Timestamp> modificationDate(const QString &name) const override;
    void startDownload(const QString &name) override;
    Result<Nothing, CloudError> evict(const QString &name) override;
    void read(const QString &name, Done<CloudFile> done) override;
    void write(const QString &name, const QByteArray &bytes, const QByteArray &expected, Done<CloudFile> done) override;
    void readConflictCopies(const QString &name, Done<QList<ConflictCopy>> done) override;
    void archiveConflictCopy(const QString &copyName, Done<Nothing> done) override;
    void startWatching(const QString &name) override;
    void stopWatching() override;
    void test(Done<QString> done) override;

private:
    using Look = FolderFiles::Look;
    struct FirstLook;

    template<typename T>
    void ask(std::function<Result<T, CloudError>(FolderFiles &)> work,
             std::function<void(const Result<T, CloudError> &)> learn, Done<T> done);
    void lookAt(const QString &name, const std::function<void(const Look &)> &then,
                const std::shared_ptr<FirstLook> &first = {});
    const Look &seen(const QString &name) const;
    void learn(const QString &name, const Look &look);
    void learnWhole(const QString &name, const Result<WholeFile, CloudError> &file);
    void learnAvailable(bool isAvailable);
    void readNotices();
    void askForNotices();

    QString m_folder;
    Clock &m_clock;
    bool m_isAvailable = false;
    QHash<QString, Look> m_seen;
    QString m_watched; ///< empty while nobody watches
    quint64 m_watchNumber = 0;
    bool m_isLooking = false;
    bool m_looksAgain = false;
    std::unique_ptr<Timer> m_retry; ///< while the folder is not there
    std::shared_ptr<FolderWatch> m_watch;
    std::shared_ptr<FolderFiles> m_files;
    std::unique_ptr<QSocketNotifier> m_notices;
    mutable SerialWorker m_worker; ///< last, so that it ends before what its jobs' outcomes touch
};

} // namespace orvelle
