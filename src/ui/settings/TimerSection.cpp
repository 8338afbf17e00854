#include "ui/settings/TimerSection.h"

#include "base/Notifications.h"
#include "ui/settings/Sections.h"
#include "widgets/timer/TimerManager.h"

#include <QHBoxLayout>
#include <QIntValidator>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr int mostMinutes = 24 * 60;
constexpr int presetGap = 8;

} // namespace

TimerSection::TimerSection(TimerManager &manager, const Notifications &notifications, QWidget *parent)
    : WidgetSection(WidgetType::Timer, parent), m_manager(manager)
{
    addEnableSwitch({[&manager] { return manager.isEnabled(); }, [&manager](bool on) { manager.setEnabled(on); }});
    addMenuBarOnly(
        {[&manager] { return manager.menuBarOnly(); }, [&manager](bool only) { manager.setMenuBarOnly(only); }});
    addRow(text("timer.presetsLabel"_text), makePresets());
    addRow(text("timer.customMessage"_text), makeCustom());
    connect(&notifications, &Notifications::timerChanged, this, &WidgetSection::refresh);
}

/// Durations in minutes. One that is stored in seconds shows rounded up and
/// stays as it is until it is changed here.
QWidget *TimerSection::makePresets()
{
    auto *row = new QWidget(this);
    auto *fields = new QHBoxLayout(row);
    fields->setContentsMargins({});
    fields->setSpacing(presetGap);
    for (int i = 0; i < 3; ++i) {
        auto *field = new QSpinBox(row);
        field->setObjectName(u"preset.%1"_s.arg(i));
        field->setRange(1, mostMinutes);
        field->setSuffix(text("timer.minutesSuffix"_text));
        field->setAccessibleName(spokenLabel(text("timer.presetsLabel"_text)) + u" %1"_s.arg(i + 1));
        field->setKeyboardTracking(false);
        addReader([this, field, i] {
            const QSignalBlocker blocker(field);
            field->setValue(static_cast<int>((m_manager.presets().at(i) + 59) / 60));
        });
        connect(field, &QSpinBox::valueChanged, this, [this, i](int minutes) {
            QList<qint64> presets = m_manager.presets();
            presets[i] = qint64(minutes) * 60;
            m_manager.setPresets(presets);
        });
        fields->addWidget(field);
    }
    fields->addStretch(1);
    return row;
}

QWidget *TimerSection::makeCustom()
{
    auto *row = new QWidget(this);
    auto *minutes = new QLineEdit(row);
    minutes->setObjectName(u"customMinutes"_s);
    minutes->setPlaceholderText(text("timer.customPlaceholder"_text));
    minutes->setAccessibleName(spokenLabel(text("timer.customMessage"_text)));
    minutes->setValidator(new QIntValidator(1, mostMinutes, minutes));
    minutes->setMaximumWidth(minutes->fontMetrics().averageCharWidth() * 16);
    auto *start = new QPushButton(text("timer.startCustom"_text), row);
    start->setObjectName(u"startCustom"_s);
    start->setEnabled(false);
    auto *fields = new QHBoxLayout(row);
    fields->setContentsMargins({});
    fields->setSpacing(presetGap);
    fields->addWidget(minutes);
    fields->addWidget(start);
    fields->addStretch(1);
    connect(minutes, &QLineEdit::textChanged, start,
            [minutes, start] { start->setEnabled(minutes->hasAcceptableInput()); });
    connect(minutes, &QLineEdit::returnPressed, start, &QPushButton::click);
    connect(start, &QPushButton::clicked, this, [this, minutes] {
        m_manager.start(minutes->text().toLongLong() * 60);
        minutes->clear();
    });
    return row;
}

} // namespace orvelle
