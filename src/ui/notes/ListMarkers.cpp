#include "ui/notes/ListMarkers.h"

#include "ui/notes/RichTextDocument.h"

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QPainterPath>
#include <QTextDocument>
#include <QTextLayout>
#include <QWidget>

namespace orvelle {

namespace {

/// Where the block's list begins: numbers are counted from there.
QTextBlock beginOfLists(QTextBlock block)
{
    while (block.isValid() && BlockList::of(block).kind != ListKind::None)
        block = block.previous();
    return block.isValid() ? block.next() : QTextBlock();
}

void paintBullet(QPainter &painter, const QRectF &rect, int level, qreal size)
{
    QRectF dot(0, 0, size, size);
    dot.moveCenter(rect.center());
    painter.setBrush(level % 3 == 1 ? Qt::NoBrush : QBrush(painter.pen().color()));
    if (level % 3 == 2)
        painter.drawRect(dot);
    else
        painter.drawEllipse(dot);
}

void paintBox(QPainter &painter, const QRectF &rect, bool checked, qreal size, const QPalette &palette)
{
    QRectF box(0, 0, size, size);
    box.moveCenter(rect.center());
    const QColor accent = palette.color(QPalette::Highlight);
    painter.setPen(QPen(checked ? accent : painter.pen().color(), 1.3));
    painter.setBrush(checked ? QBrush(accent) : Qt::NoBrush);
    painter.drawRoundedRect(box, size / 5, size / 5);
    if (!checked)
        return;
    QPainterPath tick(box.topLeft() + QPointF(0.22, 0.52) * size);
    tick.lineTo(box.topLeft() + QPointF(0.42, 0.72) * size);
    tick.lineTo(box.topLeft() + QPointF(0.78, 0.30) * size);
    painter.setPen(QPen(palette.color(QPalette::HighlightedText), 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(tick);
}

} // namespace

QRectF ListMarkers::markerRect(const QTextBlock &block) const
{
    if (BlockList::of(block).kind == ListKind::None)
        return {};
    // Asking for the rectangle makes sure that the block is laid out.
    m_document.documentLayout()->blockBoundingRect(block);
    const QTextLayout *layout = block.layout();
    if (!layout || layout->lineCount() == 0)
        return {};
    const QTextLine line = layout->lineAt(0);
    const qreal width = m_document.indentWidth();
    const QPointF at = layout->position() + line.position();
    const bool rightToLeft = block.textDirection() == Qt::RightToLeft;
    return {rightToLeft ? at.x() + line.width() : at.x() - width, at.y(), width, line.height()};
}

void ListMarkers::paint(QPainter &painter, const QTextBlock &first, qreal bottom, const QWidget &widget) const
{
    ListCounter counter;
    for (QTextBlock block = beginOfLists(first); block.isValid() && block != first; block = block.next()) {
        const BlockList list = BlockList::of(block);
        counter.next(list.kind, list.level);
    }
    for (QTextBlock block = first; block.isValid(); block = block.next()) {
        const BlockList list = BlockList::of(block);
        const int number = counter.next(list.kind, list.level);
        if (m_document.documentLayout()->blockBoundingRect(block).top() > bottom)
            break;
        if (list.kind != ListKind::None)
            paintMarker(painter, block, number, widget);
    }
}

void ListMarkers::paintMarker(QPainter &painter, const QTextBlock &block, int number, const QWidget &widget) const
{
    const QRectF rect = markerRect(block);
    if (rect.isEmpty())
        return;
    const BlockList list = BlockList::of(block);
    const QFontMetricsF metrics(m_document.defaultFont());
    const QColor ink = widget.palette().color(QPalette::Text);
    painter.setPen(QPen(ink, 1.2));
    switch (list.kind) {
    case ListKind::Bullet:
        paintBullet(painter, rect, list.level, metrics.xHeight() * 0.7);
        break;
    case ListKind::Check:
        paintBox(painter, rect, list.checked, metrics.ascent() * 0.85, widget.palette());
        break;
    case ListKind::Numbered: {
        painter.setFont(m_document.defaultFont());
        const bool rightToLeft = block.textDirection() == Qt::RightToLeft;
        const QRectF wide = rightToLeft ? rect.adjusted(5, 0, 200, 0) : rect.adjusted(-200, 0, -5, 0);
        painter.drawText(wide, Qt::AlignVCenter | (rightToLeft ? Qt::AlignLeft : Qt::AlignRight),
                         listMarker(list.kind, number, false));
        break;
    }
    case ListKind::None:
        break;
    }
}

} // namespace orvelle
