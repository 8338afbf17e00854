#pragma once

#include "menubar/Menu.h"
#include "platform/Clock.h"
#include "platform/HostMenuSource.h"
#include "ui/menu/MenuPanel.h"

#include <QCache>

#include <chrono>

namespace orvelle {

/// The whole menu for a tray host that draws it: the same value that the popup
/// draws, row by row, with widgets as text. While the host shows it, it keeps
/// up with the widgets. Main thread.
class HostMenuContent : public HostMenuSource
{
    Q_OBJECT

public:
    struct Doors {
        std::function<Menu()> buildMenu;
        /// Before the menu is shown: services look for what is new.
        std::function<void()> catchUp;
        /// What stands below it: the small menu that a right click would open.
        std::function<Menu()> buildContextMenu;
        std::function<QList<MenuEntry>(const MenuEntry &submenu)> childEntries;
        WidgetRowFactory makeRow;
        std::function<void(const MenuAction &)> perform;
        /// Widgets measure at their quicker pace while the menu is open.
        std::function<void(bool live)> setLive;
    };

    /// How often a menu that is shown looks at its widgets.
    static constexpr std::chrono::milliseconds livePeriod{1000};
    /// A host that says no more is taken for one that does not tell the end.
    static constexpr std::chrono::milliseconds longestShown{60'000};
    /// Changes within this time are told once.
    static constexpr std::chrono::milliseconds gathering{200};

    HostMenuContent(Doors doors, Clock &clock, QObject *parent = nullptr);
    ~HostMenuContent() override;

    QList<HostMenuItem> items() override;
    void setShown(bool shown) override;

public slots:
    /// The links, the widgets or their order have changed.
    void contentChanged();

private:
    QList<HostMenuItem> itemsOf(const QList<MenuEntry> &entries);
    void addWidget(QList<HostMenuItem> &items, const MenuEntry &entry, bool &inWidgets);
    HostMenuItem itemOf(const MenuEntry &entry);
    QList<HostMenuItem> bottomItems();
    HostMenuItem actionItem(const QString &title, const QString &symbol, const MenuAction &action);
    void addPicture(HostMenuItem &item, const MenuIcon &icon);
    QByteArray picture(const QString &id, const MenuIcon &icon);

    Doors m_doors;
    Clock &m_clock;
    std::optional<Menu> m_menu;  ///< as built last; none when it has to be again
    QList<HostMenuItem> m_plain; ///< one for each entry of it, without widgets' content
    QCache<QString, QByteArray> m_pictures;
    std::unique_ptr<Timer> m_change;
    std::unique_ptr<Timer> m_live;
    std::unique_ptr<Timer> m_end;
};

} // namespace orvelle
