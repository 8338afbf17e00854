#pragma once

#include "base/Timestamp.h"

#include <array>
#include <optional>
#include <string_view>

namespace orvelle {

/// "2024-02-29T12:00:00Z": the text of a moment in UTC, whole seconds
/// (ISO 8601, the profile of RFC 3339). Fractions are cut off downwards. The
/// form has four digits for the year, so moments before year 1 (the distant
/// past is one) become its first second and those after year 9999 its last.
/// `moment` must be a number.
class IsoDate
{
public:
    explicit IsoDate(Timestamp moment);
    std::string_view text() const { return {m_text.data(), m_text.size()}; }

private:
    std::array<char, 20> m_text;
};

/// Reads that form; instead of "Z" an offset "+hh:mm" or "-hh:mm" may stand.
/// The first second of year 1 is the distant past.
/// Absent for anything else: fractions, other separators, days and times that
/// do not exist, years outside of 1 to 9999.
std::optional<Timestamp> parseIsoDate(std::string_view text);

} // namespace orvelle
