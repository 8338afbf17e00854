#pragma once

#include <QString>

namespace orvelle {

/// Whether `candidate` is a name that a sync client gives to its second copy
/// of the file `name`, when two machines changed that one at once. Known are
/// the forms of Dropbox (English, French and German), Nextcloud and ownCloud
/// (old and new), Syncthing, Seafile, pCloud, Insync, Resilio and the plain
/// "conflict" ones. Clients that append a number or their machine's name alone
/// (OneDrive, Google Drive) cannot be told from other files and are not.
bool isConflictCopy(const QString &candidate, const QString &name);

/// A name of the first kind for a copy of ours.
QString conflictCopyName(const QString &name, const QString &stamp);

} // namespace orvelle
