#pragma once

#include "ui/settings/SettingsWindow.h"

#include <QWidget>

class QCheckBox;
class QLayout;

namespace orvelle {

class LinksSection;
class MenuletIconPicker;

/// The links, the tray icon, and how Orvelle behaves.
class GeneralTab : public QWidget
{
    Q_OBJECT

public:
    explicit GeneralTab(const SettingsServices &services, QWidget *parent = nullptr);

    static QString confirmBeforeQuitKey() { return QStringLiteral("ConfirmBeforeQuit"); }

private:
    QLayout *makeBehaviour();
    void refresh();
    void setConfirmBeforeQuit(bool confirm);

    const SettingsServices &m_services;
    // In the order of the Tab key.
    LinksSection *m_links;
    MenuletIconPicker *m_icons;
    QCheckBox *m_confirmQuit;
    QCheckBox *m_siteIcons;
};

} // namespace orvelle
