#pragma once

#include "ui/settings/SettingsWindow.h"

#include <QWidget>

class QPushButton;
class QStackedWidget;

namespace orvelle {

class WidgetOrderList;

/// The widgets in the order of the menu, and beside them the settings of the
/// selected one.
class WidgetsTab : public QWidget
{
    Q_OBJECT

public:
    explicit WidgetsTab(const SettingsServices &services, QWidget *parent = nullptr);

private:
    QLayout *makeOrderColumn();
    QWidget *makeSection(WidgetType widget);
    void showSelected();
    void refreshButtons();

    WidgetOrderManager &m_order;
    WidgetSectionTable m_table;
    WidgetOrderList *m_list;
    QPushButton *m_up;
    QPushButton *m_down;
    QStackedWidget *m_sections;
    QHash<WidgetType, QWidget *> m_made; ///< those looked at so far
};

} // namespace orvelle
