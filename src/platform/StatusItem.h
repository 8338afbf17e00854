#pragma once

#include <QColor>
#include <QImage>
#include <QObject>
#include <QPoint>
#include <QString>

#include <functional>

namespace orvelle {

class HostMenuSource;

/// One entry of the small menu that a tray host may draw itself.
struct HostMenuEntry {
    int id = 0; ///< positive, unique in the menu; what hostMenuChosen() gives back
    QString title;
    QString iconName; ///< themed icon, may be empty
    bool separator = false;
};

/// The icon in the desktop's tray. Main thread only.
class StatusItem : public QObject
{
    Q_OBJECT

public:
    /// What shows the icon at the moment.
    enum class Host {
        None,     ///< no tray of any kind
        Notifier, ///< a StatusNotifierItem host
        Embedded, ///< an XEmbed tray
    };

    /// Draws the icon as a square of `side` pixels in `color`, on transparent.
    using Painter = std::function<QImage(int side, const QColor &color)>;

    /// Registers the item; hosts that come later are joined by themselves.
    virtual void show() = 0;
    virtual void setPainter(Painter painter) = 0;
    virtual void setTitle(const QString &title) = 0;
    virtual void setToolTip(const QString &toolTip) = 0;
    /// The menu for hosts that draw one on a right click.
    virtual void setHostMenu(const QList<HostMenuEntry> &entries) = 0;
    /// The whole menu for hosts that draw it, in the place of the small one,
    /// where the application cannot place a menu itself: hosts are asked to
    /// show it at a left click, too. `source` outlives the item.
    virtual void setHostMenuSource(HostMenuSource &source) { static_cast<void>(source); }
    virtual Host host() const = 0;

signals:
    /// A left click; `position` in global pixels is at or near the icon.
    void activated(const QPoint &position);
    /// A right click whose menu the application draws.
    void contextMenuRequested(const QPoint &position);
    /// An entry of the host's own menu was chosen.
    void hostMenuChosen(int id);
    /// host() changed. Also emitted once when it turned out, after the first
    /// search, that there is none.
    void hostChanged(orvelle::StatusItem::Host host);
};

} // namespace orvelle
