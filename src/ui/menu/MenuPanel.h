#pragma once

#include "ui/menu/BottomRowView.h"
#include "ui/menu/MenuLook.h"

#include <QAccessible>
#include <QHash>
#include <QPointer>
#include <QVariantAnimation>
#include <QWidget>

namespace orvelle {

/// Makes the widget of a widget row as a child of `parent`, which owns it. May
/// return null: the row then takes no room.
using WidgetRowFactory = std::function<QWidget *(WidgetType widget, QWidget *parent)>;

/// One open level of a menu: draws its rows, scrolls them and knows what lies
/// where. What keys and the pointer do to it is decided by MenuPopup. Only
/// rows in sight are ever drawn, so that ten thousand cost what thirty do.
class MenuPanel : public QWidget
{
    Q_OBJECT

public:
    explicit MenuPanel(const QList<MenuEntry> &entries, const WidgetRowFactory &factory = {});

    const MenuRows &rows() const { return m_rows; }
    const MenuLook &look() const { return m_look; }
    /// The size that shows every row.
    QSize wantedSize() const;

    /// The highlighted row, -1 for none, and its button in a bottom row.
    int currentRow() const { return m_current; }
    int currentButton() const { return m_button; }
    void setCurrent(int row, int button = 0);
    /// Tells assistive technology where the keyboard is, after it was elsewhere.
    void announceCurrent();
    /// The row whose submenu is open; it stays highlighted.
    int openRow() const { return m_openRow; }
    void setOpenRow(int row);
    /// The open submenu, and the menu whose submenu this is; null for none.
    MenuPanel *openPanel() const { return m_openPanel.data(); }
    MenuPanel *panelAbove() const { return m_panelAbove.data(); }
    void setOpenPanel(MenuPanel *submenu);

    /// As if the row, or its button, were clicked or gone to.
    void choose(int row, int button) { emit chosen(row, button); }
    void pointTo(int row, int button) { emit pointedTo(row, button); }

    struct Hit {
        int row = -1;
        int button = 0;
        int scroll = 0; ///< -1 or 1 over the strip that scrolls up or down
    };
    Hit hit(const QPoint &position) const;
    /// The row in the panel's coordinates, also when it is out of sight.
    QRect rowRect(int row) const;
    /// The same of a row or, in a bottom row, of one of its buttons.
    QRect childRect(int row, int button) const;
    /// Whether a part of the row can be seen.
    bool isInSight(int row) const;
    QWidget *rowWidget(int row) const { return m_widgets.value(row); }

    int scrollOffset() const { return m_offset; }
    int maximumScroll() const;
    void scrollTo(int offset);
    void scrollSmoothly(int distance);
    void ensureVisible(int row);
    /// What a page up or down moves by.
    int pageHeight() const { return viewport().height(); }

    /// The whole name when the row shows a part of it, else empty.
    QString hiddenTitle(int row) const;

signals:
    /// After the first drawing on the screen.
    void painted();
    /// A widget row or the entries want another height.
    void wantedSizeChanged();
    void currentChanged();
    /// By assistive technology.
    void chosen(int row, int button);
    void pointedTo(int row, int button);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QRect viewport() const;
    QRect pinnedRect() const;
    int pinnedRow() const { return m_rows.count() - 1; }
    void makeWidgets();
    void layOut();
    void placeWidgets();
    void updateRow(int row);
    void paintRows(QPainter &painter, const QRect &dirty) const;
    QList<BottomRowView::Button> bottomButtons() const;
    void announceExpanded(int row);
    void announceChild(QAccessible::Event type, int child);

    MenuLook m_look;
    MenuRows m_rows;
    WidgetRowFactory m_factory;
    QHash<int, QPointer<QWidget>> m_widgets; ///< by row
    QVariantAnimation m_scrolling;
    int m_current = -1;
    int m_button = 0;
    int m_openRow = -1;
    QPointer<MenuPanel> m_openPanel;
    QPointer<MenuPanel> m_panelAbove;
    int m_offset = 0;
    bool m_paintedOnce = false;
};

} // namespace orvelle
