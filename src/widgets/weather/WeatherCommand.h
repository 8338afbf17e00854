#pragma once

#include "platform/LocationService.h"

#include <QString>

#include <optional>

namespace orvelle {

/// `pattern` with {latitude} and {longitude} filled in, in degrees to about
/// 100 m ("48.857"). Absent when it wants a place and there is none.
std::optional<QString> filledIn(QString pattern, const std::optional<Coordinates> &place);

} // namespace orvelle
