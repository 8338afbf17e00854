#include "platform/freedesktop/folder/FolderContainer.h"

#include "platform/freedesktop/folder/ConflictCopies.h"

#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QPointer>

#include <condition_variable>
#include <mutex>

namespace orvelle {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Kind = CloudError::Kind;

namespace {

Q_LOGGING_CATEGORY(lcFolder, "FolderContainer", QtInfoMsg)

/// Mounts and folders further up tell nobody when they come.
constexpr auto lookForFolder = 30s;
/// Local disks answer at once; others are not waited for.
constexpr auto longestFirstLook = 40ms;

} // namespace

/// A look of the worker's for which the main thread may wait a moment.
struct FolderContainer::FirstLook {
    void set(const Look &seen)
    {
        const std::lock_guard lock(mutex);
        look = seen;
        known.notify_all();
    }
    std::optional<Look> wait()
    {
        std::unique_lock lock(mutex);
        known.wait_for(lock, longestFirstLook, [this] { return look.has_value(); });
        return look;
    }

    std::mutex mutex;
    std::condition_variable known;
    std::optional<Look> look;
};

FolderContainer::FolderContainer(const QString &folder, const QString &machineName, Clock &clock, QObject *parent)
    : CloudContainer(parent),
      m_folder(QDir::cleanPath(folder)),
      m_clock(clock),
      m_watch(std::make_shared<FolderWatch>(m_folder)),
      m_worker(this)
{
    m_files = std::make_shared<FolderFiles>(m_folder, machineName, m_worker.time());
    if (m_watch->descriptor() >= 0) {
        m_notices = std::make_unique<QSocketNotifier>(m_watch->descriptor(), QSocketNotifier::Read);
        connect(m_notices.get(), &QSocketNotifier::activated, this, &FolderContainer::readNotices);
    }
    m_isAvailable = seen({}).isAvailable;
    if (!m_isAvailable)
        m_retry = m_clock.repeating(lookForFolder, [this] { askForNotices(); });
}

FolderContainer::~FolderContainer() = default;

QString FolderContainer::displayPath(const QString &name) const
{
    const QString path = QDir::toNativeSeparators(m_folder + u'/' + name);
    const QString home = QDir::homePath() + u'/';
    return path.startsWith(home) ? u"~/"_s + path.sliced(home.size()) : path;
}

DownloadStatus FolderContainer::downloadStatus(const QString &name) const
{
    return seen(name).status;
}

std::optional<Timestamp> FolderContainer::modificationDate(const QString &name) const
{
    const auto &stamp = seen(name).stamp;
    return stamp ? std::optional(stamp->modifiedAt()) : std::nullopt;
}

Result<CloudContainer::Nothing, CloudError> FolderContainer::evict(const QString &)
{
    return CloudError{Kind::Io, u"a folder's files are its sync client's, which drops and fetches them itself"_s, {}};
}

const FolderContainer::Look &FolderContainer::seen(const QString &name) const
{
    if (const auto known = m_seen.constFind(name); known != m_seen.constEnd())
        return *known;
    // As members that tell what is known are constant and this makes it known.
    auto *self = const_cast<FolderContainer *>(this);
    const auto first = std::make_shared<FirstLook>();
    self->lookAt(
        name, [self, name](const Look &look) { self->learn(name, look); }, first);
    return *self->m_seen.insert(name, first->wait().value_or(Look()));
}

template<typename T>
void FolderContainer::ask(std::function<Result<T, CloudError>(FolderFiles &)> work,
                          std::function<void(const Result<T, CloudError> &)> learn, Done<T> done)
{
    m_worker.run([this, work = std::move(work), learn = std::move(learn), done = std::move(done),
                  files = m_files]() -> SerialWorker::Delivery {
        return [this, result = work(*files), learn, done] {
            const QPointer<FolderContainer> self(this);
            if (!result && result.error().kind != Kind::Missing && result.error().kind != Kind::Conflict)
                qCInfo(lcFolder).noquote() << "Failed:" << result.error().detail;
            learn(result);
            if (self)
                done(result);
        };
    });
}

void FolderContainer::read(const QString &name, Done<CloudFile> done)
{
    ask<WholeFile>([name](FolderFiles &files) { return files.read(name); },
                   [this, name](const auto &file) { learnWhole(name, file); },
                   [done = std::move(done)](const auto &file) {
                       done(file ? Result<CloudFile, CloudError>(file->file) : file.error());
                   });
}

void FolderContainer::write(const QString &name, const QByteArray &bytes, const QByteArray &expected,
                            Done<CloudFile> done)
{
    ask<WholeFile>([=](FolderFiles &files) { return files.write(name, bytes, expected); },
                   [this, name](const auto &file) { learnWhole(name, file); },
                   [done = std::move(done)](const auto &file) {
                       done(file ? Result<CloudFile, CloudError>(file->file) : file.error());
                   });
}

void FolderContainer::readConflictCopies(const QString &name, Done<QList<ConflictCopy>> done)
{
    ask<QList<ConflictCopy>>([name](FolderFiles &files) { return files.readConflictCopies(name); }, [](const auto &) {},
                             std::move(done));
}

void FolderContainer::archiveConflictCopy(const QString &copyName, Done<Nothing> done)
{
    const QDateTime date = m_clock.now().toDateTime().toLocalTime();
    ask<Nothing>([=](FolderFiles &files) { return files.archiveConflictCopy(copyName, date); },
                 [this, copyName](const auto &archived) {
                     if (!archived)
                         return;
                     for (Look &look : m_seen) // our own doing is no news
                         look.copies.removeAll(copyName);
                 },
                 std::move(done));
}

void FolderContainer::test(Done<QString> done)
{
    ask<QString>([](FolderFiles &files) { return files.probe(); }, [](const auto &) {}, std::move(done));
}

void FolderContainer::lookAt(const QString &name, const std::function<void(const Look &)> &then,
                             const std::shared_ptr<FirstLook> &first)
{
    m_worker.run([=, files = m_files, watch = m_watch]() -> SerialWorker::Delivery {
        // Watched before it is looked at, so that nothing is missed in between.
        watch->arm();
        const Look look = files->look(name);
        if (first)
            first->set(look);
        return [then, look] { then(look); };
    });
}

void FolderContainer::startDownload(const QString &name)
{
    m_worker.run([this, name, files = m_files, watch = m_watch]() -> SerialWorker::Delivery {
        watch->arm();
        return [this, name, look = files->requestDownload(name)] { learn(name, look); };
    });
}

void FolderContainer::startWatching(const QString &name)
{
    m_watched = name;
    lookAt(name, [this, name, number = ++m_watchNumber](const Look &look) {
        if (number != m_watchNumber)
            return;
        m_seen[name] = look;
        const QPointer<FolderContainer> self(this);
        learnAvailable(look.isAvailable);
        if (self)
            emit gathered(look.status == DownloadStatus::NotVisible ? 0 : 1);
    });
}

void FolderContainer::stopWatching()
{
    m_watched.clear();
    ++m_watchNumber;
}

void FolderContainer::learn(const QString &name, const Look &look)
{
    const bool isNews = !name.isEmpty() && m_seen.value(name) != look;
    m_seen[name] = look;
    const QPointer<FolderContainer> self(this);
    learnAvailable(look.isAvailable);
    if (self && isNews)
        emit changed();
}

void FolderContainer::learnWhole(const QString &name, const Result<WholeFile, CloudError> &file)
{
    Look &look = m_seen[name];
    if (file) {
        look.isAvailable = true;
        look.status = DownloadStatus::Current;
        look.stamp = file->stamp;
    } else if (file.error().kind == Kind::Missing || file.error().kind == Kind::Unavailable) {
        look.isAvailable = file.error().kind == Kind::Missing;
        look.status = DownloadStatus::NotVisible;
        look.stamp.reset();
    } else {
        return;
    }
    learnAvailable(look.isAvailable);
}

void FolderContainer::learnAvailable(bool isAvailable)
{
    if (isAvailable == m_isAvailable)
        return;
    m_isAvailable = isAvailable;
    qCInfo(lcFolder, isAvailable ? "The folder is there" : "The folder is not there");
    if (isAvailable) {
        m_retry.reset();
    } else {
        m_retry = m_clock.repeating(lookForFolder, [this] { askForNotices(); });
        askForNotices(); // sets the watch on what is above it
    }
    emit availabilityChanged();
}

void FolderContainer::readNotices()
{
    const FolderWatch::Notices notices = m_watch->take();
    const QStringList placeholders = placeholderNames(m_watched);
    const bool concerns =
        notices.onFolder || (!notices.isEmpty() && !m_isAvailable) ||
        (!m_watched.isEmpty() && std::ranges::any_of(notices.names, [&](const QString &each) {
            return each == m_watched || placeholders.contains(each) || isConflictCopy(each, m_watched);
        }));
    if (concerns)
        askForNotices();
}

void FolderContainer::askForNotices()
{
    // One look after the last notice is enough for all before it.
    m_looksAgain = m_isLooking;
    if (m_isLooking)
        return;
    m_isLooking = true;
    lookAt(m_watched, [this, name = m_watched](const Look &look) {
        m_isLooking = false;
        if (m_looksAgain)
            askForNotices();
        learn(name, look);
    });
}

} // namespace orvelle
