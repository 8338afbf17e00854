#include "widgets/clipboard/ClipboardCache.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>
#include <QUuid>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr auto onlyOwner = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

QString folderIn(const QString &parent)
{
    return parent + u"/orvelle-clipboard"_s;
}

/// Where somebody has put a link in its place, the link alone goes.
void removeFolder(const QString &path)
{
    if (QFileInfo(path).isSymLink())
        QFile::remove(path);
    else
        QDir(path).removeRecursively();
}

bool makeFolder(const QString &path)
{
    return QDir().mkpath(path) && QFile::setPermissions(path, onlyOwner | QFileDevice::ExeOwner);
}

QString chosenParent(const QStringList &parents)
{
    for (const QString &parent : parents) {
        const QStorageInfo storage(parent);
        if (storage.isValid() && !storage.isReadOnly() && storage.bytesAvailable() >= ClipboardCache::wantedRoom)
            return parent;
    }
    return parents.constLast();
}

} // namespace

ClipboardCache::ClipboardCache(const QStringList &parents)
{
    // An earlier run may have chosen otherwise, and been killed.
    for (const QString &parent : parents)
        removeFolder(folderIn(parent));
    m_directory = folderIn(chosenParent(parents));
}

ClipboardCache::~ClipboardCache()
{
    removeFolder(m_directory);
}

void ClipboardCache::reset()
{
    removeFolder(m_directory);
    makeFolder(m_directory);
}

Result<QString, CacheError> ClipboardCache::write(const QByteArray &bytes, const QString &extension) const
{
    if (!makeFolder(m_directory))
        return CacheError{u"The folder cannot be made"_s};
    const QString path =
        m_directory + u'/' + QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper() + u'.' + extension;
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::NewOnly) && file.setPermissions(onlyOwner) &&
        file.write(bytes) == bytes.size() && file.flush())
        return path;
    const QString reason = file.errorString();
    file.close();
    QFile::remove(path);
    return CacheError{reason};
}

} // namespace orvelle
