#pragma once

#include "links/richtext/RichText.h"

#include <QTextBlock>
#include <QTextCursor>

class QTextDocument;

namespace orvelle {

/// List items are blocks with properties of our own and not the toolkit's
/// lists: those number, draw and undo check lists in ways of their own.
struct BlockList {
    ListKind kind = ListKind::None;
    int level = 0;
    bool checked = false;

    static BlockList of(const QTextBlockFormat &format);
    static BlockList of(const QTextBlock &block) { return of(block.blockFormat()); }
    /// A block format that says so, with the line height of notes.
    QTextBlockFormat format() const;

    friend bool operator==(const BlockList &, const BlockList &) = default;
};

QTextCharFormat charFormatOf(const RichStyle &style);
RichStyle styleOf(const QTextCharFormat &format);

/// The document's text, or the selection's where there is one.
RichText richTextOf(const QTextDocument &document);
RichText richTextOf(const QTextCursor &selection);

/// Fills the document. What was there, and its undo steps, are gone.
void setRichText(QTextDocument &document, const RichText &text);
/// Puts the text in place of the cursor's selection, as one undo step. The
/// first paragraph goes on with the one at the cursor, and becomes a list item
/// only where that one is empty.
void insertRichText(QTextCursor &cursor, const RichText &text);

} // namespace orvelle
