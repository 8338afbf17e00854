#include "app/Folders.h"

#include <QStandardPaths>

namespace orvelle {

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
    return folders;
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
