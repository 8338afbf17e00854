#include "ui/common/LineText.h"

#include <QPainter>
#include <QTextBoundaryFinder>

namespace orvelle {

void drawLine(QPainter &painter, const QRect &place, const QString &text, Qt::LayoutDirection window, bool atEnd)
{
    const bool onTheRight = (window == Qt::RightToLeft) != atEnd;
    const Qt::Alignment side = onTheRight ? Qt::AlignRight : Qt::AlignLeft;
    const Qt::LayoutDirection before = painter.layoutDirection();
    painter.setLayoutDirection(text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    painter.drawText(place, Qt::TextSingleLine | static_cast<int>(Qt::AlignVCenter | Qt::AlignAbsolute | side), text);
    painter.setLayoutDirection(before);
}

QString breakable(const QString &text)
{
    constexpr qsizetype longestPiece = 30;
    const QChar zeroWidthSpace(0x200b);
    QTextBoundaryFinder lines(QTextBoundaryFinder::Line, text);
    QTextBoundaryFinder letters(QTextBoundaryFinder::Grapheme, text);
    QString result;
    for (qsizetype start = 0; start < text.size();) {
        const qsizetype next = lines.toNextBoundary();
        const qsizetype end = next < 0 ? text.size() : next;
        while (end - start > longestPiece) {
            letters.setPosition(start + longestPiece);
            const qsizetype at = letters.isAtBoundary() ? start + longestPiece : letters.toNextBoundary();
            if (at < 0 || at >= end)
                break;
            result.append(QStringView(text).sliced(start, at - start)).append(zeroWidthSpace);
            start = at;
        }
        result.append(QStringView(text).sliced(start, end - start));
        start = end;
    }
    return result;
}

} // namespace orvelle
