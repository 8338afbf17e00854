#pragma once

#include <QString>

namespace orvelle {

/// Where this user's files of Orvelle lie (XDG Base Directory Specification).
/// Absolute, without trailing slash; not necessarily existing.
struct Folders {
    QString config;    ///< the settings database
    QString snapshots; ///< dated copies of the tree
    QString data;
    QString runtime; ///< lock files; the config folder where there is no other

    static Folders ofUser();
};

} // namespace orvelle
