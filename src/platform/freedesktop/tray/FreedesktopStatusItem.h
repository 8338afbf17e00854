#pragma once

#include "platform/Clock.h"
#include "platform/StatusItem.h"

#include <QDBusConnection>

#include <memory>

namespace orvelle {

class DesktopColorScheme;
class EmbeddedTray;
class HostMenu;
class NotifierItem;

/// The icon in whatever tray the desktop has: a StatusNotifierItem host where
/// one is present, else the XEmbed tray, and from one to the other when the
/// desktop changes. Never in both.
///
/// host() is the host of the moment; hostChanged(None) comes only after five
/// seconds without any, so that a panel that starts or restarts is not taken
/// for a missing one.
///
/// Positions in its signals are Qt's global coordinates: the pixels of the
/// desktop at scale 1, divided within each screen by its device pixel ratio at
/// other scales.
class FreedesktopStatusItem : public StatusItem
{
    Q_OBJECT

public:
    /// `clock` and `colors` must outlive the item. A bus that is not connected is as good as
    /// a desktop without a StatusNotifierItem host.
    FreedesktopStatusItem(Clock &clock, DesktopColorScheme &colors,
                          const QDBusConnection &sessionBus = QDBusConnection::sessionBus());
    ~FreedesktopStatusItem() override;

    void show() override;
    void setPainter(Painter painter) override;
    void setTitle(const QString &title) override;
    void setToolTip(const QString &toolTip) override;
    void setHostMenu(const QList<HostMenuEntry> &entries) override;
    /// Before show(): hosts ask once what a click means.
    void setHostMenuSource(HostMenuSource &source) override;
    Host host() const override { return m_host; }

private:
    void hostSearched(bool found);
    void updateHost();
    void reportNone();
    void recolor();
    void embeddedClicked(Qt::MouseButton button, const QRect &icon);

    Clock &m_clock;
    QDBusConnection m_bus;
    DesktopColorScheme &m_colors;
    std::unique_ptr<HostMenu> m_hostMenu;
    std::unique_ptr<NotifierItem> m_notifier;
    std::unique_ptr<EmbeddedTray> m_embedded;
    std::unique_ptr<Timer> m_noneTimer;
    Host m_host = Host::None;
    bool m_shown = false;
};

} // namespace orvelle
