#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QString>

#include <sqlite3.h>

#include <memory>
#include <optional>

namespace orvelle {

/// What SQLite answered when it could not do something.
struct SqliteError {
    int code = 0;        ///< extended result code
    int systemError = 0; ///< errno of the file operation behind it, or 0
    QString text;        ///< in SQLite's and the system's words

    int primaryCode() const { return code & 0xff; }
    bool isBusy() const { return primaryCode() == SQLITE_BUSY || primaryCode() == SQLITE_LOCKED; }
    /// The file is no sound database.
    bool isDamage() const { return primaryCode() == SQLITE_CORRUPT || primaryCode() == SQLITE_NOTADB; }
    bool isDiskFull() const;
    /// The file or its folder may not be written.
    bool isReadOnly() const;
};

/// A prepared statement. Parameters and columns count from 0.
class SqliteStatement
{
public:
    SqliteStatement() = default;
    explicit SqliteStatement(sqlite3_stmt *statement) : m_statement(statement) {}

    sqlite3_stmt *get() const { return m_statement.get(); }

    /// Bound bytes are not copied: they must live until reset().
    void bindText(int index, const QByteArray &utf8);
    void bindBlob(int index, const QByteArray &bytes);
    void bindInt(int index, qint64 value);
    void bindDouble(int index, double value);
    void bindNull(int index);

    /// SQLITE_ROW, SQLITE_DONE, or an error's extended code.
    int step();
    void reset();

    int columnType(int index) const;
    QByteArray bytes(int index) const;
    QString text(int index) const;
    qint64 integer(int index) const;
    double real(int index) const;

private:
    struct Finalize {
        void operator()(sqlite3_stmt *statement) const { sqlite3_finalize(statement); }
    };
    std::unique_ptr<sqlite3_stmt, Finalize> m_statement;
};

/// Resets a statement at the end of a scope, which ends its read transaction.
class SqliteReset
{
public:
    explicit SqliteReset(SqliteStatement &statement) : m_statement(statement) {}
    ~SqliteReset() { m_statement.reset(); }
    SqliteReset(const SqliteReset &) = delete;
    SqliteReset &operator=(const SqliteReset &) = delete;

private:
    SqliteStatement &m_statement;
};

/// An open database, used from one thread.
class SqliteConnection
{
public:
    enum class Mode {
        ReadWrite, ///< read-only when the file may not be written
        /// A file that nobody changes and beside which nothing can be created:
        /// without its write-ahead log.
        Immutable,
        /// The same with its write-ahead log, whose index is kept in memory.
        ReadOnlyWithLog,
        Memory, ///< a new one that is on no disk
    };

    static Result<std::unique_ptr<SqliteConnection>, SqliteError> open(const QByteArray &path, Mode mode);
    /// Every statement of this connection must be gone.
    ~SqliteConnection();
    SqliteConnection(const SqliteConnection &) = delete;
    SqliteConnection &operator=(const SqliteConnection &) = delete;

    sqlite3 *handle() const { return m_handle; }
    bool isReadOnly() const { return sqlite3_db_readonly(m_handle, "main") == 1; }

    /// Runs statements that give no rows of interest.
    std::optional<SqliteError> execute(const char *sql);
    /// The first column of the first row; an error as well when there is none.
    Result<qint64, SqliteError> integer(const char *sql);
    /// A statement that is kept. The SQL is part of the program.
    Result<SqliteStatement, SqliteError> prepare(const char *sql);

    /// The last failure.
    SqliteError error() const;

private:
    explicit SqliteConnection(sqlite3 *handle) : m_handle(handle) {}
    sqlite3 *m_handle;
};

} // namespace orvelle
