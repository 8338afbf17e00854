#include "ui/settings/DropVeil.h"

#include "ui/common/Icons.h"

#include <QEvent>
#include <QPainter>

namespace orvelle {

namespace {

constexpr int pictureSide = 32;
constexpr int margin = 6;
constexpr int padding = 18;

} // namespace

DropVeil::DropVeil(const QString &text, QWidget *parent) : QWidget(parent), m_text(text)
{
    setObjectName(QStringLiteral("dropVeil"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    parent->installEventFilter(this);
    hide();
}

bool DropVeil::eventFilter(QObject *watched, QEvent *event)
{
    const bool handled = QWidget::eventFilter(watched, event);
    if (event->type() == QEvent::Resize || event->type() == QEvent::ShowToParent)
        resize(parentWidget()->size());
    return handled;
}

void DropVeil::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor highlight = palette().color(QPalette::Highlight);
    QColor veil = palette().color(QPalette::Window);
    veil.setAlphaF(0.72F);
    painter.fillRect(rect(), veil);
    painter.setPen(QPen(highlight, 2, Qt::DashLine));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(rect()).adjusted(margin, margin, -margin, -margin), 8, 8);

    QFont font = painter.font();
    font.setBold(true);
    painter.setFont(font);
    const QFontMetrics metrics(font);
    const int textWidth = metrics.boundingRect(m_text).width() + metrics.averageCharWidth();
    QRect card(0, 0, qMin(textWidth, width() - 4 * padding) + 2 * padding,
               pictureSide + metrics.height() + 2 * padding + 6);
    card.moveCenter(rect().center());
    painter.setPen(Qt::NoPen);
    painter.setBrush(highlight);
    painter.drawRoundedRect(card, 8, 8);
    const QColor front = palette().color(QPalette::HighlightedText);
    painter.drawPixmap(card.center().x() - pictureSide / 2, card.top() + padding,
                       symbolPixmap(QStringLiteral("square.and.arrow.down"), pictureSide, front, devicePixelRatioF()));
    painter.setPen(front);
    const QRect line = card.adjusted(padding, 0, -padding, -padding);
    painter.drawText(line, Qt::AlignHCenter | Qt::AlignBottom,
                     metrics.elidedText(m_text, Qt::ElideRight, line.width()));
}

} // namespace orvelle
