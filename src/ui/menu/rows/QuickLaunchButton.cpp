#include "ui/menu/rows/QuickLaunchButton.h"

#include "base/DisplayTitle.h"
#include "base/Text.h"
#include "ui/common/Colors.h"
#include "ui/common/Icons.h"
#include "ui/common/PlainToolTip.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <array>
#include <cmath>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr double iconSide = 28;
constexpr double badgeSide = 12;
constexpr double goneOpacity = 0.35;
constexpr int leastWidth = 50;

/// One for each place, bright enough for the dark ground of the style.
constexpr std::array neonColors{QColor(0x22, 0xd3, 0xee), QColor(0xf4, 0x72, 0xb6), QColor(0xa3, 0xe6, 0x35),
                                QColor(0xfb, 0xbf, 0x24)};

QFont captionFont(QFont font)
{
    font.setPointSizeF(font.pointSizeF() * 0.82);
    return font;
}

} // namespace

void QuickLaunchButton::setContent(const Content &content, QuickLaunchDisplayStyle style, int place)
{
    m_content = content;
    m_style = style;
    m_place = place;
    const QString gone = content.isGone ? orvelle::text("quicklaunch.gone"_text) : QString();
    setAccessibleName(content.name);
    setAccessibleDescription(gone);
    const QString told = gone.isEmpty() ? content.name : content.name + u"\n"_s + gone;
    setToolTip(plainToolTip(told));
    updateGeometry();
    update();
}

int QuickLaunchButton::heightOf(QuickLaunchDisplayStyle style, const QFontMetrics &metrics)
{
    switch (style) {
    case QuickLaunchDisplayStyle::Souffle:
        return 46;
    case QuickLaunchDisplayStyle::Dock:
        return 52;
    case QuickLaunchDisplayStyle::Neon:
        return 54;
    case QuickLaunchDisplayStyle::Encre:
        return 36 + metrics.height();
    }
    Q_UNREACHABLE();
}

QSize QuickLaunchButton::sizeHint() const
{
    return {leastWidth, heightOf(m_style, fontMetrics())};
}

QRectF QuickLaunchButton::square(double side, double centre) const
{
    return {(width() - side) / 2, centre - side / 2, side, side};
}

void QuickLaunchButton::paintEvent(QPaintEvent *)
{
    static constexpr std::array<Paint, 4> paints{&QuickLaunchButton::paintSouffle, &QuickLaunchButton::paintDock,
                                                 &QuickLaunchButton::paintNeon, &QuickLaunchButton::paintEncre};
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    (this->*paints.at(static_cast<std::size_t>(m_style)))(painter);
}

void QuickLaunchButton::paintIcon(QPainter &painter, const QRectF &square) const
{
    const auto side = static_cast<int>(std::lround(square.width()));
    const bool isInk = m_style == QuickLaunchDisplayStyle::Encre;
    painter.save();
    if (m_content.isGone)
        painter.setOpacity(goneOpacity);
    if (isInk) {
        painter.drawImage(square, inked(side));
    } else {
        const QPixmap icon = m_content.icon.pixmap(QSize(side, side), devicePixelRatioF());
        QSizeF size = icon.deviceIndependentSize().scaled(square.size(), Qt::KeepAspectRatio);
        QRectF place({}, size);
        place.moveCenter(square.center());
        painter.drawPixmap(place, icon, icon.rect());
    }
    painter.restore();
    if (!m_content.isGone)
        return;
    const QColor ink =
        m_style == QuickLaunchDisplayStyle::Neon ? QColor(Qt::white) : palette().color(QPalette::WindowText);
    const QPointF corner = square.bottomRight() - QPointF(badgeSide - 3, badgeSide - 3);
    painter.drawPixmap(corner.toPoint(), symbolPixmap(u"exclamationmark.triangle.fill"_s, static_cast<int>(badgeSide),
                                                      ink, devicePixelRatioF()));
}

/// Soft tiles that brighten under the pointer.
void QuickLaunchButton::paintSouffle(QPainter &painter) const
{
    const QColor highlight = palette().color(QPalette::Highlight);
    const QColor ink = palette().color(QPalette::WindowText);
    const QRectF tile = square(38, height() / 2.0);
    QLinearGradient breath(tile.topLeft(), tile.bottomLeft());
    breath.setColorAt(0, isCurrent() ? faint(highlight, 0.45) : faint(ink, 0.04));
    breath.setColorAt(1, isCurrent() ? faint(highlight, 0.25) : faint(ink, 0.10));
    painter.setPen(isCurrent() ? QPen(highlight, 1.5) : QPen(faint(ink, 0.06), 1));
    painter.setBrush(breath);
    painter.drawRoundedRect(tile, 11, 11);
    paintIcon(painter, square(isDown() ? iconSide - 2 : iconSide, height() / 2.0));
}

/// On a shelf, which the row draws; the current one rises and grows.
void QuickLaunchButton::paintDock(QPainter &painter) const
{
    const double side = isCurrent() ? iconSide + 6 : iconSide;
    const double foot = height() - 13;
    paintIcon(painter, square(side, foot - side / 2 - (isCurrent() && !isDown() ? 1 : 0)));
    const QColor ink = palette().color(QPalette::WindowText);
    painter.setPen(Qt::NoPen);
    painter.setBrush(isCurrent() ? palette().color(QPalette::Highlight) : faint(ink, 0.3));
    const double dot = isCurrent() ? 2.5 : 1.5;
    painter.drawEllipse(QPointF(width() / 2.0, foot + 4.5), dot, dot);
}

/// Glowing rings on a night of their own, in both themes.
void QuickLaunchButton::paintNeon(QPainter &painter) const
{
    const QColor color =
        m_content.isGone ? QColor(0x9c, 0xa3, 0xaf) : neonColors.at(std::size_t(m_place) % neonColors.size());
    const double radius = 20;
    const QPointF centre(width() / 2.0, height() / 2.0);
    QRadialGradient light(centre, radius + 6);
    light.setColorAt(0, faint(color, isCurrent() ? 0.35 : 0.06));
    light.setColorAt(radius / (radius + 6), faint(color, isCurrent() ? 0.45 : 0.16));
    light.setColorAt(1, faint(color, 0));
    painter.setPen(Qt::NoPen);
    painter.setBrush(light);
    painter.drawEllipse(centre, radius + 6, radius + 6);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, isCurrent() ? 2.5 : 1.25));
    painter.drawEllipse(centre, radius, radius);
    paintIcon(painter, square(isDown() ? 22 : 24, height() / 2.0));
}

/// The icon as a drawing in the text's colour: the darker a part is on paper,
/// the more ink it takes; on dark grounds the other way about.
QImage QuickLaunchButton::inked(int side) const
{
    QImage image =
        m_content.icon.pixmap(QSize(side, side), devicePixelRatioF()).toImage().convertToFormat(QImage::Format_ARGB32);
    const QColor ink = palette().color(QPalette::WindowText);
    const bool dark = isDark(palette());
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (QRgb *pixel = line; pixel < line + image.width(); ++pixel) {
            const double light = qGray(*pixel) / 255.0;
            const double amount = 0.15 + 0.85 * (dark ? light : 1 - light);
            *pixel = qRgba(ink.red(), ink.green(), ink.blue(), int(std::lround(qAlpha(*pixel) * amount)));
        }
    }
    return image;
}

void QuickLaunchButton::paintEncre(QPainter &painter) const
{
    const QColor ink = palette().color(QPalette::WindowText);
    const double middle = 19;
    if (isCurrent()) {
        // A stroke of a broad brush behind the drawing, thin at both ends.
        const double left = width() / 2.0 - 25;
        QPainterPath stroke(QPointF(left, middle + 4));
        stroke.cubicTo({left + 10, middle - 17}, {left + 34, middle - 13}, {left + 50, middle - 7});
        stroke.cubicTo({left + 44, middle + 12}, {left + 16, middle + 17}, {left, middle + 4});
        painter.setPen(Qt::NoPen);
        painter.setBrush(faint(palette().color(QPalette::Highlight), 0.4));
        painter.drawPath(stroke);
    }
    paintIcon(painter, square(isDown() ? 22 : 24, middle));
    const QFont caption = captionFont(font());
    const QFontMetrics metrics(caption);
    const QRect place(2, 34, width() - 4, metrics.height());
    painter.setFont(caption);
    painter.setPen(m_content.isGone ? faint(ink, 0.6) : ink);
    painter.drawText(place, Qt::AlignCenter | Qt::TextSingleLine,
                     metrics.elidedText(displayTitle(m_content.name), Qt::ElideRight, place.width()));
}

} // namespace orvelle
