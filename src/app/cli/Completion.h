#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace orvelle {

/// The script that completes commands, options and files in a shell, made from
/// the table of commands. Absent for a shell other than bash, zsh and fish.
std::optional<QByteArray> completionScript(const QString &shell);

} // namespace orvelle
