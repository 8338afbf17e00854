#pragma once

#include "links/LinkColors.h"
#include "links/LinkItem.h"
#include "menubar/WidgetType.h"

#include <QList>
#include <QPoint>
#include <QString>
#include <QUuid>

#include <functional>
#include <optional>

namespace orvelle {

/// What choosing an entry does. A plain value; MenuBarManager carries it out.
struct MenuAction {
    enum class Kind { None, OpenLink, OpenSettings, Quit, QuickAdd, QuickNote, OpenSyncSettings };
    Kind kind = Kind::None;
    QUuid linkId; ///< for OpenLink
    friend bool operator==(const MenuAction &, const MenuAction &) = default;
};

/// The picture of an entry: a site's own image if there is one, else the
/// desktop's icon for `filePath` if given, else the tinted symbol.
struct MenuIcon {
    QString symbol;                 ///< symbol name, may be empty for no icon
    std::optional<LinkColor> color; ///< absent: the text colour
    QString filePath;
    QByteArray imageData;
    friend bool operator==(const MenuIcon &, const MenuIcon &) = default;
};

/// One row of a menu. No widget of the toolkit is known here, so the same
/// value is drawn as a popup, exported to a tray host, printed, and compared
/// in tests.
struct MenuEntry {
    enum class Kind { Item, Submenu, Separator, Widget, BottomRow };

    Kind kind = Kind::Item;
    QString title;
    bool enabled = true;
    MenuIcon icon;
    MenuAction action;

    /// Set for rows drawn as a MenuRowView (tinted, italic, with chevron).
    bool customRow = false;
    std::optional<LinkColor> tint; ///< background tint of a custom row
    bool italic = false;
    bool chevron = false;
    bool interactive = false;

    std::optional<WidgetType> widget; ///< for Kind::Widget

    /// What a submenu shows, turned into entries when it is first opened; see
    /// childEntries(). Shares the tree's storage.
    LinkList childLinks;

    friend bool operator==(const MenuEntry &, const MenuEntry &) = default;
};

/// A whole menu.
struct Menu {
    QList<MenuEntry> entries;
    friend bool operator==(const Menu &, const Menu &) = default;
};

/// The entry that stands for one item of the tree.
MenuEntry menuEntry(const LinkItem &item);

/// The entries of a submenu: one per child, or the one disabled "menu.empty".
QList<MenuEntry> childEntries(const MenuEntry &submenu);

/// Where a menu is to open.
struct MenuPlacement {
    QPoint position; ///< global pixels: the icon's or the pointer's place
    /// True when it hangs off a tray icon (kept clear of the panel), false
    /// when it opens at the pointer.
    bool atIcon = true;
};

/// Draws menus. Implemented in ui/; main thread.
class MenuPresenter
{
public:
    virtual ~MenuPresenter() = default;

    /// Shows `menu`, closing any menu that is open. `closed` is called once
    /// from the event loop after the menu is gone, with what was chosen (kind
    /// None when nothing was).
    virtual void present(const Menu &menu, const MenuPlacement &placement,
                         std::function<void(MenuAction chosen)> closed) = 0;
    virtual bool isOpen() const = 0;
    /// Whether the last menu went because a button was pressed beside it: the
    /// click may have been meant for the icon, whose host reports it too.
    virtual bool wasClosedByPress() const = 0;
    /// Closes without animation; `closed` is still called.
    virtual void close() = 0;
    /// The pointer's place in global pixels.
    virtual QPoint pointerPosition() const = 0;
};

} // namespace orvelle
