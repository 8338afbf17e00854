#pragma once

#include <QString>
#include <QStringList>

namespace orvelle {

/// Where this user's files of Orvelle lie (XDG Base Directory Specification).
/// Absolute, without trailing slash; not necessarily existing.
struct Folders {
    QString config;    ///< the settings database
    QString snapshots; ///< dated copies of the tree
    QString data;
    QString runtime; ///< lock files; the config folder where there is no other
    QString cache;   ///< may be emptied at any time

    static Folders ofUser();
};

/// The manual in the application's language that was installed, or built, with
/// this program; empty where there is none.
QString installedManual();

/// Makes the folders of settings and data, with what is missing above them,
/// for this user alone whatever the umask allows. What fails is reported by
/// whoever writes there.
void makePrivate(const Folders &folders);

/// Where private files may lie that need not outlast the session, the preferred
/// first: the runtime folder, if there is one, and the cache.
QStringList temporaryFolders();

} // namespace orvelle
