#pragma once

#include "base/Notifications.h"
#include "platform/UserDefaults.h"
#include "services/DebugModeManager.h"

#include <QObject>
#include <QScopedValueRollback>

#include <functional>
#include <optional>
#include <utility>

namespace orvelle {

/// The settings of a widget that watches the machine, as they are stored: how
/// it is displayed, and whether only in the status item's menu. Keeps up with
/// an import, another process and debug mode, and announces every change.
/// `Mode` has a value Disabled, which stands for the widget being off and for
/// what is not stored or not known, and a rawValue(). Main thread.
template<typename Mode>
class MonitorSettings : public QObject
{
public:
    struct Kind {
        QString displayModeKey;
        QString menuBarOnlyKey;
        std::optional<Mode> (*modeFromRawValue)(QStringView raw);
        void (Notifications::*changed)();
    };
    struct Services {
        UserDefaults &defaults;
        DebugModeManager &debugMode;
        Notifications &notifications;
    };
    /// Called with whether the widget is on, when that has changed and before
    /// anybody is told.
    using Follow = std::function<void(bool enabled)>;

    MonitorSettings(const Services &services, const Kind &kind, Follow follow)
        : m_services(services), m_kind(kind), m_follow(std::move(follow)), m_values(stored())
    {
        const Notifications &notifications = services.notifications;
        connect(&notifications, &Notifications::debugModeChanged, this, [this] { reread(); });
        // An import writes the stored settings past their manager.
        connect(&notifications, &Notifications::syncableSettingsChanged, this, [this] {
            if (!m_announcing && stored() != m_values)
                reread();
        });
        connect(&services.defaults, &UserDefaults::changedExternally, this, [this](const QStringList &keys) {
            if (keys.contains(keyOf(m_kind.displayModeKey)) || keys.contains(keyOf(m_kind.menuBarOnlyKey)))
                reread();
        });
    }

    Mode displayMode() const { return m_values.mode; }
    bool isEnabled() const { return m_values.mode != Mode::Disabled; }
    bool menuBarOnly() const { return m_values.menuBarOnly; }

    void setDisplayMode(Mode mode)
    {
        if (mode != m_values.mode)
            change({mode, m_values.menuBarOnly}, m_kind.displayModeKey, rawValue(mode));
    }
    void setMenuBarOnly(bool only)
    {
        if (only != m_values.menuBarOnly)
            change({m_values.mode, only}, m_kind.menuBarOnlyKey, only);
    }

private:
    struct Values {
        Mode mode = Mode::Disabled;
        bool menuBarOnly = true;
        friend bool operator==(const Values &, const Values &) = default;
    };

    QString keyOf(const QString &base) const { return m_services.debugMode.key(base); }

    Values stored() const
    {
        const UserDefaults &defaults = m_services.defaults;
        const QString raw = defaults.get<QString>(keyOf(m_kind.displayModeKey)).value_or(QString());
        return {m_kind.modeFromRawValue(raw).value_or(Mode::Disabled),
                defaults.get<bool>(keyOf(m_kind.menuBarOnlyKey)).value_or(true)};
    }

    void reread()
    {
        take(stored());
        emit(m_services.notifications.*m_kind.changed)();
    }

    void change(const Values &values, const QString &key, const DefaultsValue &value)
    {
        // A failed write is reported by the store itself; the value holds for this run.
        static_cast<void>(m_services.defaults.write(keyOf(key), value));
        take(values);
        emit(m_services.notifications.*m_kind.changed)();
        const QScopedValueRollback own(m_announcing, true);
        emit m_services.notifications.syncableSettingsChanged();
    }

    void take(const Values &values)
    {
        const bool wasEnabled = isEnabled();
        m_values = values;
        if (isEnabled() != wasEnabled)
            m_follow(isEnabled());
    }

    Services m_services;
    Kind m_kind;
    Follow m_follow;
    Values m_values;
    bool m_announcing = false;
};

} // namespace orvelle
