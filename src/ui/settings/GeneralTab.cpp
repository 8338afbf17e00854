#include "ui/settings/GeneralTab.h"

#include "base/Notifications.h"
#include "base/Text.h"
#include "platform/UserDefaults.h"
#include "ui/settings/LinksSection.h"
#include "ui/settings/MenuletIconPicker.h"
#include "ui/settings/Sections.h"

#include <QCheckBox>
#include <QVBoxLayout>

namespace orvelle {

GeneralTab::GeneralTab(const SettingsServices &services, QWidget *parent)
    : QWidget(parent),
      m_services(services),
      m_links(new LinksSection(services, this)),
      m_icons(new MenuletIconPicker(services.defaults, services.notifications, this)),
      m_confirmQuit(new QCheckBox(text("settings.confirmBeforeQuit"_text), this))
{
    m_confirmQuit->setObjectName(QStringLiteral("confirmBeforeQuit"));

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(tabMargins());
    column->setSpacing(8);
    column->addWidget(sectionTitle(text("settings.links"_text), this));
    column->addWidget(m_links, 1);
    column->addSpacing(8);
    column->addWidget(sectionTitle(text("menulet.iconTitle"_text), this));
    column->addWidget(sectionSubtitle(text("menulet.iconSubtitle"_text), this));
    column->addWidget(m_icons);
    column->addSpacing(8);
    column->addWidget(sectionTitle(text("settings.behaviour"_text), this));
    column->addWidget(m_confirmQuit);

    connect(m_confirmQuit, &QCheckBox::clicked, this, &GeneralTab::setConfirmBeforeQuit);
    connect(&services.notifications, &Notifications::generalSettingsChanged, this, &GeneralTab::refresh);
    connect(&services.defaults, &UserDefaults::changedExternally, this, &GeneralTab::refresh);
    refresh();
}

void GeneralTab::refresh()
{
    m_icons->refresh();
    m_confirmQuit->setChecked(m_services.defaults.get<bool>(confirmBeforeQuitKey()).value_or(true));
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
