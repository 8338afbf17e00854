#pragma once

#include <QSyntaxHighlighter>

namespace orvelle {

/// Colours the links of a note and greys what is ticked off. The colours come
/// from the palette at drawing time and are no part of the text.
class LinkHighlighter : public QSyntaxHighlighter
{
    Q_OBJECT

public:
    LinkHighlighter(QTextDocument *document, const QWidget &widget);

protected:
    void highlightBlock(const QString &text) override;

private:
    const QWidget &m_widget;
};

} // namespace orvelle
