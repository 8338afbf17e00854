#include "ui/settings/StatusLine.h"

#include "base/DisplayTitle.h"
#include "platform/Clock.h"
#include "ui/common/PlainToolTip.h"
#include "ui/settings/Sections.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>

namespace orvelle {

namespace {

using namespace std::chrono_literals;

/// Long enough to read, also where somebody looks up late.
constexpr auto shortestStay = 6s;
constexpr auto perCharacter = 60ms;

} // namespace

StatusLine::StatusLine(Clock &clock, QWidget *parent)
    : QWidget(parent), m_clock(clock), m_label(sectionSubtitle({}, this))
{
    m_label->setObjectName(QStringLiteral("status"));
    m_label->setWordWrap(false);
    m_label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(tabMargins().left(), 0, tabMargins().right(), 0);
    row->addWidget(m_label);
    setFixedHeight(m_label->fontMetrics().height() + 12);
}

StatusLine::~StatusLine() = default;

void StatusLine::showText(const QString &text)
{
    m_text = text;
    elide();
    m_label->setAccessibleName(text);
    if (text.isEmpty()) {
        m_timer.reset();
        return;
    }
    QAccessibleEvent said(m_label, QAccessible::Alert);
    QAccessible::updateAccessibility(&said);
    m_timer = m_clock.singleShot(shortestStay + perCharacter * text.size(), [this] { showText({}); });
}

QString StatusLine::shownText() const
{
    return m_text;
}

void StatusLine::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    elide();
}

void StatusLine::elide()
{
    const QString fitting = m_label->fontMetrics().elidedText(displayTitle(m_text), Qt::ElideRight, m_label->width());
    m_label->setText(fitting);
    m_label->setToolTip(fitting == m_text ? QString() : plainToolTip(m_text));
}

} // namespace orvelle
