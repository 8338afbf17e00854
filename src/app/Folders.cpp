#include "app/Folders.h"

#include "base/Text.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <sys/stat.h>

namespace orvelle {

namespace {

void makePrivateFolder(const QString &path)
{
    if (QFileInfo::exists(path))
        return;
    makePrivateFolder(QFileInfo(path).path());
    ::mkdir(QFile::encodeName(path).constData(), S_IRWXU);
}

} // namespace

Folders Folders::ofUser()
{
    const QString name = QStringLiteral("/orvelle");
    Folders folders;
    folders.config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + name;
    folders.data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + name;
    folders.snapshots = folders.data + QStringLiteral("/snapshots");
    // Qt would make up a runtime folder in the temporary one; a lock there
    // holds for this login only as long as the variable says the same.
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    folders.runtime = runtime.isEmpty() ? folders.config : runtime;
    folders.cache = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + name;
    return folders;
}

void makePrivate(const Folders &folders)
{
    makePrivateFolder(folders.config);
    makePrivateFolder(folders.data);
}

QString installedManual()
{
    const QString program = QCoreApplication::applicationDirPath();
    for (const QString &folder :
         {program + QStringLiteral("/../share/doc/orvelle/"), program + QStringLiteral("/../manual/")}) {
        const QFileInfo page(folder + text("about.manualPage"_text));
        if (page.isFile())
            return page.canonicalFilePath();
    }
    return {};
}

QStringList temporaryFolders()
{
    QStringList folders;
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!runtime.isEmpty())
        folders += runtime;
    folders += QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + QStringLiteral("/orvelle");
    return folders;
}

} // namespace orvelle
