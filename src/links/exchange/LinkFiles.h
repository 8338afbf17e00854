#pragma once

#include "links/exchange/ForeignLinks.h"

#include <QStringList>

namespace orvelle {

struct WorkProgress;

// Files that each hold one link: `.desktop` files of the type Link (Desktop
// Entry Specification 1.5), `.url` files (INI, section InternetShortcut) and
// `.webloc` files (a property list, as XML or binary, with the key URL).

/// A link file is some hundred bytes; a larger one is none.
constexpr qint64 maxLinkFileBytes = 64 * 1024;

/// Whether the name ends like that of a link file, in any case.
bool isLinkFileName(const QString &path);

/// What a link file holds. Address and name are as they stand there; the name
/// may be empty, then the file's is meant.
struct LinkFileContent {
    QString address;
    QString name;
};
/// `suffix` is "desktop", "url" or "webloc". Absent when the content is none of
/// that kind, or of a program and not a link.
std::optional<LinkFileContent> parseLinkFile(const QByteArray &bytes, const QString &suffix);

/// The link files at `paths`, files or folders. A folder among them is read
/// with the folders in it, which become groups as far as the tree has levels
/// and anything is in them; symbolic links to folders are not followed. Names
/// decide the order. Any thread.
Result<ForeignLinks, ForeignError> readLinkFiles(const QStringList &paths, Timestamp now,
                                                 WorkProgress *progress = nullptr);
/// The same with what is in the folder `path`.
Result<ForeignLinks, ForeignError> readLinkFolder(const QString &path, Timestamp now, WorkProgress *progress = nullptr);

} // namespace orvelle
