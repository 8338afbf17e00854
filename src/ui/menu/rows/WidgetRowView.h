#pragma once

#include "ui/menu/MenuLook.h"

#include <QAbstractButton>
#include <QPointer>
#include <QWidget>

namespace orvelle {

class MenuPanel;

/// A button in a widget row: a small capsule with a label or a symbol. The
/// pointer over it makes it the current one, as it does with a menu's rows.
class MenuRowButton : public QAbstractButton
{
    Q_OBJECT

public:
    explicit MenuRowButton(QWidget *row);

    /// A symbol instead of the label; `name` is what assistive technology says.
    void setSymbol(const QString &symbol, const QString &name);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    QString m_symbol;
};

/// The base of all widget rows: the menu's grid, font and colours, and the
/// keyboard among the row's buttons. Tab and the arrows go from button to
/// button and on to the next row; Return and the space bar press. A row
/// without buttons can be reached, so that a screen reader can read it.
class WidgetRowView : public QWidget
{
    Q_OBJECT

public:
    explicit WidgetRowView(QWidget *parent);

    /// Whether the row does something as a whole, and does it.
    virtual bool isChoosable() const { return false; }
    virtual void choose() {}

protected:
    const MenuLook &look() const { return m_look; }
    /// The icon's place on a line of the row; the first line is 0.
    QRect iconRect(int line = 0) const;
    /// What is right of the icons, up to the margin (left to right; see mirrored()).
    QRect contentRect() const;
    /// The same place in the direction of reading.
    QRect mirrored(const QRect &rect) const;
    int lineHeight() const { return m_look.rowHeights().item; }
    QColor textColor() const;
    /// For labels: quieter than the text and readable all the same.
    QColor labelColor() const;
    void paintSymbol(QPainter &painter, const QString &symbol, const QRect &square, const QColor &color) const;
    /// The icon in the gutter, in the text's colour.
    void paintIcon(QPainter &painter, const QString &symbol) const;
    /// The mark of a row that has the focus itself; call first in paintEvent.
    void paintFocus(QPainter &painter) const;
    /// What a screen reader says of the row.
    void describe(const QString &name, const QString &description);

    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    /// The row was reached by the keyboard; hands the focus to what is within.
    virtual void focusWithin(bool fromBehind) { focusButton(fromBehind); }
    /// Gives the focus to a button that is shown: the first, or from behind
    /// the last. False when there is none.
    bool focusButton(bool last = false);
    bool hasFocusInside() const;

private:
    QList<MenuRowButton *> shownButtons() const;
    bool moveAmongButtons(int step);
    void letFocusGo();

    MenuLook m_look;
};

} // namespace orvelle
