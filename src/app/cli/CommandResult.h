#pragma once

#include <QByteArray>
#include <QString>

namespace orvelle {

/// What a command leaves behind.
struct CommandResult {
    enum ExitCode { Done = 0, Refused = 1, WrongUsage = 2 };

    int exitCode = Done;
    QByteArray out; ///< for standard output, any bytes
    QByteArray err; ///< for standard error, UTF-8

    static CommandResult done(const QByteArray &out = {}) { return {Done, out, {}}; }
    /// `sentence` without line end.
    static CommandResult refused(const QString &sentence) { return {Refused, {}, line(sentence)}; }
    static CommandResult wrongUsage(const QString &sentence) { return {WrongUsage, {}, line(sentence)}; }

private:
    static QByteArray line(const QString &sentence)
    {
        return QByteArrayLiteral("orvelle: ") + sentence.toUtf8() + '\n';
    }
};

} // namespace orvelle
