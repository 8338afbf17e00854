#pragma once

#include <QStringView>

namespace orvelle {

/// Whether opening an address of this scheme (any case, without the colon)
/// would run what the address contains or names: a script in a browser
/// ("javascript", "data", ...) or an entry of the desktop's own lists of
/// programs ("applications", "programs", ...). Any thread.
bool isCodeScheme(QStringView scheme);

/// Whether addresses of this scheme cannot lead to a file of this machine or
/// of a share: those of the web, of mail and of telephones. Any thread.
bool isRemoteScheme(QStringView scheme);

/// Whether file managers show files under addresses of this scheme that are,
/// or may be, on this machine: "trash", "recent", "admin", archives, ... Any
/// thread.
bool isFileViewScheme(QStringView scheme);

} // namespace orvelle
