#pragma once

#include "links/LinkItem.h"

namespace orvelle {

/// What the user made of an item: without the identity of one run, without
/// its members, without what is fetched or found out anew, and without times.
/// Two copies of an item say the same when this is equal.
LinkItem contentOf(LinkItem item);

} // namespace orvelle
