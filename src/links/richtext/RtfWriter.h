#pragma once

#include "links/richtext/RichText.h"

#include <QByteArray>

namespace orvelle {

/// The text as RTF, in ASCII, that readRtf() reads back as the same. Source:
/// RTF specification 1.9.1 (fonts, list tables, fields, Unicode). List items
/// also carry their markers as text, for readers without lists.
QByteArray writeRtf(const RichText &text);

/// The point size, doubled as RTF counts, that stands for a step.
int halfPoints(TextSize size);

} // namespace orvelle
