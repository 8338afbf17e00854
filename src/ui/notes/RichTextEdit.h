#pragma once

#include "links/richtext/RichText.h"
#include "ui/notes/ListMarkers.h"

#include <QTextEdit>

#include <functional>

namespace orvelle {

/// The text of a note, with the formatting that notes may have and no other.
/// Boxes are ticked by a click, links opened by Ctrl and a click.
class RichTextEdit : public QTextEdit
{
    Q_OBJECT

public:
    explicit RichTextEdit(QWidget *parent = nullptr);

    RichText richText() const;
    /// Shows another text; nothing can be undone.
    void showText(const RichText &text);
    /// Puts another text in place of the whole, as an edit that can be undone.
    void replaceText(const RichText &text);

    /// Of what is selected, or would be typed.
    RichStyle currentStyle() const;
    /// Changes the selection's style, or that of what is typed next.
    void changeStyle(const std::function<void(RichStyle &)> &change);
    void pastePlain();

signals:
    void linkActivated(const QString &address);
    void editLinkRequested();
    void pasteRefused();

protected:
    bool event(QEvent *event) override;
    bool viewportEvent(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    QMimeData *createMimeDataFromSelection() const override;
    bool canInsertFromMimeData(const QMimeData *source) const override;
    void insertFromMimeData(const QMimeData *source) override;

private:
    bool handleStructureKey(const QKeyEvent &event);
    bool handleReturn(Qt::KeyboardModifiers modifiers);
    bool handleBackspace();
    void leaveLinkBehind();
    void insert(const std::optional<RichText> &text);
    QTextBlock checkItemAt(const QPoint &position) const;
    QPointF scrolledBy() const;
    void updatePointer(const QPoint &position, Qt::KeyboardModifiers modifiers);
    void fitIndent();

    ListMarkers m_markers;
    QString m_pressedLink; ///< where Ctrl and the button went down
};

} // namespace orvelle
