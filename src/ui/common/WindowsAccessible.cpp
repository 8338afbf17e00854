#include "ui/common/WindowsAccessible.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QAccessibleObject>
#include <QAccessibleWidget>
#include <QApplication>
#include <QCheckBox>
#include <QWidget>

namespace orvelle {
namespace {

/// Whether nobody else leads to it, as a box does to its list.
bool isOrphan(QAccessibleInterface &popup)
{
    const QAccessibleInterface *parent = popup.parent();
    return !parent || parent->object() == qApp || parent->indexOfChild(&popup) < 0;
}

QString withoutMnemonic(QString text)
{
    for (qsizetype at = text.indexOf(u'&'); at >= 0; at = text.indexOf(u'&', at + 1))
        text.remove(at, 1);
    return text;
}

/// The windows and, behind them, the popups.
class ApplicationAccessible : public QAccessibleApplication
{
public:
    int childCount() const override { return QAccessibleApplication::childCount() + static_cast<int>(popups().size()); }

    QAccessibleInterface *child(int index) const override
    {
        const int windows = QAccessibleApplication::childCount();
        return index < windows ? QAccessibleApplication::child(index) : popups().value(index - windows);
    }

    int indexOfChild(const QAccessibleInterface *wanted) const override
    {
        const int window = QAccessibleApplication::indexOfChild(wanted);
        if (window >= 0)
            return window;
        const auto popup = popups().indexOf(wanted);
        return popup < 0 ? -1 : QAccessibleApplication::childCount() + static_cast<int>(popup);
    }

private:
    static QList<QAccessibleInterface *> popups()
    {
        QList<QAccessibleInterface *> found;
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            if (widget->windowType() != Qt::Popup || !widget->isVisible())
                continue;
            QAccessibleInterface *popup = QAccessible::queryAccessibleInterface(widget);
            if (popup && isOrphan(*popup))
                found += popup;
        }
        return found;
    }
};

/// A plain widget, which the toolkit tells apart from nothing else even when
/// it is a window.
class PlainWidgetAccessible : public QAccessibleWidget
{
public:
    using QAccessibleWidget::QAccessibleWidget;

    QAccessible::Role role() const override
    {
        if (!widget()->isWindow())
            return QAccessibleWidget::role();
        return widget()->windowType() == Qt::Dialog ? QAccessible::Dialog : QAccessible::Window;
    }
};

/// A box or radio button that is clicked, not merely checked: the toolkit's own
/// way would show another state and tell nobody that the user wants it.
class CheckableAccessible : public QAccessibleWidget
{
public:
    explicit CheckableAccessible(QAbstractButton *button)
        : QAccessibleWidget(button, button->autoExclusive() ? QAccessible::RadioButton : QAccessible::CheckBox),
          m_button(button)
    {
    }

    QString text(QAccessible::Text kind) const override
    {
        const QString given = QAccessibleWidget::text(kind);
        return kind == QAccessible::Name && given.isEmpty() ? withoutMnemonic(m_button->text()) : given;
    }
    QAccessible::State state() const override
    {
        QAccessible::State result = QAccessibleWidget::state();
        const auto *box = qobject_cast<QCheckBox *>(m_button);
        result.checkable = true;
        result.checkStateMixed = box && box->checkState() == Qt::PartiallyChecked;
        result.checked = m_button->isChecked() && !result.checkStateMixed;
        result.pressed = m_button->isDown();
        return result;
    }
    QStringList actionNames() const override
    {
        return m_button->isEnabled() ? QStringList{toggleAction()} + QAccessibleWidget::actionNames() : QStringList();
    }
    void doAction(const QString &action) override
    {
        if (action == toggleAction() && m_button->isEnabled())
            QMetaObject::invokeMethod(m_button, &QAbstractButton::click, Qt::QueuedConnection);
        else
            QAccessibleWidget::doAction(action);
    }

private:
    QAbstractButton *m_button;
};

/// Asked for each class of the object, beginning with its own.
QAccessibleInterface *makeInterface(const QString &className, QObject *object)
{
    if (object && object == qApp)
        return new ApplicationAccessible;
    if (className == QLatin1StringView("QWidget"))
        return new PlainWidgetAccessible(static_cast<QWidget *>(object));
    if (className == QLatin1StringView("QCheckBox") || className == QLatin1StringView("QRadioButton"))
        return new CheckableAccessible(static_cast<QAbstractButton *>(object));
    return nullptr;
}

} // namespace

void installWindowAccessibility()
{
    QAccessible::removeFactory(makeInterface);
    QAccessible::installFactory(makeInterface);
}

} // namespace orvelle
