#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

namespace orvelle {

/// A text on one line, with a blank for each character that a terminal would
/// obey instead of showing it: names come from documents and other machines.
QString printable(QString text);

/// What a command leaves behind.
struct CommandResult {
    enum ExitCode { Done = 0, Refused = 1, WrongUsage = 2 };

    int exitCode = Done;
    QByteArray out; ///< for standard output, any bytes
    QByteArray err; ///< for standard error, UTF-8

    static CommandResult done(const QByteArray &out = {}) { return {Done, out, {}}; }
    /// `sentence` without line end; it is made printable.
    static CommandResult refused(const QString &sentence) { return {Refused, {}, line(sentence)}; }
    static CommandResult wrongUsage(const QString &sentence) { return {WrongUsage, {}, line(sentence)}; }

private:
    static QByteArray line(const QString &sentence)
    {
        return QByteArrayLiteral("orvelle: ") + printable(sentence).toUtf8() + '\n';
    }
};

/// Takes the one result of a command, at once or later; on the main thread.
using CommandAnswer = std::function<void(const CommandResult &)>;

} // namespace orvelle
