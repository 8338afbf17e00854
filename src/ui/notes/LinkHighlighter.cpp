#include "ui/notes/LinkHighlighter.h"

#include "ui/common/Colors.h"
#include "ui/notes/RichTextDocument.h"

#include <QWidget>

namespace orvelle {

namespace {

/// As faint as it may be and still be read.
QColor doneColor(const QPalette &palette)
{
    const QColor text = palette.color(QPalette::Text);
    const QColor ground = palette.color(QPalette::Base);
    return readable(ground, ground, text, textContrast(palette));
}

} // namespace

LinkHighlighter::LinkHighlighter(QTextDocument *document, const QWidget &widget)
    : QSyntaxHighlighter(document), m_widget(widget)
{
}

void LinkHighlighter::highlightBlock(const QString &text)
{
    const QTextBlock block = currentBlock();
    const QPalette palette = m_widget.palette();
    if (BlockList::of(block).checked)
        setFormat(0, static_cast<int>(text.size()), doneColor(palette));
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
