#include "links/richtext/RichText.h"

#include <algorithm>

namespace orvelle {

namespace {

constexpr char16_t lineSeparator = 0x2028;
constexpr char16_t paragraphSeparator = 0x2029;

/// The toolkit's documents keep their own structure in these.
bool isReserved(char16_t c)
{
    return c == 0 || c == 0xfdd0 || c == 0xfdd1 || c == QChar::ObjectReplacementCharacter;
}

bool isLineEnd(char16_t c)
{
    return c == u'\n' || c == u'\r' || c == lineSeparator || c == paragraphSeparator;
}

bool isLoneSurrogate(QStringView text, qsizetype i)
{
    const QChar c = text[i];
    if (c.isHighSurrogate())
        return i + 1 >= text.size() || !text[i + 1].isLowSurrogate();
    return c.isLowSurrogate() && (i == 0 || !text[i - 1].isHighSurrogate());
}

QString cleanText(QStringView text)
{
    QString result = text.toString();
    result.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    for (qsizetype i = 0; i < result.size(); ++i) {
        const char16_t c = result[i].unicode();
        if (isLineEnd(c)) {
            if (c != lineSeparator)
                result[i] = QChar(lineSeparator);
        } else if (isReserved(c) || isLoneSurrogate(result, i)) {
            result[i] = QChar(QChar::ReplacementCharacter);
        }
    }
    return result;
}

bool isPlainAddressCharacter(QChar c)
{
    return c.unicode() > 0x20 && c.unicode() < 0x7f && c != u'"' && c != u'\\';
}

bool isOneText(const QString &a, const QString &b)
{
    return a.constData() == b.constData() && a.size() == b.size();
}

bool isBlank(QChar c)
{
    return c.isSpace() || c.category() == QChar::Other_Control || c == QChar(QChar::ObjectReplacementCharacter);
}

/// The line without what a list item begins with.
QStringView withoutMarker(QStringView line)
{
    static constexpr QStringView bullets = u"\u2022\u25e6\u25aa\u2043\u2013-*\u2610\u2611\u2713\u25a1";
    line = line.trimmed();
    if (line.isEmpty())
        return line;
    qsizetype digits = 0;
    while (digits < line.size() && line[digits].isDigit())
        ++digits;
    if (digits > 0 && digits < line.size() && (line[digits] == u'.' || line[digits] == u')'))
        return line.sliced(digits + 1);
    return bullets.contains(line.front()) ? line.sliced(1) : line;
}

QString words(QStringView text)
{
    QString result;
    result.reserve(text.size());
    qsizetype start = 0;
    for (qsizetype i = 0; i <= text.size(); ++i) {
        if (i < text.size() && !isLineEnd(text[i].unicode()))
            continue;
        for (const QChar c : withoutMarker(text.sliced(start, i - start))) {
            if (!isBlank(c))
                result += c;
        }
        start = i + 1;
    }
    return result;
}

} // namespace

QString cleanAddress(const QString &address)
{
    if (std::ranges::all_of(address, isPlainAddressCharacter))
        return address;
    QString result = address;
    result.removeIf([](QChar c) {
        return c.category() == QChar::Other_Control || isLineEnd(c.unicode()) || isReserved(c.unicode());
    });
    result = result.trimmed();
    result.replace(u'"', QStringLiteral("%22"));
    result.replace(u'\\', QStringLiteral("%5C"));
    result = cleanText(result);
    return result == address ? address : result;
}

void RichParagraph::append(QStringView text, RichStyle style)
{
    if (text.isEmpty())
        return;
    if (runs.isEmpty() || !isOneText(style.link, runs.back().style.link))
        style.link = cleanAddress(style.link);
    if (!style.link.isEmpty())
        style.underline = false;
    const QString added = cleanText(text);
    if (!runs.isEmpty() && runs.back().style == style)
        runs.back().text += added;
    else
        runs.append({added, style});
}

void RichParagraph::setList(ListKind kind, int itemLevel, bool isChecked)
{
    list = kind;
    level = kind == ListKind::None ? 0 : std::clamp(itemLevel, 0, maxLevel);
    checked = kind == ListKind::Check && isChecked;
}

QString RichParagraph::text() const
{
    QString result;
    for (const RichRun &run : runs)
        result += run.text;
    return result;
}

RichText RichText::fromPlainText(QStringView text)
{
    RichText result;
    result.paragraphs.clear();
    qsizetype start = 0;
    for (qsizetype i = 0; i <= text.size(); ++i) {
        if (i < text.size() && !isLineEnd(text[i].unicode()))
            continue;
        RichParagraph line;
        line.append(text.sliced(start, i - start), {});
        result.paragraphs.append(line);
        if (i + 1 < text.size() && text[i] == u'\r' && text[i + 1] == u'\n')
            ++i;
        start = i + 1;
    }
    return result;
}

QString RichText::toPlainText() const
{
    QString result;
    ListCounter counter;
    for (qsizetype i = 0; i < paragraphs.size(); ++i) {
        const RichParagraph &paragraph = paragraphs[i];
        const int number = counter.next(paragraph.list, paragraph.level);
        if (i > 0)
            result += u'\n';
        if (paragraph.list != ListKind::None) {
            result += QString(qsizetype(2) * paragraph.level, u' ');
            result += listMarker(paragraph.list, number, paragraph.checked) + u' ';
        }
        for (const RichRun &run : paragraph.runs)
            result += run.text;
    }
    result.replace(QChar(lineSeparator), u'\n');
    return result;
}

int ListCounter::next(ListKind kind, int level)
{
    if (kind == ListKind::None) {
        m_levels.clear();
        return 0;
    }
    m_levels.resize(level + 1);
    Level &current = m_levels.back();
    if (current.kind != kind)
        current = {kind, 0};
    return ++current.count;
}

QString listMarker(ListKind kind, int number, bool checked)
{
    switch (kind) {
    case ListKind::Bullet:
        return QStringLiteral("\u2022");
    case ListKind::Numbered:
        return QString::number(number) + u'.';
    case ListKind::Check:
        return checked ? QStringLiteral("\u2611") : QStringLiteral("\u2610");
    case ListKind::None:
        break;
    }
    return {};
}

bool sameWords(QStringView a, QStringView b)
{
    return a == b || words(a) == words(b);
}

} // namespace orvelle
