#pragma once

#include "base/Text.h"
#include "menubar/WidgetType.h"

#include <QHash>
#include <QList>
#include <QWidget>

#include <functional>

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLabel;

namespace orvelle {

/// How a widget is named and pictured wherever the settings speak of it.
struct WidgetPresentation {
    TextKey title;
    TextKey subtitle;
    const char *symbol;
    const char *colorKey;
};

const WidgetPresentation &presentationOf(WidgetType widget);

/// Where a control's value comes from and where a change by the user goes. A
/// control reads when it is made, at WidgetSection::refresh(), and after each
/// write, so that a value that could not be stored falls back on screen.
template<typename T>
struct SettingAccess {
    std::function<T()> read;
    std::function<void(T)> write;
};

/// One widget's page in the settings: a head with the widget's symbol, title
/// and subtitle, then one row per control in a common form. Make one per
/// widget, either as a subclass or by a function that adds the rows:
///
///     auto *section = new WidgetSection(WidgetType::Timer, parent);
///     section->addEnableSwitch({[&m] { return m.isEnabled(); }, [&m](bool on) { m.setEnabled(on); }});
///     section->addMenuBarOnly({[&m] { return m.menuBarOnly(); }, [&m](bool on) { m.setMenuBarOnly(on); }});
///     connect(&notifications, &Notifications::timerChanged, section, &WidgetSection::refresh);
///
/// The rows below the switch or the mode are disabled while the widget is off.
/// The section scrolls as a whole; it needs no scroll area of its own. Returned
/// controls belong to the section; do not set their values by hand, but call
/// refresh(). Main thread.
class WidgetSection : public QWidget
{
    Q_OBJECT

public:
    /// One way of showing the widget. `value` is the manager's own (an
    /// enumeration as integer).
    struct Choice {
        QString title;
        int value = 0;
    };

    explicit WidgetSection(WidgetType widget, QWidget *parent = nullptr);

    WidgetType widget() const { return m_widget; }

    /// "Show in the menu". objectName "enabled".
    QCheckBox *addEnableSwitch(const SettingAccess<bool> &access);
    /// For a widget whose mode says whether it is on: "Off" (`offValue`) and
    /// the modes side by side. Each button's objectName is "mode." and its
    /// value, "mode.0".
    void addModeChoice(int offValue, const QList<Choice> &modes, const SettingAccess<int> &access);
    /// "Only in the menu of the tray icon", with its explanation. objectName
    /// "menuBarOnly".
    QCheckBox *addMenuBarOnly(const SettingAccess<bool> &access);

    QCheckBox *addCheckBox(const QString &objectName, const QString &title, const SettingAccess<bool> &access);
    QComboBox *addComboBox(const QString &objectName, const QString &label, const QList<Choice> &choices,
                           const SettingAccess<int> &access);
    /// Any other control, which becomes the section's; `label` ends in a colon
    /// and becomes the control's accessible name unless it has one.
    void addRow(const QString &label, QWidget *control);
    /// A control over the whole width.
    void addWide(QWidget *control);
    /// A quiet line that explains the row above it.
    QLabel *addHint(const QString &text);
    /// The heading of a group of rows.
    void addHeading(const QString &text);
    /// Runs `read` now and at each refresh(): for controls added by addRow()
    /// and addWide().
    void addReader(const std::function<void()> &read);

public slots:
    /// Reads every value again. Connect the manager's change notification.
    void refresh();

private:
    QWidget *makeHead();
    void addDependent(QWidget *widget);
    void updateDependents();

    WidgetType m_widget;
    QFormLayout *m_form;
    QList<std::function<void()>> m_readers;
    QList<QWidget *> m_dependents; ///< enabled while the widget is on
    std::function<bool()> m_isOn;  ///< empty: always on
};

/// Makes the section of one widget as a child of `parent`. Called once for
/// each settings window, when the section is first looked at.
using WidgetSectionFactory = std::function<WidgetSection *(QWidget *parent)>;

/// The sections that there are; a widget without one is only ordered.
using WidgetSectionTable = QHash<WidgetType, WidgetSectionFactory>;

} // namespace orvelle
