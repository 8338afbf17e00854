#pragma once

#include <QWidget>

class QRadioButton;

namespace orvelle {

class Notifications;
class UserDefaults;

/// The choice of the tray icon: one picture with its name for each, one of
/// them chosen. Arrow keys move the choice.
class MenuletIconPicker : public QWidget
{
    Q_OBJECT

public:
    MenuletIconPicker(UserDefaults &defaults, Notifications &notifications, QWidget *parent = nullptr);

    static QString defaultsKey() { return QStringLiteral("MenuletIcon"); }

    /// Reads the stored choice again.
    void refresh();

private:
    void choose(const QString &stored);

    UserDefaults &m_defaults;
    Notifications &m_notifications;
    QList<QRadioButton *> m_buttons; ///< in the order of menuletIcons()
};

} // namespace orvelle
