#include "ui/common/WheelToPage.h"

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QEvent>

namespace orvelle {

namespace {

class WheelFilter : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::Wheel || qobject_cast<QWidget *>(watched)->hasFocus())
            return false;
        event->ignore(); // goes on to the widget around it
        return true;
    }
};

} // namespace

void leaveWheelToPage(QWidget *page)
{
    auto *filter = new WheelFilter(page);
    const auto watch = [filter](QWidget *field) {
        // By its own policy the wheel would give it the focus first.
        if (field->focusPolicy() == Qt::WheelFocus)
            field->setFocusPolicy(Qt::StrongFocus);
        field->installEventFilter(filter);
    };
    for (QComboBox *choice : page->findChildren<QComboBox *>())
        watch(choice);
    for (QAbstractSpinBox *number : page->findChildren<QAbstractSpinBox *>())
        watch(number);
}

} // namespace orvelle
