#pragma once

#include "platform/Appearance.h"

#include <QColor>
#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QObject>

#include <memory>

class QFileSystemWatcher;

namespace orvelle {

/// Whether the desktop is dark, and whether of high contrast, as
/// org.freedesktop.portal.Settings says ("org.freedesktop.appearance"
/// "color-scheme" and "contrast"); where the portal is silent, as the GTK
/// settings file says, which desktops without a portal write (its themes
/// "HighContrast" and "HighContrastInverse"). GNOME's switch for high contrast
/// counts, too.
///
/// KDE's own settings tell the colours of its windows and panels.
///
/// And the colour that symbols on a panel should have: light on a dark desktop
/// and dark on a light one; where the portal is silent, the text colour of the
/// application's palette. GNOME's bar is always dark. Main thread, never blocks.
class DesktopColorScheme : public Appearance
{
    Q_OBJECT

public:
    explicit DesktopColorScheme(const QDBusConnection &sessionBus, QObject *parent = nullptr);
    ~DesktopColorScheme() override;

    /// Asks the portal, now and whenever it comes (back); it is not started.
    void start();
    bool prefersDark() const override;
    bool prefersHighContrast() const override;
    std::optional<QPalette> palette() const override;
    QColor symbolColor() const;

    static QColor onDark() { return {0xf5, 0xf5, 0xf5}; }
    static QColor onLight() { return {0x24, 0x24, 0x24}; }
    /// The one of the two above that stands out from the background.
    static QColor contrastTo(const QColor &background);

    bool eventFilter(QObject *watched, QEvent *event) override;

private slots:
    void settingChanged(const QString &group, const QString &key, const QDBusVariant &value);
    void kdeSettingChanged(int kind, int argument);

private:
    enum class Preference : uint { None = 0, Dark = 1, Light = 2 };

    void askPortal();
    void listenToKde();
    void watchPanel();
    void ask(const QString &group, const QString &key, void (DesktopColorScheme::*answer)(uint));
    void setPreference(uint value);
    void setContrast(uint value);
    void setGnomeContrast(uint on);

    QDBusConnection m_bus;
    QDBusServiceWatcher m_portal;
    Preference m_preference = Preference::None;
    bool m_highContrast = false;
    bool m_gnomeContrast = false;
    std::unique_ptr<QFileSystemWatcher> m_panelSettings; ///< of KDE
};

} // namespace orvelle
