#include "ui/settings/MenuletIconPicker.h"

#include "base/Notifications.h"
#include "base/Text.h"
#include "menubar/MenuletIcons.h"
#include "platform/UserDefaults.h"
#include "ui/settings/PictureRadio.h"

#include <QGridLayout>

#include <algorithm>

namespace orvelle {

namespace {

constexpr int columns = 8;

} // namespace

MenuletIconPicker::MenuletIconPicker(UserDefaults &defaults, Notifications &notifications, QWidget *parent)
    : QWidget(parent), m_defaults(defaults), m_notifications(notifications)
{
    setObjectName(QStringLiteral("menuletIconPicker"));
    setAccessibleName(text("menulet.iconTitle"_text));
    auto *grid = new QGridLayout(this);
    grid->setContentsMargins({});
    grid->setSpacing(4);
    int position = 0;
    for (const MenuletIcon &icon : menuletIcons()) {
        auto *button = new PictureRadio(QString::fromLatin1(icon.symbol), text(icon.label), this);
        const QString stored = QString::fromLatin1(icon.stored);
        button->setObjectName(QStringLiteral("menuletIcon.") + stored);
        connect(button, &QRadioButton::clicked, this, [this, stored] { choose(stored); });
        grid->addWidget(button, position / columns, position % columns);
        grid->setColumnStretch(position % columns, 1);
        m_buttons += button;
        ++position;
    }
    refresh();
}

void MenuletIconPicker::refresh()
{
    const QString stored = m_defaults.get<QString>(defaultsKey()).value_or(QStringLiteral("link"));
    const auto icons = menuletIcons();
    const auto known = std::find_if(icons.begin(), icons.end(),
                                    [&](const MenuletIcon &icon) { return stored == QLatin1StringView(icon.stored); });
    m_buttons[known == icons.end() ? 0 : known - icons.begin()]->setChecked(true);
}

void MenuletIconPicker::choose(const QString &stored)
{
    if (m_defaults.get<QString>(defaultsKey()) == stored)
        return;
    if (!m_defaults.write(defaultsKey(), stored)) {
        refresh();
        return;
    }
    emit m_notifications.menuletIconChanged();
    emit m_notifications.generalSettingsChanged();
    emit m_notifications.syncableSettingsChanged();
}

} // namespace orvelle
