#pragma once

#include "widgets/weather/WeatherColors.h"
#include "widgets/weather/WeatherData.h"

#include <QColor>
#include <QFont>
#include <QPalette>
#include <QRect>
#include <QString>

class QPainter;

namespace orvelle {

/// What a row of the weather shows, in words and colours.
struct WeatherFace {
    QString symbol;
    QString city;
    QString detail; ///< the condition, or how old the reading is
    bool warns = false;
    QString temperature;
    QString range; ///< "11° / 24°"
    WeatherGradient colors;
    friend bool operator==(const WeatherFace &, const WeatherFace &) = default;
};

WeatherFace weatherFace(const WeatherData &data, WeatherTemperatureUnit unit);

/// Where and with what it is painted. Lengths are logical pixels.
struct WeatherCanvas {
    QRect rect;
    int margin = 10;   ///< from the edge to the symbol
    int iconSide = 16; ///< of the gutter that the symbol is centred in
    int iconGap = 9;   ///< from the gutter to the text
    QPalette palette;
    QColor ground; ///< behind the row
    QFont font;
    Qt::LayoutDirection direction = Qt::LeftToRight;
    qreal ratio = 1; ///< device pixels per logical pixel
};

void paintWeather(QPainter &painter, const WeatherCanvas &canvas, WeatherDisplayStyle style, const WeatherFace &face);
int weatherHeight(const QFont &font, WeatherDisplayStyle style);
/// The width in which nothing of the face is cut.
int weatherWidth(const WeatherCanvas &canvas, WeatherDisplayStyle style, const WeatherFace &face);

/// The colours of a style: its ground runs from one colour to the other, the
/// temperature stands on its own ground or on the same, and every text has a
/// contrast of at least 4.5 : 1 to all that may lie behind it.
struct WeatherInk {
    QColor groundFrom;
    QColor groundTo;
    QColor text;
    QColor quietText;
    QColor chipFrom; ///< behind the symbol
    QColor chipTo;
    QColor symbol;
    QColor pillFrom; ///< behind the temperature
    QColor pillTo;
    QColor temperature;
};
WeatherInk weatherInk(WeatherDisplayStyle style, const WeatherGradient &colors, const QPalette &palette,
                      const QColor &ground);

} // namespace orvelle
