#pragma once

#include <QLoggingCategory>

namespace orvelle {

/// What the clipboard's history did. Never says what was copied.
Q_DECLARE_LOGGING_CATEGORY(lcClipboard)

} // namespace orvelle
