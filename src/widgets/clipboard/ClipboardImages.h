#pragma once

#include "widgets/clipboard/ClipboardEntry.h"

namespace orvelle {

class ClipboardCache;

/// Pictures of the history. All of it may run on any thread, and takes up to
/// seconds for the largest.
namespace ClipboardImages {

/// The side of the square thumbnail in points.
constexpr double thumbnailSide = 32.0;
/// Pictures with more pixels are kept but not decoded: they have no thumbnail.
constexpr qint64 maxPixels = 32 * 1024 * 1024;

/// A picture drawn into the square, fitted, at twice the points so that it is
/// crisp on any screen; null for what does not decode.
QImage thumbnail(const QByteArray &bytes);

/// The entry of a copied picture of `type`, its bytes kept in the cache: PNG
/// and TIFF as they are, others as PNG. Nothing, with a note in the log, when
/// they cannot be kept or are no picture at all.
std::optional<ClipboardEntry> entryFor(const QByteArray &bytes, const QString &type, const ClipboardCache &cache);

/// The cached picture's bytes, and for a TIFF also a PNG, which more programs
/// ask for. Nothing when the file cannot be read.
QList<PasteboardItem> formsOf(const ClipboardPayload &payload);

} // namespace ClipboardImages
} // namespace orvelle
