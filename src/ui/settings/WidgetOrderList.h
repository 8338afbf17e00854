#pragma once

#include "menubar/WidgetType.h"

#include <QListWidget>

#include <optional>

namespace orvelle {

class WidgetOrderManager;

/// The menu's widgets in the user's order. A widget dropped on another lands
/// directly before it; Alt with an arrow key moves the selected one.
class WidgetOrderList : public QListWidget
{
    Q_OBJECT

public:
    explicit WidgetOrderList(WidgetOrderManager &order, QWidget *parent = nullptr);

    std::optional<WidgetType> selectedWidget() const;
    void moveSelectedUp();
    void moveSelectedDown();

    /// There are never more than seven: all of them in sight.
    QSize sizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void startDrag(Qt::DropActions supportedActions) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

    /// Moves the selected widget directly before the one at `position`.
    void dropSelectedAt(const QPoint &position);

private:
    int rowHeight() const;
    QPixmap pictureOfSelected();
    void refresh();
    void select(WidgetType widget);
    void setDropRow(int row);

    WidgetOrderManager &m_order;
    int m_dropRow = -1; ///< the row under a drag; -1 for none
};

} // namespace orvelle
