#pragma once

#include <QByteArray>
#include <QString>

namespace orvelle {

// The desktop's leave to take the focus, for the window that opens next, ours
// or that of a program that is started. It is kept in the environment, where
// the toolkit looks for it. Main thread, which alone changes the environment.

/// False, and without effect, for what cannot be one.
bool takeActivationToken(const QString &token);

/// The token, which serves once; empty without one.
QByteArray spendActivationToken();

} // namespace orvelle
