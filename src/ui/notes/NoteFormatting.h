#pragma once

#include "ui/notes/RichTextDocument.h"

#include <QTextCursor>

#include <functional>

namespace orvelle {

/// What the editor's commands do to the text. Each is one undo step.

/// Changes the style of every character of the selection.
void restyle(const QTextCursor &selection, const std::function<void(RichStyle &)> &change);

/// Makes the paragraphs of the selection items of such a list, or plain ones
/// when all of them are already.
void toggleList(const QTextCursor &cursor, ListKind kind);
/// Moves list items in or out by a level; out of the outermost makes them
/// plain paragraphs. False when the cursor's paragraph is no list item.
bool changeLevel(const QTextCursor &cursor, int by);
/// Ticks the check-list items, or unticks them when all are. False when there
/// are none.
bool toggleChecked(const QTextCursor &cursor);
/// Ends the paragraph at the cursor. An empty list item moves out instead.
void insertParagraphBreak(QTextCursor cursor);

/// The link around the cursor, or of its selection; empty for none.
QString linkAt(const QTextCursor &cursor);
/// Links the selection, else the link around the cursor, else the word there;
/// where there is nothing, the address itself is inserted. An empty address
/// removes the link.
void setLink(QTextCursor cursor, const QString &address);

/// Links the address that ends at the cursor, if one does.
void linkWordBefore(const QTextCursor &cursor);
/// Makes a list of a line that consists of what lists begin with ("- ", "1. ",
/// "[] ", "[x] "). True when it did.
bool beginListAsTyped(const QTextCursor &cursor);

} // namespace orvelle
