#include "ui/notes/LinkHighlighter.h"

#include "ui/notes/RichTextDocument.h"

#include <QWidget>

namespace orvelle {

LinkHighlighter::LinkHighlighter(QTextDocument *document, const QWidget &widget)
    : QSyntaxHighlighter(document), m_widget(widget)
{
}

void LinkHighlighter::highlightBlock(const QString &text)
{
    const QTextBlock block = currentBlock();
    const QPalette palette = m_widget.palette();
    if (BlockList::of(block).checked)
        setFormat(0, static_cast<int>(text.size()), palette.color(QPalette::PlaceholderText));
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        const QTextFragment fragment = it.fragment();
        if (!fragment.charFormat().isAnchor())
            continue;
        QTextCharFormat format;
        format.setForeground(palette.color(QPalette::Link));
        format.setFontUnderline(true);
        setFormat(fragment.position() - block.position(), fragment.length(), format);
    }
}

} // namespace orvelle
