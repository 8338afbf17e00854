#pragma once

#include "base/Result.h"
#include "base/Timestamp.h"
#include "links/LinkItem.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace orvelle {

class FileBookmarks;

// What links of other programs have in common, whatever they are written in.

/// Why nothing could be taken over. Nothing has changed.
struct ForeignError {
    enum class Kind {
        Unreadable, ///< `detail` says why, in the system's words
        NotAFile,   ///< a folder, a pipe or a device
        NotAFolder,
        NotBookmarks, ///< a file, but not of this kind
        NoLinks,      ///< of this kind, but nothing in it can be taken over
        TooLarge,
        TooManyItems,
        TooDeep, ///< nested so that reading it would take for ever
        Cancelled,
    };
    Kind kind = Kind::Unreadable;
    QString detail;
};

/// One sentence for the user.
QString foreignErrorText(const ForeignError &error);

constexpr qint64 maxForeignBytes = qint64(64) << 20;
constexpr qint64 maxForeignItems = 200'000;

/// The levels of a tree: items stand in at most two groups.
constexpr int foreignLevels = 3;

/// A tree read from elsewhere, and what was not taken over as it stood.
struct ForeignLinks {
    LinkList items; ///< at most foreignLevels levels
    qint64 links = 0;
    qint64 foldedFolders = 0; ///< their members went to the folder around them
    qint64 leftOut = 0;       ///< addresses that cannot be opened, or should not be
    qint64 unreadable = 0;    ///< link files and folders that could not be read
    qint64 otherFiles = 0;    ///< files that are no link files
};

/// The address as Orvelle keeps it: without the white space and control
/// characters that browsers overlook too (URL Standard, "basic URL parser").
/// Absent for what runs code when it is opened (javascript:, data:, vbscript:)
/// and for what only the browser itself understands (place:, about:, ...).
std::optional<QString> usableAddress(const QString &address);

/// A name on one line: runs of white space as one blank, no control characters.
QString foreignName(const QString &name);

/// A link to `address`, which is a usableAddress(). A `file:` address becomes
/// a file, or a folder when it ends in a slash. An empty name is made from the
/// address.
LinkItem foreignLink(const QString &name, const QString &address, Timestamp now);

/// The reverse for files and folders: "file:///..." with a slash behind a
/// folder; other addresses as they are.
QString addressOf(const LinkItem &item);

/// A group; an empty name is replaced by a text that says so.
LinkItem foreignGroup(const QString &name, Timestamp now);

/// The items as they are added to the end of the top level: a single one as it
/// is; several in one group named `title`. Where that group would cost folders
/// of the third level, the folders stand by themselves and only the loose
/// links are put into it.
LinkList arranged(const ForeignLinks &foreign, const QString &title, Timestamp now);

/// Marks what is a folder on this disk as one, and makes the bookmarks of
/// files and folders. Touches the disk; any thread.
void settleOnDisk(LinkList &items, const FileBookmarks &bookmarks);

/// The content of a plain file of at most `maxBytes`. Never waits for a pipe.
Result<QByteArray, ForeignError> readPlainFile(const QString &path, qint64 maxBytes);

/// The first bytes of a plain file; nothing for anything else.
QByteArray headOfPlainFile(const QString &path, qint64 bytes);

/// Text of unknown encoding: a byte order mark decides, then whether the bytes
/// are UTF-8, then `declared`, then windows-1252.
QString decodedText(const QByteArray &bytes, const QByteArray &declared = {});

} // namespace orvelle
