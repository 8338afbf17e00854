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

} // namespace orvelle
