#include "ui/notes/RichTextMime.h"

#include "links/exchange/HtmlTree.h"
#include "links/richtext/RichTextLinks.h"
#include "links/richtext/RtfReader.h"
#include "links/richtext/RtfWriter.h"
#include "ui/notes/RichTextDocument.h"

#include <QMimeData>
#include <QTextDocument>
#include <QTextList>
#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

constexpr qsizetype maxRichLength = maxPasteLength / 8;

QString ownType()
{
    return u"application/x-orvelle-note+rtf"_s;
}

constexpr const char *rtfTypes[] = {"text/rtf", "application/rtf", "text/richtext"};

/// Reads nothing that a pasted page points to, be it on the web or here.
class ClosedDocument : public QTextDocument
{
protected:
    QVariant loadResource(int, const QUrl &) override { return QByteArray(); }
};

struct SizeStep {
    double below; ///< pixels; 16 is the usual text of web pages
    TextSize size;
};

constexpr SizeStep sizeSteps[] = {
    {12, TextSize::Small}, {19, TextSize::Normal}, {24, TextSize::Large}, {30, TextSize::Larger}};

TextSize pastedSize(const QTextCharFormat &format)
{
    if (format.hasProperty(QTextFormat::FontSizeAdjustment))
        return styleOf(format).size;
    double pixels = format.intProperty(QTextFormat::FontPixelSize);
    if (format.hasProperty(QTextFormat::FontPointSize))
        pixels = format.fontPointSize() * 4 / 3;
    if (pixels <= 0)
        return TextSize::Normal;
    const auto *step = std::ranges::find_if(sizeSteps, [pixels](const SizeStep &s) { return pixels < s.below; });
    return step != std::end(sizeSteps) ? step->size : TextSize::Huge;
}

RichStyle pastedStyle(const QTextCharFormat &format)
{
    RichStyle style = styleOf(format);
    style.size = pastedSize(format);
    const auto link = style.link.isEmpty() ? std::nullopt : safeLink(style.link);
    const bool isWhole = link && !link->scheme().isEmpty() && style.link.contains(u':');
    // The toolkit underlines every link, also those that do not stay one.
    style.underline = style.underline && !format.isAnchor();
    style.link = isWhole ? link->toString(QUrl::FullyEncoded) : QString();
    return style;
}

ListKind pastedListKind(const QTextBlock &block)
{
    if (block.blockFormat().marker() != QTextBlockFormat::MarkerType::NoMarker)
        return ListKind::Check;
    // The toolkit's counting styles are numbered downwards from decimal.
    return block.textList()->format().style() <= QTextListFormat::ListDecimal ? ListKind::Numbered : ListKind::Bullet;
}

RichParagraph pastedParagraph(const QTextBlock &block)
{
    RichParagraph paragraph;
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        const QTextFragment fragment = it.fragment();
        if (!fragment.charFormat().isImageFormat())
            paragraph.append(fragment.text(), pastedStyle(fragment.charFormat()));
    }
    if (const QTextList *list = block.textList()) {
        const bool checked = block.blockFormat().marker() == QTextBlockFormat::MarkerType::Checked;
        paragraph.setList(pastedListKind(block), list->format().indent() - 1, checked);
    }
    return paragraph;
}

/// The toolkit takes minutes for what is nested very deeply.
bool isReadable(const QString &html)
{
    constexpr qint64 deepest = 200;
    return html.size() <= maxRichLength && HtmlTree::nestingOf(html.toUtf8()) <= deepest;
}

RichText fromHtml(const QString &html)
{
    ClosedDocument document;
    document.setUndoRedoEnabled(false);
    document.setHtml(html);
    RichText text;
    text.paragraphs.clear();
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
        text.paragraphs += pastedParagraph(block);
    return text;
}

/// Word processors end the last paragraph too, which is no line of its own.
std::optional<RichText> fromRtf(const QByteArray &rtf, bool isOwn)
{
    auto read = rtf.size() <= maxRichLength ? readRtf(rtf) : RtfError::TooLarge;
    if (!read)
        return std::nullopt;
    RichText text = read->text;
    if (!isOwn && text.paragraphs.size() > 1 && text.paragraphs.back().runs.isEmpty())
        text.paragraphs.removeLast();
    if (!isOwn) {
        for (RichParagraph &paragraph : text.paragraphs) {
            for (RichRun &run : paragraph.runs)
                run.style.link = safeLink(run.style.link) ? run.style.link : QString();
        }
    }
    return text.isEmpty() ? std::nullopt : std::optional(text);
}

/// The document as other programs' HTML knows it, with real lists.
QString toHtml(const RichText &text)
{
    QTextDocument document;
    QTextCursor cursor(&document);
    for (qsizetype i = 0; i < text.paragraphs.size(); ++i) {
        const RichParagraph &paragraph = text.paragraphs[i];
        if (i > 0)
            cursor.insertBlock(QTextBlockFormat(), QTextCharFormat());
        if (paragraph.list != ListKind::None) {
            QTextListFormat format;
            format.setStyle(paragraph.list == ListKind::Numbered ? QTextListFormat::ListDecimal
                                                                 : QTextListFormat::ListDisc);
            format.setIndent(paragraph.level + 1);
            QTextList *previous = i > 0 ? cursor.block().previous().textList() : nullptr;
            if (previous && previous->format() == format)
                previous->add(cursor.block());
            else
                cursor.createList(format);
        }
        if (paragraph.list == ListKind::Check)
            cursor.insertText(listMarker(ListKind::Check, 0, paragraph.checked) + u' ', QTextCharFormat());
        for (const RichRun &run : paragraph.runs)
            cursor.insertText(run.text, charFormatOf(run.style));
    }
    return document.toHtml();
}

/// Dropped addresses as links, dropped files by their paths.
RichText fromUrls(const QList<QUrl> &urls)
{
    RichText text;
    text.paragraphs.clear();
    for (const QUrl &url : urls) {
        RichStyle style;
        const QString address = url.toString(QUrl::FullyEncoded);
        style.link = safeLink(address) ? address : QString();
        RichParagraph paragraph;
        paragraph.append(url.isLocalFile() ? url.toLocalFile() : url.toDisplayString(), style);
        text.paragraphs += paragraph;
    }
    return text;
}

} // namespace

std::unique_ptr<QMimeData> mimeDataOf(const RichText &text)
{
    auto data = std::make_unique<QMimeData>();
    const QByteArray rtf = writeRtf(text);
    data->setData(ownType(), rtf);
    for (const char *type : rtfTypes)
        data->setData(QLatin1StringView(type), rtf);
    data->setHtml(toHtml(text));
    data->setText(text.toPlainText());
    return data;
}

std::optional<RichText> richTextOf(const QMimeData &data)
{
    if (data.hasFormat(ownType())) {
        if (const auto text = fromRtf(data.data(ownType()), true))
            return text;
    }
    for (const char *type : rtfTypes) {
        const QLatin1StringView name(type);
        if (!data.hasFormat(name))
            continue;
        if (const auto text = fromRtf(data.data(name), false))
            return text;
    }
    if (data.hasHtml()) {
        const QString html = data.html();
        const RichText text = isReadable(html) ? fromHtml(html) : RichText();
        if (!text.isEmpty())
            return text;
    }
    if (data.hasUrls())
        return fromUrls(data.urls());
    return plainTextOf(data);
}

std::optional<RichText> plainTextOf(const QMimeData &data)
{
    if (!data.hasText())
        return std::nullopt;
    const QString text = data.text();
    return text.size() <= maxPasteLength ? std::optional(RichText::fromPlainText(text)) : std::nullopt;
}

} // namespace orvelle
