#include "ui/settings/PageScroll.h"

#include "ui/common/WheelToPage.h"

#include <QApplication>
#include <QEvent>
#include <QLayout>
#include <QScrollBar>

namespace orvelle {

namespace {

/// Enough to see where one is.
constexpr int leastHeight = 160;

} // namespace

PageScroll::PageScroll(QWidget *page, QWidget *parent) : QScrollArea(parent)
{
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    setWidget(page);
    // The page decides about its ground, and it has none.
    viewport()->setAutoFillBackground(false);
    page->setAutoFillBackground(false);
    page->installEventFilter(this);
    leaveWheelToPage(page);
}

QSize PageScroll::sizeHint() const
{
    return widget()->sizeHint();
}

QSize PageScroll::minimumSizeHint() const
{
    const QSize page = widget()->minimumSizeHint();
    return {page.width() + verticalScrollBar()->sizeHint().width(), qMin(page.height(), leastHeight)};
}

bool PageScroll::eventFilter(QObject *watched, QEvent *event)
{
    const bool handled = QScrollArea::eventFilter(watched, event);
    if (watched == widget() && event->type() == QEvent::LayoutRequest) {
        fit();
        updateGeometry();
    }
    return handled;
}

void PageScroll::resizeEvent(QResizeEvent *event)
{
    QScrollArea::resizeEvent(event);
    fit();
}

/// The toolkit's own fitting would scroll a page at its preferred height,
/// where a list on it could still give room.
void PageScroll::fit()
{
    const QSize room = viewport()->size();
    const QLayout *layout = widget()->layout();
    const int width = qMax(room.width(), layout->totalMinimumSize().width());
    const int height =
        layout->hasHeightForWidth() ? layout->totalMinimumHeightForWidth(width) : layout->totalMinimumSize().height();
    widget()->resize(width, qMax(room.height(), height));
}

bool PageScroll::focusNextPrevChild(bool next)
{
    if (!QScrollArea::focusNextPrevChild(next))
        return false;
    if (QWidget *focused = QApplication::focusWidget(); focused && widget()->isAncestorOf(focused))
        ensureWidgetVisible(focused);
    return true;
}

} // namespace orvelle
