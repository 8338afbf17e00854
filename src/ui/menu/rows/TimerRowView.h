#pragma once

#include "ui/menu/rows/TimerCapsuleButton.h"

#include <array>
#include <memory>

namespace orvelle {

class Clock;
class Notifications;
class Timer;
class TimerManager;

/// The durations to start with; while a countdown runs, what is left of it.
class TimerRowView : public WidgetRowView
{
    Q_OBJECT

public:
    TimerRowView(TimerManager &manager, Notifications &notifications, Clock &clock, QWidget *parent);
    ~TimerRowView() override;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void refresh();
    void focusShownButton();
    void tick();
    void placeButtons();
    QRect placeAtEnd(QWidget *button, int end);
    int countdownWidth() const;

    TimerManager &m_manager;
    Notifications &m_notifications;
    Clock &m_clock;
    std::array<TimerCapsuleButton *, 3> m_presets{};
    MenuRowButton *m_custom;
    MenuRowButton *m_cancel;
    std::unique_ptr<Timer> m_nextTick;
    bool m_running = false;
};

} // namespace orvelle
