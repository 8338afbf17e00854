#pragma once

#include <QByteArray>

namespace orvelle {

/// The largest picture that is kept, in bytes: 200 KiB.
constexpr qint64 faviconMaxSize = 204800;
/// The largest picture that is decoded, in pixels a side.
constexpr int faviconMaxSide = 1024;

/// Whether the bytes are a picture of a size and format that links are drawn
/// with: PNG, JPEG, GIF, ICO, BMP or WebP where the toolkit reads it. The size
/// that the picture states is looked at before anything is decoded. Any
/// thread; up to some milliseconds.
bool isFaviconImage(const QByteArray &bytes);

} // namespace orvelle
