#pragma once

#include "platform/Clock.h"
#include "platform/UserDefaults.h"

#include <memory>
#include <optional>

namespace orvelle {

/// Why the settings could not be opened at all. Nothing on the disk was changed.
struct DefaultsOpenError {
    enum class Kind {
        NewerSchema,  ///< written by a newer version of the application
        Inaccessible, ///< the folder or the file may not be read, or is no folder or no file
        Damaged,      ///< the database is damaged and could not be moved aside
        Busy,         ///< another process held the database too long
        Other,
    };
    Kind kind = Kind::Other;
    QString path;   ///< the folder or file that the error is about
    QString detail; ///< in the system's words
};

/// The settings in an SQLite database, `defaults.sqlite`, in a folder of its
/// own: write-ahead log, one durable commit per change. Folder and files are
/// readable by their owner only. Any number of processes may have it open.
///
/// read() asks the database each time, so it sees what any process committed
/// last, with or without an event loop.
///
/// A key that could not be read (a damaged page, an input error) is not
/// overwritten: its writes fail until it has been read again. Once damage is
/// found, no write is accepted any more; the next start moves the database
/// aside. Both are reported through writeFailed().
///
/// NaN is not storable (DefaultsError::Other), nor is a key with an unpaired
/// surrogate. Main thread only.
class SqliteUserDefaults : public UserDefaults
{
    Q_OBJECT

public:
    /// The settings, and what the user should hear about how they were opened.
    struct Opened {
        std::unique_ptr<SqliteUserDefaults> defaults;
        /// Where the damaged database was moved to; the settings are new and empty.
        std::optional<QString> damagedCopy;
        /// Why nothing can be stored at present (a read-only folder, a full
        /// disk). Reading works, each write tries again and fails with this
        /// while it lasts.
        std::optional<DefaultsError> notWritable;
    };

    /// Opens or creates the settings in `folder` (absolute), which is created
    /// where it is missing. `clock` must outlive the settings.
    static Result<Opened, DefaultsOpenError> open(const QString &folder, Clock &clock);
    ~SqliteUserDefaults() override;

    /// From now on changedExternally() is emitted, from the event loop, within
    /// a tenth of a second after another process's change. Costs nothing
    /// while nobody writes.
    void startWatching();

    /// The database file.
    QString path() const;

    Versioned read(const QString &key) const override;
    WriteResult write(const QString &key, const DefaultsValue &value) override;
    WriteResult remove(const QString &key) override;
    WriteResult compareAndSet(const QString &key, qint64 expectedRevision, const DefaultsValue &value) override;
    QStringList keys() const override;

private:
    class Impl;
    explicit SqliteUserDefaults(std::unique_ptr<Impl> impl);

    WriteResult put(const QString &key, const DefaultsValue *value, std::optional<qint64> expectedRevision);
    std::optional<DefaultsError> whyNotWritable(const QString &key, bool overwrites);
    DefaultsError failed(const QString &key, const DefaultsError &error, bool damage);
    void noteFailure(const QString &key, const DefaultsError &error, bool damage) const;
    void noteOwnChange(qint64 change, qint64 previousChange);
    void followFile() const;
    void reopen();
    void watchFiles();
    void announceChanges();

    std::unique_ptr<Impl> m_impl;
};

} // namespace orvelle
