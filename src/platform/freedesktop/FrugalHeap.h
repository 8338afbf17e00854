#pragma once

namespace orvelle {

/// From here on memory that is freed goes back to the system early. Left to
/// itself, glibc takes one large picture that was copied as a sign that more
/// will follow, and keeps that much for as long as the program runs. Once, from
/// main(), before threads; does nothing with other C libraries.
void keepHeapFrugal();

} // namespace orvelle
