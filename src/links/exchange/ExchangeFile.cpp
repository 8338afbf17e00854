#include "links/exchange/ExchangeFile.h"

#include "base/JsonReader.h"
#include "base/Text.h"
#include "links/exchange/LinkExchange.h"

#include <QFileInfo>
#include <QSaveFile>

#include <fcntl.h>
#include <unistd.h>

namespace orvelle {

namespace {

FileError tooLarge()
{
    return {importErrorText({ImportError::Kind::TooLarge, {}})};
}

/// The renaming itself survives a power cut only then. Some file systems
/// cannot do it; the file is whole either way.
void syncFolderOf(const QString &path)
{
    const QByteArray folder = QFile::encodeName(QFileInfo(path).absolutePath());
    const int fd = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return;
    ::fsync(fd);
    ::close(fd);
}

} // namespace

Result<QByteArray, FileError> readExchangeFile(const QString &path)
{
    const QFileInfo info(path);
    if (info.exists() && !info.isFile())
        return FileError{text("error.importNotAFile"_text)};
    if (info.size() > maxExchangeBytes)
        return tooLarge();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return FileError{file.errorString()};
    // With the room that lets the text be parsed where it is.
    QByteArray bytes;
    bytes.reserve(info.size() + JsonDocument::padding);
    while (bytes.size() <= maxExchangeBytes) {
        const QByteArray more = file.read(qint64(1) << 20);
        if (more.isEmpty())
            break;
        bytes += more;
    }
    if (file.error() != QFileDevice::NoError)
        return FileError{file.errorString()};
    if (bytes.size() > maxExchangeBytes)
        return tooLarge();
    return bytes;
}

std::optional<FileError> writePrivateFile(const QString &path, const QByteArray &bytes)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return FileError{file.errorString()};
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    file.write(bytes);
    if (!file.commit())
        return FileError{file.errorString()};
    syncFolderOf(path);
    return std::nullopt;
}

} // namespace orvelle
