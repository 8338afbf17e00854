#include "ui/menu/rows/CalendarRowView.h"

#include "base/DisplayTitle.h"
#include "base/Notifications.h"
#include "base/Text.h"
#include "links/LinkColors.h"
#include "ui/common/Colors.h"
#include "ui/common/Icons.h"
#include "ui/common/LineText.h"
#include "ui/common/PlainToolTip.h"
#include "widgets/calendar/CalendarManager.h"

#include <QPainter>
#include <QPointer>
#include <QStyle>

#include <algorithm>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

constexpr int timeGap = 12;
constexpr int joinGap = 8;
constexpr int stripeWidth = 3;
constexpr int stripeGap = 7;
constexpr int slack = 4;         ///< what borders and rounding may take from a text
constexpr int longestTitle = 26; ///< average letters that a title may ask room for

} // namespace

/// One event, or what is said instead, over the whole width of the row.
class CalendarRowView::Line : public MenuRowButton
{
public:
    Line(CalendarRowView &row, const QString &symbol) : MenuRowButton(&row), m_row(row), m_symbol(symbol) {}

    void setEvent(const CalendarEventInfo &event, const QString &time)
    {
        m_event = event;
        m_time = time;
        const QString title = displayTitle(event.title);
        setText(title.trimmed().isEmpty() ? orvelle::text("calendar.untitled"_text) : title);
        setToolTip(plainToolTip(text()));
        setAccessibleName(text() + u", "_s + time);
        if (event.isDeclined)
            setAccessibleDescription(orvelle::text("calendar.declined"_text));
        if (!event.meetingAddress.isEmpty())
            addJoin();
    }
    void setSaying(const QString &saying)
    {
        setText(saying);
        setAccessibleName(saying);
    }
    MenuRowButton *join() const { return m_join; }
    QSize sizeHint() const override
    {
        const int letters = fontMetrics().averageCharWidth() * longestTitle;
        int width = MenuLook::margin + MenuLook::iconSide + MenuLook::iconGap + MenuLook::margin + indent() +
                    std::min(fontMetrics().horizontalAdvance(text()) + slack, letters);
        width += m_time.isEmpty() ? 0 : timeGap + fontMetrics().horizontalAdvance(m_time);
        return {width + joinWidth(), m_row.lineHeight()};
    }

protected:
    void resizeEvent(QResizeEvent *) override
    {
        if (!m_join)
            return;
        const QSize size = m_join->sizeHint();
        const QRect place(width() - MenuLook::margin - size.width(), (height() - size.height()) / 2, size.width(),
                          size.height());
        m_join->setGeometry(QStyle::visualRect(layoutDirection(), rect(), place));
    }
    void paintEvent(QPaintEvent *) override;
    void focusInEvent(QFocusEvent *event) override
    {
        MenuRowButton::focusInEvent(event);
        if (!m_join)
            return;
        QPalette onSelection = palette();
        onSelection.setColor(QPalette::WindowText, onSelection.color(QPalette::HighlightedText));
        m_join->setPalette(onSelection);
    }
    void focusOutEvent(QFocusEvent *event) override
    {
        MenuRowButton::focusOutEvent(event);
        if (m_join)
            m_join->setPalette({});
    }

private:
    /// Events stand below one another, also those of calendars without a colour.
    int indent() const { return m_event && m_row.m_hasStripes ? stripeWidth + stripeGap : 0; }
    int joinWidth() const { return m_join ? joinGap + m_join->sizeHint().width() : 0; }
    void addJoin()
    {
        m_join = new MenuRowButton(this);
        m_join->setObjectName(u"join"_s);
        m_join->setText(orvelle::text("calendar.join"_text));
        m_join->setAccessibleName(orvelle::text("calendar.joinEvent %@"_text, text()));
        m_join->setToolTip(plainToolTip(m_event->meetingAddress.host()));
    }
    QColor stripe(const QColor &ground) const
    {
        const QColor own(m_event ? m_event->calendarColor : QString());
        return own.isValid() ? readable(own, ground, m_row.textColor(), edgeContrast(palette())) : QColor();
    }

    CalendarRowView &m_row;
    QString m_symbol; ///< empty but on the first line
    std::optional<CalendarEventInfo> m_event;
    QString m_time;
    MenuRowButton *m_join = nullptr;
};

void CalendarRowView::Line::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool current = hasFocus();
    const auto mirroredHere = [this](const QRect &place) {
        return QStyle::visualRect(layoutDirection(), rect(), place);
    };
    if (current)
        m_row.look().paintSelection(painter, rect());
    const QColor ground = current ? palette().color(QPalette::Highlight) : m_row.look().ground();
    const QColor ink = current ? palette().color(QPalette::HighlightedText) : m_row.textColor();
    if (!m_symbol.isEmpty()) {
        const auto color = nsColor(m_row.m_iconColor);
        const QColor tint =
            color && !current ? readable(toQColor(*color, palette()), ground, ink, textContrast(palette())) : ink;
        m_row.paintSymbol(painter, m_symbol, m_row.iconRect(), tint);
    }
    QRect content = m_row.contentRect();
    content.setHeight(height());
    if (const QColor color = stripe(ground); color.isValid()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(color);
        painter.drawRoundedRect(mirroredHere({content.x(), 5, stripeWidth, height() - 10}), 1.5, 1.5);
    }
    content.setLeft(content.left() + indent());
    content.setRight(content.right() - joinWidth());
    QFont font = this->font();
    painter.setFont(font);
    const QColor quiet = current ? ink : m_row.labelColor();
    const int timeWidth = m_time.isEmpty() ? 0 : fontMetrics().horizontalAdvance(m_time) + 1;
    painter.setPen(quiet);
    const QRect time(content.right() - timeWidth + 1, 0, timeWidth, height());
    drawLine(painter, mirroredHere(time), m_time, layoutDirection(), true);
    if (timeWidth > 0)
        content.setRight(time.left() - timeGap);
    const bool declined = m_event && m_event->isDeclined;
    font.setStrikeOut(declined);
    painter.setFont(font);
    painter.setPen(m_event && !declined ? ink : quiet);
    drawLine(painter, mirroredHere(content), fontMetrics().elidedText(text(), Qt::ElideRight, content.width()),
             layoutDirection());
}

CalendarRowView::CalendarRowView(CalendarManager &manager, const Notifications &notifications, Doors doors,
                                 QWidget *parent)
    : WidgetRowView(parent), m_manager(manager), m_doors(std::move(doors))
{
    connect(&notifications, &Notifications::calendarChanged, this, &CalendarRowView::refresh);
    refresh();
}

void CalendarRowView::refresh()
{
    QStringList times;
    for (const CalendarEventInfo &each : m_manager.nextEvents())
        times += m_manager.formattedEventTime(each);
    const bool same = m_built && m_events == m_manager.nextEvents() && m_times == times &&
                      m_accessGranted == m_manager.accessGranted();
    m_iconColor = m_manager.iconColor();
    if (same)
        return update();
    m_events = m_manager.nextEvents();
    m_times = times;
    m_accessGranted = m_manager.accessGranted();
    m_built = true;
    const bool hadFocus = hasFocusInside();
    rebuild();
    place();
    updateGeometry();
    if (hadFocus)
        focusButton();
}

void CalendarRowView::rebuild()
{
    // One of them may be the sender of what led here.
    for (Line *gone : std::exchange(m_lines, {})) {
        gone->hide();
        gone->setParent(nullptr);
        gone->deleteLater();
    }
    const auto add = [this](const QString &symbol, const std::function<void()> &door) {
        auto *line = new Line(*this, symbol);
        connect(line, &QAbstractButton::clicked, this, [this, door] { go(door); });
        m_lines += line;
        return line;
    };
    if (!m_accessGranted) {
        add(u"calendar.badge.exclamationmark"_s, m_doors.openSettings)->setSaying(text("calendar.accessRequired"_text));
    } else if (m_events.isEmpty()) {
        add(u"calendar"_s, m_doors.openCalendar)->setSaying(text("calendar.noEvent"_text));
    }
    m_hasStripes = std::ranges::any_of(
        m_events, [](const CalendarEventInfo &each) { return QColor(each.calendarColor).isValid(); });
    for (qsizetype i = 0; m_accessGranted && i < m_events.size(); ++i) {
        const CalendarEventInfo &event = m_events.at(i);
        Line *line = add(i == 0 ? u"calendar"_s : QString(), m_doors.openCalendar);
        line->setEvent(event, m_times.at(i));
        if (line->join()) {
            connect(line->join(), &QAbstractButton::clicked, this, [this, address = event.meetingAddress] {
                go([open = m_doors.openAddress, address] { open(address); });
            });
        }
    }
    QStringList said;
    for (Line *each : m_lines) {
        each->show();
        said += each->accessibleName();
    }
    describe(text("calendar.title"_text), said.join(u"; "_s));
}

/// This row ends with the menu.
void CalendarRowView::go(const std::function<void()> &through)
{
    const auto door = through;
    const auto close = m_doors.closeMenu;
    close();
    door();
}

QSize CalendarRowView::sizeHint() const
{
    QSize size(0, 0);
    for (const Line *each : m_lines)
        size = {std::max(size.width(), each->sizeHint().width()), size.height() + lineHeight()};
    return {std::min(size.width(), MenuLook::maximumWidth), size.height()};
}

void CalendarRowView::place()
{
    for (qsizetype i = 0; i < m_lines.size(); ++i)
        m_lines.at(i)->setGeometry(0, static_cast<int>(i) * lineHeight(), width(), lineHeight());
}

void CalendarRowView::resizeEvent(QResizeEvent *event)
{
    WidgetRowView::resizeEvent(event);
    place();
}

} // namespace orvelle
