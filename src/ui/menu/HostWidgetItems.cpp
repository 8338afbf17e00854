#include "ui/menu/HostWidgetItems.h"

#include "ui/menu/rows/ClipboardEntryButton.h"
#include "ui/menu/rows/QuickLaunchButton.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QResizeEvent>

#include <algorithm>
#include <memory>
#include <tuple>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

/// A row nobody sees.
class HiddenRow
{
public:
    HiddenRow(WidgetType widget, const WidgetRowFactory &make)
    {
        auto parent = std::make_unique<QWidget>();
        m_row = make ? make(widget, parent.get()) : nullptr;
        if (!m_row)
            return;
        m_parent = parent.release();
        m_row->resize(m_row->sizeHint());
        // The toolkit keeps it until the row is shown, which it never is.
        QResizeEvent resized(m_row->size(), QSize());
        QCoreApplication::sendEvent(m_row, &resized);
    }
    ~HiddenRow()
    {
        if (m_parent)
            m_parent->deleteLater(); // a button of it may just have been pressed
    }
    Q_DISABLE_COPY_MOVE(HiddenRow)

    QWidget *row() const { return m_row; }
    /// Those the row shows, as one reads them.
    QList<QAbstractButton *> buttons() const
    {
        QList<QAbstractButton *> found = m_row->findChildren<QAbstractButton *>();
        erase_if(found, [this](const QAbstractButton *each) { return isTakenAway(each); });
        const bool rightToLeft = m_row->layoutDirection() == Qt::RightToLeft;
        const auto place = [this, rightToLeft](const QAbstractButton *each) {
            const QRect area(each->mapTo(m_row, QPoint()), each->size());
            return std::tuple(area.top() / std::max(1, m_row->fontMetrics().height()),
                              rightToLeft ? -area.right() : area.left(), -area.width());
        };
        std::ranges::stable_sort(found, {}, place);
        return found;
    }

private:
    /// Before its window is shown a widget counts as hidden in any case.
    bool isTakenAway(const QWidget *widget) const
    {
        for (; widget != m_row; widget = widget->parentWidget()) {
            if (widget->isHidden() && widget->testAttribute(Qt::WA_WState_ExplicitShowHide))
                return true;
        }
        return false;
    }

    QWidget *m_parent = nullptr;
    QWidget *m_row = nullptr;
};

QString nameOf(const QAbstractButton &button)
{
    return button.accessibleName().isEmpty() ? button.text() : button.accessibleName();
}

QString titleOf(const QAbstractButton &button)
{
    // What a clipboard entry has to say is of a key that no host passes on.
    const bool isHint = qobject_cast<const ClipboardEntryButton *>(&button) != nullptr;
    const QString said = isHint ? QString() : button.accessibleDescription();
    return said.isEmpty() ? nameOf(button) : nameOf(button) + u" – "_s + said;
}

/// "Name – what there is to say", without saying the buttons' names twice.
QString sayingOf(const QWidget &row, const QList<QAbstractButton *> &buttons)
{
    const QString said = row.accessibleDescription();
    const bool namesButtons =
        std::ranges::any_of(buttons, [&said](const auto *each) { return said.contains(nameOf(*each)); });
    return said.isEmpty() || namesButtons ? row.accessibleName() : row.accessibleName() + u" – "_s + said;
}

/// How many before it have the same name.
qsizetype rankOf(const QList<QAbstractButton *> &buttons, qsizetype index)
{
    const QString name = nameOf(*buttons.at(index));
    return std::count_if(buttons.begin(), buttons.begin() + index,
                         [&name](const auto *each) { return nameOf(*each) == name; });
}

void press(WidgetType widget, const WidgetRowFactory &make, const QString &name, qsizetype rank)
{
    const HiddenRow again(widget, make);
    if (!again.row())
        return;
    const QList<QAbstractButton *> buttons = again.buttons();
    for (qsizetype i = 0; i < buttons.size(); ++i) {
        if (nameOf(*buttons.at(i)) == name && rankOf(buttons, i) == rank) {
            buttons.at(i)->click();
            return;
        }
    }
}

QList<HostMenuItem> buttonItems(WidgetType widget, const WidgetRowFactory &make)
{
    QList<HostMenuItem> items;
    const HiddenRow hidden(widget, make);
    const QList<QAbstractButton *> buttons = hidden.row() ? hidden.buttons() : QList<QAbstractButton *>();
    for (qsizetype i = 0; i < buttons.size(); ++i) {
        const QAbstractButton &button = *buttons.at(i);
        HostMenuItem item;
        item.key = nameOf(button);
        item.title = titleOf(button);
        const auto *app = qobject_cast<const QuickLaunchButton *>(&button);
        item.enabled = button.isEnabled() && !(app && app->content().isGone);
        item.choose = [widget, make, name = nameOf(button), rank = rankOf(buttons, i)] {
            press(widget, make, name, rank);
        };
        items += item;
    }
    return items;
}

/// A row that Return opens, without a button.
bool actsAsAWhole(WidgetType widget)
{
    return widget == WidgetType::Weather;
}

} // namespace

std::optional<HostMenuItem> hostWidgetItem(WidgetType widget, const WidgetRowFactory &makeRow)
{
    const HiddenRow hidden(widget, makeRow);
    if (!hidden.row())
        return std::nullopt;
    const QList<QAbstractButton *> buttons = hidden.buttons();
    HostMenuItem item;
    item.key = u"widget."_s + rawValue(widget);
    item.title = sayingOf(*hidden.row(), buttons);
    if (!buttons.isEmpty()) {
        item.children = [widget, makeRow] { return buttonItems(widget, makeRow); };
        item.childCount = buttons.size();
    } else if (actsAsAWhole(widget)) {
        item.choose = [widget, makeRow] {
            const HiddenRow again(widget, makeRow);
            QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
            if (again.row())
                QCoreApplication::sendEvent(again.row(), &press);
        };
    } else {
        item.enabled = false;
    }
    return item;
}

QString hostWidgetSymbol(WidgetType widget)
{
    switch (widget) {
    case WidgetType::Clipboard:
        return u"list.clipboard"_s;
    case WidgetType::QuickLaunch:
        return u"bolt.fill"_s;
    case WidgetType::Calendar:
        return u"calendar"_s;
    case WidgetType::Weather:
        return u"cloud.sun.fill"_s;
    case WidgetType::SystemInfo:
        return u"desktopcomputer"_s;
    case WidgetType::Network:
        return u"network"_s;
    case WidgetType::Timer:
        return u"timer"_s;
    }
    Q_UNREACHABLE();
}

} // namespace orvelle
