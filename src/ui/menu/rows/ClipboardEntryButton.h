#pragma once

#include "ui/menu/rows/WidgetRowView.h"
#include "widgets/clipboard/ClipboardEntry.h"

namespace orvelle {

/// One thing that was copied, as a line of the menu. A click or Return restores
/// it, with Shift as plain text. While it is the current one it shows what else
/// can be done with it. Drawn by the row, which has the menu's colours.
class ClipboardEntryButton : public MenuRowButton
{
    Q_OBJECT

public:
    ClipboardEntryButton(const ClipboardEntry &entry, const MenuLook &look, QWidget *row);

    const ClipboardEntry &entry() const { return m_entry; }
    /// The line's part for the content, left to right.
    static constexpr int thumbnailGap = 8;

    QSize sizeHint() const override;
    /// The one the keyboard or the pointer is on, itself or an action of it.
    void setCurrent(bool current);

signals:
    void chosen(bool asPlainText);
    void forgetWanted();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;

private:
    MenuRowButton *makeAction(const char *name, const QString &symbol, const QString &title);
    void makeActions();
    void placeActions();
    bool moveAmongActions(int step);
    QRect mirrored(const QRect &rect) const;

    ClipboardEntry m_entry;
    const MenuLook &m_look;
    QString m_rowText;
    QList<MenuRowButton *> m_actions; ///< in the direction of reading
    bool m_current = false;
};

} // namespace orvelle
