#include "platform/freedesktop/defaults/SqliteUserDefaults.h"

#include "platform/freedesktop/defaults/SqliteDefaultsFile.h"

#include <QFile>
#include <QFileSystemWatcher>
#include <QLoggingCategory>
#include <QSet>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

namespace orvelle {

namespace {

Q_LOGGING_CATEGORY(lcDefaults, "UserDefaults", QtInfoMsg)

using namespace std::chrono_literals;

/// After so long without a change the log is moved into the database.
constexpr auto idleBeforeCheckpoint = 3s;
/// A log longer than this (32 MiB) is not left for later.
constexpr int longLog = 4000;
constexpr qint64 pageBytes = 8192;
/// Changes that come together are announced together.
constexpr auto gatherChanges = 30ms;

DefaultsError refused(const char *why)
{
    return {DefaultsError::Kind::Other, QString::fromLatin1(why)};
}

/// Whether a log of so many pages, which cannot be given up before the database
/// has grown by as much, takes what room is left for both.
bool isInTheWay(int pages, const QByteArray &path)
{
    struct statvfs disk = {};
    return ::statvfs(path.constData(), &disk) == 0 &&
           qint64(disk.f_bavail) * qint64(disk.f_frsize) < 2 * pageBytes * pages;
}

/// Which file stands at a path; absent when there is none.
std::optional<std::pair<dev_t, ino_t>> fileAt(const QByteArray &path)
{
    struct stat info;
    if (::stat(path.constData(), &info) != 0)
        return std::nullopt;
    return std::pair(info.st_dev, info.st_ino);
}

} // namespace

class SqliteUserDefaults::Impl
{
public:
    Impl(QString inFolder, Clock &byClock, OpenedDefaultsFile opened) : folder(std::move(inFolder)), clock(byClock)
    {
        use(std::move(opened));
    }

    void use(OpenedDefaultsFile opened)
    {
        table = std::move(opened.table);
        path = opened.path;
        file = fileAt(path);
        notWritable = std::move(opened.notWritable);
        damaged = false;
        unreadable.clear();
        ownChanges.clear();
        const auto last = table->lastChange();
        seenChange = last ? *last : 0;
    }

    /// Opens the settings anew, keeping what is open when that fails.
    bool reopen()
    {
        auto opened = openDefaultsFile(folder, clock.now());
        if (!opened)
            return false;
        use(std::move(opened).value());
        return true;
    }

    /// The file has been replaced or deleted: what went into it now would be lost.
    bool isReplaced() const { return fileAt(path) != file; }

    QString folder;
    Clock &clock;
    std::unique_ptr<SqliteDefaultsTable> table;
    QByteArray path;
    std::optional<std::pair<dev_t, ino_t>> file;
    std::optional<DefaultsError> notWritable;

    bool damaged = false;
    QSet<QString> unreadable;

    /// Changes up to this number have been announced, or were there at the start.
    qint64 seenChange = 0;
    /// Later changes that are our own.
    QSet<qint64> ownChanges;

    std::unique_ptr<QFileSystemWatcher> watcher;
    std::unique_ptr<Timer> announceTimer;
    std::unique_ptr<Timer> checkpointTimer;
};

Result<SqliteUserDefaults::Opened, DefaultsOpenError> SqliteUserDefaults::open(const QString &folder, Clock &clock)
{
    auto file = openDefaultsFile(folder, clock.now());
    if (!file) {
        qCWarning(lcDefaults).noquote() << "not opened:" << file.error().detail;
        return file.error();
    }
    OpenedDefaultsFile opened = std::move(file).value();
    Opened result{nullptr, opened.damagedCopy, opened.notWritable};
    auto impl = std::make_unique<Impl>(folder, clock, std::move(opened));
    result.defaults.reset(new SqliteUserDefaults(std::move(impl)));
    return result;
}

SqliteUserDefaults::SqliteUserDefaults(std::unique_ptr<Impl> impl) : m_impl(std::move(impl)) {}

SqliteUserDefaults::~SqliteUserDefaults() = default;

QString SqliteUserDefaults::path() const
{
    return QFile::decodeName(m_impl->path);
}

UserDefaults::Versioned SqliteUserDefaults::read(const QString &key) const
{
    if (!key.isValidUtf16())
        return {};
    followFile();
    const auto row = m_impl->table->read(key.toUtf8());
    if (row && row->decodable) {
        m_impl->unreadable.remove(key);
        return {row->value, row->revision, false};
    }
    if (!row)
        noteFailure(key, toDefaultsError(row.error()), row.error().isDamage());
    else
        noteFailure(key, refused("the stored value has no known form"), false);
    return {std::nullopt, row ? row->revision : 0, true};
}

UserDefaults::WriteResult SqliteUserDefaults::write(const QString &key, const DefaultsValue &value)
{
    return put(key, &value, std::nullopt);
}

UserDefaults::WriteResult SqliteUserDefaults::remove(const QString &key)
{
    return put(key, nullptr, std::nullopt);
}

UserDefaults::WriteResult SqliteUserDefaults::compareAndSet(const QString &key, qint64 expectedRevision,
                                                            const DefaultsValue &value)
{
    return put(key, &value, expectedRevision);
}

UserDefaults::WriteResult SqliteUserDefaults::put(const QString &key, const DefaultsValue *value,
                                                  std::optional<qint64> expectedRevision)
{
    followFile();
    if (const auto reason = whyNotWritable(key, value != nullptr)) {
        emit writeFailed(key, *reason);
        return *reason;
    }
    const std::optional<EncodedDefault> encoded = value ? std::optional<EncodedDefault>(*value) : std::nullopt;
    if (encoded && !encoded->isStorable()) {
        const DefaultsError error = refused("the value is not a number or too large");
        emit writeFailed(key, error);
        return error;
    }
    const auto stored = m_impl->table->put(key.toUtf8(), encoded ? &*encoded : nullptr, expectedRevision);
    if (!stored)
        return failed(key, stored.error().error, stored.error().damage);
    if (stored->change != stored->previousChange)
        noteOwnChange(stored->change, stored->previousChange);
    m_impl->unreadable.remove(key);
    return stored->revision;
}

std::optional<DefaultsError> SqliteUserDefaults::whyNotWritable(const QString &key, bool overwrites)
{
    if (!key.isValidUtf16())
        return refused("the key is no valid text");
    if (m_impl->damaged)
        return refused("the database is damaged");
    // The folder may have become writable, the disk may have room again.
    if (m_impl->notWritable)
        reopen();
    if (m_impl->notWritable)
        return m_impl->notWritable;
    if (overwrites && m_impl->unreadable.contains(key))
        return refused("the stored value could not be read and is kept");
    return std::nullopt;
}

DefaultsError SqliteUserDefaults::failed(const QString &key, const DefaultsError &error, bool damage)
{
    if (error.kind == DefaultsError::Kind::Conflict)
        return error;
    qCWarning(lcDefaults).noquote() << "not stored:" << error.detail;
    m_impl->damaged |= damage;
    emit writeFailed(key, error);
    return error;
}

void SqliteUserDefaults::noteFailure(const QString &key, const DefaultsError &error, bool damage) const
{
    m_impl->damaged |= damage;
    if (m_impl->unreadable.contains(key))
        return;
    m_impl->unreadable += key;
    qCWarning(lcDefaults).noquote() << "not read:" << error.detail;
    emit const_cast<SqliteUserDefaults *>(this)->writeFailed(key, error);
}

void SqliteUserDefaults::noteOwnChange(qint64 change, qint64 previousChange)
{
    // Another process's changes in between are still to be announced.
    if (m_impl->seenChange == previousChange)
        m_impl->seenChange = change;
    else
        m_impl->ownChanges += change;

    // Only now do others see the change; the log's last writing, which would
    // wake them too, came before.
    ::utimensat(AT_FDCWD, m_impl->path.constData(), nullptr, 0);

    if (const int pages = m_impl->table->logPages(); pages > longLog || isInTheWay(pages, m_impl->path)) {
        m_impl->table->checkpoint();
        m_impl->checkpointTimer.reset();
        return;
    }
    m_impl->checkpointTimer = m_impl->clock.singleShot(idleBeforeCheckpoint, [this] { m_impl->table->checkpoint(); });
}

QStringList SqliteUserDefaults::keys() const
{
    followFile();
    const auto keys = m_impl->table->keys();
    if (keys)
        return *keys;
    noteFailure({}, toDefaultsError(keys.error()), keys.error().isDamage());
    return {};
}

void SqliteUserDefaults::followFile() const
{
    if (!m_impl->isReplaced())
        return;
    qCWarning(lcDefaults) << "the database was replaced; opening it anew";
    const_cast<SqliteUserDefaults *>(this)->reopen();
}

void SqliteUserDefaults::reopen()
{
    const QByteArray oldPath = m_impl->path;
    const auto oldFile = m_impl->file;
    const auto oldKeys = m_impl->table->keys();
    if (!m_impl->reopen() || !m_impl->watcher)
        return;
    watchFiles();
    if (m_impl->file == oldFile && m_impl->path == oldPath)
        return;
    // Not from inside a read.
    m_impl->clock.after(0ms, this, [this, before = oldKeys ? *oldKeys : QStringList()] {
        QStringList changed = before + keys();
        changed.sort();
        changed.removeDuplicates();
        if (!changed.isEmpty())
            emit changedExternally(changed);
    });
}

void SqliteUserDefaults::startWatching()
{
    if (m_impl->watcher)
        return;
    m_impl->watcher = std::make_unique<QFileSystemWatcher>();
    connect(m_impl->watcher.get(), &QFileSystemWatcher::fileChanged, this, [this] {
        if (!m_impl->announceTimer)
            m_impl->announceTimer = m_impl->clock.singleShot(gatherChanges, [this] { announceChanges(); });
    });
    watchFiles();
}

void SqliteUserDefaults::watchFiles()
{
    // The log as well: other tools write it without touching the database.
    const QString file = path();
    m_impl->watcher->removePaths(m_impl->watcher->files() + QStringList(file));
    m_impl->watcher->addPaths({file, file + QStringLiteral("-wal")});
}

void SqliteUserDefaults::announceChanges()
{
    m_impl->announceTimer.reset();
    followFile();
    const auto changes = m_impl->table->changesSince(m_impl->seenChange);
    if (!changes || changes->isEmpty())
        return;
    QStringList keys;
    for (const auto &[key, change] : *changes) {
        m_impl->seenChange = std::max(m_impl->seenChange, change);
        if (!m_impl->ownChanges.contains(change))
            keys += key;
    }
    m_impl->ownChanges.clear();
    if (!keys.isEmpty())
        emit changedExternally(keys);
}

} // namespace orvelle
