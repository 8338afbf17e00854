#include "widgets/timer/TimerTexts.h"

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

QString twoDigits(qint64 number)
{
    return u"%1"_s.arg(number, 2, 10, QChar(u'0'));
}

} // namespace

QString countdown(qint64 seconds)
{
    const qint64 hours = seconds / 3600;
    const QString rest = twoDigits(seconds % 3600 / 60) + u':' + twoDigits(seconds % 60);
    return hours == 0 ? rest : QString::number(hours) + u':' + rest;
}

QString durationLabel(qint64 seconds)
{
    const qint64 minutes = seconds / 60;
    const qint64 rest = seconds % 60;
    if (minutes == 0)
        return u"%1 s"_s.arg(rest);
    if (rest != 0)
        return QString::number(minutes) + u':' + twoDigits(rest);
    if (minutes % 60 == 0)
        return u"%1 h"_s.arg(minutes / 60);
    if (minutes <= 60)
        return u"%1 min"_s.arg(minutes);
    return u"%1 h %2"_s.arg(minutes / 60).arg(minutes % 60);
}

QString capsuleLabel(qint64 minutes)
{
    if (minutes < 60)
        return u"%1m"_s.arg(minutes);
    const QString hours = u"%1h"_s.arg(minutes / 60);
    return minutes % 60 == 0 ? hours : hours + QString::number(minutes % 60);
}

} // namespace orvelle
