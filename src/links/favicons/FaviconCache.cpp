#include "links/favicons/FaviconCache.h"

#include "base/Uuid.h"
#include "links/favicons/FaviconImage.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QLoggingCategory>
#include <QTemporaryFile>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

Q_LOGGING_CATEGORY(lcFaviconCache, "FaviconCache", QtInfoMsg)

constexpr auto suffix = ".png"_L1;
constexpr QFile::Permissions userOnly = QFile::ReadOwner | QFile::WriteOwner;

bool prepareFolder(const QString &folder)
{
    return QDir().mkpath(folder) && QFile::setPermissions(folder, userOnly | QFile::ExeOwner);
}

/// The id in the name of a picture's file.
std::optional<QUuid> idOf(const QString &fileName)
{
    if (!fileName.endsWith(suffix))
        return std::nullopt;
    const QString name = fileName.chopped(suffix.size());
    const auto id = parseUuid(QStringView(name));
    return id && uuidText(*id) == name ? id : std::nullopt;
}

} // namespace

QString FaviconCache::faviconFilePath(const QUuid &id) const
{
    return m_folder + u'/' + uuidText(id) + suffix;
}

std::optional<QByteArray> FaviconCache::loadFaviconFromDisk(const QUuid &id) const
{
    const QFileInfo info(faviconFilePath(id));
    // A pipe in its place would keep us waiting for ever.
    if (!info.isFile() || info.isSymLink() || info.size() == 0 || info.size() > faviconMaxSize)
        return std::nullopt;
    QFile file(info.filePath());
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QByteArray bytes = file.read(faviconMaxSize);
    // Zeros are what a power failure leaves of a file that was just written.
    return bytes.isEmpty() || bytes.startsWith(QByteArray(4, '\0')) ? std::nullopt : std::optional(std::move(bytes));
}

// Not waited for until it is on the disk: that takes milliseconds, and after a
// power failure the picture is fetched again.
bool FaviconCache::writeFaviconToDisk(const QByteArray &bytes, const QUuid &id) const
{
    if (!prepareFolder(m_folder)) {
        qCWarning(lcFaviconCache, "The folder for pictures cannot be made");
        return false;
    }
    // Readable by the user only, from the start.
    QTemporaryFile file(m_folder + "/XXXXXX.part"_L1);
    bool written = file.open() && file.write(bytes) == bytes.size() && file.flush();
    if (written) {
        const QByteArray from = QFile::encodeName(file.fileName());
        written = std::rename(from.constData(), QFile::encodeName(faviconFilePath(id)).constData()) == 0;
        file.setAutoRemove(!written);
    }
    if (!written)
        qCWarning(lcFaviconCache).noquote() << "A picture could not be kept:" << file.errorString();
    return written;
}

void FaviconCache::deleteFaviconFromDisk(const QUuid &id) const
{
    QFile::remove(faviconFilePath(id));
}

void FaviconCache::loadAll(const QSet<QUuid> &ids, qsizetype batch,
                           const std::function<void(const Pictures &)> &part) const
{
    Pictures pictures;
    QSet<QByteArray> seen;
    QDirIterator files(m_folder, QDir::Files);
    while (files.hasNext()) {
        files.next();
        const auto id = idOf(files.fileName());
        const auto bytes = id && ids.contains(*id) ? loadFaviconFromDisk(*id) : std::nullopt;
        if (!bytes)
            continue;
        pictures.insert(*id, *seen.insert(*bytes));
        if (pictures.size() >= batch)
            part(std::exchange(pictures, {}));
    }
    if (!pictures.isEmpty())
        part(pictures);
}

int FaviconCache::removeAllBut(const QSet<QUuid> &ids) const
{
    int removed = 0;
    QDirIterator files(m_folder, QDir::Files | QDir::Hidden | QDir::System);
    while (files.hasNext()) {
        const QString path = files.next();
        const auto id = idOf(files.fileName());
        if ((!id || !ids.contains(*id)) && QFile::remove(path))
            ++removed;
    }
    if (removed > 0)
        qCInfo(lcFaviconCache, "%d pictures of links that are gone were removed", removed);
    return removed;
}

} // namespace orvelle
