#include "ui/settings/WidgetSection.h"

#include "ui/common/AssistedInput.h"
#include "ui/settings/Sections.h"
#include "ui/settings/SymbolTile.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>
#include <QVBoxLayout>

#include <array>

namespace orvelle {

namespace {

constexpr int tileSide = 40;

/// In the order of WidgetType.
const std::array<WidgetPresentation, 7> presentations{{
    {"clipboard.title"_text, "clipboard.subtitle"_text, "list.clipboard", "blue"},
    {"quicklaunch.title"_text, "quicklaunch.subtitle"_text, "bolt.fill", "orange"},
    {"calendar.title"_text, "calendar.subtitle"_text, "calendar", "red"},
    {"weather.title"_text, "weather.subtitle"_text, "cloud.sun.fill", "cyan"},
    {"systemInfo.title"_text, "systemInfo.subtitle"_text, "desktopcomputer", "gray"},
    {"network.title"_text, "network.subtitle"_text, "network", "green"},
    {"timer.title"_text, "timer.subtitle"_text, "timer", "purple"},
}};

} // namespace

const WidgetPresentation &presentationOf(WidgetType widget)
{
    return presentations.at(static_cast<std::size_t>(widget));
}

WidgetSection::WidgetSection(WidgetType widget, QWidget *parent)
    : QWidget(parent), m_widget(widget), m_form(new QFormLayout)
{
    setObjectName(QStringLiteral("section.") + rawValue(widget));
    m_form->setContentsMargins({});
    m_form->setHorizontalSpacing(12);
    m_form->setVerticalSpacing(10);
    m_form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    m_form->setRowWrapPolicy(QFormLayout::WrapLongRows);
    auto *line = new QFrame(this);
    line->setFrameStyle(QFrame::HLine | QFrame::Sunken);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(14);
    column->addWidget(makeHead());
    column->addWidget(line);
    column->addLayout(m_form);
    column->addStretch(1);
}

QWidget *WidgetSection::makeHead()
{
    const WidgetPresentation &shown = presentationOf(m_widget);
    auto *head = new QWidget(this);
    auto *texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addWidget(pageTitle(text(shown.title), head));
    texts->addWidget(sectionSubtitle(text(shown.subtitle), head));
    auto *row = new QHBoxLayout(head);
    row->setContentsMargins({});
    row->setSpacing(14);
    row->addWidget(
        new SymbolTile(QString::fromLatin1(shown.symbol), QString::fromLatin1(shown.colorKey), tileSide, head), 0,
        Qt::AlignTop);
    row->addLayout(texts, 1);
    return head;
}

QCheckBox *WidgetSection::addEnableSwitch(const SettingAccess<bool> &access)
{
    QCheckBox *box = addCheckBox(QStringLiteral("enabled"), text("widget.show"_text), access);
    m_dependents.removeOne(box);
    box->setEnabled(true);
    m_isOn = access.read;
    updateDependents();
    return box;
}

void WidgetSection::addModeChoice(int offValue, const QList<Choice> &modes, const SettingAccess<int> &access)
{
    auto *row = new QWidget(this);
    row->setAccessibleName(spokenLabel(text("widget.mode"_text)));
    auto *buttons = new QHBoxLayout(row);
    buttons->setContentsMargins({});
    buttons->setSpacing(14);
    auto *group = new QButtonGroup(row);
    for (const Choice &choice : QList<Choice>{{text("widget.off"_text), offValue}} + modes) {
        auto *button = new QRadioButton(choice.title, row);
        button->setObjectName(QStringLiteral("mode.") + QString::number(choice.value));
        reachWhenChecked(button);
        group->addButton(button, choice.value);
        buttons->addWidget(button);
    }
    buttons->addStretch(1);
    // Not side by side: a form squeezes its widest row before it wraps it.
    m_form->addRow(new QLabel(text("widget.mode"_text), this));
    m_form->addRow(row);
    m_isOn = [read = access.read, offValue] { return read() != offValue; };
    addReader([group, read = access.read] {
        if (QAbstractButton *button = group->button(read()))
            button->setChecked(true);
    });
    connect(group, &QButtonGroup::idClicked, this, [this, access](int value) {
        if (value != access.read())
            access.write(value);
        refresh();
    });
    updateDependents();
}

QCheckBox *WidgetSection::addMenuBarOnly(const SettingAccess<bool> &access)
{
    QCheckBox *box = addCheckBox(QStringLiteral("menuBarOnly"), text("widget.menuBarOnly"_text), access);
    addHint(text("widget.menuBarOnlyHint"_text));
    return box;
}

QCheckBox *WidgetSection::addCheckBox(const QString &objectName, const QString &title,
                                      const SettingAccess<bool> &access)
{
    auto *box = new QCheckBox(title, this);
    box->setObjectName(objectName);
    m_form->addRow(QString(), box);
    addDependent(box);
    addReader([box, read = access.read] { box->setChecked(read()); });
    connect(box, &QCheckBox::clicked, this, [this, access](bool checked) {
        access.write(checked);
        refresh();
    });
    return box;
}

QComboBox *WidgetSection::addComboBox(const QString &objectName, const QString &label, const QList<Choice> &choices,
                                      const SettingAccess<int> &access)
{
    auto *box = new QComboBox(this);
    box->setObjectName(objectName);
    box->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    for (const Choice &choice : choices)
        box->addItem(choice.title, choice.value);
    addRow(label, box);
    addReader([box, read = access.read] { box->setCurrentIndex(box->findData(read())); });
    connect(box, &QComboBox::activated, this, [this, box, access] {
        const int value = box->currentData().toInt();
        if (value != access.read())
            access.write(value);
        refresh();
    });
    return box;
}

void WidgetSection::addRow(const QString &label, QWidget *control)
{
    if (control->accessibleName().isEmpty())
        control->setAccessibleName(spokenLabel(label));
    m_form->addRow(label, control);
    addDependent(m_form->labelForField(control));
    addDependent(control);
}

void WidgetSection::addWide(QWidget *control)
{
    m_form->addRow(control);
    addDependent(control);
}

QLabel *WidgetSection::addHint(const QString &hint)
{
    QLabel *label = sectionSubtitle(hint, this);
    m_form->addRow(QString(), label);
    addDependent(label);
    return label;
}

void WidgetSection::addHeading(const QString &heading)
{
    m_form->addRow(sectionTitle(heading, this));
}

void WidgetSection::addReader(const std::function<void()> &read)
{
    m_readers += read;
    read();
}

void WidgetSection::refresh()
{
    for (const auto &read : m_readers)
        read();
    updateDependents();
}

void WidgetSection::addDependent(QWidget *widget)
{
    if (!widget)
        return;
    m_dependents += widget;
    widget->setEnabled(!m_isOn || m_isOn());
}

void WidgetSection::updateDependents()
{
    const bool on = !m_isOn || m_isOn();
    for (QWidget *widget : m_dependents)
        widget->setEnabled(on);
}

} // namespace orvelle
