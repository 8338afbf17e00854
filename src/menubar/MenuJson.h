#pragma once

#include "menubar/Menu.h"

#include <QByteArray>

namespace orvelle {

/// The menu as a JSON array (RFC 8259, UTF-8, indented) of objects:
///
/// | key | value | present |
/// |---|---|---|
/// | "kind" | "item", "submenu", "separator", "widget", "bottomRow" | always |
/// | "title" | text, may be empty | always |
/// | "enabled" | boolean | always |
/// | "icon" | symbol name, empty for none | always |
/// | "action" | "openSyncSettings" | the mark of the synchronisation |
/// | "tint" | colour key, as in the stored tree | tinted rows |
/// | "italic", "chevron", "interactive" | boolean | custom rows |
/// | "widget" | raw value of the widget | widgets |
/// | "children" | array of the same | submenus |
QByteArray menuJson(const Menu &menu);

/// The same for people: a line an entry, submenus indented below theirs.
QString menuOutline(const Menu &menu);

} // namespace orvelle
