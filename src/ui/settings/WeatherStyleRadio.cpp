#include "ui/settings/WeatherStyleRadio.h"

#include "ui/common/AssistedInput.h"
#include "widgets/weather/WeatherManager.h"

#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr int leastSampleWidth = 300;
constexpr int mostSampleWidth = 380; ///< as wide as a menu gets
constexpr int labelGap = 14;

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
    reachWhenChecked(this);
    setObjectName(u"style."_s + rawValue(style));
}

WeatherCanvas WeatherStyleRadio::canvas() const
{
    WeatherCanvas canvas;
    canvas.palette = palette();
    canvas.ground = palette().color(QPalette::Window);
    canvas.font = font();
    canvas.direction = layoutDirection();
    canvas.ratio = devicePixelRatioF();
    return canvas;
}

int WeatherStyleRadio::labelWidth() const
{
    int widest = 0;
    for (const WeatherDisplayStyle each : weatherDisplayStyles())
        widest = std::max(widest, fontMetrics().horizontalAdvance(weatherStyleLabel(each)));
    return widest + style()->pixelMetric(QStyle::PM_ExclusiveIndicatorWidth, nullptr, this) +
           style()->pixelMetric(QStyle::PM_RadioButtonLabelSpacing, nullptr, this) + labelGap;
}

int WeatherStyleRadio::sampleWidth() const
{
    int widest = leastSampleWidth;
    for (const WeatherDisplayStyle each : weatherDisplayStyles())
        widest = std::max(widest, weatherWidth(canvas(), each, sample()));
    return std::min(widest, mostSampleWidth);
}

QSize WeatherStyleRadio::sizeHint() const
{
    return {labelWidth() + sampleWidth(), weatherHeight(font(), m_style) + 4};
}

void WeatherStyleRadio::paintEvent(QPaintEvent *event)
{
    QRadioButton::paintEvent(event);
    QPainter painter(this);
    if (!isEnabled())
        painter.setOpacity(0.5);
    const int height = weatherHeight(font(), m_style);
    WeatherCanvas place = canvas();
    place.rect = QStyle::visualRect(layoutDirection(), rect(),
                                    {labelWidth(), (this->height() - height) / 2, sampleWidth(), height});
    paintWeather(painter, place, m_style, sample());
}

} // namespace orvelle
