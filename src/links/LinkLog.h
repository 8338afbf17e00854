#pragma once

#include <QLoggingCategory>

namespace orvelle {

Q_DECLARE_LOGGING_CATEGORY(lcLinkStore)

} // namespace orvelle
