#include "widgets/clipboard/ClipboardEntries.h"

#include "base/Hash.h"
#include "base/Text.h"
#include "widgets/clipboard/ClipboardTypes.h"

#include <QLocale>
#include <QStringDecoder>

#include <algorithm>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestRowText = 200;
constexpr char16_t visibleBlank = u'\u2423';

QString orLabel(const QString &preview, const QString &label)
{
    return preview.isEmpty() ? label : preview;
}

QStringList addressLines(const QByteArray &list)
{
    QStringList lines;
    for (const QByteArray &line : list.split('\n')) {
        const QString address = QString::fromUtf8(line.trimmed());
        if (!address.isEmpty() && !address.startsWith(u'#'))
            lines += address;
    }
    if (!lines.isEmpty() && (lines.constFirst() == "copy"_L1 || lines.constFirst() == "cut"_L1))
        lines.removeFirst();
    return lines;
}

ClipboardEntry nonPasteable(const QString &prefix, const QStringList &types, const QString &label, const QString &icon)
{
    return {prefix + sha256Hex(types.join(u'\n').toUtf8()), label, icon, {}, {}};
}

/// Whether a character would move or hide its neighbours.
bool isHarmful(QChar c)
{
    return c.category() == QChar::Other_Control || c.category() == QChar::Other_Format ||
           c.category() == QChar::Separator_Line || c.category() == QChar::Separator_Paragraph;
}

} // namespace

QString ownEntryType()
{
    return u"application/x-orvelle-entry"_s;
}

ClipboardEntry rtfdEntry(const QByteArray &bytes)
{
    ClipboardPayload payload{ClipboardPayload::Kind::Rich, {}, bytes, ClipboardTypes::rtfd()};
    return {u"rtfd:"_s + sha256Hex(bytes), text("clipboard.typeRTF"_text), u"doc.richtext"_s, payload, {}};
}

ClipboardEntry rtfEntry(const QByteArray &bytes, const QString &preview, const QString &plain)
{
    const QString shown = preview.trimmed();
    ClipboardPayload payload{ClipboardPayload::Kind::Rich, orLabel(plain, shown), bytes, ClipboardTypes::rtf()};
    return {
        u"rtf:"_s + sha256Hex(bytes), orLabel(shown, text("clipboard.typeRTF"_text)), u"doc.richtext"_s, payload, {}};
}

ClipboardEntry textEntry(const QByteArray &utf8)
{
    const QString copied = QString::fromUtf8(utf8);
    return {u"plain:"_s + sha256Hex(utf8), copied, u"doc.plaintext"_s, {ClipboardPayload::Kind::Plain, copied}, {}};
}

ClipboardEntry linkEntry(const QString &address)
{
    return {u"url:"_s + address, address, u"link"_s, {ClipboardPayload::Kind::Plain, address}, {}};
}

ClipboardEntry pdfEntry(const QByteArray &bytes)
{
    ClipboardPayload payload{ClipboardPayload::Kind::Rich, {}, bytes, ClipboardTypes::pdf()};
    return {u"pdf:"_s + sha256Hex(bytes), u"PDF"_s, u"doc.text"_s, payload, {}};
}

ClipboardEntry filesEntry(const QList<QUrl> &files)
{
    QStringList paths;
    QByteArray list;
    for (const QUrl &file : files) {
        paths += file.toLocalFile();
        list += file.toEncoded() + "\r\n";
    }
    const bool isOne = paths.size() == 1;
    const QString name = QUrl(files.constFirst()).adjusted(QUrl::StripTrailingSlash).fileName();
    const QString count = QLocale().toString(paths.size());
    ClipboardPayload payload{ClipboardPayload::Kind::Files, paths.join(u'\n'), list, ClipboardTypes::uriList()};
    return {isOne ? u"file:"_s + paths.constFirst() : u"files:"_s + paths.join(u'\n'),
            isOne ? orLabel(name, paths.constFirst()) : text("clipboard.typeFiles "_text) + count,
            isOne ? u"doc"_s : u"doc.on.doc"_s,
            payload,
            {}};
}

ClipboardEntry unknownFilesEntry(const QStringList &types)
{
    return nonPasteable(u"file:unknown:"_s, types, text("clipboard.typeFile"_text), u"doc"_s);
}

ClipboardEntry otherEntry(const QStringList &types)
{
    return nonPasteable(u"other:"_s, types, text("clipboard.typeOther"_text), u"square.on.square"_s);
}

QList<QUrl> fileUrls(const QByteArray &list)
{
    QList<QUrl> files;
    for (const QString &line : addressLines(list)) {
        const QUrl url(line, QUrl::StrictMode);
        if (!url.isLocalFile() || url.toLocalFile().isEmpty())
            return {};
        files += url;
    }
    return files;
}

QString firstAddress(const QByteArray &list)
{
    const QStringList lines = addressLines(list);
    return lines.isEmpty() || !QUrl(lines.constFirst(), QUrl::StrictMode).isValid() ? QString() : lines.constFirst();
}

QString browserAddress(const QByteArray &bytes)
{
    QStringDecoder decode(QStringDecoder::Utf16LE);
    const QString decoded = decode(bytes);
    return decoded.section(u'\n', 0, 0).trimmed();
}

QString rowText(const QString &text)
{
    qsizetype start = 0;
    while (start < text.size() && text.at(start).isSpace())
        ++start;
    if (start == text.size())
        return QString(std::min<qsizetype>(text.size(), 8), QChar(visibleBlank));
    QString row;
    for (qsizetype i = start; i < text.size() && row.size() < longestRowText; ++i) {
        const QChar c = text.at(i);
        if (c == u'\n' || c == u'\r' || c == QChar::LineSeparator || c == QChar::ParagraphSeparator)
            return row + u'\u2026';
        if (!isHarmful(c))
            row += c;
        else if (c == u'\t')
            row += u' ';
    }
    return row;
}

} // namespace orvelle
