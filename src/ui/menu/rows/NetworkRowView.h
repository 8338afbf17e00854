#pragma once

#include "ui/menu/rows/WidgetRowView.h"
#include "widgets/network/NetworkSpeed.h"

namespace orvelle {

class NetworkManager;
class Notifications;

/// How fast data comes in and goes out: two rates, in graph mode each with a
/// curve of the last ones.
class NetworkRowView : public WidgetRowView
{
    Q_OBJECT

public:
    NetworkRowView(const NetworkManager &manager, const Notifications &notifications, QWidget *parent);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    enum Direction { Download, Upload };

    void refresh();
    QString rateText(Direction direction) const;
    QRect cellRect(Direction direction) const;
    QColor color(Direction direction) const;
    void paintRate(QPainter &painter, Direction direction) const;
    void paintGraph(QPainter &painter, Direction direction) const;
    QRect graphRect(Direction direction) const;

    const NetworkManager &m_manager;
    NetworkDisplayMode m_mode = NetworkDisplayMode::Disabled;
    std::optional<NetworkSpeed> m_speed;
    QList<NetworkSpeed> m_history;
};

} // namespace orvelle
