#pragma once

#include "platform/freedesktop/defaults/SqliteConnection.h"
#include "platform/freedesktop/defaults/SqliteDefaultsCodec.h"

#include <QStringList>

namespace orvelle {

/// The same failure as callers of the settings see it.
DefaultsError toDefaultsError(const SqliteError &error);

/// The settings' only table: one row for each key that ever had a value, a
/// removed key's without type and value so that its revision lives on. Each
/// change of any key takes the next number of one sequence, which tells what
/// happened since a given moment.
class SqliteDefaultsTable
{
public:
    static constexpr qint64 schemaVersion = 1;          ///< PRAGMA user_version
    static constexpr qint64 applicationId = 0x4F52564C; ///< PRAGMA application_id, "ORVL"

    enum class Content {
        Blank,   ///< a database without anything in it
        Current, ///< this table
        Newer,   ///< a later version of this table
        Foreign, ///< something else
    };
    static Result<Content, SqliteError> examine(SqliteConnection &connection);
    /// Makes the table in a blank database, with a write-ahead log.
    static std::optional<SqliteError> create(SqliteConnection &connection);

    /// Takes over a connection whose content is Current.
    static Result<std::unique_ptr<SqliteDefaultsTable>, SqliteError> open(std::unique_ptr<SqliteConnection> connection);

    struct Row {
        std::optional<DefaultsValue> value;
        qint64 revision = 0;
        /// False when there is a value of no known form.
        bool decodable = true;
    };
    Result<Row, SqliteError> read(const QByteArray &key);

    struct Stored {
        qint64 revision;
        qint64 change;         ///< this change's number
        qint64 previousChange; ///< the number of the change before, of whatever process and key
    };
    struct PutError {
        DefaultsError error;
        bool damage = false;
    };
    /// Stores a value, or removes the key without one, in one durable
    /// transaction; with `expectedRevision`, only over that revision. Removing
    /// an absent key changes nothing.
    Result<Stored, PutError> put(const QByteArray &key, const EncodedDefault *value,
                                 std::optional<qint64> expectedRevision);

    Result<QStringList, SqliteError> keys();

    struct Changed {
        QString key;
        qint64 change;
    };
    Result<QList<Changed>, SqliteError> changesSince(qint64 change);
    Result<qint64, SqliteError> lastChange();

    /// Pages in the write-ahead log after this connection's last commit.
    int logPages() const { return m_logPages; }
    /// Moves the log's content into the database as far as no reader needs it,
    /// and gives cached memory back.
    void checkpoint();

    SqliteConnection &connection() { return *m_connection; }

private:
    Result<QByteArray, SqliteError> readBytes(qint64 rowId);
    explicit SqliteDefaultsTable(std::unique_ptr<SqliteConnection> connection);
    std::optional<SqliteError> prepareAll();
    Result<Stored, PutError> putInTransaction(const QByteArray &key, const EncodedDefault *value,
                                              std::optional<qint64> expectedRevision);
    std::optional<SqliteError> upsert(const QByteArray &key, const EncodedDefault *value, const Stored &stored);
    /// What a key's row says but for its value, which may be large.
    struct Standing {
        qint64 revision = 0;
        bool present = false;
    };
    Result<Standing, SqliteError> standing(const QByteArray &key);
    static PutError failure(const SqliteError &error);

    std::unique_ptr<SqliteConnection> m_connection;
    // Destroyed before the connection.
    SqliteStatement m_read;
    SqliteStatement m_revision;
    SqliteStatement m_upsert;
    SqliteStatement m_keys;
    SqliteStatement m_changes;
    SqliteStatement m_lastChange;
    SqliteStatement m_version;
    SqliteStatement m_begin;
    SqliteStatement m_commit;
    int m_logPages = 0;
};

} // namespace orvelle
