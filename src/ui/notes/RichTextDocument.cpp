#include "ui/notes/RichTextDocument.h"

#include <QTextDocument>

#include <algorithm>

namespace orvelle {

namespace {

constexpr int kindProperty = QTextFormat::UserProperty + 1;
constexpr int levelProperty = QTextFormat::UserProperty + 2;
constexpr int checkedProperty = QTextFormat::UserProperty + 3;

/// Percent of the font's own.
constexpr double lineHeight = 115;

/// What the toolkit calls a size adjustment: 0 is the document's own size.
constexpr int adjustmentOf(TextSize size)
{
    return static_cast<int>(size) - static_cast<int>(TextSize::Normal);
}

/// The part of the block between the two positions.
RichParagraph paragraphOf(const QTextBlock &block, int from, int to)
{
    RichParagraph result;
    const BlockList list = BlockList::of(block);
    result.setList(list.kind, list.level, list.checked);
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        const QTextFragment fragment = it.fragment();
        const int start = std::max(from - fragment.position(), 0);
        const int end = std::min(to - fragment.position(), fragment.length());
        if (start < end)
            result.append(QStringView(fragment.text()).sliced(start, end - start), styleOf(fragment.charFormat()));
    }
    return result;
}

void insertParagraph(QTextCursor &cursor, const RichParagraph &paragraph)
{
    for (const RichRun &run : paragraph.runs)
        cursor.insertText(run.text, charFormatOf(run.style));
}

QTextBlockFormat formatOf(const RichParagraph &paragraph)
{
    return BlockList{paragraph.list, paragraph.level, paragraph.checked}.format();
}

} // namespace

BlockList BlockList::of(const QTextBlockFormat &format)
{
    const auto kind =
        static_cast<ListKind>(std::clamp(format.intProperty(kindProperty), 0, static_cast<int>(ListKind::Check)));
    if (kind == ListKind::None)
        return {};
    return {kind, format.intProperty(levelProperty), format.boolProperty(checkedProperty)};
}

QTextBlockFormat BlockList::format() const
{
    QTextBlockFormat format;
    format.setLineHeight(lineHeight, QTextBlockFormat::ProportionalHeight);
    if (kind != ListKind::None) {
        format.setProperty(kindProperty, static_cast<int>(kind));
        format.setProperty(levelProperty, level);
        format.setProperty(checkedProperty, checked);
        format.setIndent(level + 1);
    }
    return format;
}

QTextCharFormat charFormatOf(const RichStyle &style)
{
    QTextCharFormat format;
    if (style.bold)
        format.setFontWeight(QFont::Bold);
    if (style.italic)
        format.setFontItalic(true);
    if (style.underline)
        format.setFontUnderline(true);
    if (style.strike)
        format.setFontStrikeOut(true);
    if (style.size != TextSize::Normal)
        format.setProperty(QTextFormat::FontSizeAdjustment, adjustmentOf(style.size));
    if (!style.link.isEmpty()) {
        format.setAnchor(true);
        format.setAnchorHref(style.link);
    }
    return format;
}

RichStyle styleOf(const QTextCharFormat &format)
{
    RichStyle style;
    style.bold = format.fontWeight() >= QFont::DemiBold;
    style.italic = format.fontItalic();
    style.underline = format.fontUnderline();
    style.strike = format.fontStrikeOut();
    const int size = static_cast<int>(TextSize::Normal) + format.intProperty(QTextFormat::FontSizeAdjustment);
    style.size =
        static_cast<TextSize>(std::clamp(size, static_cast<int>(TextSize::Small), static_cast<int>(TextSize::Huge)));
    style.link = format.isAnchor() ? format.anchorHref() : QString();
    return style;
}

RichText richTextOf(const QTextDocument &document)
{
    RichText result;
    result.paragraphs.clear();
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
        result.paragraphs += paragraphOf(block, 0, document.characterCount());
    return result;
}

RichText richTextOf(const QTextCursor &selection)
{
    RichText result;
    result.paragraphs.clear();
    const QTextDocument *document = selection.document();
    const QTextBlock last = document->findBlock(selection.selectionEnd());
    for (QTextBlock block = document->findBlock(selection.selectionStart()); block.isValid(); block = block.next()) {
        result.paragraphs += paragraphOf(block, selection.selectionStart(), selection.selectionEnd());
        if (block == last)
            break;
    }
    // A few words out of a list item are words, not an item.
    if (result.paragraphs.size() == 1)
        result.paragraphs.front().setList(ListKind::None, 0, false);
    return result;
}

void setRichText(QTextDocument &document, const RichText &text)
{
    document.setUndoRedoEnabled(false);
    document.clear();
    QTextCursor cursor(&document);
    cursor.setBlockFormat(BlockList().format());
    insertRichText(cursor, text);
    document.setUndoRedoEnabled(true);
    document.setModified(false);
}

void insertRichText(QTextCursor &cursor, const RichText &text)
{
    cursor.beginEditBlock();
    cursor.removeSelectedText();
    for (qsizetype i = 0; i < text.paragraphs.size(); ++i) {
        const RichParagraph &paragraph = text.paragraphs[i];
        if (i > 0)
            cursor.insertBlock(formatOf(paragraph), QTextCharFormat());
        else if (paragraph.list != ListKind::None && cursor.block().length() == 1)
            cursor.setBlockFormat(formatOf(paragraph));
        insertParagraph(cursor, paragraph);
    }
    cursor.endEditBlock();
}

} // namespace orvelle
