#include "links/favicons/FaviconImage.h"

#include <QBuffer>
#include <QImageReader>

#include <algorithm>
#include <array>

namespace orvelle {

namespace {

/// Bitmaps only. A drawing in SVG is small in bytes and pixels and can still
/// take for ever to draw.
constexpr std::array<const char *, 6> formats = {"png", "jpeg", "gif", "ico", "bmp", "webp"};

bool hasAllowedSize(const QSize &size)
{
    return !size.isEmpty() && size.width() <= faviconMaxSide && size.height() <= faviconMaxSide;
}

} // namespace

bool isFaviconImage(const QByteArray &bytes)
{
    if (bytes.isEmpty() || bytes.size() > faviconMaxSize)
        return false;
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    const QByteArray format = reader.format();
    if (std::find(formats.begin(), formats.end(), format) == formats.end())
        return false;
    // Twice, as an icon file can hold a picture of another size than it states.
    return hasAllowedSize(reader.size()) && hasAllowedSize(reader.read().size());
}

} // namespace orvelle
