#pragma once

#include <QPalette>
#include <QProxyStyle>

namespace orvelle {

/// The toolkit's own style with edges that can be seen. That style derives
/// them from the window's colour, always darker, so that the boxes to tick
/// vanish from dark windows and everything does from black ones.
class EdgeStyle : public QProxyStyle
{
    Q_OBJECT

public:
    /// Wraps the style of the application, if it is the one that needs it.
    static void install();

    explicit EdgeStyle(QStyle *style) : QProxyStyle(style) {}

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                            const QWidget *widget) const override;

    /// What an edge is of, from what needs it most to what needs it least.
    enum class Edge { Mark, Field, Surface };
    /// The edge's colour where the style's own would not do, else invalid.
    static QColor edgeColor(const QPalette &palette, Edge edge);

private:
    template<typename Option, typename Draw>
    void withEdge(const QStyleOption *option, Edge edge, const Draw &draw) const;
    const QPalette &edged(const QPalette &palette, const QColor &edge) const;

    // Kept, because the style caches pictures by the palette's identity.
    mutable QPalette m_edged;
    mutable qint64 m_edgedFrom = -1;
    mutable QColor m_edge;
    mutable bool m_inside = false; ///< drawing a part of something with edges
};

} // namespace orvelle
