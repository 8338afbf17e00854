#include "links/LinkColors.h"
#include "platform/Appearance.h"
#include "ui/common/Colors.h"
#include "ui/common/EdgeStyle.h"
#include "ui/common/Theme.h"
#include "ui/common/WeatherPainter.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QStyleFactory>
#include <QStyleOptionButton>

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

struct Named {
    const char *name;
    QPalette palette;
    double text; ///< the least contrast of texts and symbols
    double edge;
};

QList<Named> palettes()
{
    const auto fusion = std::unique_ptr<QStyle>(QStyleFactory::create(u"fusion"_s));
    QPalette white = fusion->standardPalette();
    white.setColor(QPalette::Window, Qt::white);
    return {{"light", Theme::legible(fusion->standardPalette()), 4.5, 3},
            {"white", Theme::legible(white), 4.5, 3},
            {"dark", Theme::darkPalette(), 4.5, 3},
            {"high contrast", Theme::highContrastPalette(false), 7, 7},
            {"dark, high contrast", Theme::highContrastPalette(true), 7, 7}};
}

TEST(Contrast, OfWhatThePalettesPair)
{
    const std::pair<QPalette::ColorRole, QPalette::ColorRole> pairs[] = {
        {QPalette::WindowText, QPalette::Window},
        {QPalette::Text, QPalette::Base},
        {QPalette::Text, QPalette::AlternateBase},
        {QPalette::ButtonText, QPalette::Button},
        {QPalette::HighlightedText, QPalette::Highlight},
        {QPalette::ToolTipText, QPalette::ToolTipBase},
        {QPalette::PlaceholderText, QPalette::Base},
        {QPalette::Link, QPalette::Window},
        {QPalette::Link, QPalette::Base},
        {QPalette::LinkVisited, QPalette::Window},
    };
    for (const Named &each : palettes()) {
        EXPECT_EQ(isHighContrast(each.palette), each.text == 7) << each.name;
        for (const auto group : {QPalette::Active, QPalette::Inactive}) {
            for (const auto &[front, ground] : pairs)
                EXPECT_GE(contrastRatio(each.palette.color(group, front), each.palette.color(group, ground)), each.text)
                    << each.name << ": " << front << " on " << ground;
        }
        // What is off may be weaker, but not where contrast was asked for. The
        // toolkit's own palette is left alone.
        const double disabled = each.text == 7 ? 4.5 : isDark(each.palette) ? 3 : 1;
        for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
            EXPECT_GE(contrastRatio(each.palette.color(QPalette::Disabled, role), each.palette.color(QPalette::Window)),
                      disabled)
                << each.name << ": " << role;
    }
}

TEST(Contrast, OfWhatIsMixedFromThem)
{
    for (const Named &each : palettes()) {
        const QPalette &palette = each.palette;
        const auto expect = [&](const QColor &front, const QColor &ground, double least, const char *what) {
            EXPECT_GE(contrastRatio(front, ground) + 0.005, least)
                << each.name << ": " << what << " " << front.name().toStdString() << " on "
                << ground.name().toStdString();
        };
        for (const auto ground : {QPalette::Window, QPalette::Base}) {
            const QColor under = palette.color(ground);
            const QColor text = palette.color(QPalette::WindowText);
            expect(quiet(text, under, 0.4, palette), under, each.text, "label");
            expect(readable(palette.color(QPalette::Mid), under, text, textContrast(palette)), under, each.text,
                   "hint");
            expect(accent(palette, under), under, each.edge, "accent");
            expect(EdgeStyle::edgeColor(palette, EdgeStyle::Edge::Mark), under, each.edge, "edge");
            for (const ColorChoice &choice : allColors()) {
                const QColor color = toQColor(choice.color, palette);
                const Tint tint = softTint(color, under, text, textContrast(palette));
                expect(tint.text, tint.ground, each.text, choice.key);
                expect(readable(color, tint.ground, tint.text, textContrast(palette)), tint.ground, each.text,
                       "symbol");
                expect(readable(color, under, text, textContrast(palette)), under, each.text, "symbol");
            }
        }
        const QColor chosen = palette.color(QPalette::Highlight);
        expect(quiet(palette.color(QPalette::HighlightedText), chosen, 0.4, palette), chosen, each.text,
               "on selection");
        if (isHighContrast(palette))
            expect(separatorColor(palette), palette.color(QPalette::Window), 7, "line");
    }
}

/// The strongest contrast that anything within `area` has to `ground`.
double strongest(const QImage &image, const QRect &area, const QColor &ground)
{
    double best = 1;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x)
            best = std::max(best, contrastRatio(image.pixelColor(x, y), ground));
    }
    return best;
}

/// The middle of the lower edge of a control without text, where nothing but
/// its frame is drawn.
double contrastOfEdge(QWidget &control, const QPalette &palette)
{
    control.setPalette(palette);
    control.resize(120, control.sizeHint().height());
    control.ensurePolished();
    QImage image(control.size(), QImage::Format_RGB32);
    image.fill(palette.color(QPalette::Window));
    control.render(&image, {}, {}, QWidget::DrawChildren);
    return strongest(image, {20, control.height() - 4, 30, 4}, palette.color(QPalette::Window));
}

double contrastOfMark(const QAbstractButton &box, const QPalette &palette, QStyle::PrimitiveElement mark)
{
    QStyleOptionButton option;
    option.initFrom(&box);
    option.palette = palette;
    option.state = QStyle::State_Enabled | QStyle::State_Off;
    option.rect = {0, 0, 14, 14};
    QImage image(14, 14, QImage::Format_RGB32);
    image.fill(palette.color(QPalette::Window));
    QPainter painter(&image);
    QApplication::style()->drawPrimitive(mark, &option, &painter, &box);
    painter.end();
    return std::min(strongest(image, image.rect(), palette.color(QPalette::Window)),
                    strongest(image, image.rect(), palette.color(QPalette::Base)));
}

TEST(Contrast, OfEmptyBoxesAndOfFrames)
{
    EdgeStyle::install();
    QCheckBox box;
    QRadioButton radio;
    QLineEdit line;
    QComboBox combo;
    QPushButton button;
    for (const Named &each : palettes()) {
        EXPECT_GE(contrastOfMark(box, each.palette, QStyle::PE_IndicatorCheckBox), each.edge) << each.name;
        EXPECT_GE(contrastOfMark(radio, each.palette, QStyle::PE_IndicatorRadioButton), each.edge) << each.name;
        if (isDark(each.palette) || each.edge == 7) {
            EXPECT_GE(contrastOfEdge(line, each.palette), each.edge) << each.name;
            EXPECT_GE(contrastOfEdge(combo, each.palette), each.edge) << each.name;
        }
        if (each.edge == 7) {
            EXPECT_GE(contrastOfEdge(button, each.palette), each.edge) << each.name;
        }
    }
}

class FakeAppearance : public Appearance
{
public:
    bool dark = false;
    bool highContrast = false;
    bool prefersDark() const override { return dark; }
    bool prefersHighContrast() const override { return highContrast; }
    void turns(bool toDark, bool toHighContrast)
    {
        dark = toDark;
        highContrast = toHighContrast;
        emit changed();
    }
};

TEST(Contrast, FollowsTheDesktopAndBack)
{
    const QPalette before = QApplication::palette();
    {
        FakeAppearance desktop;
        const Theme theme(desktop);
        const QColor own = QApplication::palette().color(QPalette::Window);
        const struct {
            bool dark;
            bool highContrast;
            QColor window;
        } wishes[] = {{false, true, Qt::white},
                      {true, true, Qt::black},
                      {true, false, Theme::darkPalette().color(QPalette::Window)},
                      {false, false, own}};
        for (const auto &wish : wishes) {
            desktop.turns(wish.dark, wish.highContrast);
            EXPECT_EQ(QApplication::palette().color(QPalette::Window), wish.window);
            EXPECT_EQ(isHighContrast(QApplication::palette()), wish.highContrast);
        }
    }
    QApplication::setPalette(before);
}

} // namespace
} // namespace orvelle::test
