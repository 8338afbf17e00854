#include "menubar/TimerToolTip.h"

#include "base/Notifications.h"
#include "base/Text.h"
#include "platform/Clock.h"
#include "platform/StatusItem.h"
#include "widgets/timer/TimerManager.h"

#include <utility>

namespace orvelle {

TimerToolTip::TimerToolTip(const TimerManager &timer, StatusItem &statusItem, Clock &clock,
                           const Notifications &notifications, QObject *parent)
    : QObject(parent), m_timer(timer), m_statusItem(statusItem), m_clock(clock)
{
    connect(&notifications, &Notifications::timerChanged, this, &TimerToolTip::update);
    update();
}

TimerToolTip::~TimerToolTip() = default;

void TimerToolTip::update()
{
    const qint64 left = m_timer.remainingSeconds();
    if (left <= 0) {
        m_next.reset();
        if (std::exchange(m_shown, false))
            m_statusItem.setToolTip(QStringLiteral("Orvelle"));
        return;
    }
    const qint64 step = left > 60 ? 60 : 1;
    const qint64 told = (left + step - 1) / step * step;
    m_shown = true;
    m_statusItem.setToolTip(text("timer.toolTip %@"_text, durationLabel(told)));
    // By the wall clock, so that it is right again after the machine has slept.
    m_next = m_clock.atDate(*m_timer.endDate() + static_cast<double>(step - told), [this] { update(); });
}

} // namespace orvelle
