#include "links/richtext/RtfWriter.h"

#include <QHash>
#include <QList>

#include <algorithm>

namespace orvelle {

namespace {

/// Twentieths of a point by which each level is set in, and its marker out.
constexpr int indentStep = 720;
constexpr int markerWidth = 360;

void appendText(QByteArray &out, QStringView text)
{
    for (const QChar c : text) {
        const char16_t code = c.unicode();
        if (code == u'\\' || code == u'{' || code == u'}') {
            out += '\\';
            out += static_cast<char>(code);
        } else if (code == u'\t') {
            out += "\\tab ";
        } else if (code == 0x2028) {
            out += "\\line ";
        } else if (code >= 0x20 && code < 0x7f) {
            out += static_cast<char>(code);
        } else {
            out += "\\u" + QByteArray::number(static_cast<qint16>(code)) + ' ';
        }
    }
}

QByteArray styleWords(const RichStyle &style)
{
    QByteArray words;
    if (style.bold)
        words += "\\b";
    if (style.italic)
        words += "\\i";
    if (style.underline || !style.link.isEmpty())
        words += "\\ul";
    if (style.strike)
        words += "\\strike";
    if (style.size != TextSize::Normal)
        words += "\\fs" + QByteArray::number(halfPoints(style.size));
    return words;
}

void appendRun(QByteArray &out, const RichRun &run)
{
    const QByteArray words = styleWords(run.style);
    if (!words.isEmpty())
        out += '{' + words + ' ';
    appendText(out, run.text);
    if (!words.isEmpty())
        out += '}';
}

/// Neighbours with the same link stand in one field.
void appendRuns(QByteArray &out, const QList<RichRun> &runs)
{
    QString link;
    for (const RichRun &run : runs) {
        if (run.style.link != link) {
            out += link.isEmpty() ? "" : "}}";
            link = run.style.link;
            if (!link.isEmpty()) {
                out += "{\\field{\\*\\fldinst{HYPERLINK \"";
                appendText(out, link);
                out += "\"}}{\\fldrslt ";
            }
        }
        appendRun(out, run);
    }
    out += link.isEmpty() ? "" : "}}";
}

/// One entry of the list table. Numbered lists have one each, as their numbers
/// begin anew; the others share theirs.
struct ListEntry {
    ListKind kind;
    bool checked;
    int levels;
};

/// Finds out which list every paragraph belongs to.
class ListTable
{
public:
    explicit ListTable(const RichText &text)
    {
        ListCounter counter;
        m_numbers.reserve(text.paragraphs.size());
        for (const RichParagraph &paragraph : text.paragraphs) {
            m_markers.append(counter.next(paragraph.list, paragraph.level));
            m_numbers.append(entryFor(paragraph, m_markers.back()));
        }
    }

    /// The list's number in the table, from 1; 0 for none.
    int listOf(qsizetype paragraph) const { return m_numbers[paragraph]; }
    int markerOf(qsizetype paragraph) const { return m_markers[paragraph]; }
    void append(QByteArray &out) const;

private:
    int entryFor(const RichParagraph &paragraph, int marker)
    {
        if (paragraph.list == ListKind::None)
            return 0;
        const bool numbered = paragraph.list == ListKind::Numbered;
        const int key = numbered ? 100 + paragraph.level : static_cast<int>(paragraph.list) * 2 + paragraph.checked;
        int &entry = m_entryOf[key];
        if (entry == 0 || (numbered && marker == 1)) {
            m_entries.append({paragraph.list, paragraph.checked, 0});
            entry = static_cast<int>(m_entries.size());
        }
        int &levels = m_entries[entry - 1].levels;
        levels = std::max(levels, paragraph.level + 1);
        return entry;
    }

    QList<ListEntry> m_entries;
    QHash<int, int> m_entryOf;
    QList<int> m_numbers;
    QList<int> m_markers;
};

void appendLevel(QByteArray &out, const ListEntry &entry, int level)
{
    const bool numbered = entry.kind == ListKind::Numbered;
    const QByteArray kind = numbered ? "0" : "23";
    out += "{\\listlevel\\levelnfc" + kind + "\\levelnfcn" + kind +
           "\\leveljc0\\leveljcn0\\levelfollow0\\levelstartat1{\\leveltext";
    if (numbered) {
        out += "\\'02\\'0" + QByteArray::number(level) + ".;}{\\levelnumbers\\'01;}";
    } else {
        out += "\\'01";
        appendText(out, listMarker(entry.kind, 0, entry.checked));
        out += ";}{\\levelnumbers;}";
    }
    out += "\\fi-" + QByteArray::number(markerWidth) + "\\li" + QByteArray::number(indentStep * (level + 1)) + "}";
}

void ListTable::append(QByteArray &out) const
{
    if (m_entries.isEmpty())
        return;
    QByteArray overrides;
    out += "{\\*\\listtable";
    for (qsizetype i = 0; i < m_entries.size(); ++i) {
        const QByteArray number = QByteArray::number(i + 1);
        out += "{\\list\\listtemplateid" + number;
        for (int level = 0; level < m_entries[i].levels; ++level)
            appendLevel(out, m_entries[i], level);
        out += "{\\listname ;}\\listid" + number + "}\n";
        overrides += "{\\listoverride\\listid" + number + "\\listoverridecount0\\ls" + number + "}";
    }
    out += "}\n{\\*\\listoverridetable" + overrides + "}\n";
}

} // namespace

int halfPoints(TextSize size)
{
    switch (size) {
    case TextSize::Small:
        return 20;
    case TextSize::Large:
        return 30;
    case TextSize::Larger:
        return 36;
    case TextSize::Huge:
        return 48;
    case TextSize::Normal:
        break;
    }
    return 24;
}

QByteArray writeRtf(const RichText &text)
{
    const ListTable lists(text);
    QByteArray out = "{\\rtf1\\ansi\\ansicpg1252\\deff0\\uc0\n{\\fonttbl{\\f0\\fswiss\\fcharset0 Helvetica;}}\n";
    lists.append(out);
    for (qsizetype i = 0; i < text.paragraphs.size(); ++i) {
        const RichParagraph &paragraph = text.paragraphs[i];
        out += i == 0 ? "\\pard" : "\\par\n\\pard";
        if (const int list = lists.listOf(i)) {
            out += "\\li" + QByteArray::number(indentStep * (paragraph.level + 1)) + "\\fi-" +
                   QByteArray::number(markerWidth) + "\\ls" + QByteArray::number(list) + "\\ilvl" +
                   QByteArray::number(paragraph.level);
        }
        out += "\\f0\\fs" + QByteArray::number(halfPoints(TextSize::Normal)) + ' ';
        if (paragraph.list != ListKind::None) {
            out += "{\\listtext\\tab ";
            appendText(out, listMarker(paragraph.list, lists.markerOf(i), paragraph.checked));
            out += "\\tab }";
        }
        appendRuns(out, paragraph.runs);
    }
    return out + "}";
}

} // namespace orvelle
