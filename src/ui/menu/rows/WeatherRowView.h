#pragma once

#include "ui/common/WeatherPainter.h"
#include "ui/menu/rows/WidgetRowView.h"

#include <functional>
#include <memory>

namespace orvelle {

class Clock;
class Notifications;
class Timer;
class WeatherManager;

/// The weather in one of five styles, or why there is none. A click or Return
/// opens the forecast.
class WeatherRowView : public WidgetRowView
{
    Q_OBJECT

public:
    WeatherRowView(const WeatherManager &manager, const Notifications &notifications, Clock &clock,
                   std::function<void()> open, QWidget *parent);
    ~WeatherRowView() override;

    QSize sizeHint() const override;
    bool isChoosable() const override { return true; }
    void choose() override { m_open(); }

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
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
    Clock &m_clock;
    std::function<void()> m_open;
    Notice m_notice;                ///< without a reading
    std::unique_ptr<Timer> m_aging; ///< while shown: how old the reading is changes by itself
};

} // namespace orvelle
