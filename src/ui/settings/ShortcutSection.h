#pragma once

#include <QWidget>

class QCheckBox;
class QLabel;
class QToolButton;

namespace orvelle {

class GlobalShortcut;
class Notifications;
class ShortcutRecorderView;
struct Shortcut;

/// The global shortcut in the settings: its switch, the recorder, and what is
/// to be said of it, such as that another program holds it.
class ShortcutSection : public QWidget
{
    Q_OBJECT

public:
    /// Both outlive this.
    ShortcutSection(GlobalShortcut &shortcut, Notifications &notifications, QWidget *parent = nullptr);

protected:
    void changeEvent(QEvent *event) override;

private:
    void store(const Shortcut &recorded);
    void refresh();
    void showRemark();
    QString spoken(const Shortcut &stored) const;

    GlobalShortcut &m_shortcut;
    QCheckBox *m_enabled;
    ShortcutRecorderView *m_recorder;
    QToolButton *m_reset;
    QLabel *m_spoken;
    QWidget *m_remark;
    QLabel *m_remarkSymbol;
    QLabel *m_remarkText;
    bool m_showConflictWarning = false;
};

} // namespace orvelle
