#pragma once

#include "ui/menu/MenuRows.h"

#include <QColor>
#include <QFont>
#include <QFontMetrics>
#include <QWidget>

class QPainter;

namespace orvelle {

/// The grid, font and colours of a menu on one widget, and the drawing of its
/// rows. All lengths are logical pixels. Colours and the selection come from
/// the widget's style and palette.
class MenuLook
{
public:
    explicit MenuLook(const QWidget &widget);

    RowHeights rowHeights() const;
    /// From the panel's edge to its rows, at the sides and above and below.
    int sideFrame() const { return m_frameWidth; }
    int verticalFrame() const { return m_frameWidth + 3; }
    /// What the widest of the rows wants, at most `maximumWidth`. Of long menus
    /// only the likely widest rows are measured.
    int preferredWidth(const MenuRows &rows) const;
    /// The part of the row for the name.
    QRect titleRect(const MenuEntry &entry, const QRect &row) const;
    QString elidedTitle(const MenuEntry &entry, const QRect &row) const;
    const QFontMetrics &fontMetrics() const { return m_metrics; }

    void paintPanel(QPainter &painter) const { paintPanel(painter, m_widget.rect()); }
    /// `button` is the current one in a selected bottom row.
    void paintRow(QPainter &painter, const MenuEntry &entry, const QRect &row, bool selected, int button = 0) const;
    /// The strip that tells of rows beyond the edge.
    void paintScroller(QPainter &painter, const QRect &strip, bool upper) const;

    /// What the panel is filled with behind its rows.
    const QColor &ground() const { return m_ground; }
    /// The desktop's look of a chosen row.
    void paintSelection(QPainter &painter, const QRect &rect) const;

    static constexpr int margin = 10; ///< from the panel's edge to the icon, and at the end of the row
    static constexpr int iconGap = 9; ///< between icon and name
    static constexpr int maximumWidth = 380;
    static constexpr int iconSide = 16;
    static constexpr int scrollerHeight = 20;

private:
    struct Ink {
        QColor ground;
        QColor text;
        bool enabled = true;
        bool selected = false;
    };

    QColor paintedGround() const;
    void paintPanel(QPainter &painter, const QRect &rect) const;
    bool rightToLeft() const;
    int wantedWidth(const MenuEntry &entry) const;
    Ink rowInk(const MenuEntry &entry, bool selected) const;
    void paintIcon(QPainter &painter, const MenuEntry &entry, const QRect &rect, const Ink &ink) const;
    void paintChevron(QPainter &painter, const QRect &row, const Ink &ink) const;
    void paintTitle(QPainter &painter, const MenuEntry &entry, const QRect &row, const Ink &ink) const;
    void paintSeparator(QPainter &painter, const QRect &row) const;
    void paintBottomRow(QPainter &painter, const QRect &row, bool selected, int current) const;
    void paintSymbol(QPainter &painter, const QString &symbol, const QRect &square, const QColor &color) const;

    const QWidget &m_widget;
    QFontMetrics m_metrics;
    QFontMetrics m_italicMetrics;
    int m_frameWidth = 1;
    QColor m_ground; ///< behind the rows
};

} // namespace orvelle
