#include "platform/freedesktop/log/LogLine.h"

namespace orvelle {

namespace {

const char *nameOf(LogLevel level)
{
    switch (level) {
    case LogLevel::Critical:
        return "critical";
    case LogLevel::Error:
        return "error";
    case LogLevel::Warning:
        return "warning";
    case LogLevel::Info:
        return "info";
    case LogLevel::Debug:
        return "debug";
    }
    return "info";
}

bool needsEscape(QChar c)
{
    const char16_t code = c.unicode();
    return c.category() == QChar::Other_Control || code == 0x2028 || code == 0x2029 ||
           (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

QString escapeOf(QChar c)
{
    if (c == u'\n')
        return QStringLiteral("\\n");
    if (c == u'\t')
        return QStringLiteral("\\t");
    const int code = c.unicode();
    return code < 0x100 ? QStringLiteral("\\x%1").arg(code, 2, 16, QLatin1Char('0'))
                        : QStringLiteral("\\u%1").arg(code, 4, 16, QLatin1Char('0'));
}

} // namespace

LogLevel logLevelOf(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return LogLevel::Debug;
    case QtInfoMsg:
        return LogLevel::Info;
    case QtWarningMsg:
        return LogLevel::Warning;
    case QtCriticalMsg:
        return LogLevel::Error;
    case QtFatalMsg:
        return LogLevel::Critical;
    }
    return LogLevel::Info;
}

QString withoutControls(const QString &text)
{
    if (std::none_of(text.begin(), text.end(), needsEscape))
        return text;
    QString plain;
    for (const QChar c : text)
        plain += needsEscape(c) ? escapeOf(c) : QString(c);
    return plain;
}

QString logLine(LogLevel level, const QString &area, const QString &text)
{
    return QString::fromLatin1(nameOf(level)) + QLatin1Char(' ') + area + QStringLiteral(": ") + text;
}

QString datedLogLine(const QDateTime &moment, LogLevel level, const QString &area, const QString &text)
{
    return moment.toUTC().toString(Qt::ISODateWithMs) + QLatin1Char(' ') + logLine(level, area, text);
}

} // namespace orvelle
