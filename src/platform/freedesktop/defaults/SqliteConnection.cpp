#include "platform/freedesktop/defaults/SqliteConnection.h"

#include "base/JsonReader.h"
#include "base/Text.h"

#include <cerrno>
#include <cstring>

namespace orvelle {

bool SqliteError::isDiskFull() const
{
    return primaryCode() == SQLITE_FULL || systemError == ENOSPC || systemError == EDQUOT;
}

bool SqliteError::isReadOnly() const
{
    return primaryCode() == SQLITE_READONLY || primaryCode() == SQLITE_PERM || systemError == EROFS ||
           systemError == EACCES || systemError == EPERM;
}

void SqliteStatement::bindText(int index, const QByteArray &utf8)
{
    sqlite3_bind_text64(get(), index + 1, utf8.constData(), static_cast<sqlite3_uint64>(utf8.size()), SQLITE_STATIC,
                        SQLITE_UTF8);
}

void SqliteStatement::bindBlob(int index, const QByteArray &bytes)
{
    sqlite3_bind_blob64(get(), index + 1, bytes.constData(), static_cast<sqlite3_uint64>(bytes.size()), SQLITE_STATIC);
}

void SqliteStatement::bindInt(int index, qint64 value)
{
    sqlite3_bind_int64(get(), index + 1, value);
}

void SqliteStatement::bindDouble(int index, double value)
{
    sqlite3_bind_double(get(), index + 1, value);
}

void SqliteStatement::bindNull(int index)
{
    sqlite3_bind_null(get(), index + 1);
}

int SqliteStatement::step()
{
    const int code = sqlite3_step(get());
    return code == SQLITE_ROW || code == SQLITE_DONE ? code : sqlite3_extended_errcode(sqlite3_db_handle(get()));
}

void SqliteStatement::reset()
{
    sqlite3_reset(get());
    sqlite3_clear_bindings(get());
}

int SqliteStatement::columnType(int index) const
{
    return sqlite3_column_type(get(), index);
}

QByteArray SqliteStatement::bytes(int index) const
{
    const auto *data = static_cast<const char *>(sqlite3_column_blob(get(), index));
    const qsizetype size = sqlite3_column_bytes(get(), index);
    QByteArray bytes;
    // So that a long text can be parsed where it is.
    bytes.reserve(size + JsonDocument::padding);
    bytes.append(data, size);
    return bytes;
}

QString SqliteStatement::text(int index) const
{
    const auto *data = reinterpret_cast<const char *>(sqlite3_column_text(get(), index));
    return textFromUtf8({data, static_cast<std::size_t>(sqlite3_column_bytes(get(), index))});
}

qint64 SqliteStatement::integer(int index) const
{
    return sqlite3_column_int64(get(), index);
}

double SqliteStatement::real(int index) const
{
    return sqlite3_column_double(get(), index);
}

namespace {

SqliteError lastError(sqlite3 *handle)
{
    SqliteError error{sqlite3_extended_errcode(handle), sqlite3_system_errno(handle),
                      QString::fromUtf8(sqlite3_errmsg(handle))};
    // SQLite keeps the last errno, which may be older than this failure.
    const int kind = error.primaryCode();
    if (kind != SQLITE_IOERR && kind != SQLITE_CANTOPEN && kind != SQLITE_FULL)
        error.systemError = 0;
    if (error.systemError != 0)
        error.text += QStringLiteral(" (%1)").arg(QString::fromLocal8Bit(std::strerror(error.systemError)));
    return error;
}

QByteArray fileUri(const QByteArray &path, const char *parameters)
{
    return "file:" + path.toPercentEncoding("/") + '?' + parameters;
}

int openHandle(const QByteArray &path, SqliteConnection::Mode mode, sqlite3 **handle)
{
    constexpr int common = SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE;
    switch (mode) {
    case SqliteConnection::Mode::ReadWrite:
        return sqlite3_open_v2(path.constData(), handle, common | SQLITE_OPEN_READWRITE, nullptr);
    case SqliteConnection::Mode::Immutable:
        return sqlite3_open_v2(fileUri(path, "immutable=1").constData(), handle,
                               common | SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, nullptr);
    case SqliteConnection::Mode::ReadOnlyWithLog:
        // The log's index is only kept in memory under an exclusive lock, and
        // a file that is open for reading cannot be locked so.
        return sqlite3_open_v2(path.constData(), handle, common | SQLITE_OPEN_READONLY, "unix-none");
    case SqliteConnection::Mode::Memory:
        break;
    }
    return sqlite3_open_v2(":memory:", handle, common | SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
}

} // namespace

Result<std::unique_ptr<SqliteConnection>, SqliteError> SqliteConnection::open(const QByteArray &path, Mode mode)
{
    sqlite3 *handle = nullptr;
    const int code = openHandle(path, mode, &handle);
    if (!handle)
        return SqliteError{SQLITE_NOMEM, 0, QStringLiteral("out of memory")};
    auto connection = std::unique_ptr<SqliteConnection>(new SqliteConnection(handle));
    if (code != SQLITE_OK)
        return connection->error();
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    if (mode == Mode::ReadOnlyWithLog) {
        if (const auto failure = connection->execute("PRAGMA locking_mode=EXCLUSIVE"))
            return *failure;
    }
    return connection;
}

SqliteConnection::~SqliteConnection()
{
    sqlite3_close_v2(m_handle);
}

std::optional<SqliteError> SqliteConnection::execute(const char *sql)
{
    if (sqlite3_exec(m_handle, sql, nullptr, nullptr, nullptr) == SQLITE_OK)
        return std::nullopt;
    return error();
}

Result<qint64, SqliteError> SqliteConnection::integer(const char *sql)
{
    auto statement = prepare(sql);
    if (!statement)
        return statement.error();
    SqliteStatement row = std::move(statement).value();
    if (row.step() != SQLITE_ROW)
        return error();
    return row.integer(0);
}

Result<SqliteStatement, SqliteError> SqliteConnection::prepare(const char *sql)
{
    sqlite3_stmt *statement = nullptr;
    if (sqlite3_prepare_v3(m_handle, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr) != SQLITE_OK)
        return error();
    return SqliteStatement(statement);
}

SqliteError SqliteConnection::error() const
{
    return lastError(m_handle);
}

} // namespace orvelle
