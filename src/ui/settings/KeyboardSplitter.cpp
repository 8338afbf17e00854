#include "ui/settings/KeyboardSplitter.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>

namespace orvelle {

namespace {

constexpr int step = 16;

class Handle : public QSplitterHandle
{
public:
    Handle(Qt::Orientation orientation, const QString &name, QSplitter *parent) : QSplitterHandle(orientation, parent)
    {
        setFocusPolicy(Qt::TabFocus);
        setAccessibleName(name);
        setToolTip(name);
    }

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        const bool across = orientation() == Qt::Horizontal;
        // Mirrored, the place of a handle is that of its other edge.
        const int place = !across ? y() : splitter()->isRightToLeft() ? x() + width() : x();
        const int key = event->key();
        if (key == (across ? Qt::Key_Left : Qt::Key_Up))
            moveTo(place - step);
        else if (key == (across ? Qt::Key_Right : Qt::Key_Down))
            moveTo(place + step);
        else if (key == Qt::Key_Home)
            moveTo(0);
        else if (key == Qt::Key_End)
            moveTo(across ? splitter()->width() : splitter()->height());
        else
            QSplitterHandle::keyPressEvent(event);
    }

    void paintEvent(QPaintEvent *event) override
    {
        QSplitterHandle::paintEvent(event);
        if (!hasFocus())
            return;
        QStyleOptionFocusRect frame;
        frame.initFrom(this);
        frame.backgroundColor = palette().color(QPalette::Window);
        QPainter painter(this);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &frame, &painter, this);
    }

private:
    void moveTo(int place) { moveSplitter(closestLegalPosition(place)); }
};

} // namespace

KeyboardSplitter::KeyboardSplitter(const QString &handleName, QWidget *parent)
    : QSplitter(parent), m_handleName(handleName)
{
}

QSplitterHandle *KeyboardSplitter::createHandle()
{
    return new Handle(orientation(), m_handleName, this);
}

} // namespace orvelle
