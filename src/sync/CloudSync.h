#pragma once

#include "base/Result.h"
#include "base/Timestamp.h"
#include "platform/CloudContainer.h"
#include "sync/SyncAnalysis.h"
#include "sync/SyncGuard.h"

#include <QObject>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace orvelle {

class Clock;
class DebugModeManager;
class ExchangeSettings;
class FileBookmarks;
class LinkExchange;
class LinkStore;
class Notifications;
class SecretStore;
class SnapshotStore;
class SyncRunner;
class UserDefaults;
struct PreparedImport;

/// What the user is told of the synchronisation.
struct SyncStatus {
    enum class State {
        Off,
        Unavailable,     ///< switched on, but no container can be reached
        Starting,        ///< the first look at the file is not done yet
        Current,         ///< nothing waits
        Waiting,         ///< changes here are to be uploaded soon, or again at `retryAt`
        Working,         ///< the file is being read, merged or written
        HeldBack,        ///< a change from elsewhere takes too much away: the user decides
        NeedsPassphrase, ///< the file is encrypted and its passphrase not known here
        Failed,
    };
    State state = State::Off;
    std::optional<Timestamp> lastSyncDate;
    std::optional<QString> lastSyncedFromDevice;
    QString failure = {}; ///< one sentence for the user, while Failed or Waiting after a failure
    std::optional<Timestamp> retryAt = {};

    /// Nothing goes on without the user.
    bool needsUser() const;
    friend bool operator==(const SyncStatus &, const SyncStatus &) = default;
};
/// "off", "unavailable" and so on, for the command line.
QString rawValue(SyncStatus::State state);

/// What was held back, for the preview.
struct HeldBackChange {
    QString device = {}; ///< who wrote it
    MassRemoval removal = {};
    SyncAnalysis analysis = {};
    bool isLoad = false;  ///< accepting it replaces all that is here, instead of merging
    QString version = {}; ///< opaque; another one is another change
};

struct CloudSyncError {
    enum class Kind { WriteFailed, ReadFailed, ExportFailed, UserCancelled };
    Kind kind = Kind::ReadFailed;
    QString description; ///< localised, for people
};

enum class ConfigureCloudSyncResult { ImportedExisting, CreatedNew, Cancelled };

/// One sentence for the user.
QString cloudErrorText(const CloudError &error);

/// Keeps the tree and the settings that travel in step with one document that
/// all machines of a user share. Main thread only; reading, decoding, merging
/// on trees of a size that would be felt, and writing happen elsewhere.
///
/// An upload replaces only a version that was merged before: it reads, merges
/// and writes on condition, and begins again, a bounded number of times, when
/// another machine was faster.
class CloudSync : public QObject
{
    Q_OBJECT

public:
    struct Services {
        LinkStore &links;
        LinkExchange &exchange;
        ExchangeSettings &settings;
        FileBookmarks &bookmarks;
        UserDefaults &defaults;
        DebugModeManager &debugMode;
        Notifications &notifications;
        Clock &clock;
        SnapshotStore &snapshots;
        SecretStore &secrets;
        /// Where slow work is done; null for a thread of its own.
        SyncRunner *runner = nullptr;
    };

    static constexpr std::chrono::milliseconds uploadDelay{5000};
    static constexpr std::chrono::milliseconds pollPeriod{30000};
    static constexpr std::chrono::milliseconds checkThrottle{5000};
    static constexpr std::chrono::milliseconds downloadPoll{500};
    static constexpr std::chrono::milliseconds downloadTimeout{10000};
    static constexpr std::chrono::milliseconds forcedDownloadTimeout{15000};
    static constexpr std::chrono::milliseconds placeholderTimeout{60000};
    static constexpr std::chrono::milliseconds notVisibleTimeout{15000};

    /// How often an upload begins again at once when another machine was faster.
    static constexpr int maxAttempts = 8;
    /// The longest pause between two attempts after failures; they double from
    /// uploadDelay on.
    static constexpr std::chrono::milliseconds longestRetryDelay{300000};

    static QString autoSyncEnabledBaseKey() { return QStringLiteral("orvelle_autoSyncEnabled"); }
    static QString cloudSyncBookmarkBaseKey() { return QStringLiteral("orvelle_iCloudSyncBookmark"); }
    static QString lastSyncDateBaseKey() { return QStringLiteral("orvelle_iCloudLastSyncDate"); }
    static QString lastWrittenChecksumBaseKey() { return QStringLiteral("orvelle_lastWrittenChecksum"); }
    /// The checksum covers the links alone, so that a change of settings would
    /// never be uploaded by it: this is the digest over both.
    static QString lastWrittenContentBaseKey() { return QStringLiteral("orvelle_lastWrittenContent"); }
    static QString syncBaseBaseKey() { return QStringLiteral("orvelle_syncBase"); }
    static QString encryptedBaseKey() { return QStringLiteral("orvelle_syncEncrypted"); }
    static QString guardEnabledKey() { return QStringLiteral("SyncGuardEnabled"); }
    static QString passphraseSecret() { return QStringLiteral("sync-passphrase"); }
    /// Beside the other one while a change of it is not known to be written.
    static QString nextPassphraseSecret() { return QStringLiteral("sync-passphrase-next"); }

    explicit CloudSync(const Services &services, QObject *parent = nullptr);
    ~CloudSync() override;

    /// The place, null for none; it outlives this, or another is set before it
    /// goes. Restarts the monitoring.
    void setContainer(CloudContainer *container);

    bool autoSyncEnabled() const;
    /// Stores it, and starts or stops the monitoring.
    void setAutoSyncEnabled(bool enabled);
    bool isCloudSyncAvailable() const;
    /// "orvelle-sync.ovexport", or that of debug mode.
    QString syncFileName() const;
    bool syncFileExists() const;
    QString resolvedSyncFilePath() const;
    SyncStatus status() const;

    /// Re-reads what is stored, through the keys of the current mode.
    void loadSyncState();
    void startSyncFileMonitoring();
    void stopSyncFileMonitoring();
    /// At most every 5 s.
    void checkSyncIfNeeded();
    void scheduleAutoSync();
    void handleSystemDidWake();
    /// The debug-mode switch: the other file, the other keys.
    void reloadForModeChange();
    /// A setting that travels was changed here.
    void syncableSettingsDidChange();

    using Done = std::function<void(const Result<SyncResult, CloudSyncError> &)>;
    /// The manual upload: reads, merges, writes.
    void saveToCloud(const Done &completion);
    /// Makes what is here the document. One that is there is read, kept as a
    /// snapshot and replaced; one that cannot be read stays. To other machines
    /// the new document has grown from it: what is missing was deleted, and
    /// what they have newer comes back.
    void beginAnew(const Done &completion);
    /// Whether a file is there already, and its content if so: for the choice
    /// between using it and beginning with what is here.
    using Found = std::function<void(const Result<std::optional<PreparedImport>, CloudSyncError> &)>;
    void readForConfigure(const Found &completion);
    /// Replaces the tree and the settings by the file's; a snapshot is taken.
    void loadFromCloud(const Done &completion);
    void disableCloudSync();
    /// A file that earlier versions kept in a place of the user's choice: it
    /// comes into the container when the monitoring starts.
    bool hasCloudSyncBookmark() const;
    void clearCloudSyncBookmark();

    // A change that was held back.
    bool isGuardEnabled() const;
    void setGuardEnabled(bool enabled);
    std::optional<HeldBackChange> heldBack() const;
    /// Takes it in after all.
    void acceptHeldBack();
    /// What is here stays, and is uploaded over it.
    void rejectHeldBack();

    // End-to-end encryption of the file; off by default.
    bool isEncrypted() const;
    /// Stores the passphrase in the keyring and writes the file anew. Also how
    /// a machine is told the passphrase of a file that is encrypted already;
    /// a wrong one is refused and nothing is stored. At every moment the
    /// keyring has the passphrase of the file that is there, old or new.
    void setPassphrase(const QString &passphrase, const Done &completion);
    /// Writes the file in plain again.
    void removeEncryption(const Done &completion);

private:
    struct Private;
    std::unique_ptr<Private> m_d;
};

} // namespace orvelle
