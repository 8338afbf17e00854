#include "base/DisplayTitle.h"

#include <QStringView>

namespace orvelle {

QString shortened(const QString &text, qsizetype longest)
{
    if (text.size() <= longest)
        return text;
    const qsizetype kept = longest / 2;
    QStringView begin = QStringView(text).first(kept);
    QStringView end = QStringView(text).last(kept);
    // Never one half of a character.
    if (!begin.isEmpty() && begin.back().isHighSurrogate())
        begin.chop(1);
    if (!end.isEmpty() && end.front().isLowSurrogate())
        end = end.sliced(1);
    return begin.toString() + QChar(0x2026) + end.toString();
}

QString displayTitle(const QString &title, qsizetype longest)
{
    QString line = shortened(title, longest);
    for (QChar &c : line) {
        if (c.category() == QChar::Other_Control || c == QChar::LineSeparator || c == QChar::ParagraphSeparator)
            c = u' ';
    }
    return line;
}

} // namespace orvelle
