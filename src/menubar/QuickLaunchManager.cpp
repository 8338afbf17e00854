#include "menubar/QuickLaunchManager.h"

#include "base/Notifications.h"
#include "platform/Applications.h"
#include "platform/UserDefaults.h"
#include "services/DebugModeManager.h"

#include <QLoggingCategory>

#include <algorithm>
#include <array>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcQuickLaunch, "QuickLaunchManager", QtInfoMsg)

QString appsKey()
{
    return u"QuickLaunchApps"_s;
}
QString enabledKey()
{
    return u"QuickLaunchEnabled"_s;
}
QString displayStyleKey()
{
    return u"QuickLaunchDisplayStyle"_s;
}

/// In the order of QuickLaunchDisplayStyle.
constexpr std::array styleNames{"souffle"_L1, "dock"_L1, "neon"_L1, "encre"_L1};

} // namespace

QString rawValue(QuickLaunchDisplayStyle style)
{
    return styleNames.at(static_cast<std::size_t>(style));
}

QuickLaunchDisplayStyle quickLaunchDisplayStyle(const QString &rawValue)
{
    const auto found = std::ranges::find_if(styleNames, [&rawValue](auto name) { return rawValue == name; });
    return found == styleNames.end() ? QuickLaunchDisplayStyle::Souffle
                                     : static_cast<QuickLaunchDisplayStyle>(found - styleNames.begin());
}

QuickLaunchManager::QuickLaunchManager(const Services &services, QObject *parent)
    : QObject(parent), m_services(services)
{
    load();
    const auto reload = [this] {
        load();
        emit m_services.notifications.quickLaunchChanged();
    };
    connect(&services.notifications, &Notifications::debugModeChanged, this, reload);
    // An import writes the keys itself and then posts; who loads posts no more.
    connect(&services.notifications, &Notifications::quickLaunchChanged, this, &QuickLaunchManager::load);
    connect(&services.defaults, &UserDefaults::changedExternally, this, [this, reload](const QStringList &keys) {
        const DebugModeManager &debug = m_services.debugMode;
        for (const QString &key : {appsKey(), enabledKey(), displayStyleKey()}) {
            if (keys.contains(debug.key(key)))
                return reload();
        }
    });
}

void QuickLaunchManager::load()
{
    const UserDefaults &defaults = m_services.defaults;
    const DebugModeManager &debug = m_services.debugMode;
    const auto bytes = defaults.get<QByteArray>(debug.key(appsKey()));
    m_apps = (bytes ? decodeQuickLaunchSlots(*bytes) : std::nullopt).value_or(QuickLaunchSlots());
    m_apps.resize(maxSlots);
    m_isEnabled = defaults.get<bool>(debug.key(enabledKey())).value_or(true);
    m_displayStyle = quickLaunchDisplayStyle(defaults.get<QString>(debug.key(displayStyleKey())).value_or(QString()));
}

void QuickLaunchManager::save()
{
    // What could not be stored is reported by the store, and taken back by the
    // loading that the announcement brings.
    static_cast<void>(m_services.defaults.write(m_services.debugMode.key(appsKey()), encodeQuickLaunchSlots(m_apps)));
    emit m_services.notifications.quickLaunchChanged();
    emit m_services.notifications.syncableSettingsChanged();
}

void QuickLaunchManager::setEnabled(bool enabled)
{
    if (enabled == m_isEnabled || !m_services.defaults.write(m_services.debugMode.key(enabledKey()), enabled))
        return;
    emit m_services.notifications.quickLaunchChanged();
    emit m_services.notifications.syncableSettingsChanged();
}

void QuickLaunchManager::setDisplayStyle(QuickLaunchDisplayStyle style)
{
    if (style == m_displayStyle ||
        !m_services.defaults.write(m_services.debugMode.key(displayStyleKey()), rawValue(style)))
        return;
    emit m_services.notifications.quickLaunchChanged();
    emit m_services.notifications.syncableSettingsChanged();
}

bool QuickLaunchManager::setApp(int index, const QString &desktopFile)
{
    const auto application = isSlot(index) ? m_services.applications.find(desktopFile) : std::nullopt;
    if (!application)
        return false;
    m_apps[index] = QuickLaunchApp{QUuid::createUuid(), application->name, application->path, application->id};
    qCInfo(lcQuickLaunch).noquote() << u"QuickLaunch slot %1 set to %2"_s.arg(index).arg(application->name);
    save();
    return true;
}

void QuickLaunchManager::removeApp(int index)
{
    if (!isSlot(index) || !m_apps[index])
        return;
    m_apps[index].reset();
    save();
}

void QuickLaunchManager::moveApp(int from, int to)
{
    if (!isSlot(from) || !isSlot(to) || from == to)
        return;
    m_apps.swapItemsAt(from, to);
    save();
}

void QuickLaunchManager::launchApp(int index)
{
    if (!isSlot(index) || !m_apps[index])
        return;
    const QuickLaunchApp &app = *m_apps[index];
    m_services.applications.launch(app.path, app.bundleIdentifier.value_or(QString()));
}

} // namespace orvelle
