#include "ui/settings/GeneralTab.h"

#include "base/Notifications.h"
#include "base/Text.h"
#include "links/favicons/FaviconSettings.h"
#include "platform/UserDefaults.h"
#include "services/LaunchAtLoginManager.h"
#include "ui/settings/LinksSection.h"
#include "ui/settings/MenuletIconPicker.h"
#include "ui/settings/Sections.h"
#include "ui/settings/ShortcutSection.h"

#include <QCheckBox>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace orvelle {

GeneralTab::GeneralTab(const SettingsServices &services, QWidget *parent)
    : QWidget(parent),
      m_services(services),
      m_links(new LinksSection(services, this)),
      m_icons(new MenuletIconPicker(services.defaults, services.notifications, this)),
      m_shortcut(services.shortcut ? new ShortcutSection(*services.shortcut, services.notifications, this) : nullptr),
      m_confirmQuit(new QCheckBox(text("settings.confirmBeforeQuit"_text), this)),
      m_launchAtLogin(new QCheckBox(text("settings.launchAtLogin"_text), this)),
      m_siteIcons(new QCheckBox(text("settings.siteIcons"_text), this))
{
    m_confirmQuit->setObjectName(QStringLiteral("confirmBeforeQuit"));
    m_launchAtLogin->setObjectName(QStringLiteral("launchAtLogin"));
    m_launchAtLogin->setVisible(services.launchAtLogin != nullptr);
    m_siteIcons->setObjectName(QStringLiteral("siteIcons"));

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(tabMargins());
    column->setSpacing(6);
    column->addWidget(m_links, 1);
    column->addSpacing(6);
    column->addWidget(sectionTitle(text("menulet.iconTitle"_text), this));
    column->addWidget(m_icons);
    column->addSpacing(6);
    column->addWidget(sectionTitle(text("settings.behaviour"_text), this));
    if (m_shortcut)
        column->addWidget(m_shortcut);
    column->addLayout(makeBehaviour());

    connect(m_confirmQuit, &QCheckBox::clicked, this, &GeneralTab::setConfirmBeforeQuit);
    connect(m_launchAtLogin, &QCheckBox::clicked, this, &GeneralTab::setLaunchAtLogin);
    connect(m_siteIcons, &QCheckBox::clicked, this, [this](bool on) {
        m_services.favicons.setEnabled(on);
        refresh();
    });
    connect(&services.favicons, &FaviconSettings::changed, this, &GeneralTab::refresh);
    connect(&services.notifications, &Notifications::generalSettingsChanged, this, &GeneralTab::refresh);
    connect(&services.defaults, &UserDefaults::changedExternally, this, &GeneralTab::refresh);
    refresh();
}

QLayout *GeneralTab::makeBehaviour()
{
    QLabel *sent = checkBoxHint(text("settings.siteIconsHint %@"_text, m_services.favicons.serviceHost()), m_siteIcons);
    sent->setObjectName(QStringLiteral("siteIconsHint"));
    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(24);
    grid->setVerticalSpacing(4);
    grid->setColumnStretch(1, 1);
    grid->addWidget(m_confirmQuit, 0, 0);
    grid->addWidget(m_launchAtLogin, 1, 0, Qt::AlignTop);
    grid->addWidget(m_siteIcons, 0, 1);
    grid->addWidget(sent, 1, 1);
    return grid;
}

bool GeneralTab::event(QEvent *event)
{
    if (event->type() == QEvent::Show || event->type() == QEvent::WindowActivate)
        readLaunchAtLogin();
    return QWidget::event(event);
}

void GeneralTab::readLaunchAtLogin()
{
    if (!m_services.launchAtLogin)
        return;
    const bool enabled = m_services.launchAtLogin->isEnabled();
    m_launchAtLogin->setChecked(enabled);
    // Not what decides, so a failure to store it does no harm.
    if (m_services.defaults.get<bool>(launchAtLoginKey()) != enabled)
        static_cast<void>(m_services.defaults.write(launchAtLoginKey(), enabled));
}

void GeneralTab::setLaunchAtLogin(bool launch)
{
    m_services.launchAtLogin->setEnabled(launch);
    readLaunchAtLogin();
    if (m_launchAtLogin->isChecked() != launch)
        SettingsWindow::showStatus(this, text("settings.launchAtLoginFailed"_text));
}

void GeneralTab::refresh()
{
    m_icons->refresh();
    m_confirmQuit->setChecked(m_services.defaults.get<bool>(confirmBeforeQuitKey()).value_or(true));
    m_siteIcons->setChecked(m_services.favicons.isEnabled());
}

void GeneralTab::setConfirmBeforeQuit(bool confirm)
{
    if (!m_services.defaults.write(confirmBeforeQuitKey(), confirm)) {
        refresh();
        return;
    }
    emit m_services.notifications.generalSettingsChanged();
    emit m_services.notifications.syncableSettingsChanged();
}

} // namespace orvelle
