#include "base/Text.h"

#include <QCoreApplication>
#include <QLocale>

namespace orvelle {

namespace {

QString filled(QString pattern, QLatin1StringView placeholder, const QString &argument)
{
    const qsizetype at = pattern.indexOf(placeholder);
    if (at >= 0)
        pattern.replace(at, placeholder.size(), argument);
    return pattern;
}

} // namespace

QString text(TextKey key)
{
    return qtTrId(key.id);
}

QString text(TextKey key, const QString &argument)
{
    return filled(text(key), QLatin1StringView("%@"), argument);
}

QString text(TextKey key, qlonglong argument)
{
    return filled(text(key), QLatin1StringView("%lld"), QLocale().toString(argument));
}

QString textFromUtf8(std::string_view utf8)
{
    // QString takes a leading U+FEFF for a signature and drops it, and the next
    // one as well once the first is gone.
    constexpr std::string_view mark = "\xef\xbb\xbf";
    QString marks;
    for (; utf8.starts_with(mark); utf8.remove_prefix(mark.size()))
        marks += QChar(QChar::ByteOrderMark);
    const QString text = QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
    return marks.isEmpty() ? text : marks + text;
}

} // namespace orvelle
