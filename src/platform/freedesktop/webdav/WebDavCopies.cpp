#include "platform/freedesktop/webdav/WebDavCopies.h"

#include "base/Hash.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSaveFile>
#include <QSysInfo>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr auto magic = "orvelle-webdav-copy 1";
constexpr qint64 longestLine = 2048;
constexpr QFile::Permissions ownerOnly = QFile::ReadOwner | QFile::WriteOwner;
constexpr int accountDigits = 32;

/// One line of each: magic, version, tag, date, length; then the bytes.
std::optional<WebDavCopy> readHead(QFile &file)
{
    if (!file.open(QFile::ReadOnly) || file.readLine(longestLine).trimmed() != magic)
        return std::nullopt;
    WebDavCopy copy;
    copy.version = file.readLine(longestLine).trimmed();
    copy.tag = file.readLine(longestLine).trimmed();
    bool hasDate = false;
    bool hasLength = false;
    copy.modifiedAt.seconds = file.readLine(longestLine).trimmed().toDouble(&hasDate);
    const qint64 length = file.readLine(longestLine).trimmed().toLongLong(&hasLength);
    if (!hasDate || !hasLength || length > CloudContainer::maxFileBytes || length != file.size() - file.pos())
        return std::nullopt;
    return copy;
}

bool replaceFile(const QString &path, const QByteArray &head, const QByteArray &bytes)
{
    QSaveFile file(path);
    return file.open(QFile::WriteOnly) && file.setPermissions(ownerOnly) && file.write(head) == head.size() &&
           file.write(bytes) == bytes.size() && file.commit();
}

} // namespace

WebDavCopies::WebDavCopies(const QString &cacheFolder, const QString &account)
    : m_cacheFolder(cacheFolder), m_folder(cacheFolder + u"/"_s + sha256Hex(account.toUtf8()).first(accountDigits))
{
}

std::optional<WebDavCopy> WebDavCopies::look(const QString &name) const
{
    QFile file(pathOf(name, u".copy"_s));
    return readHead(file);
}

std::optional<WebDavCopy> WebDavCopies::load(const QString &name) const
{
    QFile file(pathOf(name, u".copy"_s));
    auto copy = readHead(file);
    if (!copy)
        return std::nullopt;
    copy->bytes = file.readAll();
    if (sha256Hex(copy->bytes).toLatin1() != copy->version)
        return std::nullopt;
    return copy;
}

bool WebDavCopies::keep(const QString &name, const WebDavCopy &copy) const
{
    if (!makeFolder())
        return false;
    removeOthers();
    const QByteArray head = QByteArray(magic) + '\n' + copy.version + '\n' + copy.tag + '\n' +
                            QByteArray::number(copy.modifiedAt.seconds, 'g', 17) + '\n' +
                            QByteArray::number(copy.bytes.size()) + '\n';
    return replaceFile(pathOf(name, u".copy"_s), head, copy.bytes);
}

bool WebDavCopies::drop(const QString &name) const
{
    return QFile::remove(pathOf(name, u".copy"_s));
}

QByteArray WebDavCopies::lockToken(const QString &name) const
{
    QFile file(pathOf(name, u".lock"_s));
    return file.open(QFile::ReadOnly) ? file.read(longestLine) : QByteArray();
}

void WebDavCopies::keepLockToken(const QString &name, const QByteArray &token) const
{
    if (token.isEmpty())
        QFile::remove(pathOf(name, u".lock"_s));
    else if (makeFolder())
        replaceFile(pathOf(name, u".lock"_s), token, {});
}

QString WebDavCopies::guardPath() const
{
    makeFolder();
    return m_folder + u"/in-use"_s;
}

QString WebDavCopies::machineMark() const
{
    return sha256Hex(QSysInfo::machineUniqueId() + m_folder.toUtf8()).first(8);
}

QString WebDavCopies::pathOf(const QString &name, const QString &suffix) const
{
    return m_folder + u'/' + name + suffix;
}

bool WebDavCopies::makeFolder() const
{
    constexpr QFile::Permissions mine = ownerOnly | QFile::ExeOwner;
    return QDir().mkpath(m_cacheFolder) &&
           (QDir().exists(m_folder) || QDir().mkdir(m_folder, mine) || QDir().exists(m_folder));
}

void WebDavCopies::removeOthers() const
{
    const QString mine = m_folder.section(u'/', -1);
    for (const QString &each : QDir(m_cacheFolder).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        if (each != mine && each.size() == accountDigits && each.contains(QRegularExpression(u"^[0-9a-f]+$"_s)))
            QDir(m_cacheFolder + u'/' + each).removeRecursively();
    }
}

} // namespace orvelle
