#pragma once

#include <QRect>
#include <QString>

class QPainter;

namespace orvelle {

/// Draws one line of text, vertically centred, at that side of `place` where a
/// window of direction `window` begins, or ends (`atEnd`). Inside, the text has
/// the direction of its own letters: in a mirrored menu a Latin name keeps its
/// dots behind it, and "5 MB/s" its order.
void drawLine(QPainter &painter, const QRect &place, const QString &text, Qt::LayoutDirection window,
              bool atEnd = false);

/// The text with places inside of overlong words, such as the name of a file
/// without a blank, where a label that wraps may begin a new line.
QString breakable(const QString &text);

} // namespace orvelle
