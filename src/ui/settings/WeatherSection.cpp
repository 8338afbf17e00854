#include "ui/settings/WeatherSection.h"

#include "base/Notifications.h"
#include "ui/common/AssistedInput.h"
#include "ui/settings/WeatherStyleRadio.h"
#include "widgets/weather/WeatherManager.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace orvelle {

using namespace Qt::StringLiterals;

WeatherSection::WeatherSection(WeatherManager &manager, const Notifications &notifications, QWidget *parent)
    : WidgetSection(WidgetType::Weather, parent), m_manager(manager)
{
    using Mode = WeatherLocationMode;
    addModeChoice(static_cast<int>(Mode::Disabled),
                  {{text("weather.modeAutomatic"_text), static_cast<int>(Mode::Automatic)},
                   {text("weather.modeManual"_text), static_cast<int>(Mode::Manual)}},
                  {[&manager] { return static_cast<int>(manager.locationMode()); },
                   [&manager](int mode) { manager.setLocationMode(static_cast<Mode>(mode)); }});
    addRow(text("weather.cityLabel"_text), makeCity());
    QLabel *state = addHint(QString());
    state->setObjectName(u"cityState"_s);
    addReader([this, state] { state->setText(cityState()); });
    addRow(text("weather.style"_text), makeStyles());
    addMenuBarOnly(
        {[&manager] { return manager.menuBarOnly(); }, [&manager](bool only) { manager.setMenuBarOnly(only); }});
    connect(&notifications, &Notifications::weatherChanged, this, &WidgetSection::refresh);
    connect(&notifications, &Notifications::syncableSettingsChanged, this, &WidgetSection::refresh);
    connect(&manager, &WeatherManager::stateChanged, this, &WidgetSection::refresh);
}

QWidget *WeatherSection::makeCity()
{
    auto *row = new QWidget(this);
    auto *fields = new QHBoxLayout(row);
    fields->setContentsMargins({});
    m_city = new QLineEdit(row);
    m_city->setObjectName(u"city"_s);
    countAllAsTyped(m_city);
    m_city->setPlaceholderText(text("weather.cityPlaceholder"_text));
    m_city->setAccessibleName(text("weather.modeManual"_text));
    auto *find = new QPushButton(text("weather.search"_text), row);
    find->setObjectName(u"search"_s);
    find->setAutoDefault(false);
    fields->addWidget(m_city, 1);
    fields->addWidget(find);
    connect(m_city, &QLineEdit::returnPressed, this, &WeatherSection::search);
    connect(find, &QPushButton::clicked, this, &WeatherSection::search);
    addReader([this, row] {
        // What is being typed is not taken away.
        if (!m_city->isModified()) {
            m_city->setText(m_manager.manualCity());
            m_city->setModified(false);
        }
        const bool isManual = m_manager.locationMode() == WeatherLocationMode::Manual;
        for (QWidget *each : row->findChildren<QWidget *>())
            each->setEnabled(isManual);
    });
    return row;
}

void WeatherSection::search()
{
    m_city->setModified(false);
    m_manager.setManualCity(m_city->text());
    m_manager.geocodeAndFetch();
}

QString WeatherSection::cityState() const
{
    using enum WeatherManager::CitySearch;
    if (m_manager.isLocationRefused())
        return text("weather.locationDenied"_text);
    switch (m_manager.citySearch()) {
    case Searching:
        return text("weather.searching"_text);
    case Found:
        return m_manager.weatherData() ? text("weather.cityFound %@"_text, m_manager.weatherData()->cityName)
                                       : QString();
    case NotFound:
        return text("weather.cityNotFound"_text);
    case Failed:
        return text("weather.cityFailed"_text);
    case None:
        break;
    }
    return {};
}

QWidget *WeatherSection::makeStyles()
{
    auto *column = new QWidget(this);
    auto *rows = new QVBoxLayout(column);
    rows->setContentsMargins({});
    rows->setSpacing(2);
    auto *group = new QButtonGroup(column);
    for (const WeatherDisplayStyle style : weatherDisplayStyles()) {
        auto *button = new WeatherStyleRadio(style, column);
        group->addButton(button, static_cast<int>(style));
        rows->addWidget(button);
    }
    addReader([this, group] { group->button(static_cast<int>(m_manager.displayStyle()))->setChecked(true); });
    connect(group, &QButtonGroup::idClicked, this,
            [this](int style) { m_manager.setDisplayStyle(static_cast<WeatherDisplayStyle>(style)); });
    return column;
}

} // namespace orvelle
