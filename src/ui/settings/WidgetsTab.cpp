#include "ui/settings/WidgetsTab.h"

#include "base/Text.h"
#include "menubar/WidgetOrderManager.h"
#include "ui/common/Icons.h"
#include "ui/settings/PageScroll.h"
#include "ui/settings/Sections.h"
#include "ui/settings/WidgetOrderList.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace orvelle {

namespace {

/// Of the width, beside the three shares of a section.
constexpr int orderShare = 2;
constexpr int sectionShare = 3;

} // namespace

WidgetsTab::WidgetsTab(const SettingsServices &services, QWidget *parent)
    : QWidget(parent),
      m_order(services.widgetOrder),
      m_table(services.widgetSections),
      m_list(new WidgetOrderList(services.widgetOrder, this)),
      m_up(new QPushButton(symbolIcon(QStringLiteral("chevron.up")), text("settings.moveUp"_text), this)),
      m_down(new QPushButton(symbolIcon(QStringLiteral("chevron.down")), text("settings.moveDown"_text), this)),
      m_sections(new QStackedWidget(this))
{
    m_up->setObjectName(QStringLiteral("moveUp"));
    m_down->setObjectName(QStringLiteral("moveDown"));
    m_up->setToolTip(QKeySequence(Qt::ALT | Qt::Key_Up).toString(QKeySequence::NativeText));
    m_down->setToolTip(QKeySequence(Qt::ALT | Qt::Key_Down).toString(QKeySequence::NativeText));

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(tabMargins());
    row->setSpacing(24);
    row->addLayout(makeOrderColumn(), orderShare);
    row->addWidget(m_sections, sectionShare);

    connect(m_up, &QPushButton::clicked, m_list, &WidgetOrderList::moveSelectedUp);
    connect(m_down, &QPushButton::clicked, m_list, &WidgetOrderList::moveSelectedDown);
    connect(m_list, &QListWidget::currentRowChanged, this, &WidgetsTab::refreshButtons);
    connect(m_list, &QListWidget::currentRowChanged, this, &WidgetsTab::showSelected);
    connect(&m_order, &WidgetOrderManager::orderChanged, this, &WidgetsTab::refreshButtons);
    refreshButtons();
    showSelected();
}

QLayout *WidgetsTab::makeOrderColumn()
{
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(m_up);
    buttons->addWidget(m_down);
    buttons->addStretch(1);
    auto *column = new QVBoxLayout;
    column->setSpacing(8);
    column->addWidget(sectionTitle(text("settings.widgetOrder"_text), this));
    column->addWidget(sectionSubtitle(text("settings.widgetOrderHint"_text), this));
    column->addWidget(m_list);
    column->addLayout(buttons);
    column->addStretch(1);
    return column;
}

QWidget *WidgetsTab::makeSection(WidgetType widget)
{
    if (const auto factory = m_table.constFind(widget); factory != m_table.constEnd())
        return (*factory)(this);
    auto *section = new WidgetSection(widget, this);
    section->addWide(sectionSubtitle(text("widget.notYet"_text), section));
    return section;
}

void WidgetsTab::showSelected()
{
    const auto widget = m_list->selectedWidget();
    if (!widget)
        return;
    QWidget *&page = m_made[*widget];
    if (!page) {
        page = new PageScroll(makeSection(*widget), m_sections);
        m_sections->addWidget(page);
    }
    m_sections->setCurrentWidget(page);
}

void WidgetsTab::refreshButtons()
{
    const auto widget = m_list->selectedWidget();
    m_up->setEnabled(widget && m_order.canMoveUp(*widget));
    m_down->setEnabled(widget && m_order.canMoveDown(*widget));
}

} // namespace orvelle
