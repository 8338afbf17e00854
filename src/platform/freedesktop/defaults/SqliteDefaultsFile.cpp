#include "platform/freedesktop/defaults/SqliteDefaultsFile.h"

#include "platform/freedesktop/defaults/SqliteFolderLock.h"

#include <QDir>
#include <QFile>
#include <QLoggingCategory>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <variant>

namespace orvelle {

namespace {

Q_LOGGING_CATEGORY(lcDefaults, "UserDefaults", QtInfoMsg)

using namespace std::chrono_literals;
using TablePointer = std::unique_ptr<SqliteDefaultsTable>;
using OpenErrorKind = DefaultsOpenError::Kind;

constexpr auto longestWait = 5s;

QString systemText(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

bool exists(const QByteArray &path)
{
    struct stat info;
    return ::lstat(path.constData(), &info) == 0;
}

qint64 sizeOf(const QByteArray &path)
{
    struct stat info;
    return ::stat(path.constData(), &info) == 0 ? info.st_size : 0;
}

/// Why a database cannot be used as it should be.
struct Unusable {
    enum class Why { Damaged, Newer, Busy, NotWritable };
    Why why;
    DefaultsError error;
};

Unusable unusable(const SqliteError &error)
{
    if (error.isDamage())
        return {Unusable::Why::Damaged, toDefaultsError(error)};
    return {error.isBusy() ? Unusable::Why::Busy : Unusable::Why::NotWritable, toDefaultsError(error)};
}

Unusable damaged(const QString &detail)
{
    return {Unusable::Why::Damaged, {DefaultsError::Kind::Other, detail}};
}

/// The structure of the whole file; 8 MB take about a millisecond.
std::optional<Unusable> checkStructure(SqliteConnection &connection)
{
    auto prepared = connection.prepare("PRAGMA quick_check(1)");
    if (!prepared)
        return unusable(prepared.error());
    SqliteStatement check = std::move(prepared).value();
    if (check.step() != SQLITE_ROW)
        return unusable(connection.error());
    const QString answer = check.text(0);
    return answer == QLatin1String("ok") ? std::nullopt : std::optional(damaged(answer));
}

/// Turns a connection into the table, making it where the database is blank.
Result<TablePointer, Unusable> tableOn(std::unique_ptr<SqliteConnection> connection)
{
    using Content = SqliteDefaultsTable::Content;
    sqlite3 *handle = connection->handle();
    sqlite3_busy_timeout(handle, std::chrono::milliseconds(longestWait).count());
    // Closing must not touch a database that turns out not to be ours.
    sqlite3_db_config(handle, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);

    const auto content = SqliteDefaultsTable::examine(*connection);
    if (!content)
        return unusable(content.error());
    if (*content == Content::Newer)
        return Unusable{Unusable::Why::Newer, {DefaultsError::Kind::Other, QStringLiteral("newer schema version")}};
    if (*content == Content::Foreign)
        return damaged(QStringLiteral("not a database of settings"));
    if (const auto failure = checkStructure(*connection))
        return *failure;
    if (*content == Content::Blank) {
        if (const auto failure = SqliteDefaultsTable::create(*connection))
            return unusable(*failure);
    }
    sqlite3_db_config(handle, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 0, nullptr);
    auto table = SqliteDefaultsTable::open(std::move(connection));
    if (!table)
        return unusable(table.error());
    return std::move(table).value();
}

Result<TablePointer, Unusable> tableAt(const QByteArray &path, SqliteConnection::Mode mode)
{
    auto connection = SqliteConnection::open(path, mode);
    if (!connection)
        return unusable(connection.error());
    return tableOn(std::move(connection).value());
}

/// Moves the database and its log aside under a dated name that is free. The
/// log goes first: left behind alone, it would be taken for the new one's.
std::optional<QByteArray> moveAside(const QByteArray &path, Timestamp now)
{
    const QByteArray dated =
        path + ".corrupt-" + now.toDateTime().toString(QStringLiteral("yyyy-MM-dd'T'HH-mm-ss")).toLatin1();
    QByteArray target = dated;
    for (int n = 2; exists(target) || exists(target + "-wal"); ++n)
        target = dated + '-' + QByteArray::number(n);
    for (const char *part : {"-wal", "-shm", ""}) {
        if (exists(path + part) && ::rename((path + part).constData(), (target + part).constData()) != 0)
            return std::nullopt;
    }
    return exists(target) ? target : target + "-wal";
}

class DefaultsFileOpener
{
public:
    DefaultsFileOpener(const QString &folder, Timestamp now)
        : m_folder(QFile::encodeName(QDir::cleanPath(folder))), m_path(m_folder + "/defaults.sqlite"), m_now(now)
    {
    }

    Result<OpenedDefaultsFile, DefaultsOpenError> open()
    {
        if (const int failure = makeFolder())
            return withoutFile(failure, m_folder);
        const SqliteFolderLock lock(m_folder, longestWait);
        if (const int failure = lock.acquire())
            return failed(failure == EWOULDBLOCK ? OpenErrorKind::Busy : OpenErrorKind::Inaccessible, m_folder,
                          systemText(failure));
        auto opened = openLocked();
        lock.sync();
        return opened;
    }

private:
    using Outcome = Result<OpenedDefaultsFile, DefaultsOpenError>;

    static DefaultsOpenError failed(OpenErrorKind kind, const QByteArray &path, const QString &detail)
    {
        return {kind, QFile::decodeName(path), detail};
    }

    Outcome opened(TablePointer table, std::optional<DefaultsError> notWritable = std::nullopt) const
    {
        return OpenedDefaultsFile{std::move(table), m_path, m_damagedCopy, std::move(notWritable)};
    }

    Outcome openLocked()
    {
        // The second round is for the new database after a damaged one.
        for (int round = 0; round < 2; ++round) {
            if (const int failure = makeFile())
                return withoutFile(failure, m_path);
            auto table = leftoverLog() ? damaged(QStringLiteral("a log without its database"))
                                       : tableAt(m_path, SqliteConnection::Mode::ReadWrite);
            if (table)
                return openedWith(std::move(table).value());
            const Unusable &problem = table.error();
            if (problem.why != Unusable::Why::Damaged)
                return openedDespite(problem);
            qCWarning(lcDefaults).noquote() << "damaged database:" << problem.error.detail;
            const auto copy = moveAside(m_path, m_now);
            if (!copy)
                return failed(OpenErrorKind::Damaged, m_path, problem.error.detail);
            m_damagedCopy = QFile::decodeName(*copy);
            qCWarning(lcDefaults).noquote() << "moved aside to" << *m_damagedCopy;
        }
        return failed(OpenErrorKind::Other, m_path, QStringLiteral("a new database is damaged as well"));
    }

    Outcome openedWith(TablePointer table) const
    {
        if (table->connection().isReadOnly())
            return opened(std::move(table), DefaultsError{DefaultsError::Kind::ReadOnly, systemText(EROFS)});
        return opened(std::move(table));
    }

    Outcome openedDespite(const Unusable &problem) const
    {
        switch (problem.why) {
        case Unusable::Why::Newer:
            return failed(OpenErrorKind::NewerSchema, m_path, problem.error.detail);
        case Unusable::Why::Busy:
            return failed(OpenErrorKind::Busy, m_path, problem.error.detail);
        case Unusable::Why::Damaged:
        case Unusable::Why::NotWritable:
            break;
        }
        return openForReading(problem.error);
    }

    /// The database as it stands, where not even the log's index can be made.
    Outcome openForReading(DefaultsError notWritable) const
    {
        // SQLite tells that a file is missing, not why it could not be made.
        const QByteArray folder = m_path.left(m_path.lastIndexOf('/'));
        if (notWritable.kind == DefaultsError::Kind::Other && ::access(folder.constData(), W_OK) != 0)
            notWritable = toDefaultsError(SqliteError{SQLITE_CANTOPEN, errno, systemText(errno)});
        if (sizeOf(m_path) == 0)
            return opened(emptyTable(), notWritable);
        const auto mode =
            sizeOf(m_path + "-wal") > 0 ? SqliteConnection::Mode::ReadOnlyWithLog : SqliteConnection::Mode::Immutable;
        auto table = tableAt(m_path, mode);
        if (table)
            return opened(std::move(table).value(), notWritable);
        const bool newer = table.error().why == Unusable::Why::Newer;
        const bool unsound = table.error().why == Unusable::Why::Damaged;
        return failed(newer     ? OpenErrorKind::NewerSchema
                      : unsound ? OpenErrorKind::Damaged
                                : OpenErrorKind::Inaccessible,
                      m_path, table.error().error.detail);
    }

    /// What to do when the folder or the file cannot be made.
    Outcome withoutFile(int systemError, const QByteArray &path) const
    {
        const DefaultsError problem =
            toDefaultsError(SqliteError{SQLITE_CANTOPEN, systemError, systemText(systemError)});
        if (problem.kind == DefaultsError::Kind::Other || exists(path))
            return failed(OpenErrorKind::Inaccessible, path, problem.detail);
        return opened(emptyTable(), problem);
    }

    static TablePointer emptyTable()
    {
        auto table = tableAt({}, SqliteConnection::Mode::Memory);
        return table ? std::move(table).value() : nullptr;
    }

    /// 0 or an errno.
    int makeFolder() const
    {
        if (exists(m_folder))
            return takeFolder();
        std::error_code failure;
        std::filesystem::create_directories(std::filesystem::path(m_folder.toStdString()).parent_path(), failure);
        if (failure)
            return failure.value();
        if (::mkdir(m_folder.constData(), 0700) != 0)
            return errno == EEXIST ? takeFolder() : errno; // another process was quicker
        // The umask may have taken away more than it should.
        ::chmod(m_folder.constData(), 0700);
        return 0;
    }

    /// 0 or an errno.
    int takeFolder() const
    {
        struct stat info;
        if (::stat(m_folder.constData(), &info) != 0)
            return errno;
        if (!S_ISDIR(info.st_mode))
            return ENOTDIR;
        if ((info.st_mode & 0777) != 0700 && ::chmod(m_folder.constData(), 0700) != 0)
            qCInfo(lcDefaults).noquote() << "the folder's permissions stay as they are:" << systemText(errno);
        return 0;
    }

    /// 0 or an errno. Never opens a file that exists: closing it would drop
    /// the locks that this process holds on it through SQLite.
    int makeFile()
    {
        struct stat info;
        if (::stat(m_path.constData(), &info) != 0) {
            const int file = ::open(m_path.constData(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, 0600);
            if (file < 0)
                return errno;
            ::fchmod(file, 0600);
            ::close(file);
        } else if (!S_ISREG(info.st_mode)) {
            return S_ISDIR(info.st_mode) ? EISDIR : EINVAL;
        } else if (::access(m_path.constData(), R_OK) != 0) {
            return errno;
        } else if ((info.st_mode & 0077) != 0) {
            ::chmod(m_path.constData(), info.st_mode & 0700);
        }
        if (const std::unique_ptr<char, decltype(&std::free)> real(::realpath(m_path.constData(), nullptr), std::free);
            real)
            m_path = real.get();
        return 0;
    }

    /// SQLite deletes such a log.
    bool leftoverLog() const { return sizeOf(m_path) == 0 && sizeOf(m_path + "-wal") > 0; }

    QByteArray m_folder;
    QByteArray m_path;
    Timestamp m_now;
    std::optional<QString> m_damagedCopy;
};

} // namespace

Result<OpenedDefaultsFile, DefaultsOpenError> openDefaultsFile(const QString &folder, Timestamp now)
{
    return DefaultsFileOpener(folder, now).open();
}

} // namespace orvelle
