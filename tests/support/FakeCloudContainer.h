#pragma once

#include "platform/CloudContainer.h"
#include "support/FakeClock.h"

#include <QCryptographicHash>
#include <QMap>
#include <QSet>

#include <algorithm>
#include <vector>

namespace orvelle::test {

class FakeCloudContainer;

/// Where the files of several machines come together, in memory and on a fake
/// clock. Each machine attaches a FakeCloudContainer; the test says what goes
/// on in the world.
class FakeCloudPlace
{
public:
    enum class Kind {
        Server,       ///< one truth, writes on condition
        SyncedFolder, ///< each machine has its copy; a sync client carries changes and makes conflict copies
    };
    struct File {
        QByteArray bytes;
        QByteArray version;
        Timestamp modifiedAt;
    };

    explicit FakeCloudPlace(FakeClock &clock, Kind kind = Kind::Server) : m_clock(clock), m_kind(kind) {}

    /// How long each answer and each delivery takes.
    std::chrono::milliseconds latency{0};
    /// Whether versionsOf() and deliversAgain() know what was there before.
    bool keepsHistory = true;

    Kind kind() const { return m_kind; }
    bool has(const QString &name) const { return m_files.contains(name); }
    QByteArray bytes(const QString &name) const { return m_files.value(name).bytes; }
    QStringList names() const { return m_files.keys(); }
    /// How often a file was written, by whomever.
    int writeCount() const { return m_writeCount; }
    /// Every version that the file had, oldest first.
    QList<QByteArray> versionsOf(const QString &name) const { return m_history.value(name); }

    /// Somebody without a replica here; replicas hear of it.
    void otherMachineWrites(const QString &name, const QByteArray &bytes) { put(name, bytes, nullptr); }
    void otherMachineRemoves(const QString &name)
    {
        m_files.remove(name);
        announce(name, nullptr);
    }
    /// An earlier version comes back, as from a sync client that is late.
    void deliversAgain(const QString &name, qsizetype version)
    {
        put(name, m_history.value(name).at(version), nullptr);
    }

private:
    friend class FakeCloudContainer;

    static QByteArray versionOf(const QByteArray &bytes)
    {
        return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
    }
    File put(const QString &name, const QByteArray &bytes, const FakeCloudContainer *by)
    {
        m_files[name] = {bytes, versionOf(bytes), m_clock.now()};
        if (keepsHistory)
            m_history[name] += bytes;
        ++m_writeCount;
        announce(name, by);
        return m_files.value(name);
    }
    inline void announce(const QString &name, const FakeCloudContainer *except);

    FakeClock &m_clock;
    Kind m_kind;
    QMap<QString, File> m_files;
    QMap<QString, QList<QByteArray>> m_history;
    std::vector<FakeCloudContainer *> m_replicas;
    int m_writeCount = 0;
};

/// One machine's view of the place.
class FakeCloudContainer : public CloudContainer
{
public:
    explicit FakeCloudContainer(FakeCloudPlace &place) : m_place(place)
    {
        m_place.m_replicas.push_back(this);
        for (auto it = m_place.m_files.cbegin(); it != m_place.m_files.cend(); ++it)
            take(it.key());
    }
    ~FakeCloudContainer() override { std::erase(m_place.m_replicas, this); }

    // What the world does to this machine.

    /// Nothing is set up, or the account is gone.
    void becomesAvailable(bool available)
    {
        m_available = available;
        emit availabilityChanged();
    }
    /// It is there, but nobody knows before it is read once.
    void isNotLookedAtYet() { m_isLookedAt = false; }
    /// A partition: a server cannot be reached; a folder stays, and its client
    /// carries nothing until it is connected again.
    void setOnline(bool online)
    {
        m_online = online;
        if (online)
            catchUp();
    }
    bool isOnline() const { return m_online; }
    /// The file is listed, its content elsewhere.
    void becomesPlaceholder(const QString &name) { m_status[name] = DownloadStatus::Placeholder; }
    void becomesOutdated(const QString &name) { m_status[name] = DownloadStatus::Outdated; }
    /// The file is there, but this machine was not told of it yet.
    void becomesInvisible(const QString &name) { m_status[name] = DownloadStatus::NotVisible; }
    /// Downloads that were asked for never end, until this is called with true.
    void letDownloadsEnd(bool end) { m_downloadsEnd = end; }
    /// From now on; absent: all is well again.
    void failReads(std::optional<CloudError> error) { m_readError = std::move(error); }
    /// With `writtenAllTheSame` the answer is lost, not the write.
    void failWrites(std::optional<CloudError> error, bool writtenAllTheSame = false)
    {
        m_writeError = std::move(error);
        m_writtenAllTheSame = writtenAllTheSame;
    }
    /// The watch tells of a change once more, for nothing.
    void tellsAgain() { emit changed(); }
    void hasConflictCopy(const QString &copyName, const QByteArray &bytes)
    {
        m_conflicts.append({copyName, bytes});
        emit changed();
    }
    /// Copies cannot be put away.
    void failArchiving() { m_archiveFails = true; }
    /// Changes of others reach this machine only when catchUp() is called.
    void holdDeliveries(bool hold) { m_holdDeliveries = hold; }
    /// What waits is delivered now, and a folder's own changes are carried off.
    void catchUp()
    {
        const QStringList names = m_place.names() + m_copies.keys();
        for (const QString &name : QSet<QString>(names.begin(), names.end()))
            synchronise(name);
    }

    // What was asked of it.
    int reads = 0;
    int writes = 0;
    int evictions = 0;
    QStringList downloads;
    QStringList archived;
    QString watched;

    bool isAvailable() const override { return m_available && m_isLookedAt; }
    QString displayPath(const QString &name) const override { return QStringLiteral("/cloud/") + name; }
    DownloadStatus downloadStatus(const QString &name) const override
    {
        const auto said = m_status.constFind(name);
        if (said != m_status.constEnd())
            return *said;
        return m_copies.contains(name) ? DownloadStatus::Current : DownloadStatus::NotVisible;
    }
    std::optional<Timestamp> modificationDate(const QString &name) const override
    {
        const auto copy = m_copies.constFind(name);
        return copy == m_copies.constEnd() ? std::nullopt : std::optional(copy->modifiedAt);
    }
    void startDownload(const QString &name) override
    {
        downloads += name;
        later([this, name] {
            if (!m_downloadsEnd || !m_online)
                return;
            const bool waited = m_status.remove(name) > 0;
            if (take(name) || waited)
                emit changed();
        });
    }
    Result<Nothing, CloudError> evict(const QString &name) override
    {
        if (m_place.kind() == FakeCloudPlace::Kind::Server)
            return CloudError{CloudError::Kind::Io, QStringLiteral("no local copy")};
        ++evictions;
        if (m_online && !m_dirty.contains(name))
            m_status[name] = DownloadStatus::Placeholder;
        return Nothing{};
    }

    void read(const QString &name, Done<CloudFile> done) override
    {
        ++reads;
        later([this, name, done = std::move(done)] {
            if (m_available && !std::exchange(m_isLookedAt, true))
                emit availabilityChanged();
            done(readNow(name));
        });
    }
    void write(const QString &name, const QByteArray &bytes, const QByteArray &expected, Done<CloudFile> done) override
    {
        ++writes;
        later([this, name, bytes, expected, done = std::move(done)] { done(writeNow(name, bytes, expected)); });
    }
    void readConflictCopies(const QString &, Done<QList<ConflictCopy>> done) override
    {
        later([this, done = std::move(done)] { done(m_conflicts); });
    }
    void archiveConflictCopy(const QString &copyName, Done<Nothing> done) override
    {
        later([this, copyName, done = std::move(done)] {
            if (m_archiveFails)
                return done(CloudError{CloudError::Kind::Io});
            m_conflicts.removeIf([&](const ConflictCopy &copy) { return copy.name == copyName; });
            archived += copyName;
            done(Nothing{});
        });
    }
    void startWatching(const QString &name) override
    {
        watched = name;
        later([this, name] {
            if (watched == name)
                emit gathered(downloadStatus(name) == DownloadStatus::NotVisible ? 0 : 1);
        });
    }
    void stopWatching() override { watched.clear(); }
    void test(Done<QString> done) override
    {
        later([this, done = std::move(done)] {
            if (reachable())
                done(QStringLiteral("fake"));
            else
                done(CloudError{CloudError::Kind::Unavailable});
        });
    }

private:
    friend class FakeCloudPlace;

    bool isServer() const { return m_place.kind() == FakeCloudPlace::Kind::Server; }
    bool reachable() const { return m_available && (m_online || !isServer()); }
    void later(std::function<void()> what) { m_place.m_clock.after(m_place.latency, this, std::move(what)); }

    /// Takes the place's version over. True when it was another one.
    bool take(const QString &name)
    {
        const auto there = m_place.m_files.constFind(name);
        if (there == m_place.m_files.constEnd()) {
            m_carried.remove(name);
            return m_copies.remove(name) > 0;
        }
        const bool other = !m_copies.contains(name) || m_copies.value(name).version != there->version;
        m_copies[name] = {there->bytes, there->version, there->modifiedAt};
        m_carried[name] = there->version;
        return other;
    }

    Result<CloudFile, CloudError> readNow(const QString &name)
    {
        if (m_readError)
            return *m_readError;
        const bool needsPlace = isServer() || m_status.contains(name);
        if (!m_available || (needsPlace && (!m_online || !m_downloadsEnd)))
            return CloudError{CloudError::Kind::Unavailable};
        if (needsPlace) {
            m_status.remove(name);
            take(name);
        }
        const auto copy = m_copies.constFind(name);
        if (copy == m_copies.constEnd())
            return CloudError{CloudError::Kind::Missing};
        return *copy;
    }

    Result<CloudFile, CloudError> writeNow(const QString &name, const QByteArray &bytes, const QByteArray &expected)
    {
        if (m_writeError && !m_writtenAllTheSame)
            return *m_writeError;
        if (bytes.size() > maxFileBytes)
            return CloudError{CloudError::Kind::TooLarge};
        if (!reachable())
            return CloudError{CloudError::Kind::Unavailable};
        const QByteArray present = isServer() ? m_place.m_files.value(name).version : m_copies.value(name).version;
        if (present != expected)
            return CloudError{CloudError::Kind::Conflict};
        m_status.remove(name);
        if (isServer()) {
            m_place.put(name, bytes, this);
            take(name);
        } else {
            m_copies[name] = {bytes, FakeCloudPlace::versionOf(bytes), m_place.m_clock.now()};
            m_dirty.insert(name);
            later([this, name] { synchronise(name); });
        }
        if (m_writeError)
            return *m_writeError;
        return m_copies.value(name);
    }

    /// What a sync client does with one file; what a server's watch sees.
    void synchronise(const QString &name)
    {
        if (!m_online || m_holdDeliveries)
            return;
        const bool othersChanged = m_place.m_files.value(name).version != m_carried.value(name);
        if (m_dirty.remove(name)) {
            if (!othersChanged) {
                m_carried[name] = m_copies.value(name).version;
                m_place.put(name, m_copies.value(name).bytes, this);
                return;
            }
            m_conflicts.append({QStringLiteral("%1 (conflicted copy %2)").arg(name).arg(++m_conflictCount),
                                m_copies.value(name).bytes});
        }
        if (m_status.contains(name)) {
            emit changed();
            return;
        }
        if (take(name))
            emit changed();
    }

    FakeCloudPlace &m_place;
    bool m_available = true;
    bool m_isLookedAt = true;
    bool m_online = true;
    bool m_downloadsEnd = true;
    bool m_holdDeliveries = false;
    bool m_writtenAllTheSame = false;
    bool m_archiveFails = false;
    std::optional<CloudError> m_readError;
    std::optional<CloudError> m_writeError;
    QMap<QString, CloudFile> m_copies;
    QMap<QString, QByteArray> m_carried; ///< the place's version that the copy comes from
    QMap<QString, DownloadStatus> m_status;
    QSet<QString> m_dirty; ///< changed here and not carried off
    QList<ConflictCopy> m_conflicts;
    int m_conflictCount = 0;
};

inline void FakeCloudPlace::announce(const QString &name, const FakeCloudContainer *except)
{
    for (FakeCloudContainer *replica : m_replicas) {
        if (replica != except)
            replica->later([replica, name] { replica->synchronise(name); });
    }
}

} // namespace orvelle::test
