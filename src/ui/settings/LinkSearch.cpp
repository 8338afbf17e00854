#include "ui/settings/LinkSearch.h"

#include <algorithm>

namespace orvelle {

namespace {

constexpr qsizetype longestMarked = 1000;

bool isAscii(const QString &text)
{
    return std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c.unicode() < 0x80; });
}

/// Each character of the folded text with its place in the written one.
struct Placed {
    QString folded;
    QList<qsizetype> places;
};

Placed foldedWithPlaces(const QString &text)
{
    Placed result;
    for (qsizetype at = 0; at < std::min(text.size(), longestMarked);) {
        const bool pair = text[at].isHighSurrogate() && at + 1 < text.size();
        const QString one = folded(text.mid(at, pair ? 2 : 1));
        result.folded += one;
        result.places += QList<qsizetype>(one.size(), at);
        at += pair ? 2 : 1;
    }
    return result;
}

} // namespace

QString folded(const QString &text)
{
    if (isAscii(text))
        return text.toLower();
    QString result;
    for (const QChar c : text.normalized(QString::NormalizationForm_KD)) {
        if (!c.isMark())
            result += c;
    }
    // By way of capitals, which spell "ß" out.
    return result.toUpper().toCaseFolded();
}

QString foldedForSearch(const LinkItem &item)
{
    return item.path.isEmpty() ? folded(item.name) : folded(item.name) + u'\n' + folded(item.path);
}

LinkSearch::LinkSearch(const QString &text) : m_words(folded(text).split(u' ', Qt::SkipEmptyParts)) {}

bool LinkSearch::matches(const QString &haystack) const
{
    return std::all_of(m_words.begin(), m_words.end(),
                       [&haystack](const QString &word) { return haystack.contains(word); });
}

QList<LinkSearch::Range> LinkSearch::rangesIn(const QString &text) const
{
    const Placed placed = foldedWithPlaces(text);
    QList<bool> marked(text.size(), false);
    for (const QString &word : m_words) {
        for (qsizetype at = 0; (at = placed.folded.indexOf(word, at)) >= 0; at += word.size()) {
            const qsizetype end = at + word.size();
            const qsizetype last =
                end < placed.places.size() ? placed.places[end] : std::min(text.size(), longestMarked);
            std::fill(marked.begin() + placed.places[at], marked.begin() + last, true);
        }
    }
    QList<Range> ranges;
    for (qsizetype at = 0; at < marked.size(); ++at) {
        if (!marked[at])
            continue;
        const auto end = std::find(marked.begin() + at, marked.end(), false);
        ranges.append({at, end - marked.begin() - at});
        at += ranges.last().length;
    }
    return ranges;
}

} // namespace orvelle
