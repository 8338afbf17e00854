#include "platform/freedesktop/defaults/SqliteDefaultsTable.h"

#include "base/JsonReader.h"

namespace orvelle {

namespace {

/// Pages of this size write 8 MB in 20 ms where 4 KiB ones take 25, and one
/// small change still costs only two or three of them.
constexpr const char *pageSize = "PRAGMA page_size=8192";

constexpr const char *schema = R"(
    CREATE TABLE defaults (
        key TEXT NOT NULL PRIMARY KEY,
        revision INTEGER NOT NULL,
        change INTEGER NOT NULL,
        type TEXT,
        value
    );
    PRAGMA application_id=0x4F52564C;
    PRAGMA user_version=1;
)";

/// The log is checkpointed when the application is idle, not by a commit.
constexpr const char *settings = R"(
    PRAGMA synchronous=FULL;
    PRAGMA wal_autocheckpoint=0;
    PRAGMA journal_size_limit=16777216;
    PRAGMA cell_size_check=ON;
)";

int rememberLogPages(void *pages, sqlite3 *, const char *, int count)
{
    *static_cast<int *>(pages) = count;
    return SQLITE_OK;
}

} // namespace

DefaultsError toDefaultsError(const SqliteError &error)
{
    using Kind = DefaultsError::Kind;
    if (error.isDiskFull())
        return {Kind::DiskFull, error.text};
    if (error.isReadOnly())
        return {Kind::ReadOnly, error.text};
    return {error.isBusy() ? Kind::Busy : Kind::Other, error.text};
}

Result<SqliteDefaultsTable::Content, SqliteError> SqliteDefaultsTable::examine(SqliteConnection &connection)
{
    const auto application = connection.integer("PRAGMA application_id");
    const auto version = connection.integer("PRAGMA user_version");
    const auto objects = connection.integer("SELECT count(*) FROM sqlite_schema");
    for (const auto *answer : {&application, &version, &objects}) {
        if (!*answer)
            return answer->error();
    }
    if (*application == 0 && *version == 0 && *objects == 0)
        return Content::Blank;
    if (*application != applicationId || *version < schemaVersion)
        return Content::Foreign;
    if (*version > schemaVersion)
        return Content::Newer;
    const auto table = connection.prepare("SELECT key, revision, change, type, value FROM defaults");
    if (!table)
        return table.error().primaryCode() == SQLITE_ERROR ? Result<Content, SqliteError>(Content::Foreign)
                                                           : table.error();
    return Content::Current;
}

std::optional<SqliteError> SqliteDefaultsTable::create(SqliteConnection &connection)
{
    for (const char *sql :
         {pageSize, "PRAGMA journal_mode=WAL", "PRAGMA synchronous=FULL", "BEGIN IMMEDIATE", schema, "COMMIT"}) {
        if (const auto failure = connection.execute(sql))
            return failure;
    }
    return std::nullopt;
}

SqliteDefaultsTable::SqliteDefaultsTable(std::unique_ptr<SqliteConnection> connection)
    : m_connection(std::move(connection))
{
}

Result<std::unique_ptr<SqliteDefaultsTable>, SqliteError>
SqliteDefaultsTable::open(std::unique_ptr<SqliteConnection> connection)
{
    auto table = std::unique_ptr<SqliteDefaultsTable>(new SqliteDefaultsTable(std::move(connection)));
    if (const auto failure = table->m_connection->execute(settings))
        return *failure;
    // Somebody may have changed it with a tool; otherwise this does nothing.
    if (!table->m_connection->isReadOnly()) {
        if (const auto failure = table->m_connection->execute("PRAGMA journal_mode=WAL"))
            return *failure;
    }
    if (const auto failure = table->prepareAll())
        return *failure;
    sqlite3_wal_hook(table->m_connection->handle(), rememberLogPages, &table->m_logPages);
    return table;
}

std::optional<SqliteError> SqliteDefaultsTable::prepareAll()
{
    const std::pair<SqliteStatement *, const char *> statements[] = {
        // A long value of bytes is left out here and read by readBytes().
        {&m_read,
         "SELECT revision, type, iif(type='data' AND typeof(value)='blob' AND length(value)>65536, NULL, value),"
         " rowid, iif(typeof(value)='blob', length(value), 0) FROM defaults WHERE key=?1"},
        {&m_revision, "SELECT revision, type IS NOT NULL FROM defaults WHERE key=?1"},
        {&m_upsert, "INSERT INTO defaults(key, revision, change, type, value) VALUES(?1, ?2, ?3, ?4, ?5)"
                    " ON CONFLICT(key) DO UPDATE SET revision=excluded.revision, change=excluded.change,"
                    " type=excluded.type, value=excluded.value"},
        {&m_keys, "SELECT key FROM defaults WHERE type IS NOT NULL ORDER BY key"},
        {&m_changes, "SELECT key, change FROM defaults WHERE change>?1 ORDER BY key"},
        {&m_lastChange, "SELECT coalesce(max(change), 0) FROM defaults"},
        {&m_version, "PRAGMA user_version"},
        {&m_begin, "BEGIN IMMEDIATE"},
        {&m_commit, "COMMIT"},
    };
    for (const auto &[target, sql] : statements) {
        auto prepared = m_connection->prepare(sql);
        if (!prepared)
            return prepared.error();
        *target = std::move(prepared).value();
    }
    return std::nullopt;
}

Result<SqliteDefaultsTable::Row, SqliteError> SqliteDefaultsTable::read(const QByteArray &key)
{
    const SqliteReset reset(m_read);
    m_read.bindText(0, key);
    const int answer = m_read.step();
    if (answer == SQLITE_DONE)
        return Row();
    if (answer != SQLITE_ROW)
        return m_connection->error();
    Row row{std::nullopt, m_read.integer(0), true};
    if (m_read.columnType(1) == SQLITE_NULL)
        return row;
    if (m_read.columnType(2) == SQLITE_NULL && m_read.integer(4) > 0) {
        auto bytes = readBytes(m_read.integer(3));
        if (!bytes)
            return bytes.error();
        row.value = std::move(bytes).value();
        return row;
    }
    row.value = decodeDefault(m_read, 1);
    row.decodable = row.value.has_value();
    return row;
}

/// Straight into the result, where a column's value would be put together and
/// then copied: that took a third of the time of loading a large tree.
Result<QByteArray, SqliteError> SqliteDefaultsTable::readBytes(qint64 rowId)
{
    sqlite3_blob *blob = nullptr;
    int answer = sqlite3_blob_open(m_connection->handle(), "main", "defaults", "value", rowId, 0, &blob);
    if (answer != SQLITE_OK)
        return m_connection->error();
    const int size = sqlite3_blob_bytes(blob);
    QByteArray bytes;
    bytes.reserve(size + JsonDocument::padding);
    bytes.resize(size);
    answer = sqlite3_blob_read(blob, bytes.data(), size, 0);
    const SqliteError error = m_connection->error();
    sqlite3_blob_close(blob);
    if (answer != SQLITE_OK)
        return error;
    return bytes;
}

Result<SqliteDefaultsTable::Stored, SqliteDefaultsTable::PutError>
SqliteDefaultsTable::put(const QByteArray &key, const EncodedDefault *value, std::optional<qint64> expectedRevision)
{
    {
        const SqliteReset reset(m_begin);
        if (m_begin.step() != SQLITE_DONE)
            return failure(m_connection->error());
    }
    auto stored = putInTransaction(key, value, expectedRevision);
    // Some failures have already rolled back by themselves.
    if (!stored && !sqlite3_get_autocommit(m_connection->handle()))
        m_connection->execute("ROLLBACK");
    return stored;
}

Result<SqliteDefaultsTable::Stored, SqliteDefaultsTable::PutError>
SqliteDefaultsTable::putInTransaction(const QByteArray &key, const EncodedDefault *value,
                                      std::optional<qint64> expectedRevision)
{
    {
        const SqliteReset reset(m_version);
        if (m_version.step() != SQLITE_ROW)
            return failure(m_connection->error());
        if (m_version.integer(0) != schemaVersion)
            return PutError{
                {DefaultsError::Kind::Other, QStringLiteral("a newer version has taken the settings over")}};
    }
    const auto before = standing(key);
    if (!before)
        return failure(before.error());
    if (expectedRevision && *expectedRevision != before->revision)
        return PutError{{DefaultsError::Kind::Conflict, QStringLiteral("the value has been changed meanwhile")}};
    const auto last = lastChange();
    if (!last)
        return failure(last.error());

    Stored stored{before->revision, *last, *last};
    if (value || before->present) {
        ++stored.revision;
        ++stored.change;
        if (const auto error = upsert(key, value, stored))
            return failure(*error);
    }
    const SqliteReset reset(m_commit);
    if (m_commit.step() != SQLITE_DONE)
        return failure(m_connection->error());
    return stored;
}

Result<SqliteDefaultsTable::Standing, SqliteError> SqliteDefaultsTable::standing(const QByteArray &key)
{
    const SqliteReset reset(m_revision);
    m_revision.bindText(0, key);
    const int answer = m_revision.step();
    if (answer == SQLITE_DONE)
        return Standing();
    if (answer != SQLITE_ROW)
        return m_connection->error();
    return Standing{m_revision.integer(0), m_revision.integer(1) != 0};
}

std::optional<SqliteError> SqliteDefaultsTable::upsert(const QByteArray &key, const EncodedDefault *value,
                                                       const Stored &stored)
{
    const SqliteReset reset(m_upsert);
    m_upsert.bindText(0, key);
    m_upsert.bindInt(1, stored.revision);
    m_upsert.bindInt(2, stored.change);
    if (value) {
        value->bind(m_upsert, 3);
    } else {
        m_upsert.bindNull(3);
        m_upsert.bindNull(4);
    }
    if (m_upsert.step() != SQLITE_DONE)
        return m_connection->error();
    return std::nullopt;
}

SqliteDefaultsTable::PutError SqliteDefaultsTable::failure(const SqliteError &error)
{
    return {toDefaultsError(error), error.isDamage()};
}

Result<QStringList, SqliteError> SqliteDefaultsTable::keys()
{
    const SqliteReset reset(m_keys);
    QStringList keys;
    int answer = SQLITE_ROW;
    while ((answer = m_keys.step()) == SQLITE_ROW)
        keys += m_keys.text(0);
    if (answer != SQLITE_DONE)
        return m_connection->error();
    return keys;
}

Result<QList<SqliteDefaultsTable::Changed>, SqliteError> SqliteDefaultsTable::changesSince(qint64 change)
{
    const SqliteReset reset(m_changes);
    m_changes.bindInt(0, change);
    QList<Changed> changes;
    int answer = SQLITE_ROW;
    while ((answer = m_changes.step()) == SQLITE_ROW)
        changes += {m_changes.text(0), m_changes.integer(1)};
    if (answer != SQLITE_DONE)
        return m_connection->error();
    return changes;
}

Result<qint64, SqliteError> SqliteDefaultsTable::lastChange()
{
    const SqliteReset reset(m_lastChange);
    if (m_lastChange.step() != SQLITE_ROW)
        return m_connection->error();
    return m_lastChange.integer(0);
}

void SqliteDefaultsTable::checkpoint()
{
    // Whatever stands in the way, the log keeps it all.
    sqlite3_wal_checkpoint_v2(m_connection->handle(), "main", SQLITE_CHECKPOINT_PASSIVE, nullptr, nullptr);
    sqlite3_db_release_memory(m_connection->handle());
    m_logPages = 0;
}

} // namespace orvelle
