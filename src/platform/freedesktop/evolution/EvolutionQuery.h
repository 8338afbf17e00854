#pragma once

#include "platform/freedesktop/evolution/EvolutionEngine.h"
#include "platform/freedesktop/evolution/GObjectTools.h"

#include <libecal/libecal.h>

#include <optional>

namespace orvelle {

/// What the server calls the events that overlap [from, to).
GText daysExpression(qint64 from, qint64 to);

/// Asks for the events that overlap [from, to) of `about` and gives it back
/// with their text; nothing when the server did not answer. Waits for the
/// server; any thread.
std::optional<EvolutionEvents> evolutionEvents(ECalClient *client, EvolutionEvents about, GCancellable *cancellable);

} // namespace orvelle
