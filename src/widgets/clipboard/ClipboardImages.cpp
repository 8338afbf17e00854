#include "widgets/clipboard/ClipboardImages.h"

#include "base/Hash.h"
#include "base/Text.h"
#include "widgets/clipboard/ClipboardCache.h"
#include "widgets/clipboard/ClipboardLog.h"
#include "widgets/clipboard/ClipboardTypes.h"

#include <QBuffer>
#include <QFile>
#include <QImageReader>
#include <QPainter>

#include <algorithm>
#include <array>

namespace orvelle::ClipboardImages {

using namespace Qt::StringLiterals;

namespace {

constexpr int pixelsPerPoint = 2;

/// Bitmaps only, whatever a program calls its picture. A drawing in SVG is small
/// in bytes and pixels and can still take for ever to draw.
constexpr std::array<const char *, 6> formats{"png", "tiff", "jpeg", "webp", "bmp", "gif"};

QImage decoded(const QByteArray &bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    const QByteArray format = reader.format();
    if (std::ranges::none_of(formats, [&format](const char *each) { return format == each; }))
        return {};
    const QSize size = reader.size();
    if (!size.isValid() || qint64(size.width()) * size.height() > maxPixels)
        return {};
    return reader.read();
}

QByteArray asPng(const QByteArray &bytes)
{
    QByteArray png;
    QBuffer buffer(&png);
    const QImage picture = decoded(bytes);
    if (picture.isNull() || !buffer.open(QIODevice::WriteOnly) || !picture.save(&buffer, "PNG"))
        return {};
    return png;
}

QImage fitted(const QImage &picture)
{
    if (picture.isNull())
        return {};
    const int side = int(thumbnailSide) * pixelsPerPoint;
    QImage square(side, side, QImage::Format_ARGB32_Premultiplied);
    square.fill(Qt::transparent);
    const QSize size = picture.size().scaled(side, side, Qt::KeepAspectRatio).expandedTo({1, 1});
    QPainter painter(&square);
    painter.drawImage(QPoint((side - size.width()) / 2, (side - size.height()) / 2),
                      picture.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    painter.end();
    square.setDevicePixelRatio(pixelsPerPoint);
    return square;
}

} // namespace

QImage thumbnail(const QByteArray &bytes)
{
    return fitted(decoded(bytes));
}

std::optional<ClipboardEntry> entryFor(const QByteArray &bytes, const QString &type, const ClipboardCache &cache)
{
    const bool isTiff = type == ClipboardTypes::tiff();
    const bool isKeptAsIs = isTiff || type == ClipboardTypes::png();
    const QByteArray kept = isKeptAsIs ? bytes : asPng(bytes);
    if (kept.isEmpty()) {
        qCInfo(lcClipboard, "A clipboard image could not be read");
        return std::nullopt;
    }
    const auto path = cache.write(kept, isTiff ? u"tiff"_s : u"png"_s);
    if (!path) {
        qCWarning(lcClipboard, "Failed to write clipboard image to cache: %s", qPrintable(path.error().description));
        return std::nullopt;
    }
    ClipboardPayload payload;
    payload.kind = ClipboardPayload::Kind::Image;
    payload.path = *path;
    payload.type = isTiff ? ClipboardTypes::tiff() : ClipboardTypes::png();
    return ClipboardEntry{u"image:"_s + sha256Hex(kept), text("clipboard.typeImage"_text), u"photo"_s, payload,
                          thumbnail(kept)};
}

QList<PasteboardItem> formsOf(const ClipboardPayload &payload)
{
    QFile file(payload.path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return {};
    QList<PasteboardItem> forms{{payload.type, bytes}};
    if (payload.type != ClipboardTypes::png()) {
        const QByteArray png = asPng(bytes);
        if (!png.isEmpty())
            forms += {ClipboardTypes::png(), png};
    }
    return forms;
}

} // namespace orvelle::ClipboardImages
