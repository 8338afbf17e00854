#include "ui/settings/QuickLaunchSection.h"

#include "base/Notifications.h"
#include "menubar/QuickLaunchManager.h"
#include "platform/Applications.h"
#include "ui/common/Icons.h"
#include "ui/settings/ApplicationChooser.h"
#include "ui/settings/QuickLaunchSlotList.h"
#include "ui/settings/SettingsWindow.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QPushButton>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

QList<WidgetSection::Choice> styleChoices()
{
    using Style = QuickLaunchDisplayStyle;
    return {{text("quicklaunch.style.souffle"_text), int(Style::Souffle)},
            {text("quicklaunch.style.dock"_text), int(Style::Dock)},
            {text("quicklaunch.style.neon"_text), int(Style::Neon)},
            {text("quicklaunch.style.encre"_text), int(Style::Encre)}};
}

} // namespace

QuickLaunchSection::QuickLaunchSection(QuickLaunchManager &manager, const Applications &applications,
                                       const Notifications &notifications, QWidget *parent)
    : WidgetSection(WidgetType::QuickLaunch, parent),
      m_manager(manager),
      m_applications(applications),
      m_slots(new QuickLaunchSlotList(manager, applications, this))
{
    addEnableSwitch({[&manager] { return manager.isEnabled(); }, [&manager](bool on) { manager.setEnabled(on); }});
    addComboBox(u"style"_s, text("quicklaunch.style"_text), styleChoices(),
                {[&manager] { return int(manager.displayStyle()); },
                 [&manager](int style) { manager.setDisplayStyle(static_cast<QuickLaunchDisplayStyle>(style)); }});
    addHeading(text("quicklaunch.slots"_text));
    addWide(m_slots);
    addWide(makeButtons());
    addHint(text("quicklaunch.slotsHint"_text));
    addReader([this] {
        m_slots->refresh();
        refreshButtons();
    });
    connect(m_slots, &QListWidget::currentRowChanged, this, &QuickLaunchSection::refreshButtons);
    connect(m_slots, &QListWidget::itemActivated, this, &QuickLaunchSection::choose);
    connect(m_slots, &QuickLaunchSlotList::fileDropped, this, &QuickLaunchSection::take);
    connect(m_slots, &QuickLaunchSlotList::removeAsked, this, &QuickLaunchSection::removeSelected);
    connect(&notifications, &Notifications::quickLaunchChanged, this, &WidgetSection::refresh);
}

QWidget *QuickLaunchSection::makeButtons()
{
    auto *row = new QWidget(this);
    auto *buttons = new QHBoxLayout(row);
    buttons->setContentsMargins({});
    const auto add = [row, buttons](const char *name, const QString &symbol, const QString &title) {
        auto *button = new QPushButton(symbolIcon(symbol), title, row);
        button->setObjectName(QString::fromLatin1(name));
        buttons->addWidget(button);
        return button;
    };
    m_choose = add("choose", u"plus"_s, text("quicklaunch.choose"_text));
    m_remove = add("remove", u"xmark.circle.fill"_s, text("quicklaunch.remove"_text));
    m_up = add("slotUp", u"chevron.up"_s, {});
    m_down = add("slotDown", u"chevron.down"_s, {});
    for (const auto &[button, name] :
         {std::pair(m_up, text("settings.moveUp"_text)), std::pair(m_down, text("settings.moveDown"_text))}) {
        button->setAccessibleName(name);
        button->setToolTip(name);
    }
    buttons->addStretch(1);
    connect(m_choose, &QPushButton::clicked, this, &QuickLaunchSection::choose);
    connect(m_remove, &QPushButton::clicked, this, &QuickLaunchSection::removeSelected);
    connect(m_up, &QPushButton::clicked, m_slots, [this] { m_slots->moveSelected(-1); });
    connect(m_down, &QPushButton::clicked, m_slots, [this] { m_slots->moveSelected(1); });
    return row;
}

void QuickLaunchSection::choose()
{
    const int slot = m_slots->currentRow();
    if (slot < 0)
        return;
    auto *chooser = new ApplicationChooser(m_applications, this);
    connect(chooser, &ApplicationChooser::chosen, this, [this, slot](const QString &file) { take(slot, file); });
    chooser->open();
}

void QuickLaunchSection::take(int slot, const QString &desktopFile)
{
    if (!m_manager.setApp(slot, desktopFile))
        SettingsWindow::showStatus(this, text("quicklaunch.notUsable %@"_text, QFileInfo(desktopFile).fileName()));
}

void QuickLaunchSection::removeSelected()
{
    m_manager.removeApp(m_slots->currentRow());
}

void QuickLaunchSection::refreshButtons()
{
    if (!m_down)
        return;
    const int slot = m_slots->currentRow();
    const bool isSlot = slot >= 0 && m_manager.isEnabled();
    m_choose->setEnabled(isSlot);
    m_remove->setEnabled(isSlot && m_manager.apps().at(slot));
    m_up->setEnabled(isSlot && slot > 0);
    m_down->setEnabled(isSlot && slot + 1 < m_manager.apps().size());
}

} // namespace orvelle
