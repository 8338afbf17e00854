#include "ui/menu/rows/TimerRowView.h"

#include "base/Notifications.h"
#include "base/Text.h"
#include "platform/Clock.h"
#include "ui/common/Colors.h"
#include "widgets/timer/TimerManager.h"

#include <QCursor>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr int buttonGap = 5;
constexpr int barHeight = 4;
constexpr int barGap = 12;
constexpr int extraHeight = 4; ///< beyond a line, for the capsules

QFont countdownFont(QFont font)
{
    font.setBold(true);
    return font;
}

} // namespace

TimerRowView::TimerRowView(TimerManager &manager, Notifications &notifications, Clock &clock, QWidget *parent)
    : WidgetRowView(parent),
      m_manager(manager),
      m_notifications(notifications),
      m_clock(clock),
      m_custom(new MenuRowButton(this)),
      m_cancel(new MenuRowButton(this))
{
    for (TimerCapsuleButton *&each : m_presets) {
        each = new TimerCapsuleButton(this);
        connect(each, &QAbstractButton::clicked, this, [this, each] { m_manager.start(each->duration()); });
    }
    m_custom->raise(); // read after the presets
    m_custom->setObjectName(u"custom"_s);
    m_custom->setSymbol(u"slider.horizontal.3"_s, text("timer.customButton"_text));
    m_cancel->setObjectName(u"cancel"_s);
    m_cancel->setSymbol(u"stop.circle.fill"_s, text("timer.stop"_text));
    connect(m_custom, &QAbstractButton::clicked, this, [this] { emit m_notifications.openTimerCustom(); });
    connect(m_cancel, &QAbstractButton::clicked, this, [this] { m_manager.cancel(); });
    connect(&notifications, &Notifications::timerChanged, this, &TimerRowView::refresh);
    refresh();
}

TimerRowView::~TimerRowView() = default;

void TimerRowView::refresh()
{
    const bool hadFocus = hasFocusInside();
    const bool wasRunning = std::exchange(m_running, m_manager.endDate().has_value());
    for (std::size_t i = 0; i < m_presets.size(); ++i) {
        m_presets[i]->setDuration(m_manager.presets().at(static_cast<qsizetype>(i)));
        m_presets[i]->setVisible(!m_running);
    }
    m_custom->setVisible(!m_running);
    m_cancel->setVisible(m_running);
    placeButtons();
    if (hadFocus && wasRunning != m_running)
        focusShownButton();
    tick();
}

/// The one that has come under the pointer, else the first.
void TimerRowView::focusShownButton()
{
    auto *under = qobject_cast<MenuRowButton *>(childAt(mapFromGlobal(QCursor::pos())));
    if (under)
        under->setFocus(Qt::MouseFocusReason);
    else
        focusButton();
}

/// Again at the next whole second of what is left.
void TimerRowView::tick()
{
    update();
    m_nextTick.reset();
    describe(text("timer.title"_text), m_running ? countdown(m_manager.remainingSeconds()) : QString());
    if (m_running)
        m_nextTick = m_clock.atDate(*m_manager.endDate() + -static_cast<double>(m_manager.remainingSeconds() - 1),
                                    [this] { tick(); });
}

int TimerRowView::countdownWidth() const
{
    // Of zeros, so that the bar does not move with the digits.
    QString zeros = countdown(m_manager.activeDuration());
    std::ranges::replace_if(
        zeros, [](QChar c) { return c.isDigit(); }, QChar(u'0'));
    return QFontMetrics(countdownFont(font())).horizontalAdvance(zeros) + 1;
}

QSize TimerRowView::sizeHint() const
{
    int width = MenuLook::margin + MenuLook::iconSide + MenuLook::iconGap + MenuLook::margin;
    width += QFontMetrics(font()).horizontalAdvance(text("timer.title"_text)) + barGap;
    for (const TimerCapsuleButton *each : m_presets)
        width += each->sizeHint().width() + buttonGap;
    return {width + m_custom->sizeHint().width(), lineHeight() + extraHeight};
}

QRect TimerRowView::placeAtEnd(QWidget *button, int end)
{
    const QSize size = button->sizeHint();
    const QRect place(end - size.width(), (height() - size.height()) / 2, size.width(), size.height());
    button->setGeometry(mirrored(place));
    return place;
}

void TimerRowView::placeButtons()
{
    const int end = contentRect().x() + contentRect().width();
    placeAtEnd(m_cancel, end);
    int x = placeAtEnd(m_custom, end).x();
    for (auto each = m_presets.rbegin(); each != m_presets.rend(); ++each)
        x = placeAtEnd(*each, x - buttonGap).x();
}

void TimerRowView::resizeEvent(QResizeEvent *event)
{
    WidgetRowView::resizeEvent(event);
    placeButtons();
}

void TimerRowView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QRect icon = iconRect();
    icon.moveTop((height() - icon.height()) / 2);
    paintSymbol(painter, u"timer"_s, icon, textColor());
    const QRect content = contentRect();
    painter.setPen(textColor());
    if (!m_running) {
        painter.setFont(font());
        painter.drawText(mirrored(content), Qt::AlignVCenter | Qt::AlignLeading | Qt::TextSingleLine,
                         text("timer.title"_text));
        return;
    }
    painter.setFont(countdownFont(font()));
    const int digits = countdownWidth();
    painter.drawText(mirrored({content.x(), 0, digits, height()}),
                     Qt::AlignVCenter | Qt::AlignLeading | Qt::TextSingleLine, countdown(m_manager.remainingSeconds()));
    const int left = content.x() + digits + barGap;
    const int right = content.x() + content.width() - m_cancel->sizeHint().width() - barGap;
    const QRectF track = mirrored({left, (height() - barHeight) / 2, right - left, barHeight});
    const bool strong = isHighContrast(palette());
    painter.setPen(strong ? QPen(textColor(), 1) : QPen(Qt::NoPen));
    painter.setBrush(strong ? QBrush(Qt::NoBrush) : QBrush(separatorColor(palette())));
    painter.drawRoundedRect(track, barHeight / 2.0, barHeight / 2.0);
    QRectF bar = track;
    bar.setWidth(std::max<double>(barHeight, track.width() * m_manager.progress()));
    if (layoutDirection() == Qt::RightToLeft)
        bar.moveRight(track.right());
    painter.setBrush(accent(palette(), look().ground()));
    painter.drawRoundedRect(bar, barHeight / 2.0, barHeight / 2.0);
}

} // namespace orvelle
