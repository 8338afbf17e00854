#include "ui/common/EdgeStyle.h"

#include "ui/common/Colors.h"

#include <QApplication>
#include <QScopedValueRollback>
#include <QStyleFactory>
#include <QStyleOption>

namespace orvelle {

using namespace Qt::StringLiterals;

namespace {

/// What the style makes edges darker by, in per cent.
constexpr int edgeFactor = 140;
/// Above what is asked for, as the style lightens or smoothes some edges again.
constexpr double slack = 1.7;

} // namespace

void EdgeStyle::install()
{
    if (QApplication::style()->name() == "fusion"_L1 && !qobject_cast<EdgeStyle *>(QApplication::style()))
        QApplication::setStyle(new EdgeStyle(QStyleFactory::create(u"fusion"_s)));
}

QColor EdgeStyle::edgeColor(const QPalette &palette, Edge edge)
{
    const bool weak = edge == Edge::Mark || (edge == Edge::Field && isDark(palette));
    if (!weak && !isHighContrast(palette))
        return {};
    const QColor text = palette.color(QPalette::WindowText);
    const QColor once =
        readable(palette.color(QPalette::Mid), palette.color(QPalette::Window), text, edgeContrast(palette));
    return readable(once, palette.color(QPalette::Base), text, edgeContrast(palette) * slack);
}

const QPalette &EdgeStyle::edged(const QPalette &palette, const QColor &edge) const
{
    if (m_edgedFrom != palette.cacheKey() || m_edge != edge) {
        m_edgedFrom = palette.cacheKey();
        m_edge = edge;
        m_edged = palette;
        m_edged.setColor(QPalette::Window, edge.lighter(edgeFactor));
    }
    return m_edged;
}

template<typename Option, typename Draw>
void EdgeStyle::withEdge(const QStyleOption *option, Edge edge, const Draw &draw) const
{
    const auto *given = qstyleoption_cast<const Option *>(option);
    const QColor color = given && !m_inside ? edgeColor(option->palette, edge) : QColor();
    if (!color.isValid())
        return draw(option);
    const QScopedValueRollback inside(m_inside, true);
    Option copy(*given);
    copy.palette = edged(option->palette, color);
    draw(&copy);
}

void EdgeStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                              const QWidget *widget) const
{
    const auto draw = [&](const QStyleOption *with) { QProxyStyle::drawPrimitive(element, with, painter, widget); };
    switch (element) {
    case PE_IndicatorCheckBox:
    case PE_IndicatorRadioButton:
        return withEdge<QStyleOptionButton>(option, Edge::Mark, draw);
    case PE_PanelButtonCommand:
    case PE_PanelButtonTool:
        return withEdge<QStyleOption>(option, Edge::Surface, draw);
    case PE_FrameLineEdit:
    case PE_PanelLineEdit:
        return withEdge<QStyleOptionFrame>(option, Edge::Field, draw);
    case PE_Frame:
    case PE_FrameMenu:
    case PE_FrameGroupBox:
        return withEdge<QStyleOptionFrame>(option, Edge::Surface, draw);
    case PE_FrameTabWidget:
        return withEdge<QStyleOptionTabWidgetFrame>(option, Edge::Surface, draw);
    default:
        return draw(option);
    }
}

void EdgeStyle::drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                            const QWidget *widget) const
{
    const auto draw = [&](const QStyleOption *with) { QProxyStyle::drawControl(element, with, painter, widget); };
    switch (element) {
    case CE_TabBarTabShape:
        return withEdge<QStyleOptionTab>(option, Edge::Surface, draw);
    case CE_HeaderSection:
        return withEdge<QStyleOptionHeader>(option, Edge::Surface, draw);
    default:
        return draw(option);
    }
}

void EdgeStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                                   const QWidget *widget) const
{
    const auto draw = [&](const QStyleOption *with) {
        QProxyStyle::drawComplexControl(control, static_cast<const QStyleOptionComplex *>(with), painter, widget);
    };
    switch (control) {
    case CC_ComboBox:
        return withEdge<QStyleOptionComboBox>(option, Edge::Field, draw);
    case CC_SpinBox:
        return withEdge<QStyleOptionSpinBox>(option, Edge::Field, draw);
    case CC_ScrollBar:
    case CC_Slider:
        return withEdge<QStyleOptionSlider>(option, Edge::Surface, draw);
    default:
        return draw(option);
    }
}

} // namespace orvelle
