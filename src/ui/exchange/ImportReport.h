#pragma once

#include "links/exchange/ForeignLinks.h"
#include "links/exchange/LinkExchange.h"
#include "platform/Alerts.h"

namespace orvelle {

// What is said when links have come in or gone out. In an alert about an
// import, the second button, where there is one, undoes it.

/// `settingsChanged`: settings came along that were others here.
Alert importAlert(const ImportResult &result, ImportMode mode, qint64 droppedCount, bool settingsChanged);
/// `imported`: items that came into the tree, groups included.
Alert importAlert(const ForeignLinks &foreign, qint64 imported);
/// `count` items went into the file called `fileName`.
Alert exportAlert(const QString &fileName, qint64 count, qint64 notesLeftOut);

/// A failure under the title of what failed.
Alert failureAlert(const QString &title, const QString &sentence);

} // namespace orvelle
