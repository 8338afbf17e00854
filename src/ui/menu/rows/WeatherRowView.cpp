#include "ui/menu/rows/WeatherRowView.h"

#include "base/Notifications.h"
#include "base/Text.h"
#include "platform/Clock.h"
#include "widgets/weather/WeatherManager.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::seconds agingPeriod{30};

} // namespace

WeatherRowView::WeatherRowView(const WeatherManager &manager, const Notifications &notifications, Clock &clock,
                               std::function<void()> open, QWidget *parent)
    : WidgetRowView(parent), m_manager(manager), m_clock(clock), m_open(std::move(open))
{
    connect(&notifications, &Notifications::weatherChanged, this, &WeatherRowView::refresh);
    connect(&manager, &WeatherManager::stateChanged, this, &WeatherRowView::refresh);
    refresh();
}

WeatherRowView::~WeatherRowView() = default;

void WeatherRowView::showEvent(QShowEvent *event)
{
    WidgetRowView::showEvent(event);
    m_aging = m_clock.repeating(agingPeriod, [this] { refresh(); });
}

void WeatherRowView::hideEvent(QHideEvent *event)
{
    m_aging.reset();
    WidgetRowView::hideEvent(event);
}

void WeatherRowView::refresh()
{
    m_notice = notice();
    if (m_manager.weatherData()) {
        const WeatherFace shown = face();
        describe(text("weather.title"_text) + u", "_s + shown.city,
                 QStringList{m_manager.weatherData()->conditionDescription(), shown.temperature, shown.range,
                             shown.warns || m_manager.isReadingOld() ? shown.detail : QString()}
                     .join(u", "_s));
    } else {
        describe(text("weather.title"_text), m_notice.words);
    }
    updateGeometry();
    update();
}

WeatherRowView::Notice WeatherRowView::notice() const
{
    const bool isManual = m_manager.locationMode() == WeatherLocationMode::Manual;
    if (isManual && m_manager.manualCity().trimmed().isEmpty())
        return {u"location.slash"_s, text("weather.noCity"_text)};
    if (m_manager.isGeocodingCity())
        return {u"cloud.sun.fill"_s, text("weather.locationPending"_text)};
    if (m_manager.isLocationRefused())
        return {u"location.slash"_s, text("weather.locationDenied"_text)};
    if (m_manager.lastFetchFailed())
        return {u"exclamationmark.cloud"_s, text("weather.unavailable"_text)};
    return {u"cloud.sun.fill"_s, text("weather.locationPending"_text)};
}

QString WeatherRowView::age() const
{
    const double seconds = std::max(0.0, m_clock.now() - m_manager.weatherData()->fetchDate);
    const auto minutes = static_cast<qlonglong>(seconds / 60);
    if (minutes < 60)
        return text("weather.minutesAgo %lld"_text, std::max<qlonglong>(1, minutes));
    if (minutes < 48 * 60)
        return text("weather.hoursAgo %lld"_text, minutes / 60);
    return text("weather.daysAgo %lld"_text, minutes / (24 * 60));
}

WeatherFace WeatherRowView::face() const
{
    WeatherFace face = weatherFace(*m_manager.weatherData(), WeatherManager::temperatureUnit());
    face.warns = m_manager.lastFetchFailed();
    if (face.warns || m_manager.isReadingOld())
        face.detail = age();
    return face;
}

WeatherCanvas WeatherRowView::canvas() const
{
    return {rect(),          MenuLook::margin, MenuLook::iconSide, MenuLook::iconGap,  palette(),
            look().ground(), font(),           layoutDirection(),  devicePixelRatioF()};
}

QSize WeatherRowView::sizeHint() const
{
    const WeatherDisplayStyle style = m_manager.displayStyle();
    const int height = weatherHeight(font(), style);
    if (m_manager.weatherData())
        return {weatherWidth(canvas(), style, face()), height};
    const int words = QFontMetrics(font()).horizontalAdvance(m_notice.words);
    return {MenuLook::margin * 2 + MenuLook::iconSide + MenuLook::iconGap + words, height};
}

void WeatherRowView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (m_manager.weatherData()) {
        paintWeather(painter, canvas(), m_manager.displayStyle(), face());
    } else {
        QRect icon = iconRect();
        icon.moveTop((height() - icon.height()) / 2);
        paintSymbol(painter, m_notice.symbol, icon, labelColor());
        painter.setPen(labelColor());
        painter.drawText(mirrored(contentRect()), Qt::AlignVCenter | Qt::AlignLeading | Qt::TextSingleLine,
                         QFontMetrics(font()).elidedText(m_notice.words, Qt::ElideRight, contentRect().width()));
    }
    paintFocus(painter);
}

void WeatherRowView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        m_open();
}

void WeatherRowView::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space)
        return m_open();
    WidgetRowView::keyPressEvent(event);
}

} // namespace orvelle
