#pragma once

#include <QWidget>

class QPushButton;

namespace orvelle {

class WidgetOrderList;
class WidgetOrderManager;

/// The order of the widgets in the menu.
class WidgetsTab : public QWidget
{
    Q_OBJECT

public:
    explicit WidgetsTab(WidgetOrderManager &order, QWidget *parent = nullptr);

private:
    void refreshButtons();

    WidgetOrderManager &m_order;
    WidgetOrderList *m_list;
    QPushButton *m_up;
    QPushButton *m_down;
};

} // namespace orvelle
