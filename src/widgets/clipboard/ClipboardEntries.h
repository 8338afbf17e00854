#pragma once

#include "widgets/clipboard/ClipboardEntry.h"

#include <QList>
#include <QUrl>

namespace orvelle {

// The entries of each kind of content. All of these may run on any thread, and
// take up to a second for the largest content.

ClipboardEntry rtfdEntry(const QByteArray &bytes);
/// `preview` is the text of the document; `plain` what its owner offers as
/// text, which is restored beside it (the preview where there is none).
ClipboardEntry rtfEntry(const QByteArray &bytes, const QString &preview, const QString &plain);
ClipboardEntry textEntry(const QByteArray &utf8);
ClipboardEntry linkEntry(const QString &address);
ClipboardEntry pdfEntry(const QByteArray &bytes);
/// At least one.
ClipboardEntry filesEntry(const QList<QUrl> &files);
/// Files that cannot be read, and content of no known kind; told apart by the
/// types on offer.
ClipboardEntry unknownFilesEntry(const QStringList &types);
ClipboardEntry otherEntry(const QStringList &types);

/// The files of a list of addresses (RFC 2483) or of copied files; empty
/// unless all of them are local files.
QList<QUrl> fileUrls(const QByteArray &list);
/// The first address of such a list; empty when there is none.
QString firstAddress(const QByteArray &list);
/// The address of a browser's link (UTF-16, address and title on two lines).
QString browserAddress(const QByteArray &bytes);

/// The form by which the history knows what it has put on the pasteboard
/// itself: the entry's id.
QString ownEntryType();

/// The text as one line for a row: the first line with anything on it, its
/// control and direction characters made harmless, cut where no row can show
/// more. Of blanks alone, the blanks as visible marks.
QString rowText(const QString &text);

} // namespace orvelle
