#include "ui/common/Colors.h"
#include "ui/common/Icons.h"

#include <QFile>

#include <gtest/gtest.h>

namespace orvelle {
namespace {
using namespace Qt::StringLiterals;

QPalette themed(const QColor &ground, const QColor &text)
{
    QPalette palette;
    palette.setColor(QPalette::Window, ground);
    palette.setColor(QPalette::WindowText, text);
    return palette;
}

TEST(ColorsTest, TintedRowsAreReadableInEveryColourAndTheme)
{
    const QPalette themes[] = {themed(u"#efefef"_s, Qt::black), themed(u"#ffffff"_s, u"#333333"_s),
                               themed(u"#2d2d2d"_s, Qt::white), themed(u"#353535"_s, u"#dddddd"_s)};
    for (const QPalette &theme : themes) {
        const QColor ground = theme.color(QPalette::Window);
        for (const ColorChoice &choice : allColors()) {
            const QColor color = toQColor(choice.color, theme);
            const Tint tint = softTint(color, ground, theme.color(QPalette::WindowText));
            EXPECT_GE(contrastRatio(tint.ground, tint.text), 4.5) << choice.key << qPrintable(ground.name());
            const QColor icon = readable(color, tint.ground, tint.text, 2.0);
            EXPECT_GE(contrastRatio(icon, tint.ground), 2.0) << choice.key << qPrintable(ground.name());
        }
    }
}

TEST(ColorsTest, ContrastFollowsItsDefinition)
{
    EXPECT_NEAR(contrastRatio(Qt::black, Qt::white), 21.0, 0.001);
    EXPECT_NEAR(contrastRatio(u"#777777"_s, Qt::white), 4.48, 0.005);
}

TEST(IconsTest, SymbolsTakeTheColourAskedFor)
{
    const QImage image = symbolImage(u"folder.fill"_s, 32, QColor(Qt::red));
    ASSERT_EQ(image.size(), QSize(32, 32));
    EXPECT_EQ(image.pixelColor(16, 18), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0);
    EXPECT_TRUE(symbolImage(u"../x"_s, 32, Qt::red).isNull());
    EXPECT_EQ(symbolPixmap(u"star.fill"_s, 16, Qt::blue, 1.5).size(), QSize(24, 24));
}

TEST(IconsTest, BadImageDataFallsBackToTheSymbol)
{
    for (const QByteArray &data : {QByteArray("no image"), QByteArray("\x89PNG\r\n\x1a\n", 8)}) {
        const QPixmap pixmap = linkPixmap({data, {}, u"globe"_s}, 16, Qt::red, 1);
        EXPECT_EQ(pixmap.toImage(), symbolPixmap(u"globe"_s, 16, Qt::red, 1).toImage());
    }
}

} // namespace
} // namespace orvelle
