#pragma once

#include <QString>

namespace orvelle {

/// The desktop's leave to take the focus, for the window that opens next.
/// False, and without effect, for what cannot be one.
bool takeActivationToken(const QString &token);

} // namespace orvelle
