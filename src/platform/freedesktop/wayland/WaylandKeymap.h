#pragma once

#include <QByteArray>

namespace orvelle {

/// The keyboard that the compositor has set, in the text form of XKB; empty
/// where there is none. Asks the compositor, for a second at most.
QByteArray waylandKeymap();

} // namespace orvelle
