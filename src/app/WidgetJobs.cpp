#include "app/WidgetJobs.h"

namespace orvelle {

QWidget *WidgetJobs::makeRow(WidgetType type, QWidget *parent) const
{
    const auto widget = m_widgets.constFind(type);
    return widget == m_widgets.constEnd() ? nullptr : widget->makeRow(parent);
}

bool WidgetJobs::isWidgetEnabled(WidgetType type) const
{
    const auto widget = m_widgets.constFind(type);
    return widget == m_widgets.constEnd() ? m_others.isWidgetEnabled(type) : widget->isEnabled();
}

bool WidgetJobs::isMenuBarOnly(WidgetType type) const
{
    const auto widget = m_widgets.constFind(type);
    return widget == m_widgets.constEnd() ? m_others.isMenuBarOnly(type) : widget->isMenuBarOnly();
}

void WidgetJobs::startMonitoring(WidgetType type)
{
    const auto widget = m_widgets.constFind(type);
    if (widget == m_widgets.constEnd())
        m_others.startMonitoring(type);
    else if (widget->start)
        widget->start();
}

void WidgetJobs::startLiveWidgets()
{
    for (const Widget &each : std::as_const(m_widgets)) {
        if (each.startLive)
            each.startLive();
    }
    m_others.startLiveWidgets();
}

void WidgetJobs::stopLiveWidgets()
{
    for (const Widget &each : std::as_const(m_widgets)) {
        if (each.stopLive)
            each.stopLive();
    }
    m_others.stopLiveWidgets();
}

void WidgetJobs::refreshWeatherIfNeeded()
{
    const auto widget = m_widgets.constFind(WidgetType::Weather);
    if (widget == m_widgets.constEnd())
        m_others.refreshWeatherIfNeeded();
    else if (widget->catchUp)
        widget->catchUp();
}

void WidgetJobs::checkClipboardNow()
{
    const auto widget = m_widgets.constFind(WidgetType::Clipboard);
    if (widget == m_widgets.constEnd())
        m_others.checkClipboardNow();
    else if (widget->catchUp)
        widget->catchUp();
}

} // namespace orvelle
