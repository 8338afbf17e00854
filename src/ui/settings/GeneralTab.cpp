#include "ui/settings/GeneralTab.h"

#include "base/Notifications.h"
#include "base/Text.h"
#include "links/FaviconSettings.h"
#include "platform/UserDefaults.h"
#include "ui/settings/LinksSection.h"
#include "ui/settings/MenuletIconPicker.h"
#include "ui/settings/Sections.h"
#include "ui/settings/ShortcutSection.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QStyle>
#include <QVBoxLayout>

namespace orvelle {

GeneralTab::GeneralTab(const SettingsServices &services, QWidget *parent)
    : QWidget(parent),
      m_services(services),
      m_links(new LinksSection(services, this)),
      m_icons(new MenuletIconPicker(services.defaults, services.notifications, this)),
      m_confirmQuit(new QCheckBox(text("settings.confirmBeforeQuit"_text), this)),
      m_siteIcons(new QCheckBox(text("settings.siteIcons"_text), this))
{
    m_confirmQuit->setObjectName(QStringLiteral("confirmBeforeQuit"));
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
    if (services.shortcut)
        column->addWidget(new ShortcutSection(*services.shortcut, services.notifications, this));
    column->addLayout(makeBehaviour());

    connect(m_confirmQuit, &QCheckBox::clicked, this, &GeneralTab::setConfirmBeforeQuit);
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
    // Stands under the text of its box, not under the box.
    QLabel *sent = sectionSubtitle(text("settings.siteIconsHint %@"_text, m_services.favicons.serviceHost()), this);
    sent->setObjectName(QStringLiteral("siteIconsHint"));
    m_siteIcons->setAccessibleDescription(sent->text());
    const int inset =
        style()->pixelMetric(QStyle::PM_IndicatorWidth) + style()->pixelMetric(QStyle::PM_CheckBoxLabelSpacing);
    sent->setContentsMargins(inset, 0, 0, 0);
    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(24);
    grid->setVerticalSpacing(4);
    grid->setColumnStretch(1, 1);
    grid->addWidget(m_confirmQuit, 0, 0);
    grid->addWidget(m_siteIcons, 0, 1);
    grid->addWidget(sent, 1, 1);
    return grid;
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
