#include "links/SnapshotStore.h"

#include "links/LinkLog.h"
#include "links/LinkTree.h"
#include "platform/Clock.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryFile>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

// 00000012_20261121T081502123Z_remove_340.json.zst, and for a change of another
// machine _340_ and its name in base64url.
constexpr auto timeFormat = "yyyyMMdd'T'HHmmsszzz'Z'";
constexpr auto suffix = ".json.zst"_L1;
constexpr auto temporarySuffix = ".part"_L1;

SnapshotError systemError(const QString &what)
{
    return {what + u": "_s + QString::fromLocal8Bit(std::strerror(errno))};
}

int sequenceNumber(const QString &name)
{
    return QStringView(name).left(8).toInt();
}

constexpr auto base64Form = QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals;

QString encodedMachine(const QString &machine)
{
    if (machine.isEmpty())
        return {};
    // A file name has 255 bytes at most.
    constexpr int maxCharacters = 30;
    return u'_' + QString::fromLatin1(machine.left(maxCharacters).toUtf8().toBase64(base64Form));
}

QString snapshotName(int number, const SnapshotInfo &info)
{
    return u"%1_%2_%3_%4"_s.arg(number, 8, 10, QLatin1Char('0'))
               .arg(info.takenAt.toDateTime().toString(QLatin1StringView(timeFormat)), info.reason)
               .arg(info.itemCount) +
           encodedMachine(info.machine) + suffix;
}

std::optional<SnapshotError> writeAll(QFile &file, const QByteArray &bytes)
{
    if (file.write(bytes) != bytes.size() || !file.flush())
        return SnapshotError{file.errorString()};
    if (::fsync(file.handle()) != 0)
        return systemError(file.fileName());
    return std::nullopt;
}

std::optional<SnapshotError> syncFolder(const QString &folder)
{
    const int fd = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return systemError(folder);
    std::optional<SnapshotError> error;
    // Some file systems of networks and virtual machines cannot do it; nothing
    // could be removed there if that were a failure.
    if (::fsync(fd) != 0 && errno != EINVAL && errno != ENOTSUP && errno != ENOSYS)
        error = systemError(folder);
    ::close(fd);
    return error;
}

std::optional<SnapshotError> prepareFolder(const QString &folder)
{
    if (!QDir().mkpath(folder))
        return systemError(folder);
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return std::nullopt;
}

/// The names of the snapshots in a folder, newest first. Empty files are names
/// reserved by a process that is still writing, or was killed.
QStringList snapshotNames(const QString &folder)
{
    QStringList names;
    const auto files = QDir(folder).entryInfoList({u'*' + suffix}, QDir::Files, QDir::Name | QDir::Reversed);
    for (const QFileInfo &file : files) {
        if (file.size() > 0 && snapshotInfo(file.fileName()))
            names += file.fileName();
    }
    return names;
}

/// Makes the next free name ours by an empty file, which the content then
/// replaces; so two processes never write the same snapshot.
Result<QString, SnapshotError> reserveName(const QString &folder, int number, const SnapshotInfo &info)
{
    for (;; ++number) {
        const QString name = snapshotName(number, info);
        const int fd =
            ::open(QFile::encodeName(folder + u'/' + name).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (fd >= 0) {
            ::close(fd);
            return name;
        }
        if (errno != EEXIST)
            return systemError(folder);
    }
}

/// What of a reason a name can hold.
QString lettersOf(const QString &reason)
{
    QString letters;
    for (const QChar c : reason.left(20)) {
        if (c >= u'a' && c <= u'z')
            letters += c;
    }
    return letters.isEmpty() ? u"other"_s : letters;
}

} // namespace

std::optional<SnapshotInfo> snapshotInfo(const QString &name)
{
    static const QRegularExpression pattern(
        u"\\A[0-9]{8}_([0-9]{8}T[0-9]{9}Z)_([a-z]{1,20})_([0-9]{1,9})(?:_([A-Za-z0-9_-]{1,160}))?"
        u"\\.json\\.zst\\z"_s);
    const auto match = pattern.match(name);
    if (!match.hasMatch())
        return std::nullopt;
    QDateTime time = QDateTime::fromString(match.captured(1), QLatin1StringView(timeFormat));
    if (!time.isValid())
        return std::nullopt;
    time.setTimeSpec(Qt::UTC);
    const QByteArray machine = QByteArray::fromBase64(match.captured(4).toLatin1(), base64Form);
    return SnapshotInfo{name, Timestamp::fromDateTime(time), match.captured(2), match.captured(3).toLongLong(),
                        QString::fromUtf8(machine)};
}

SnapshotStore::SnapshotStore(const QString &folder, Clock &clock) : m_folder(folder), m_clock(clock) {}

QString SnapshotStore::folderOf(bool debugMode) const
{
    return debugMode ? m_folder + u"/debug"_s : m_folder;
}

Result<QString, SnapshotError> SnapshotStore::take(const LinkList &links, const QString &reason, bool debugMode)
{
    const auto packed = packSnapshot(links);
    if (!packed)
        return packed.error();
    return takePacked(*packed, countAll(links), reason, {}, debugMode);
}

Result<QString, SnapshotError> SnapshotStore::takePacked(const QByteArray &packed, qint64 itemCount,
                                                         const QString &reason, const QString &machine, bool debugMode)
{
    const QString folder = folderOf(debugMode);
    if (auto error = prepareFolder(folder))
        return *error;
    QTemporaryFile file(folder + u"/XXXXXX"_s + temporarySuffix);
    if (!file.open())
        return SnapshotError{folder + u": "_s + file.errorString()};
    if (auto error = writeAll(file, packed))
        return *error;

    const QStringList names = snapshotNames(folder);
    const int last = names.isEmpty() ? 0 : sequenceNumber(names.first());
    const auto name = reserveName(folder, last + 1, {{}, m_clock.now(), lettersOf(reason), itemCount, machine});
    if (!name)
        return name.error();
    const QString path = folder + u'/' + *name;
    if (::rename(QFile::encodeName(file.fileName()).constData(), QFile::encodeName(path).constData()) != 0) {
        const SnapshotError error = systemError(folder);
        QFile::remove(path);
        return error;
    }
    file.setAutoRemove(false);
    if (auto error = syncFolder(folder))
        return *error;
    prune(debugMode);
    return *name;
}

QList<SnapshotInfo> SnapshotStore::list(bool debugMode) const
{
    QList<SnapshotInfo> result;
    const QStringList names = snapshotNames(folderOf(debugMode));
    for (const QString &name : names)
        result += *snapshotInfo(name);
    return result;
}

Result<LinkList, SnapshotError> SnapshotStore::load(const QString &name, bool debugMode) const
{
    if (!snapshotInfo(name))
        return SnapshotError{u"not the name of a snapshot"_s};
    QFile file(folderOf(debugMode) + u'/' + name);
    if (!file.open(QFile::ReadOnly))
        return SnapshotError{file.errorString()};
    if (file.size() > maxUnpackedBytes)
        return SnapshotError{u"too large"_s};
    return unpackSnapshot(file.readAll());
}

void SnapshotStore::prune(bool debugMode)
{
    const QDir folder(folderOf(debugMode));
    const QList<SnapshotInfo> all = list(debugMode);
    QSet<QDate> daysSeen;
    for (qsizetype i = newestKept; i < all.size(); ++i) {
        const QDate day = all[i].takenAt.toDateTime().date();
        const bool recent = m_clock.now() - all[i].takenAt <= daysKept * 86400.0;
        const bool lastOfItsDay = !daysSeen.contains(day);
        daysSeen += day;
        if (!(recent && lastOfItsDay) && !QFile::remove(folder.filePath(all[i].name)))
            qCWarning(lcLinkStore).noquote() << "Could not remove the old snapshot" << all[i].name;
    }
    // What a process that was killed left behind: half a copy, a reserved name.
    const QDateTime yesterday = m_clock.now().toDateTime().addDays(-1);
    for (const QFileInfo &file : folder.entryInfoList({u'*' + temporarySuffix, u'*' + suffix}, QDir::Files)) {
        const bool isLeftover = file.size() == 0 || file.fileName().endsWith(temporarySuffix);
        if (isLeftover && file.lastModified() < yesterday)
            QFile::remove(file.filePath());
    }
}

} // namespace orvelle
