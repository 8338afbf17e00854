#pragma once

#include "ui/settings/SettingsWindow.h"

#include <QWidget>

class QCheckBox;
class QLayout;

namespace orvelle {

class LinksSection;
class MenuletIconPicker;
class ShortcutSection;

/// The links, the tray icon, and how Orvelle behaves.
class GeneralTab : public QWidget
{
    Q_OBJECT

public:
    explicit GeneralTab(const SettingsServices &services, QWidget *parent = nullptr);

    static QString confirmBeforeQuitKey() { return QStringLiteral("ConfirmBeforeQuit"); }
    /// What the switch last showed; the desktop knows the truth.
    static QString launchAtLoginKey() { return QStringLiteral("LaunchAtLogin"); }

protected:
    /// The desktop's own settings may have switched it meanwhile.
    bool event(QEvent *event) override;

private:
    QLayout *makeBehaviour();
    void refresh();
    void setConfirmBeforeQuit(bool confirm);
    void readLaunchAtLogin();
    void setLaunchAtLogin(bool launch);

    const SettingsServices &m_services;
    // In the order of the Tab key.
    LinksSection *m_links;
    MenuletIconPicker *m_icons;
    ShortcutSection *m_shortcut; ///< null where there are no global shortcuts
    QCheckBox *m_confirmQuit;
    QCheckBox *m_launchAtLogin;
    QCheckBox *m_siteIcons;
};

} // namespace orvelle
