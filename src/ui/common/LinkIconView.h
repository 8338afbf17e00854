#pragma once

#include "links/LinkItem.h"

#include <QPalette>
#include <QPixmap>
#include <QWidget>

class QPainter;

namespace orvelle {

/// What surrounds an icon that is drawn.
struct LinkIconStyle {
    QPalette palette;
    QPalette::ColorRole ground = QPalette::Base;
    bool broken = false; ///< the item's file or folder is gone: draws the badge
    /// On the selection's ground: the symbol takes the colour of its text.
    bool selected = false;
};

/// Draws an item's icon into `square`, best first: the site's own picture, the
/// symbol in the item's colour, the desktop's icon for the path. The badge of
/// a broken item reaches past the lower trailing corner by 15 % of the side.
void paintLinkIcon(QPainter &painter, const QRect &square, const LinkItem &item, const LinkIconStyle &style);

/// The colour in which an item's symbol is drawn on the palette's ground: its
/// own, moved just as far towards the text's as it takes to be seen.
QColor linkIconColor(const LinkItem &item, const QPalette &palette, QPalette::ColorRole ground = QPalette::Base);

/// An item's icon for a row that tells what becomes of it: in the text's colour
/// unless the item has one of its own.
QPixmap linkRowPixmap(const LinkItem &item, int side, const QPalette &palette, qreal ratio);

/// The icon of one item as a widget.
class LinkIconView : public QWidget
{
    Q_OBJECT

public:
    /// `size` is the icon's side in logical pixels; the widget is larger by
    /// what the badge needs.
    explicit LinkIconView(int size, QWidget *parent = nullptr);

    void setLink(const LinkItem &link, bool broken);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int m_size;
    LinkItem m_link;
    bool m_broken = false;
};

} // namespace orvelle
