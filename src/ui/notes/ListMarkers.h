#pragma once

#include <QTextBlock>

class QPainter;
class QPalette;
class QTextDocument;
class QWidget;

namespace orvelle {

/// Draws what stands before the list items of a document: bullets, numbers and
/// boxes to tick.
class ListMarkers
{
public:
    explicit ListMarkers(const QTextDocument &document) : m_document(document) {}

    /// Where the item's marker is, in the document's coordinates; empty for a
    /// paragraph that is no list item.
    QRectF markerRect(const QTextBlock &block) const;
    /// Draws those of the blocks from `first` that begin above `bottom`.
    void paint(QPainter &painter, const QTextBlock &first, qreal bottom, const QWidget &widget) const;

private:
    void paintMarker(QPainter &painter, const QTextBlock &block, int number, const QWidget &widget) const;

    const QTextDocument &m_document;
};

} // namespace orvelle
