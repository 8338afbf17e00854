#include "ui/notes/NoteFormatting.h"

#include "links/richtext/RichTextLinks.h"

#include <QTextDocument>

#include <algorithm>
#include <utility>

namespace orvelle {

namespace {

QList<QTextBlock> selectedBlocks(const QTextCursor &cursor)
{
    QList<QTextBlock> blocks;
    const QTextBlock last = cursor.document()->findBlock(cursor.selectionEnd());
    for (QTextBlock block = cursor.document()->findBlock(cursor.selectionStart()); block.isValid();
         block = block.next()) {
        blocks += block;
        if (block == last)
            break;
    }
    return blocks;
}

/// Changes what the blocks are in a list, as one undo step.
void changeLists(const QTextCursor &cursor, const std::function<void(BlockList &)> &change)
{
    QTextCursor step(cursor);
    step.beginEditBlock();
    for (const QTextBlock &block : selectedBlocks(cursor)) {
        const BlockList before = BlockList::of(block);
        BlockList after = before;
        change(after);
        if (after != before)
            QTextCursor(block).setBlockFormat(after.format());
    }
    step.endEditBlock();
}

bool allBlocks(const QTextCursor &cursor, bool (*holds)(const BlockList &, ListKind), ListKind kind = ListKind::None)
{
    const QList<QTextBlock> blocks = selectedBlocks(cursor);
    return std::ranges::all_of(blocks, [&](const QTextBlock &b) { return holds(BlockList::of(b), kind); });
}

template<typename Accepts>
void selectAround(QTextCursor &cursor, Accepts accepts)
{
    const int base = cursor.block().position();
    const int length = cursor.block().length() - 1;
    int start = cursor.positionInBlock();
    int end = start;
    while (start > 0 && accepts(base + start - 1))
        --start;
    while (end < length && accepts(base + end))
        ++end;
    cursor.setPosition(base + start);
    cursor.setPosition(base + end, QTextCursor::KeepAnchor);
}

/// The link of the character that begins at the position.
QString linkOfCharacter(QTextCursor cursor, int position)
{
    cursor.setPosition(position + 1);
    return styleOf(cursor.charFormat()).link;
}

void selectLinkOrWord(QTextCursor &cursor)
{
    if (const QString link = linkAt(cursor); !link.isEmpty()) {
        selectAround(cursor, [&](int at) { return linkOfCharacter(cursor, at) == link; });
        return;
    }
    const QTextDocument *document = cursor.document();
    selectAround(cursor, [document](int at) { return !document->characterAt(at).isSpace(); });
}

} // namespace

void restyle(const QTextCursor &selection, const std::function<void(RichStyle &)> &change)
{
    struct Piece {
        int start;
        int end;
        RichStyle style;
    };
    QList<Piece> pieces;
    for (const QTextBlock &block : selectedBlocks(selection)) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            const int start = std::max(fragment.position(), selection.selectionStart());
            const int end = std::min(fragment.position() + fragment.length(), selection.selectionEnd());
            if (start < end)
                pieces.append({start, end, styleOf(fragment.charFormat())});
        }
    }
    QTextCursor cursor(selection.document());
    cursor.beginEditBlock();
    for (Piece &piece : pieces) {
        change(piece.style);
        cursor.setPosition(piece.start);
        cursor.setPosition(piece.end, QTextCursor::KeepAnchor);
        cursor.setCharFormat(charFormatOf(piece.style));
    }
    cursor.endEditBlock();
}

void toggleList(const QTextCursor &cursor, ListKind kind)
{
    const bool already = allBlocks(
        cursor, [](const BlockList &list, ListKind k) { return list.kind == k; }, kind);
    changeLists(cursor, [already, kind](BlockList &list) {
        const int level = list.level;
        list = {};
        if (!already)
            list = {kind, level, false};
    });
}

bool changeLevel(const QTextCursor &cursor, int by)
{
    if (BlockList::of(cursor.block()).kind == ListKind::None)
        return false;
    changeLists(cursor, [by](BlockList &list) {
        if (list.kind == ListKind::None)
            return;
        if (list.level + by < 0)
            list = {};
        else
            list.level = std::min(list.level + by, RichParagraph::maxLevel);
    });
    return true;
}

bool toggleChecked(const QTextCursor &cursor)
{
    const auto isOther = [](const BlockList &list, ListKind) { return list.kind != ListKind::Check; };
    const auto isDone = [](const BlockList &list, ListKind) { return list.kind != ListKind::Check || list.checked; };
    if (allBlocks(cursor, isOther))
        return false;
    const bool done = allBlocks(cursor, isDone);
    changeLists(cursor, [done](BlockList &list) { list.checked = list.kind == ListKind::Check && !done; });
    return true;
}

void insertParagraphBreak(QTextCursor cursor)
{
    if (!cursor.hasSelection() && cursor.block().length() == 1 && changeLevel(cursor, -1))
        return;
    cursor.beginEditBlock();
    cursor.removeSelectedText();
    BlockList list = BlockList::of(cursor.block());
    if (cursor.atBlockStart() && cursor.block().length() > 1) {
        // The item moves down with its tick; a new one comes before it.
        cursor.insertBlock(list.format(), cursor.charFormat());
        list.checked = false;
        QTextCursor(cursor.block().previous()).setBlockFormat(list.format());
    } else {
        list.checked = false;
        RichStyle style = styleOf(cursor.charFormat());
        style.link.clear();
        cursor.insertBlock(list.format(), charFormatOf(style));
    }
    cursor.endEditBlock();
}

QString linkAt(const QTextCursor &cursor)
{
    if (cursor.hasSelection())
        return linkOfCharacter(cursor, cursor.selectionStart());
    const QString before = cursor.atBlockStart() ? QString() : styleOf(cursor.charFormat()).link;
    return before.isEmpty() && !cursor.atBlockEnd() ? linkOfCharacter(cursor, cursor.position()) : before;
}

void setLink(QTextCursor cursor, const QString &address)
{
    if (!cursor.hasSelection())
        selectLinkOrWord(cursor);
    if (!cursor.hasSelection() && !address.isEmpty()) {
        RichStyle style = styleOf(cursor.charFormat());
        style.link = address;
        style.underline = false;
        cursor.insertText(address, charFormatOf(style));
        return;
    }
    restyle(cursor, [&address](RichStyle &style) {
        style.link = address;
        style.underline = style.underline && address.isEmpty();
    });
}

void linkWordBefore(const QTextCursor &cursor)
{
    if (cursor.hasSelection() || !linkAt(cursor).isEmpty())
        return;
    const QString line = cursor.block().text().left(cursor.positionInBlock());
    const auto blank = std::find_if(line.rbegin(), line.rend(), [](QChar c) { return c.isSpace(); });
    QString word = line.last(std::distance(line.rbegin(), blank));
    while (!word.isEmpty() && QStringView(u".,;:!?)'\"").contains(word.back()))
        word.chop(1);
    const auto link = linkInText(word);
    if (!link)
        return;
    QTextCursor selection(cursor);
    const int start = cursor.block().position() + static_cast<int>(std::distance(blank, line.rend()));
    selection.setPosition(start);
    selection.setPosition(start + static_cast<int>(word.size()), QTextCursor::KeepAnchor);
    setLink(selection, link->toString(QUrl::FullyEncoded));
}

bool beginListAsTyped(const QTextCursor &cursor)
{
    static const std::pair<QLatin1StringView, BlockList> beginnings[] = {
        {QLatin1StringView("- "), {ListKind::Bullet, 0, false}},
        {QLatin1StringView("* "), {ListKind::Bullet, 0, false}},
        {QLatin1StringView("1. "), {ListKind::Numbered, 0, false}},
        {QLatin1StringView("[] "), {ListKind::Check, 0, false}},
        {QLatin1StringView("[ ] "), {ListKind::Check, 0, false}},
        {QLatin1StringView("[x] "), {ListKind::Check, 0, true}},
    };
    const QString line = cursor.block().text().left(cursor.positionInBlock());
    const auto *found = std::ranges::find_if(beginnings, [&line](const auto &entry) { return line == entry.first; });
    if (found == std::end(beginnings) || BlockList::of(cursor.block()).kind != ListKind::None)
        return false;
    QTextCursor step(cursor);
    step.beginEditBlock();
    step.movePosition(QTextCursor::StartOfBlock, QTextCursor::KeepAnchor);
    step.removeSelectedText();
    step.setBlockFormat(found->second.format());
    step.endEditBlock();
    return true;
}

} // namespace orvelle
