#pragma once

#include "ui/menu/rows/QuickLaunchButton.h"

#include <functional>

namespace orvelle {

class Applications;
class Notifications;

/// The applications of the quick-launch slots, side by side; without any, the
/// way to choose some.
class QuickLaunchRowView : public WidgetRowView
{
    Q_OBJECT

public:
    /// What a press does; both close the menu, and with it this row.
    struct Actions {
        std::function<void(int slot)> launch;
        std::function<void()> openSettings;
    };

    QuickLaunchRowView(const QuickLaunchManager &manager, const Applications &applications,
                       const Notifications &notifications, Actions actions, QWidget *parent);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void refresh();
    void pressed(const QuickLaunchButton &button);
    void placeButtons();

    const QuickLaunchManager &m_manager;
    const Applications &m_applications;
    Actions m_actions;
    QList<QuickLaunchButton *> m_buttons;
    MenuRowButton *m_choose;
    QuickLaunchDisplayStyle m_style = QuickLaunchDisplayStyle::Souffle;
};

} // namespace orvelle
