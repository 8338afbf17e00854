#pragma once

#include "links/richtext/RichText.h"

#include <memory>
#include <optional>

class QMimeData;

namespace orvelle {

/// Texts longer than this (in characters) are not pasted, and rich ones only
/// as plain text beyond an eighth of it.
constexpr qsizetype maxPasteLength = 8 * 1024 * 1024;

/// The text for other programs: RTF, HTML and plain text.
std::unique_ptr<QMimeData> mimeDataOf(const RichText &text);

/// What notes can show of copied or dropped data: the formatting they offer,
/// links of safe schemes, never pictures. Nothing is fetched or run. Absent
/// when there is no text in it or too much.
std::optional<RichText> richTextOf(const QMimeData &data);
/// The same without any formatting.
std::optional<RichText> plainTextOf(const QMimeData &data);

} // namespace orvelle
