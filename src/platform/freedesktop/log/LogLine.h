#pragma once

#include <QDateTime>
#include <QString>

namespace orvelle {

/// The levels of syslog(3), of which the journal's PRIORITY is one.
enum class LogLevel { Critical = 2, Error = 3, Warning = 4, Info = 6, Debug = 7 };

LogLevel logLevelOf(QtMsgType type);

/// One line whatever the text holds: control characters, line and paragraph
/// separators and those that reverse the direction of writing are written as
/// escapes ("\n", "\t", "\x1b", "\u202e").
QString withoutControls(const QString &text);

/// "warning LinkStore: text"; `text` as withoutControls() gives it.
QString logLine(LogLevel level, const QString &area, const QString &text);

/// The same after the moment, "2026-11-21T08:15:02.123Z ".
QString datedLogLine(const QDateTime &moment, LogLevel level, const QString &area, const QString &text);

} // namespace orvelle
