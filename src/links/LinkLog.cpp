#include "links/LinkLog.h"

namespace orvelle {

Q_LOGGING_CATEGORY(lcLinkStore, "LinkStore", QtInfoMsg)

} // namespace orvelle
