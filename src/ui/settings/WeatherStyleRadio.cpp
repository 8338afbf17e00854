#include "ui/settings/WeatherStyleRadio.h"

#include "widgets/weather/WeatherManager.h"

#include <QPainter>
#include <QStyle>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr int sampleWidth = 300;
constexpr int labelWidth = 96;

WeatherFace sample()
{
    WeatherData data;
    data.temperatureCurrent = 18;
    data.temperatureMin = 12;
    data.temperatureMax = 23;
    data.weatherCode = 2;
    data.cityName = u"Paris"_s;
    return weatherFace(data, WeatherManager::temperatureUnit());
}

} // namespace

WeatherStyleRadio::WeatherStyleRadio(WeatherDisplayStyle style, QWidget *parent)
    : QRadioButton(weatherStyleLabel(style), parent), m_style(style)
{
    setObjectName(u"style."_s + rawValue(style));
}

QSize WeatherStyleRadio::sizeHint() const
{
    return {labelWidth + sampleWidth, weatherHeight(font(), m_style) + 4};
}

void WeatherStyleRadio::paintEvent(QPaintEvent *event)
{
    QRadioButton::paintEvent(event);
    QPainter painter(this);
    if (!isEnabled())
        painter.setOpacity(0.5);
    WeatherCanvas canvas;
    const int height = weatherHeight(font(), m_style);
    canvas.rect =
        QStyle::visualRect(layoutDirection(), rect(), {labelWidth, (this->height() - height) / 2, sampleWidth, height});
    canvas.palette = palette();
    canvas.ground = palette().color(QPalette::Window);
    canvas.font = font();
    canvas.direction = layoutDirection();
    canvas.ratio = devicePixelRatioF();
    paintWeather(painter, canvas, m_style, sample());
}

} // namespace orvelle
