#pragma once

#include "links/exchange/ForeignLinks.h"

namespace orvelle {

struct WorkProgress;

// The bookmark files that every browser exports: an HTML page of nested <DL>
// lists whose <H3> name folders and whose <A> are the bookmarks (known as the
// Netscape bookmark file format).

/// Whether these first bytes of a file (some kilobytes) are of a bookmark file.
bool looksLikeBookmarksHtml(const QByteArray &head);

/// Reads such a page, whichever browser wrote it. Folders become groups, those
/// that would hold items past the third level are folded. `ADD_DATE` and
/// `LAST_MODIFIED` become the dates of the items, `now` where they are missing
/// or absurd. Links without a name get one from the address. Descriptions,
/// tags, pictures and separators have no place in the tree. Any thread.
Result<ForeignLinks, ForeignError> readBookmarksHtml(const QByteArray &bytes, Timestamp now,
                                                     WorkProgress *progress = nullptr);

struct WrittenBookmarks {
    QByteArray html; ///< UTF-8
    qint64 links = 0;
    qint64 notesLeftOut = 0;
};

/// The tree as a bookmark file called `title`. Groups are folders, files and
/// folders `file:` addresses, dates whole seconds.
WrittenBookmarks writeBookmarksHtml(const LinkList &links, const QString &title);

} // namespace orvelle
