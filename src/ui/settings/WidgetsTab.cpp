#include "ui/settings/WidgetsTab.h"

#include "base/Text.h"
#include "menubar/WidgetOrderManager.h"
#include "ui/common/Icons.h"
#include "ui/settings/Sections.h"
#include "ui/settings/WidgetOrderList.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace orvelle {

WidgetsTab::WidgetsTab(WidgetOrderManager &order, QWidget *parent)
    : QWidget(parent),
      m_order(order),
      m_list(new WidgetOrderList(order, this)),
      m_up(new QPushButton(symbolIcon(QStringLiteral("chevron.up")), text("settings.moveUp"_text), this)),
      m_down(new QPushButton(symbolIcon(QStringLiteral("chevron.down")), text("settings.moveDown"_text), this))
{
    m_up->setObjectName(QStringLiteral("moveUp"));
    m_down->setObjectName(QStringLiteral("moveDown"));
    m_up->setToolTip(QKeySequence(Qt::ALT | Qt::Key_Up).toString(QKeySequence::NativeText));
    m_down->setToolTip(QKeySequence(Qt::ALT | Qt::Key_Down).toString(QKeySequence::NativeText));

    auto *buttons = new QVBoxLayout;
    buttons->addWidget(m_up);
    buttons->addWidget(m_down);
    buttons->addStretch(1);
    auto *row = new QHBoxLayout;
    row->setSpacing(12);
    row->addWidget(m_list, 1);
    row->addLayout(buttons);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(tabMargins());
    column->setSpacing(8);
    column->addWidget(sectionTitle(text("settings.widgetOrder"_text), this));
    column->addWidget(sectionSubtitle(text("settings.widgetOrderHint"_text), this));
    column->addLayout(row);
    column->addStretch(1);

    connect(m_up, &QPushButton::clicked, m_list, &WidgetOrderList::moveSelectedUp);
    connect(m_down, &QPushButton::clicked, m_list, &WidgetOrderList::moveSelectedDown);
    connect(m_list, &QListWidget::currentRowChanged, this, &WidgetsTab::refreshButtons);
    connect(&order, &WidgetOrderManager::orderChanged, this, &WidgetsTab::refreshButtons);
    refreshButtons();
}

void WidgetsTab::refreshButtons()
{
    const auto widget = m_list->selectedWidget();
    m_up->setEnabled(widget && m_order.canMoveUp(*widget));
    m_down->setEnabled(widget && m_order.canMoveDown(*widget));
}

} // namespace orvelle
