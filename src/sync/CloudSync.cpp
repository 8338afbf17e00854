#include "base/Notifications.h"
#include "base/Text.h"
#include "links/LinkStore.h"
#include "platform/UserDefaults.h"
#include "sync/CloudSyncPrivate.h"

using namespace Qt::StringLiterals;

namespace orvelle {

Q_LOGGING_CATEGORY(lcCloudSync, "CloudSync", QtInfoMsg)

CloudSync::Private::Private(CloudSync *owner, const Services &given) : q(owner), s(given), runner(given.runner)
{
    if (!runner) {
        ownRunner = makeThreadSyncRunner();
        runner = ownRunner.get();
    }
}

QString CloudSync::Private::fileName() const
{
    return s.debugMode.isDebugMode() ? u"orvelle-sync-debug.ovexport"_s : u"orvelle-sync.ovexport"_s;
}

bool CloudSync::Private::enabled() const
{
    return s.defaults.get<bool>(key(autoSyncEnabledBaseKey())).value_or(false);
}

bool CloudSync::Private::store(const QString &baseKey, const std::optional<DefaultsValue> &value)
{
    const auto stored = value ? s.defaults.write(key(baseKey), *value) : s.defaults.remove(key(baseKey));
    if (!stored)
        qCWarning(lcCloudSync).noquote() << "Could not store" << baseKey << stored.error().detail;
    return stored.hasValue();
}

void CloudSync::Private::setLastWritten(const LinkExchange::Exported &exported)
{
    lastWrittenChecksum = exported.checksum;
    lastWrittenContent = exported.contentDigest;
    const bool none = exported.checksum.isEmpty();
    store(lastWrittenChecksumBaseKey(), none ? std::nullopt : std::optional<DefaultsValue>(lastWrittenChecksum));
    store(lastWrittenContentBaseKey(),
          none ? std::nullopt : std::optional<DefaultsValue>(QString::fromLatin1(lastWrittenContent)));
}

void CloudSync::Private::updateLastSyncDate()
{
    lastSyncDate = s.clock.now();
    store(lastSyncDateBaseKey(), *lastSyncDate);
}

bool CloudSync::Private::available() const
{
    return container && container->isAvailable() && !s.links.isLocked();
}

/// Where the last tree is kept that could not be read.
QString CloudSync::Private::lostTree() const
{
    return s.links.rescuedDataKeys().value(0);
}

std::shared_ptr<const SyncBase> CloudSync::Private::base()
{
    if (!baseLoaded) {
        const auto stored = s.defaults.get<QByteArray>(key(syncBaseBaseKey()));
        auto read = stored ? SyncBase::fromBytes(*stored) : std::nullopt;
        m_base = read ? std::make_shared<const SyncBase>(std::move(*read)) : nullptr;
        // Another process may have merged since the tree was read here. It
        // stores the tree before the base, so one that is read after the base
        // has all that the base names: what it lacked would count as deleted.
        baseLoaded = s.links.catchUp();
        if (!baseLoaded)
            return nullptr;
    }
    if (!m_base || !container || m_base->place != container->displayPath(fileName()))
        return nullptr;
    // What a lost tree lacks was not deleted here.
    return !s.links.isUnreadable() && m_base->lost == lostTree() ? m_base : nullptr;
}

void CloudSync::Private::setBase(const SyncBase &known)
{
    m_base = std::make_shared<const SyncBase>(known);
    baseLoaded = true;
    onWorker<QByteArray>([noted = m_base] { return noted->toBytes(); },
                         [this, noted = m_base](const QByteArray &bytes) {
                             // What was merged and is not stored yet is to be
                             // merged again after a crash.
                             if (noted == m_base && !s.links.hasUnsavedChanges())
                                 store(syncBaseBaseKey(), bytes);
                         });
}

void CloudSync::Private::forgetBase()
{
    m_base.reset();
    baseLoaded = true;
    store(syncBaseBaseKey(), std::nullopt);
}

SyncStatus CloudSync::Private::status() const
{
    using State = SyncStatus::State;
    SyncStatus now;
    now.lastSyncDate = lastSyncDate;
    now.lastSyncedFromDevice = lastSyncedFromDevice;
    if (problem)
        now.failure = problem->sentence;
    const bool needsPassphrase = problem && problem->needsPassphrase;
    if (upload || isMerging)
        now.state = State::Working;
    else if (!enabled()) // a set-up or a load can wait for it
        now.state = needsPassphrase ? State::NeedsPassphrase : State::Off;
    else if (!available())
        now.state = State::Unavailable; // NOLINT(bugprone-branch-clone): what is asked in between comes first
    else if (held)
        now.state = State::HeldBack;
    else if (needsPassphrase)
        now.state = State::NeedsPassphrase;
    else if (problem && problem->needsUser)
        now.state = State::Failed;
    else if (uploadTimer || deferred)
        now.state = State::Waiting;
    else if (problem) // passes by itself, and nothing here waits for it
        now.state = State::Unavailable;
    else
        now.state = isInitialSyncComplete ? State::Current : State::Starting;
    if (uploadTimer && retry)
        now.retryAt = retry->until;
    return now;
}

void CloudSync::Private::announce()
{
    const SyncStatus now = status();
    if (now == told)
        return;
    told = now;
    emit s.notifications.syncStatusChanged();
}

void CloudSync::Private::setProblem(const std::optional<SyncProblem> &now)
{
    problem = now;
    if (now && now->retryAfter) {
        const Timestamp from = s.clock.now();
        notBefore = {from, from + static_cast<double>(now->retryAfter->count())};
    }
    if (!now)
        notBefore.reset();
}

void CloudSync::Private::abandon()
{
    ++epoch;
    isCheckingSyncFile = false;
    isMerging = false;
    checkAgain = false;
    if (const UploadPtr stopped = std::exchange(upload, nullptr))
        finish(stopped, interrupted());
    for (const auto &tell : std::exchange(interruptions, {}))
        s.clock.after(std::chrono::milliseconds(0), q, tell);
}

CloudSyncError CloudSync::Private::interrupted()
{
    return {CloudSyncError::Kind::UserCancelled, text("cloudSync.failure.interrupted"_text)};
}

CloudSync::CloudSync(const Services &services, QObject *parent)
    : QObject(parent), m_d(std::make_unique<Private>(this, services))
{
    loadSyncState();
}

CloudSync::~CloudSync()
{
    for (const QMetaObject::Connection &connection : m_d->connections)
        disconnect(connection);
}

void CloudSync::setContainer(CloudContainer *container)
{
    m_d->stop();
    m_d->container = container;
    m_d->release();
    m_d->seen.reset();
    m_d->toldToWait = false;
    m_d->forgetCiphers();
    m_d->lastImportedHash.clear();
    m_d->setProblem(std::nullopt);
    startSyncFileMonitoring();
    m_d->announce();
}

bool CloudSync::autoSyncEnabled() const
{
    return m_d->enabled();
}

void CloudSync::setAutoSyncEnabled(bool enabled)
{
    if (enabled == autoSyncEnabled())
        return;
    m_d->store(autoSyncEnabledBaseKey(), enabled);
    if (enabled) {
        startSyncFileMonitoring();
    } else {
        m_d->stop();
        m_d->setProblem(std::nullopt);
    }
    m_d->announce();
}

bool CloudSync::isCloudSyncAvailable() const
{
    return m_d->available();
}

QString CloudSync::syncFileName() const
{
    return m_d->fileName();
}

bool CloudSync::syncFileExists() const
{
    return m_d->available() && m_d->container->downloadStatus(syncFileName()) != DownloadStatus::NotVisible;
}

QString CloudSync::resolvedSyncFilePath() const
{
    return m_d->container ? m_d->container->displayPath(syncFileName()) : QString();
}

SyncStatus CloudSync::status() const
{
    return m_d->status();
}

void CloudSync::loadSyncState()
{
    Private &d = *m_d;
    d.lastSyncDate = d.s.defaults.get<Timestamp>(d.key(lastSyncDateBaseKey()));
    d.lastWrittenChecksum = d.s.defaults.get<QString>(d.key(lastWrittenChecksumBaseKey())).value_or(QString());
    d.lastWrittenContent = d.s.defaults.get<QString>(d.key(lastWrittenContentBaseKey())).value_or(QString()).toLatin1();
    d.baseLoaded = false;
    d.told = d.status();
}

void CloudSync::startSyncFileMonitoring()
{
    m_d->start();
}

void CloudSync::stopSyncFileMonitoring()
{
    m_d->stop();
    m_d->announce();
}

void CloudSync::reloadForModeChange()
{
    Private &d = *m_d;
    d.stop();
    d.release();
    d.seen.reset();
    d.forgetCiphers();
    d.lastImportedHash.clear();
    d.lastSyncedFromDevice.reset();
    d.setProblem(std::nullopt);
    loadSyncState();
    startSyncFileMonitoring();
    d.announce();
}

bool SyncStatus::needsUser() const
{
    return state == State::HeldBack || state == State::NeedsPassphrase || (state == State::Failed && !retryAt);
}

QString rawValue(SyncStatus::State state)
{
    static constexpr const char *names[] = {"off",     "unavailable", "starting",        "current", "waiting",
                                            "working", "heldBack",    "needsPassphrase", "failed"};
    return QString::fromLatin1(names[static_cast<int>(state)]);
}

} // namespace orvelle
