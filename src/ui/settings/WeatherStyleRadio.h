#pragma once

#include "ui/common/WeatherPainter.h"

#include <QRadioButton>

namespace orvelle {

/// A radio button with a sample of one of the weather's styles beside it.
class WeatherStyleRadio : public QRadioButton
{
    Q_OBJECT

public:
    WeatherStyleRadio(WeatherDisplayStyle style, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    bool hitButton(const QPoint &position) const override { return rect().contains(position); }
    void paintEvent(QPaintEvent *event) override;

private:
    WeatherCanvas canvas() const;
    /// All samples begin beside the longest name and are as wide as the widest.
    int labelWidth() const;
    int sampleWidth() const;

    WeatherDisplayStyle m_style;
};

} // namespace orvelle
