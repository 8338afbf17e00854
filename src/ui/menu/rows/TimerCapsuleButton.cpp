#include "ui/menu/rows/TimerCapsuleButton.h"

#include "base/Text.h"
#include "widgets/timer/TimerTexts.h"

namespace orvelle {

void TimerCapsuleButton::setDuration(qint64 seconds)
{
    m_seconds = seconds;
    // Only whole minutes have a short form.
    setText(seconds % 60 == 0 ? capsuleLabel(seconds / 60) : durationLabel(seconds));
    setAccessibleName(orvelle::text("timer.startFor %@"_text, durationLabel(seconds)));
    updateGeometry();
}

} // namespace orvelle
