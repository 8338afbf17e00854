#pragma once

#include "ui/settings/WidgetSection.h"

class QLineEdit;

namespace orvelle {

class Notifications;
class WeatherManager;

/// The settings of the weather widget.
class WeatherSection : public WidgetSection
{
    Q_OBJECT

public:
    WeatherSection(WeatherManager &manager, const Notifications &notifications, QWidget *parent);

private:
    QWidget *makeCity();
    QWidget *makeStyles();
    void search();
    QString cityState() const;

    WeatherManager &m_manager;
    QLineEdit *m_city = nullptr;
};

} // namespace orvelle
