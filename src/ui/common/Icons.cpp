#include "ui/common/Icons.h"

#include <QApplication>
#include <QBuffer>
#include <QFile>
#include <QIconEngine>
#include <QImageReader>
#include <QMimeDatabase>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <algorithm>
#include <array>
#include <cmath>

// Outside any namespace, as the macro declares a global function.
static void registerSymbols()
{
    Q_INIT_RESOURCE(symbols);
}

namespace orvelle {
using namespace Qt::StringLiterals;
namespace {

/// A site's icon is hardly ever larger than 512 pixels; what claims more is
/// not worth the memory.
constexpr int largestImageSide = 2048;

/// Bitmaps only, whatever a document brings along. A drawing in SVG is small in
/// bytes and pixels and can still take for ever to draw.
constexpr std::array bitmapFormats{"png", "jpeg", "gif", "ico", "bmp", "webp", "tiff", "icns"};

QString symbolFile(const QString &name)
{
    registerSymbols();
    return u":/symbols/%1.svg"_s.arg(name);
}

int deviceSide(int side, qreal ratio)
{
    return static_cast<int>(std::lround(side * ratio));
}

/// Whether the symbol means before or after, and not a side of the screen.
bool pointsAlongTheText(const QString &name)
{
    return name == "arrow.left"_L1 || name == "arrow.right"_L1 || name.startsWith("arrow.uturn."_L1) ||
           name.startsWith("arrow.up.forward"_L1);
}

/// Draws its symbol anew for each size, mode and palette. Where one reads from
/// right to left, arrows of before and after are turned round.
class SymbolIconEngine : public QIconEngine
{
public:
    SymbolIconEngine(const QString &name, const QColor &color) : m_name(name), m_color(color) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        const qreal ratio = painter->device()->devicePixelRatio();
        const int side = std::min(rect.width(), rect.height());
        QRect square(0, 0, side, side);
        square.moveCenter(rect.center());
        painter->drawPixmap(square.topLeft(), picture(side, mode, ratio));
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return scaledPixmap(size, mode, state, 1);
    }

    QPixmap scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State, qreal ratio) override
    {
        // `size` is in device pixels here.
        const int side = std::min(size.width(), size.height());
        QPixmap result = picture(side, mode, 1);
        result.setDevicePixelRatio(ratio);
        return result;
    }

    QIconEngine *clone() const override { return new SymbolIconEngine(m_name, m_color); }
    bool isNull() override { return !hasSymbol(m_name); }
    QString key() const override { return u"orvelle-symbol"_s; }

private:
    QPixmap picture(int side, QIcon::Mode mode, qreal ratio) const
    {
        const QPixmap pixmap = symbolPixmap(m_name, side, color(mode), ratio);
        if (QApplication::layoutDirection() == Qt::LeftToRight || !pointsAlongTheText(m_name))
            return pixmap;
        return pixmap.transformed(QTransform::fromScale(-1, 1));
    }

    QColor color(QIcon::Mode mode) const
    {
        const QPalette palette = QApplication::palette();
        if (mode == QIcon::Disabled)
            return palette.color(QPalette::Disabled, QPalette::WindowText);
        if (mode == QIcon::Selected)
            return palette.color(QPalette::HighlightedText);
        return m_color.isValid() ? m_color : palette.color(QPalette::WindowText);
    }

    QString m_name;
    QColor m_color;
};

QPixmap centred(const QPixmap &pixmap, int side, qreal ratio)
{
    QPixmap result(QSize(deviceSide(side, ratio), deviceSide(side, ratio)));
    result.fill(Qt::transparent);
    QPainter painter(&result);
    painter.drawPixmap((result.width() - pixmap.width()) / 2, (result.height() - pixmap.height()) / 2, pixmap);
    painter.end();
    result.setDevicePixelRatio(ratio);
    return result;
}

QPixmap decoded(const QByteArray &data, int side, qreal ratio)
{
    QBuffer buffer;
    buffer.setData(data);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    const QByteArray format = reader.format();
    if (std::ranges::none_of(bitmapFormats, [&format](const char *each) { return format == each; }))
        return {};
    const QSize size = reader.size();
    if (!size.isValid() || size.width() > largestImageSide || size.height() > largestImageSide)
        return {};
    QImage image = reader.read();
    if (image.isNull())
        return {};
    const int target = deviceSide(side, ratio);
    image = image.scaled(target, target, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    image.setDevicePixelRatio(1);
    return centred(QPixmap::fromImage(image), side, ratio);
}

QPixmap imagePixmap(const QByteArray &data, int side, qreal ratio)
{
    const QString key = u"orvelle-image %1 %2 %3 %4"_s.arg(qHash(data, 0)).arg(data.size()).arg(side).arg(ratio);
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = decoded(data, side, ratio);
        QPixmapCache::insert(key, pixmap);
    }
    return pixmap;
}

QStringList themeNames(const LinkPicture &picture)
{
    if (picture.symbol == "folder"_L1)
        return {u"folder"_s, u"inode-directory"_s};
    const QMimeDatabase database;
    const QList<QMimeType> types = database.mimeTypesForFileName(picture.filePath.section(u'/', -1));
    if (types.isEmpty())
        return {u"text-x-generic"_s};
    return {types.first().iconName(), types.first().genericIconName(), u"text-x-generic"_s};
}

QPixmap pathPixmap(const LinkPicture &picture, int side, qreal ratio)
{
    for (const QString &name : themeNames(picture)) {
        const QIcon icon = QIcon::fromTheme(name);
        if (icon.isNull())
            continue;
        const QPixmap pixmap = icon.pixmap(QSize(side, side), ratio);
        if (!pixmap.isNull())
            return pixmap;
    }
    return {};
}

} // namespace

bool hasSymbol(const QString &name)
{
    return !name.isEmpty() && QFile::exists(symbolFile(name));
}

QImage symbolImage(const QString &name, int side, const QColor &color)
{
    QFile file(symbolFile(name));
    if (side <= 0 || !file.open(QIODevice::ReadOnly))
        return {};
    QByteArray svg = file.readAll();
    svg.replace("currentColor", color.name(QColor::HexRgb).toLatin1());
    QSvgRenderer renderer(svg);
    if (!renderer.isValid())
        return {};
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setOpacity(static_cast<double>(color.alphaF()));
    renderer.render(&painter);
    return image;
}

QPixmap symbolPixmap(const QString &name, int side, const QColor &color, qreal ratio)
{
    const QString key = u"orvelle-symbol %1 %2 %3 %4"_s.arg(name).arg(side).arg(color.rgba(), 0, 16).arg(ratio);
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap))
        return pixmap;
    pixmap = QPixmap::fromImage(symbolImage(name, deviceSide(side, ratio), color));
    pixmap.setDevicePixelRatio(ratio);
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

QIcon symbolIcon(const QString &name, const QColor &color)
{
    return QIcon(new SymbolIconEngine(name, color));
}

QPixmap ownPixmap(const LinkPicture &picture, int side, qreal ratio)
{
    if (!picture.imageData.isEmpty()) {
        const QPixmap pixmap = imagePixmap(picture.imageData, side, ratio);
        if (!pixmap.isNull())
            return pixmap;
    }
    return picture.filePath.isEmpty() ? QPixmap() : pathPixmap(picture, side, ratio);
}

QPixmap linkPixmap(const LinkPicture &picture, int side, const QColor &color, qreal ratio)
{
    const QPixmap own = ownPixmap(picture, side, ratio);
    return own.isNull() ? symbolPixmap(picture.symbol, side, color, ratio) : own;
}

} // namespace orvelle
