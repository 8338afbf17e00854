#include "menubar/StoredExchangeSettings.h"

#include "base/Notifications.h"
#include "links/LinkColors.h"
#include "links/exchange/ExchangeDocument.h"
#include "menubar/MenuletIcons.h"
#include "menubar/QuickLaunchManager.h"
#include "menubar/WidgetOrderManager.h"
#include "services/DebugModeManager.h"
#include "widgets/network/NetworkSpeed.h"
#include "widgets/systeminfo/SystemInfoData.h"
#include "widgets/weather/WeatherManager.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

bool isAnyText(const QString &)
{
    return true;
}
bool isLocationMode(const QString &text)
{
    return weatherLocationModeFromRawValue(text).has_value();
}
bool isWeatherStyle(const QString &text)
{
    return weatherDisplayStyleFromRawValue(text).has_value();
}
bool isSystemInfoMode(const QString &text)
{
    return systemInfoDisplayModeFromRawValue(text).has_value();
}
bool isNetworkMode(const QString &text)
{
    return networkDisplayModeFromRawValue(text).has_value();
}
bool isQuickLaunchStyle(const QString &text)
{
    return rawValue(quickLaunchDisplayStyle(text)) == text;
}
bool isColor(const QString &text)
{
    return nsColor(text).has_value();
}
bool isMenuletIcon(const QString &text)
{
    return std::any_of(menuletIcons().begin(), menuletIcons().end(),
                       [&text](const MenuletIcon &icon) { return text == QLatin1StringView(icon.stored); });
}

/// Whether the keys of a setting are others in debug mode.
enum class Scope { PerMode, Shared };

template<typename T>
struct Setting {
    const char *key;
    T fallback;
    T lowest{};
    T highest{};
    Scope scope = Scope::PerMode;
};

template<>
struct Setting<bool> {
    const char *key;
    bool fallback;
    Scope scope = Scope::PerMode;
};

template<>
struct Setting<QString> {
    const char *key;
    const char *fallback;
    bool (*isKnown)(const QString &) = isAnyText;
    Scope scope = Scope::PerMode;
};

using Flag = Setting<bool>;
using Text = Setting<QString>;
using Number = Setting<qint64>;

constexpr Text weatherMode{"WeatherLocationMode", "disabled", isLocationMode};
constexpr Flag weatherWasEnabled{"WeatherWidgetEnabled", false}; // of versions without modes
constexpr Text weatherCity{"WeatherManualCity", ""};
constexpr Flag weatherMenuBarOnly{"WeatherMenuBarOnly", false};
constexpr Text weatherStyle{"WeatherDisplayStyle", "aurora", isWeatherStyle};
constexpr Text systemInfoMode{"SystemInfoDisplayMode", "disabled", isSystemInfoMode};
constexpr Flag systemInfoMenuBarOnly{"SystemInfoMenuBarOnly", true};
constexpr Text networkMode{"NetworkDisplayMode", "disabled", isNetworkMode};
constexpr Flag networkMenuBarOnly{"NetworkMenuBarOnly", true};
constexpr Flag clipboardEnabled{"ClipboardEnabled", false};
constexpr Flag clipboardMenuBarOnly{"ClipboardMenuBarOnly", false};
constexpr Text clipboardColor{"ClipboardIconColor", "purple", isColor};
constexpr Flag calendarEnabled{"CalendarEnabled", false};
constexpr Flag calendarMenuBarOnly{"CalendarMenuBarOnly", false};
constexpr Text calendarColor{"CalendarIconColor", "red", isColor};
constexpr Number calendarMaxEvents{"CalendarMaxEvents", 1, 1, std::numeric_limits<int>::max()};
constexpr Number calendarScope{"CalendarDisplayScope", 0, 0, 2};
constexpr char calendarTodayOnlyKey[] = "CalendarTodayOnly"; // of versions without scopes
constexpr Flag quickLaunchEnabled{"QuickLaunchEnabled", true};
constexpr Text quickLaunchStyle{"QuickLaunchDisplayStyle", "souffle", isQuickLaunchStyle};
constexpr char quickLaunchAppsKey[] = "QuickLaunchApps";
constexpr Flag confirmBeforeQuit{"ConfirmBeforeQuit", true, Scope::Shared};
constexpr Text menuletIcon{"MenuletIcon", "link", isMenuletIcon, Scope::Shared};
constexpr Flag shortcutEnabled{"GlobalShortcutEnabled", true, Scope::Shared};
constexpr Number shortcutKeyCode{"GlobalShortcutKeyCode", 7, 0, 0xFFFF, Scope::Shared};
constexpr Number shortcutModifiers{"GlobalShortcutModifiers", 0, 0, 0xFFFFFFFF, Scope::Shared};

bool isAcceptable(const Flag &, bool)
{
    return true;
}
bool isAcceptable(const Text &setting, const QString &value)
{
    return setting.isKnown(value);
}
bool isAcceptable(const Number &setting, qint64 value)
{
    return value >= setting.lowest && value <= setting.highest;
}

/// The store, setting by setting.
class Stored
{
public:
    explicit Stored(const StoredExchangeSettings::Services &services) : m_services(services) {}

    QString keyOf(const char *base, Scope scope = Scope::PerMode) const
    {
        const QString key = QString::fromLatin1(base);
        return scope == Scope::Shared ? key : m_services.debugMode.key(key);
    }

    /// The value that counts: the stored one, or the fallback for none or for
    /// one that is not acceptable.
    template<typename T>
    T get(const Setting<T> &setting) const
    {
        const auto stored = m_services.defaults.get<T>(keyOf(setting.key, setting.scope));
        if (stored && isAcceptable(setting, *stored))
            return *stored;
        if constexpr (std::is_same_v<T, QString>)
            return QString::fromLatin1(setting.fallback);
        else
            return setting.fallback;
    }

    QString locationMode() const
    {
        const auto stored = m_services.defaults.get<QString>(keyOf(weatherMode.key));
        if (stored && isLocationMode(*stored))
            return *stored;
        return get(weatherWasEnabled) ? u"automatic"_s : u"disabled"_s;
    }

    qint64 scope() const
    {
        if (m_services.defaults.value(keyOf(calendarScope.key)))
            return get(calendarScope);
        return m_services.defaults.get<bool>(keyOf(calendarTodayOnlyKey)).value_or(true) ? 0 : 1;
    }

    QuickLaunchSlots quickLaunchApps() const
    {
        const auto bytes = m_services.defaults.get<QByteArray>(keyOf(quickLaunchAppsKey));
        QuickLaunchSlots apps = (bytes ? decodeQuickLaunchSlots(*bytes) : std::nullopt).value_or(QuickLaunchSlots());
        apps.resize(QuickLaunchManager::maxSlots);
        return apps;
    }

    /// True when `given` is there, acceptable, another value than `current`,
    /// and stored now.
    template<typename T>
    bool take(const Setting<T> &setting, const T &current, const std::optional<T> &given)
    {
        if (!given || *given == current || !isAcceptable(setting, *given))
            return false;
        return store(keyOf(setting.key, setting.scope), *given);
    }
    template<typename T>
    bool take(const Setting<T> &setting, const std::optional<T> &given)
    {
        return take(setting, get(setting), given);
    }

    bool takeQuickLaunchApps(const std::optional<QuickLaunchSlots> &given)
    {
        if (!given)
            return false;
        QuickLaunchSlots apps = *given;
        apps.resize(QuickLaunchManager::maxSlots);
        return apps != quickLaunchApps() && store(keyOf(quickLaunchAppsKey), encodeQuickLaunchSlots(apps));
    }

private:
    // A failed write is reported by the store itself.
    bool store(const QString &key, const DefaultsValue &value)
    {
        return m_services.defaults.write(key, value).hasValue();
    }

    const StoredExchangeSettings::Services &m_services;
};

/// Every one of them is taken, also when an earlier one changed something.
bool anyOf(std::initializer_list<bool> changes)
{
    return std::find(changes.begin(), changes.end(), true) != changes.end();
}

std::optional<qint64> scopeFromText(const std::optional<QString> &text)
{
    bool valid = false;
    const qint64 scope = text ? text->toLongLong(&valid) : 0;
    return valid ? std::optional(scope) : std::nullopt;
}

bool takeWeather(Stored &stored, const ExportWeatherSettings &given)
{
    // The unit is this machine's own.
    return anyOf({stored.take<QString>(weatherMode, stored.locationMode(), given.locationMode),
                  stored.take(weatherMenuBarOnly, given.menuBarOnly), stored.take(weatherStyle, given.displayStyle)});
}

bool takeCalendar(Stored &stored, const ExportCalendarSettings &given)
{
    return anyOf({stored.take<bool>(calendarEnabled, given.isEnabled),
                  stored.take(calendarMenuBarOnly, given.menuBarOnly), stored.take(calendarColor, given.iconColor),
                  stored.take(calendarMaxEvents, given.maxEvents),
                  stored.take(calendarScope, stored.scope(), scopeFromText(given.displayScope))});
}

bool takeClipboard(Stored &stored, const ExportClipboardSettings &given)
{
    return anyOf({stored.take<bool>(clipboardEnabled, given.isEnabled),
                  stored.take(clipboardMenuBarOnly, given.menuBarOnly), stored.take(clipboardColor, given.iconColor)});
}

} // namespace

StoredExchangeSettings::StoredExchangeSettings(const Services &services, const ProgramIdentity &identity)
    : m_services(services), m_identity(identity)
{
}

void StoredExchangeSettings::gather(ExportData &document) const
{
    const Stored stored(m_services);
    document.appVersion = m_identity.version;
    document.appBuild = m_identity.build;
    document.lastModifiedBy = m_identity.machineName;
    document.settingsModifiedAt =
        m_services.defaults.get<Timestamp>(m_services.debugMode.key(settingsModifiedAtBaseKey()));

    const bool metric = WeatherManager::temperatureUnit() == WeatherTemperatureUnit::Celsius;
    document.weatherSettings = {stored.locationMode(), stored.get(weatherCity), metric ? u"celsius"_s : u"fahrenheit"_s,
                                stored.get(weatherMenuBarOnly), stored.get(weatherStyle)};
    document.systemInfoSettings = {stored.get(systemInfoMode), stored.get(systemInfoMenuBarOnly)};
    document.networkSettings = {stored.get(networkMode), stored.get(networkMenuBarOnly)};
    document.clipboardSettings = {stored.get(clipboardEnabled), stored.get(clipboardMenuBarOnly),
                                  stored.get(clipboardColor)};
    document.calendarSettings = {stored.get(calendarEnabled), stored.get(calendarMenuBarOnly),
                                 stored.get(calendarColor), stored.get(calendarMaxEvents),
                                 QString::number(stored.scope())};
    document.generalSettings = {stored.get(confirmBeforeQuit), stored.get(menuletIcon), stored.get(shortcutEnabled),
                                stored.get(shortcutKeyCode), stored.get(shortcutModifiers)};
    document.quickLaunchEnabled = stored.get(quickLaunchEnabled);
    document.quickLaunchApps = stored.quickLaunchApps();
    document.quickLaunchDisplayStyle = stored.get(quickLaunchStyle);
    document.widgetOrder.emplace();
    for (const WidgetType widget : m_services.widgetOrder.order())
        *document.widgetOrder += rawValue(widget);
}

bool StoredExchangeSettings::apply(const ExportData &document)
{
    const bool changed = anyOf({applyWeather(document), applyFigures(document), applyOthers(document),
                                applyQuickLaunch(document), applyGeneral(document)});
    if (changed)
        emit m_services.notifications.syncableSettingsChanged();
    // Its owner announces by itself that settings changed.
    if (document.widgetOrder) {
        QStringList order = *document.widgetOrder;
        order.removeDuplicates();
        m_services.widgetOrder.setOrder(widgetOrderFromTexts(order));
    }
    // Four empty slots are nothing to tell anybody about.
    const QuickLaunchSlots apps = document.quickLaunchApps.value_or(QuickLaunchSlots());
    return std::any_of(apps.begin(), apps.end(), [](const auto &app) { return app.has_value(); });
}

bool StoredExchangeSettings::applyWeather(const ExportData &document)
{
    if (!document.weatherSettings)
        return false;
    Stored stored(m_services);
    const bool shown = takeWeather(stored, *document.weatherSettings);
    // The row shows the city only once it was looked up.
    const bool city = stored.take<QString>(weatherCity, document.weatherSettings->manualCity);
    if (shown)
        emit m_services.notifications.weatherChanged();
    return shown || city;
}

bool StoredExchangeSettings::applyFigures(const ExportData &document)
{
    Stored stored(m_services);
    const auto &system = document.systemInfoSettings;
    const auto &network = document.networkSettings;
    const bool systemChanged = system && anyOf({stored.take<QString>(systemInfoMode, system->displayMode),
                                                stored.take(systemInfoMenuBarOnly, system->menuBarOnly)});
    const bool networkChanged = network && anyOf({stored.take<QString>(networkMode, network->displayMode),
                                                  stored.take(networkMenuBarOnly, network->menuBarOnly)});
    if (systemChanged)
        emit m_services.notifications.systemInfoChanged();
    if (networkChanged)
        emit m_services.notifications.networkChanged();
    return systemChanged || networkChanged;
}

bool StoredExchangeSettings::applyOthers(const ExportData &document)
{
    Stored stored(m_services);
    const bool clipboardChanged = document.clipboardSettings && takeClipboard(stored, *document.clipboardSettings);
    const bool calendarChanged = document.calendarSettings && takeCalendar(stored, *document.calendarSettings);
    if (clipboardChanged)
        emit m_services.notifications.clipboardChanged();
    if (calendarChanged)
        emit m_services.notifications.calendarChanged();
    return clipboardChanged || calendarChanged;
}

bool StoredExchangeSettings::applyQuickLaunch(const ExportData &document)
{
    Stored stored(m_services);
    const bool changed = anyOf({stored.takeQuickLaunchApps(document.quickLaunchApps),
                                stored.take(quickLaunchEnabled, document.quickLaunchEnabled),
                                stored.take(quickLaunchStyle, document.quickLaunchDisplayStyle)});
    if (changed)
        emit m_services.notifications.quickLaunchChanged();
    return changed;
}

bool StoredExchangeSettings::applyGeneral(const ExportData &document)
{
    if (!document.generalSettings)
        return false;
    Stored stored(m_services);
    const ExportGeneralSettings &given = *document.generalSettings;
    const bool confirm = stored.take(confirmBeforeQuit, given.confirmBeforeQuit);
    const bool icon = stored.take(menuletIcon, given.menuletIcon);
    const bool shortcut = anyOf({stored.take(shortcutEnabled, given.globalShortcutEnabled),
                                 stored.take(shortcutKeyCode, given.globalShortcutKeyCode),
                                 stored.take(shortcutModifiers, given.globalShortcutModifiers)});
    if (icon)
        emit m_services.notifications.menuletIconChanged();
    if (shortcut)
        emit m_services.notifications.globalShortcutChanged();
    if (confirm || icon || shortcut)
        emit m_services.notifications.generalSettingsChanged();
    return confirm || icon || shortcut;
}

} // namespace orvelle
