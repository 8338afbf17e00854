#include "ui/common/LinkIconView.h"

#include "links/LinkColors.h"
#include "ui/common/Colors.h"

#include <QBuffer>
#include <QDir>
#include <QIcon>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <optional>

namespace orvelle {

namespace {

constexpr int side = 40;
constexpr int margin = 20;

QByteArray pictureOf(const QColor &color)
{
    QImage image(64, 64, QImage::Format_RGB32);
    image.fill(color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

QImage drawn(const LinkItem &item, bool broken)
{
    QImage image(side + 2 * margin, side + 2 * margin, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    QPalette palette;
    palette.setColor(QPalette::Base, Qt::white);
    paintLinkIcon(painter, {margin, margin, side, side}, item, {palette, QPalette::Base, broken, false});
    return image;
}

/// The smallest rectangle around what has the colour, seen from the icon.
QRect extentOf(const QImage &image, const QColor &color)
{
    QRect extent;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) == color)
                extent |= QRect(x - margin, y - margin, 1, 1);
        }
    }
    return extent;
}

LinkItem make(LinkType type)
{
    return LinkItem::make(QStringLiteral("x"), QStringLiteral("https://example.org"), type, Timestamp{});
}

} // namespace

// It could take for ever to draw, wherever the document with it came from.
TEST(LinkIconView, APictureThatIsADrawingIsNotDrawn)
{
    LinkItem item = make(LinkType::Url);
    const QImage without = drawn(item, false);
    item.faviconData = "<svg xmlns='http://www.w3.org/2000/svg' width='16' height='16'>"
                       "<rect width='16' height='16' fill='#ff0000'/></svg>";
    EXPECT_EQ(drawn(item, false), without);
    item.faviconData = pictureOf(Qt::red);
    EXPECT_NE(drawn(item, false), without);
}

TEST(LinkIconView, SitePictureComesBeforeTheSymbol)
{
    LinkItem item = make(LinkType::Url);
    item.faviconData = pictureOf(Qt::magenta);
    EXPECT_EQ(extentOf(drawn(item, false), Qt::magenta), QRect(0, 0, side, side));
    const QColor green = linkIconColor(item, QPalette());
    item.faviconData = QByteArray("no picture");
    const QRect symbol = extentOf(drawn(item, false), green);
    EXPECT_FALSE(symbol.isEmpty());
    EXPECT_TRUE(QRect(5, 5, 30, 30).contains(symbol)) << "three quarters of the side, in the middle";
}

TEST(LinkIconView, AFolderHasTheDesktopsFolder)
{
    const QStringList searched = QIcon::themeSearchPaths();
    const QString before = QIcon::themeName();
    const QTemporaryDir themes;
    ASSERT_TRUE(QDir(themes.path()).mkpath(QStringLiteral("probe/40")));
    const auto write = [&themes](const QString &name, const QByteArray &bytes) {
        QFile file(themes.filePath(QStringLiteral("probe/") + name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    };
    write(QStringLiteral("index.theme"), "[Icon Theme]\nName=Probe\nDirectories=40\n[40]\nSize=40\n");
    write(QStringLiteral("40/folder.png"), pictureOf(Qt::magenta));
    write(QStringLiteral("40/text-x-generic.png"), pictureOf(Qt::cyan));
    QIcon::setThemeSearchPaths({themes.path()});
    QIcon::setThemeName(QStringLiteral("probe"));
    const auto picture = [](LinkType type) {
        return drawn(LinkItem::make(QStringLiteral("x"), QStringLiteral("/srv/notes"), type, Timestamp{}), false);
    };
    EXPECT_FALSE(extentOf(picture(LinkType::Folder), Qt::magenta).isEmpty());
    EXPECT_FALSE(extentOf(picture(LinkType::File), Qt::cyan).isEmpty());
    QIcon::setThemeSearchPaths(searched);
    QIcon::setThemeName(before);
}

TEST(LinkIconView, BadgeOfWhatIsGoneReachesPastTheCorner)
{
    const LinkItem group = make(LinkType::Group);
    const QColor orange = toQColor(*nsColor(QStringLiteral("orange")), QPalette());
    EXPECT_TRUE(extentOf(drawn(group, false), orange).isEmpty());
    const QRect badge = extentOf(drawn(group, true), orange);
    EXPECT_TRUE(QRect(26, 26, 20, 20).contains(badge)) << "half the side, moved outward by 6";
    EXPECT_GT(badge.right(), side);
    EXPECT_GT(badge.width(), 12);
}

} // namespace orvelle
