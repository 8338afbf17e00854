#pragma once

#include "base/Result.h"
#include "links/richtext/RichText.h"

#include <QByteArrayView>

namespace orvelle {

struct RtfDocument {
    RichText text;
    /// The source holds something that a note cannot show (pictures, tables,
    /// footnotes), or it breaks off.
    bool incomplete = false;
};

enum class RtfError {
    NotRtf,   ///< does not begin as RTF does
    TooLarge, ///< more than maxRtfSize bytes or maxRtfParagraphs
    TooDeep,  ///< groups nested beyond maxRtfDepth
};

constexpr qsizetype maxRtfSize = 16 * 1024 * 1024;
constexpr qsizetype maxRtfParagraphs = 200'000;
constexpr qsizetype maxRtfDepth = 1000;

/// Reads what a note can show out of RTF. Source: RTF specification 1.9.1.
/// Taken: paragraphs, bold, italic, underline, strike, sizes (as the nearest
/// step), lists (list tables and the older kind), links (HYPERLINK fields),
/// Unicode and text in code pages; characters that do not decode become
/// U+FFFD. Bytes of any kind are safe to read; time and memory grow with their
/// number.
Result<RtfDocument, RtfError> readRtf(QByteArrayView bytes);

} // namespace orvelle
