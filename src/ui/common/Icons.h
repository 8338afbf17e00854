#pragma once

#include <QColor>
#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <QString>

namespace orvelle {

/// Whether there is a picture for the symbol name ("folder.fill").
bool hasSymbol(const QString &name);

/// The symbol as a square of `side` device pixels in `color` on transparent;
/// serves as StatusItem::Painter. Empty (null) for an unknown name. Any thread.
QImage symbolImage(const QString &name, int side, const QColor &color);

/// The symbol at `side` logical pixels for a screen of `ratio` device pixels
/// each, from the toolkit's bounded pixmap cache. Main thread.
QPixmap symbolPixmap(const QString &name, int side, const QColor &color, qreal ratio);

/// The symbol in the palette's colours, crisp at every size and scale. The
/// optional `color` is used in the normal and active modes.
QIcon symbolIcon(const QString &name, const QColor &color = {});

/// What a link's picture is chosen from, best first: its own image, then the
/// desktop's icon for the path, then the symbol.
struct LinkPicture {
    QByteArray imageData;
    QString filePath;
    QString symbol;
};

/// The link's own image or the desktop's icon for its path; null where there is
/// neither. As for linkPixmap().
QPixmap ownPixmap(const LinkPicture &picture, int side, qreal ratio);

/// The link's picture at `side` logical pixels; the symbol is drawn in `color`.
/// The path is judged by its name alone ("folder" as symbol means a folder):
/// no disk is touched, so that a dead network mount cannot stall a menu.
/// Undecodable or absurdly large image data counts as none.
QPixmap linkPixmap(const LinkPicture &picture, int side, const QColor &color, qreal ratio);

} // namespace orvelle
