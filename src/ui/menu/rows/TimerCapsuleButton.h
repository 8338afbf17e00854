#pragma once

#include "ui/menu/rows/WidgetRowView.h"

namespace orvelle {

/// One of the durations to choose from.
class TimerCapsuleButton : public MenuRowButton
{
    Q_OBJECT

public:
    explicit TimerCapsuleButton(QWidget *row) : MenuRowButton(row) {}

    void setDuration(qint64 seconds);
    qint64 duration() const { return m_seconds; }

private:
    qint64 m_seconds = 0;
};

} // namespace orvelle
