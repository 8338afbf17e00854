#pragma once

#include "base/Notifications.h"
#include "links/LinkItem.h"
#include "links/exchange/LinkExchange.h"
#include "platform/Clock.h"
#include "platform/UserDefaults.h"
#include "services/DebugModeManager.h"
#include "sync/CloudSync.h"
#include "sync/SyncBase.h"
#include "sync/SyncCipher.h"
#include "sync/SyncDocument.h"
#include "sync/SyncMergeJob.h"
#include "sync/SyncRunner.h"

#include <QLoggingCategory>
#include <QPointer>

namespace orvelle {

Q_DECLARE_LOGGING_CATEGORY(lcCloudSync)

/// Why the shared file could not be brought in step.
struct SyncProblem {
    QString sentence; ///< for the user
    QString detail;   ///< for the log
    std::optional<std::chrono::seconds> retryAfter = {};
    bool needsUser = false; ///< trying again alone will not help
    bool needsPassphrase = false;
    bool missing = false; ///< there is no file
    bool reading = false; ///< a document could not be read
};
SyncProblem problemOf(const CloudError &error);
SyncProblem problemOf(const SyncDocumentError &error);
SyncProblem noSnapshotProblem(const QString &detail);

/// Where a document that is handed in was read.
enum class SyncSource { BackgroundCheck, SilentSave, ManualSave, ConflictCopy };
QString logLabel(SyncSource source);

struct CloudSync::Private {
    Private(CloudSync *owner, const Services &given);

    using DocumentPtr = std::shared_ptr<const SyncDocument>;
    template<typename T>
    using Then = std::function<void(const T &)>;
    using ReadResult = Result<DocumentPtr, SyncProblem>;
    /// How what is here stands to a document that was taken in.
    struct Taken {
        bool differs = false;   ///< it has not all that is here, or as it is here
        bool reordered = false; ///< it has it in another order
        bool heldBack = false;
        bool ownWrite = false; ///< it was written here
        std::optional<SyncProblem> problem = {};
    };
    /// The bytes to write, and what is noted of them.
    struct Encoded {
        LinkExchange::Exported exported;
        QString versionId;
        QSet<QString> items;
    };
    struct Upload : Encoded {
        SyncSource source = SyncSource::SilentSave;
        Done done;
        int attempt = 0;
        bool forced = false;                     ///< writes also what was written before
        bool replaces = false;                   ///< what is there gives way, and is kept as a snapshot
        bool unseals = false;                    ///< is written in plain, whatever was there
        bool lookedAgain = false;                ///< whether the place is there
        std::chrono::milliseconds waited{0};     ///< for what was under way before
        std::shared_ptr<SyncCipher> cipher = {}; ///< when it is not to be that of all others
        SyncResult result;
        DocumentPtr remote; ///< what is replaced; null when there is no file
        Taken taken;
        // What the bytes were made of.
        LinkList links;
        QStringList history;
        std::optional<Timestamp> settings;
        Timestamp exportedAt;
    };
    using UploadPtr = std::shared_ptr<Upload>;
    struct Held {
        HeldBackChange change;
        DocumentPtr document;
        LinkList links;      ///< what was here when it was decided
        bool isCopy = false; ///< it lies beside the file
    };

    // CloudSync.cpp: what is stored, and what is told.
    QString key(const QString &base) const { return s.debugMode.key(base); }
    QString fileName() const;
    bool enabled() const;
    bool available() const;
    bool active() const { return enabled() && available(); }
    /// Whether it could be stored.
    bool store(const QString &base, const std::optional<DefaultsValue> &value);
    void setLastWritten(const LinkExchange::Exported &exported);
    void updateLastSyncDate();
    QString lostTree() const;
    std::shared_ptr<const SyncBase> base();
    void setBase(const SyncBase &known);
    void forgetBase();
    SyncStatus status() const;
    void announce();
    void setProblem(const std::optional<SyncProblem> &now);
    /// Drops what is under way: what comes back from it is not listened to.
    void abandon();
    /// Runs only while this lives and nothing was abandoned since.
    template<typename F>
    auto guarded(F function)
    {
        return [this, guard = QPointer<CloudSync>(q), begun = epoch, function = std::move(function)](auto &&...args) {
            if (guard && begun == epoch)
                function(std::forward<decltype(args)>(args)...);
        };
    }
    /// What is to be called once with an answer, also when the work for it is
    /// abandoned.
    template<typename T>
    auto owed(const std::function<void(const Result<T, CloudSyncError> &)> &done)
    {
        const int debt = ++lastDebt;
        interruptions.insert(debt, [done] { done(interrupted()); });
        return std::function(
            [this, guard = QPointer<CloudSync>(q), debt, done](const Result<T, CloudSyncError> &answer) {
                if (guard && interruptions.remove(debt))
                    done(answer);
            });
    }
    static CloudSyncError interrupted();
    template<typename T>
    void onWorker(std::function<T()> work, std::function<void(T)> then)
    {
        auto value = std::make_shared<std::optional<T>>();
        runner->run([value, work = std::move(work)] { value->emplace(work()); }, q,
                    guarded([value, then = std::move(then)] { then(std::move(**value)); }));
    }

    // CloudSyncMonitor.cpp
    void start();
    void stop();
    void watch();
    void unwatch();
    void initialCheck();
    void waitForDownload(std::chrono::milliseconds timeout, const Then<bool> &then);
    void pollDownload(int left, const Then<bool> &then);
    void initialDownload(std::chrono::milliseconds timeout);
    void onGathered(int count);
    void onChanged();
    void check(bool polled);
    void checkRead(const Result<CloudFile, CloudError> &result, bool polled);
    void checked(const ReadResult &result, bool polled);
    void checkTaken(const Taken &taken);
    void checkFailed(const SyncProblem &why, bool polled);
    void checkEnded();
    void noteMissing();
    void followUp(const Taken &taken);
    /// A line that the poll would repeat for hours is said once at info level.
    void sayOnce(bool polled, const QString &line);
    /// A line that belongs to every upload is said once a minute.
    void saySeldom(const QString &line);
    void initialSyncDone();

    bool isAsSeen(const CloudFile &file) const;

    // CloudSyncRead.cpp
    void decode(const CloudFile &file, const Then<ReadResult> &then);
    void decodeWithCipher(const CloudFile &file, const Then<ReadResult> &then);
    void readForUser(const Then<ReadResult> &then);

    // CloudSyncMerge.cpp
    void take(const DocumentPtr &document, SyncSource source, bool quietly, const Then<Taken> &then);
    bool isKnown(const DocumentPtr &document);
    void compare(const DocumentPtr &document, const Then<Taken> &then);
    void noteSeen(const SyncDocument &document, const LinkList &links);
    void merge(const DocumentPtr &document, SyncSource source, const Then<Taken> &then);
    struct Merged {
        SyncMergeOutcome outcome;
        QByteArray snapshot;                  ///< of the tree before
        QByteArray stored;                    ///< the tree after, as it is stored
        bool fits = true;                     ///< it is not too large
        std::optional<SyncAnalysis> analysis; ///< of a change that might be held back
        Taken taken;
    };
    Taken commit(const DocumentPtr &document, SyncSource source, const SyncMergeInput &input, const Merged &merged);
    std::optional<SyncProblem> commitTree(const DocumentPtr &document, const SyncMergeInput &input,
                                          const Merged &merged);
    void noteTaken(const DocumentPtr &document, SyncSource source);

    // CloudSyncCopies.cpp
    void takeConflictCopies();
    void takeNextCopy(QList<ConflictCopy> copies);
    void copyTaken(const ConflictCopy &copy, const QList<ConflictCopy> &rest);

    // CloudSyncSettings.cpp
    std::optional<Timestamp> localSettingsModifiedAt() const;
    void setLocalSettingsModifiedAt(const std::optional<Timestamp> &date);
    void touchSettingsModifiedAt();
    bool isInDocument(Timestamp settings) const;
    void takeSettings(const ExportData &document);
    void applySyncSettings(const SyncDocument &document);
    bool settingsAreNewer(const SyncDocument &document);

    // CloudSyncSchedule.cpp
    void schedule(std::chrono::milliseconds delay);
    void cancelPending();
    void uploadDue();
    void saveSilently();
    void retryLater(const SyncProblem &why);

    // CloudSyncUpload.cpp
    void saveByHand(const UploadPtr &wanted);
    void waitByHand(const UploadPtr &wanted);
    void beginUpload(const UploadPtr &begun);
    void attempt(const UploadPtr &begun);
    void forceDownload(const std::function<void()> &then);
    void uploadRead(const UploadPtr &begun, const ReadResult &result);
    void uploadTaken(const UploadPtr &begun, const Taken &taken);
    void keepReplaced(const UploadPtr &begun);
    QStringList historyFor(const Upload &begun);
    void exportFor(const UploadPtr &begun, const std::function<void()> &then);
    void exported(const UploadPtr &begun);
    bool needsWrite(const Upload &begun) const;
    void write(const UploadPtr &begun, const QByteArray &bytes);
    void written(const UploadPtr &begun, const Result<CloudFile, CloudError> &result);
    void succeed(const UploadPtr &begun);
    void fail(const UploadPtr &begun, CloudSyncError::Kind kind, const SyncProblem &why);
    void finish(const UploadPtr &ended, const Result<SyncResult, CloudSyncError> &result);

    // CloudSyncGuard.cpp
    bool guardEnabled() const;
    bool holdsBack(const DocumentPtr &document, SyncSource source, const SyncMergeInput &input, const Merged &merged);
    void hold(const Held &now);
    bool wouldBeHeldAgain() const;
    void release();
    void dropOvertaken();

    // CloudSyncLoad.cpp
    using Loaded = Result<SyncResult, CloudSyncError>;
    struct Loading;
    void load(const DocumentPtr &document, bool decided, const Done &done);
    std::optional<SyncProblem> replaceTree(const Loading &loading);
    Loaded replaceBy(const DocumentPtr &document, const Loading &loading);

    // CloudSyncConfigure.cpp
    void notePassphraseNeeded(const ReadResult &read);
    void migrateFromBookmarkIfNeeded();
    void copyBookmarked(const QByteArray &bookmark);
    void clearBookmark(const char *line);

    // CloudSyncEncryption.cpp
    bool encryptionOn() const;
    bool seals(const Upload &begun) const;
    void noteSealed();
    using Asked = std::optional<SyncProblem>;
    /// Makes `cipher` with the passphrase from the keyring, if there is one.
    void withCipher(const Then<Asked> &then);
    struct PassphraseChange;
    using ChangePtr = std::shared_ptr<PassphraseChange>;
    void passphraseRead(const ChangePtr &change, const Result<CloudFile, CloudError> &result);
    void tryPassphrase(const ChangePtr &change, const QByteArray &encrypted);
    void adoptPassphrase(const ChangePtr &change, bool isSealed);
    void changePassphrase(const ChangePtr &change);
    void withNextCipher(const Then<Asked> &then);
    void promoteNext(const std::function<void()> &then);
    void settleNext();
    void dropNext();
    void keepSecret(const QString &secret, const QByteArray &passphrase, const Then<bool> &then);
    void writeAnew(const UploadPtr &anew, const Done &done);
    void forgetCiphers();

    CloudSync *q;
    Services s;
    std::unique_ptr<SyncRunner> ownRunner;
    SyncRunner *runner;
    CloudContainer *container = nullptr;
    std::vector<QMetaObject::Connection> connections;
    int epoch = 0;
    QMap<int, std::function<void()>> interruptions; ///< of the answers that are owed
    int lastDebt = 0;

    std::optional<Timestamp> lastSyncDate;
    std::optional<QString> lastSyncedFromDevice;
    QString lastWrittenChecksum;
    QByteArray lastWrittenContent;
    QString lastImportedHash;
    std::optional<Timestamp> lastKnownSyncFileModDate;
    std::optional<Timestamp> lastSyncCheckDate;
    std::shared_ptr<const SyncBase> m_base;
    bool baseLoaded = false;
    /// The last version that held all that is here, and what was here then.
    struct Seen {
        QByteArray version;
        LinkList links;
        std::optional<Timestamp> settings;
        bool own = false;
    };
    std::optional<Seen> seen;
    QHash<QString, Timestamp> saidAt;
    QString polledLine;                ///< the last line of a poll
    bool toldToWait = false;           ///< that the file is not downloaded yet
    QHash<QString, size_t> leftCopies; ///< those that stay although they were looked at, with a hash of what they hold
    QString beingWritten;              ///< a version whose write was begun, and perhaps done
    std::optional<SyncBase> baseOfBeingWritten;

    bool isCheckingSyncFile = false;
    bool isMerging = false;
    bool isInitialSyncComplete = false;
    bool isMonitoring = false;
    bool isApplyingRemoteSettings = false;
    bool checkAgain = false;
    bool deferred = false; ///< an upload that came before the first check
    UploadPtr upload;
    std::unique_ptr<Timer> pollTimer;
    std::unique_ptr<Timer> uploadTimer;
    std::optional<Timestamp> waitingSince; ///< changes here wait to be written
    /// A pause in the wall clock's time, which ends also when that is set back
    /// to before it began.
    struct Pause {
        Timestamp from;
        Timestamp until;
        bool holds(Timestamp now) const { return from <= now && now < until; }
    };
    std::optional<Pause> retry;     ///< after failures
    std::optional<Pause> notBefore; ///< the place asked not to be asked earlier
    int failures = 0;
    int echoes = 0; ///< uploads in a row that no edit here had caused
    std::optional<SyncProblem> problem;

    std::optional<Held> held;
    bool mustWrite = false; ///< the file has not all that is here, whatever was written last
    QString accepted;       ///< the version that may remove much
    QString rejected;       ///< the version that may remove nothing

    std::shared_ptr<SyncCipher> cipher;
    /// The passphrase of a change that may have been written or not.
    struct NextCipher {
        std::shared_ptr<SyncCipher> cipher;
        QByteArray passphrase;
    };
    std::optional<NextCipher> next;
    bool nextLookedUp = false;
    SyncStatus told;
};

} // namespace orvelle
