#pragma once

#include "menubar/QuickLaunchManager.h"
#include "ui/menu/rows/WidgetRowView.h"

#include <QIcon>

namespace orvelle {

/// One application of the quick-launch row, drawn in the row's style.
class QuickLaunchButton : public MenuRowButton
{
    Q_OBJECT

public:
    /// What it stands for.
    struct Content {
        int slot = 0;
        QString name;
        QIcon icon;
        bool isGone = false; ///< nothing can be started; shown dimmed
    };

    explicit QuickLaunchButton(QWidget *row) : MenuRowButton(row) {}

    /// `place` counts the buttons of the row from its beginning.
    void setContent(const Content &content, QuickLaunchDisplayStyle style, int place);
    const Content &content() const { return m_content; }

    static int heightOf(QuickLaunchDisplayStyle style, const QFontMetrics &metrics);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    using Paint = void (QuickLaunchButton::*)(QPainter &) const;

    void paintSouffle(QPainter &painter) const;
    void paintDock(QPainter &painter) const;
    void paintNeon(QPainter &painter) const;
    void paintEncre(QPainter &painter) const;
    void paintIcon(QPainter &painter, const QRectF &square) const;
    QImage inked(int side) const;
    QRectF square(double side, double centre) const;
    bool isCurrent() const { return hasFocus(); }

    Content m_content;
    QuickLaunchDisplayStyle m_style = QuickLaunchDisplayStyle::Souffle;
    int m_place = 0;
};

} // namespace orvelle
