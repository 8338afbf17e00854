#include "ui/menu/TypeAhead.h"

#include <algorithm>

namespace orvelle {
namespace {

constexpr quint64 pauseMilliseconds = 1000;

int findPrefix(const TypeAhead::Rows &rows, int from, const QString &prefix)
{
    for (int step = 0; step < rows.count; ++step) {
        const int row = (from + step) % rows.count;
        if (foldedName(rows.name(row)).startsWith(prefix))
            return row;
    }
    return -1;
}

bool isOneLetterRepeated(const QString &text)
{
    return std::ranges::all_of(text, [first = text.front()](QChar c) { return c == first; });
}

} // namespace

QString foldedName(const QString &name)
{
    const QString decomposed = name.normalized(QString::NormalizationForm_KD);
    QString letters;
    letters.reserve(decomposed.size());
    for (const QChar c : decomposed) {
        if (!c.isMark())
            letters += c;
    }
    return letters.toCaseFolded();
}

bool TypeAhead::continues(const Rows &rows, const QString &typed, quint64 milliseconds) const
{
    return !m_prefix.isEmpty() && milliseconds - m_last <= pauseMilliseconds &&
           findPrefix(rows, 0, m_prefix + foldedName(typed)) >= 0;
}

int TypeAhead::find(const Rows &rows, int current, const QString &typed, quint64 milliseconds)
{
    if (milliseconds - m_last > pauseMilliseconds)
        m_prefix.clear();
    m_last = milliseconds;
    const bool fresh = m_prefix.isEmpty();
    m_prefix += foldedName(typed);
    if (m_prefix.isEmpty() || rows.count == 0)
        return -1;
    const int found = findPrefix(rows, std::max(0, fresh ? current + 1 : current), m_prefix);
    if (found >= 0 || !isOneLetterRepeated(m_prefix))
        return found;
    return findPrefix(rows, current + 1, m_prefix.left(1));
}

} // namespace orvelle
