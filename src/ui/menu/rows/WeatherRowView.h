#pragma once

#include "ui/common/WeatherPainter.h"
#include "ui/menu/rows/WidgetRowView.h"

#include <functional>

namespace orvelle {

class Clock;
class Notifications;
class WeatherManager;

/// The weather in one of five styles, or why there is none. A click or Return
/// opens the forecast.
class WeatherRowView : public WidgetRowView
{
    Q_OBJECT

public:
    WeatherRowView(const WeatherManager &manager, const Notifications &notifications, const Clock &clock,
                   std::function<void()> open, QWidget *parent);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    struct Notice {
        QString symbol;
        QString words;
    };

    void refresh();
    Notice notice() const;
    WeatherFace face() const;
    QString age() const;
    WeatherCanvas canvas() const;

    const WeatherManager &m_manager;
    const Clock &m_clock;
    std::function<void()> m_open;
    Notice m_notice; ///< without a reading
};

} // namespace orvelle
