#include "ui/settings/CalendarSection.h"

#include "base/Notifications.h"
#include "links/LinkColors.h"
#include "platform/Alerts.h"
#include "ui/common/AssistedInput.h"
#include "ui/common/ColorMenu.h"
#include "ui/common/PlainToolTip.h"
#include "widgets/calendar/CalendarManager.h"

#include <QDir>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QSpinBox>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr int folderLines = 3;

QString shownPath(const QString &path)
{
    const QString home = QDir::homePath();
    return path.startsWith(home + u'/') ? u'~' + path.mid(home.size()) : path;
}

} // namespace

CalendarSection::CalendarSection(CalendarManager &manager, const Notifications &notifications, const Folders &folders,
                                 FolderChooser &chooser, QWidget *parent)
    : WidgetSection(WidgetType::Calendar, parent)
{
    addEnableSwitch({[&manager] { return manager.isEnabled(); }, [&manager](bool on) { manager.setEnabled(on); }});
    addMenuBarOnly(
        {[&manager] { return manager.menuBarOnly(); }, [&manager](bool only) { manager.setMenuBarOnly(only); }});
    addRow(text("calendar.iconColor"_text), makeColor(manager));
    addRow(text("calendar.maxEvents"_text), makeCount(manager));
    addComboBox(u"scope"_s, text("calendar.scope"_text),
                {{text("calendar.scope.today"_text), static_cast<int>(CalendarScope::Today)},
                 {text("calendar.scope.day"_text), static_cast<int>(CalendarScope::OneDay)},
                 {text("calendar.scope.all"_text), static_cast<int>(CalendarScope::All)}},
                {[&manager] { return static_cast<int>(manager.displayScope()); },
                 [&manager](int scope) { manager.setDisplayScope(static_cast<CalendarScope>(scope)); }});
    addCheckBox(
        u"hideDeclined"_s, text("calendar.hideDeclined"_text),
        {[&manager] { return manager.hidesDeclined(); }, [&manager](bool hides) { manager.setHidesDeclined(hides); }});
    addRow(text("calendar.folders"_text), makeFolders(folders, chooser));
    addHint(text("calendar.foldersHint"_text));
    connect(&notifications, &Notifications::calendarChanged, this, &WidgetSection::refresh);
}

QWidget *CalendarSection::makeColor(CalendarManager &manager)
{
    auto *button = new QToolButton(this);
    button->setObjectName(u"iconColor"_s);
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setPopupMode(QToolButton::InstantPopup);
    auto *colors = new ColorMenu(button);
    button->setMenu(colors);
    connect(colors, &ColorMenu::chosen, this, [&manager](const QString &key) { manager.setIconColor(key); });
    addReader([&manager, button, colors] {
        const QString &key = manager.iconColor();
        const auto known =
            std::ranges::find_if(allColors(), [&](const ColorChoice &each) { return key == QLatin1String(each.key); });
        button->setIcon(colorSwatch(key, button->palette()));
        button->setText(known == allColors().end() ? QString() : text(known->label));
        colors->setCurrent(key);
    });
    return button;
}

QWidget *CalendarSection::makeCount(CalendarManager &manager)
{
    auto *field = new QSpinBox(this);
    field->setObjectName(u"maxEvents"_s);
    field->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    field->setKeyboardTracking(false);
    addReader([&manager, field] {
        const QSignalBlocker blocker(field);
        // A greater number, of another machine say, stays until it is changed here.
        const qint64 most = std::max<qint64>(CalendarManager::mostEvents, manager.maxEvents());
        field->setRange(1, static_cast<int>(std::min<qint64>(most, 9999)));
        field->setValue(static_cast<int>(std::min<qint64>(manager.maxEvents(), 9999)));
    });
    connect(field, &QSpinBox::valueChanged, this, [&manager](int count) { manager.setMaxEvents(count); });
    return field;
}

QWidget *CalendarSection::makeFolders(const Folders &folders, FolderChooser &chooser)
{
    auto *whole = new QWidget(this);
    auto *list = new QListWidget(whole);
    list->setObjectName(u"folders"_s);
    list->setAccessibleName(text("calendar.folders"_text));
    followSelection(list);
    list->setWordWrap(true);
    list->setTextElideMode(Qt::ElideMiddle);
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list->setFixedHeight(list->fontMetrics().lineSpacing() * folderLines + 24);
    auto *add = new QPushButton(text("calendar.addFolder"_text), whole);
    auto *remove = new QPushButton(text("calendar.removeFolder"_text), whole);
    add->setObjectName(u"addFolder"_s);
    remove->setObjectName(u"removeFolder"_s);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(add);
    buttons->addWidget(remove);
    buttons->addStretch(1);
    auto *column = new QVBoxLayout(whole);
    column->setContentsMargins({});
    column->addWidget(list);
    column->addLayout(buttons);
    const auto show = [list, remove, folders] {
        list->clear();
        for (const QString &each : folders.read())
            (new QListWidgetItem(shownPath(each), list))->setToolTip(plainToolTip(each));
        if (list->count() == 0) {
            auto *nothing = new QListWidgetItem(text("calendar.noFolder"_text), list);
            nothing->setFlags(Qt::NoItemFlags);
        }
        remove->setEnabled(list->currentRow() >= 0);
    };
    addReader(show);
    connect(list, &QListWidget::currentRowChanged, remove, [remove](int row) { remove->setEnabled(row >= 0); });
    connect(remove, &QPushButton::clicked, this, [list, folders, show] {
        QStringList kept = folders.read();
        if (list->currentRow() >= 0 && list->currentRow() < kept.size())
            kept.removeAt(list->currentRow());
        folders.write(kept);
        show();
    });
    connect(add, &QPushButton::clicked, this, [list = QPointer(list), folders, show, &chooser] {
        chooser.chooseFolder(text("calendar.chooseFolder"_text), text("calendar.addFolder"_text), QDir::homePath(),
                             [list, folders, show](const QString &path) {
                                 if (!list || path.isEmpty() || folders.read().contains(path))
                                     return;
                                 folders.write(folders.read() << path);
                                 show();
                             });
    });
    return whole;
}

} // namespace orvelle
