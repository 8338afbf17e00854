#include "ui/common/WeatherPainter.h"

#include "ui/common/Icons.h"

#include <QFontMetrics>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QStyle>

#include <algorithm>
#include <array>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

/// The geometry of a style. Lengths are logical pixels.
struct Shape {
    int symbolSide;
    int frame; ///< side of the frame that the symbol stands in; 0 for none
    qreal frameRound;
    int lines; ///< height beyond a line of text
    bool hasPanel;
    bool hasPill;
    bool isCentred; ///< the text stands between two spacers
};
/// In the order of WeatherDisplayStyle.
constexpr std::array<Shape, 5> shapes{{
    {22, 0, 0, 18, true, false, false},
    {15, 22, 11, 16, true, false, false},
    {20, 24, 0, 20, true, false, false},
    {18, 26, 7, 16, false, true, true},
    {16, 16, 0, 17, false, false, false},
}};

constexpr int panelInset = 4;
constexpr qreal panelRound = 8;
constexpr int gap = 8;
constexpr int pillPadding = 8;

const Shape &shapeOf(WeatherDisplayStyle style)
{
    return shapes.at(static_cast<std::size_t>(style));
}

QFont strong(QFont font)
{
    font.setBold(true);
    return font;
}

/// One row being painted.
class Paint
{
public:
    Paint(QPainter &painter, const WeatherCanvas &canvas, WeatherDisplayStyle style, const WeatherFace &face)
        : m_painter(painter),
          m_canvas(canvas),
          m_style(style),
          m_face(face),
          m_ink(weatherInk(style, face.colors, canvas.palette, canvas.ground))
    {
        painter.setRenderHint(QPainter::Antialiasing);
    }

    void all()
    {
        if (shapeOf(m_style).hasPanel)
            panel();
        if (m_style == WeatherDisplayStyle::Zephyr)
            breeze();
        symbol();
        const int end = figures();
        words(end);
    }

private:
    QRect mirrored(const QRect &rect) const { return QStyle::visualRect(m_canvas.direction, m_canvas.rect, rect); }

    QBrush brush(const QRectF &area, const QColor &from, const QColor &to, bool down = false) const
    {
        const bool back = m_canvas.direction == Qt::RightToLeft && !down;
        QLinearGradient gradient(area.topLeft(), down ? area.bottomLeft() : area.topRight());
        gradient.setColorAt(back ? 1 : 0, from);
        gradient.setColorAt(back ? 0 : 1, to);
        return gradient;
    }

    void panel()
    {
        const QRectF area = QRectF(m_canvas.rect).adjusted(panelInset, 2, -panelInset, -2);
        const bool isHorizon = m_style == WeatherDisplayStyle::Horizon;
        m_painter.setPen(Qt::NoPen);
        m_painter.setBrush(brush(area, m_ink.groundFrom, m_ink.groundTo, isHorizon));
        m_painter.drawRoundedRect(area, panelRound, panelRound);
        if (!isHorizon)
            return;
        // The line where the sky ends.
        const QRectF line(area.left() + panelRound, area.bottom() - 2, area.width() - 2 * panelRound, 2);
        m_painter.setBrush(brush(line, m_ink.symbol, m_ink.groundTo));
        m_painter.drawRect(line);
    }

    /// Two strokes of wind that fade out below the text.
    void breeze()
    {
        const QRectF area = QRectF(m_canvas.rect).adjusted(m_canvas.margin, 0, -m_canvas.margin, 0);
        QColor faded = m_ink.symbol;
        faded.setAlpha(0);
        m_painter.setBrush(Qt::NoBrush);
        for (const qreal rise : {2.5, 5.0}) {
            const qreal y = area.bottom() - rise;
            const qreal reach = area.width() * (rise > 3 ? 0.55 : 0.85);
            QPainterPath path(QPointF(area.left(), y));
            path.cubicTo(area.left() + reach * 0.3, y - 3, area.left() + reach * 0.6, y + 3, area.left() + reach, y);
            m_painter.setPen(QPen(brush(area, m_ink.symbol, faded), rise > 3 ? 0.8 : 1.4, Qt::SolidLine, Qt::RoundCap));
            m_painter.drawPath(path);
        }
    }

    void symbol()
    {
        const Shape &shape = shapeOf(m_style);
        QRect square(0, 0, shape.symbolSide, shape.symbolSide);
        const QRect &row = m_canvas.rect;
        square.moveCenter({row.left() + m_canvas.margin + m_canvas.iconSide / 2, row.center().y()});
        square = mirrored(square);
        if (shape.frameRound > 0) {
            QRectF frame(0, 0, shape.frame, shape.frame);
            frame.moveCenter(QRectF(square).center());
            const bool filled = m_style == WeatherDisplayStyle::Cristal;
            QColor edge = m_ink.symbol;
            edge.setAlpha(110);
            m_painter.setPen(filled ? QPen(Qt::NoPen) : QPen(edge, 1));
            m_painter.setBrush(filled ? brush(frame, m_ink.chipFrom, m_ink.chipTo, true) : QBrush(Qt::NoBrush));
            m_painter.drawRoundedRect(frame, shape.frameRound, shape.frameRound);
        }
        m_painter.drawPixmap(square.topLeft(),
                             symbolPixmap(m_face.symbol, square.width(), m_ink.symbol, m_canvas.ratio));
    }

    void write(const QRect &place, const QString &text, const QFont &font, const QColor &color)
    {
        m_painter.setFont(font);
        m_painter.setPen(color);
        m_painter.setLayoutDirection(m_canvas.direction);
        m_painter.drawText(mirrored(place), Qt::AlignVCenter | Qt::AlignLeading | Qt::TextSingleLine, text);
    }

    /// The temperatures at the end of the row; gives where they begin.
    int figures()
    {
        const QRect &row = m_canvas.rect;
        const QFont bold = strong(m_canvas.font);
        const int wide = QFontMetrics(bold).horizontalAdvance(m_face.temperature) + 1;
        const int range = QFontMetrics(m_canvas.font).horizontalAdvance(m_face.range) + 1;
        const int padding = shapeOf(m_style).hasPill ? pillPadding : 0;
        int x = row.right() + 1 - m_canvas.margin - range;
        write({x, row.top(), range, row.height()}, m_face.range, m_canvas.font, m_ink.quietText);
        x -= gap + padding + wide;
        if (padding > 0) {
            QRect pill(x - padding, 0, wide + 2 * padding, QFontMetrics(bold).height() + 4);
            pill.moveTop(row.top() + (row.height() - pill.height()) / 2);
            const QRectF area = mirrored(pill);
            m_painter.setPen(Qt::NoPen);
            m_painter.setBrush(brush(area, m_ink.pillFrom, m_ink.pillTo));
            m_painter.drawRoundedRect(area, area.height() / 2, area.height() / 2);
        }
        write({x, row.top(), wide, row.height()}, m_face.temperature, bold, m_ink.temperature);
        return x - padding - gap;
    }

    void words(int end)
    {
        const QFontMetrics metrics(m_canvas.font);
        const QFontMetrics boldMetrics(strong(m_canvas.font));
        const QRect &row = m_canvas.rect;
        int x = row.left() + m_canvas.margin + m_canvas.iconSide + m_canvas.iconGap;
        const int warning = m_face.warns ? 14 + 4 : 0;
        const int room = end - x;
        const int wantedDetail = metrics.horizontalAdvance(m_face.detail) + 1;
        // The city yields to what was to be said of it, down to a third.
        const int roomForCity = std::max(room / 3, room - wantedDetail - gap - warning);
        const QString city = boldMetrics.elidedText(m_face.city, Qt::ElideRight, roomForCity);
        const int cityWidth = boldMetrics.horizontalAdvance(city) + 1;
        const int left = room - cityWidth - gap - warning;
        const QString detail = left > 20 ? metrics.elidedText(m_face.detail, Qt::ElideRight, left) : QString();
        if (shapeOf(m_style).isCentred)
            x += std::max(0, left - metrics.horizontalAdvance(detail)) / 2;
        write({x, row.top(), cityWidth, row.height()}, city, strong(m_canvas.font), m_ink.text);
        x += cityWidth + gap;
        if (m_face.warns) {
            const QRect mark = mirrored({x, row.top() + (row.height() - 14) / 2, 14, 14});
            m_painter.drawPixmap(mark.topLeft(),
                                 symbolPixmap(u"exclamationmark.cloud"_s, 14, m_ink.quietText, m_canvas.ratio));
            x += warning;
        }
        write({x, row.top(), std::max(0, left), row.height()}, detail, m_canvas.font, m_ink.quietText);
    }

    QPainter &m_painter;
    const WeatherCanvas &m_canvas;
    WeatherDisplayStyle m_style;
    const WeatherFace &m_face;
    WeatherInk m_ink;
};

} // namespace

WeatherFace weatherFace(const WeatherData &data, WeatherTemperatureUnit unit)
{
    return {data.conditionIcon(),
            data.cityName,
            data.conditionDescription(),
            false,
            temperatureText(data.temperatureCurrent, unit),
            temperatureText(data.temperatureMin, unit) + u" / "_s + temperatureText(data.temperatureMax, unit),
            weatherGradient(data.temperatureCurrent, data.weatherCode)};
}

void paintWeather(QPainter &painter, const WeatherCanvas &canvas, WeatherDisplayStyle style, const WeatherFace &face)
{
    Paint(painter, canvas, style, face).all();
}

int weatherHeight(const QFont &font, WeatherDisplayStyle style)
{
    return QFontMetrics(font).height() + shapeOf(style).lines;
}

int weatherWidth(const WeatherCanvas &canvas, WeatherDisplayStyle style, const WeatherFace &face)
{
    const QFontMetrics metrics(canvas.font);
    const QFontMetrics bold(strong(canvas.font));
    const int pill = shapeOf(style).hasPill ? 2 * pillPadding : 0;
    const int warning = face.warns ? 18 : 0;
    return 2 * canvas.margin + canvas.iconSide + canvas.iconGap + bold.horizontalAdvance(face.city) + gap + warning +
           metrics.horizontalAdvance(face.detail) + 2 * gap + bold.horizontalAdvance(face.temperature) + pill + gap +
           metrics.horizontalAdvance(face.range) + 8;
}

} // namespace orvelle
