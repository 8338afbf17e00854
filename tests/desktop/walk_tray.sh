#!/usr/bin/env bash
# Orvelle as its user meets it, with real clicks and keys, inside
# script/with-desktop --panel PANEL:  walk_tray.sh PROGRAM
set -uo pipefail
cd "$(dirname "$0")/../.."
orvelle=$1
. script/lib/desktop.sh

opened=$ORVELLE_DESKTOP/opened
before=$ORVELLE_DESKTOP/before.png

fail() { give_up_with "$1" "build/screenshots/walk-failed-${ORVELLE_WALK_NAME-}.png"; }

# Addresses go to a program of our own that writes down what it is given.
register_handler() {
    mkdir -p "$XDG_DATA_HOME/applications"
    printf '#!/bin/sh\nprintf "%%s\\n" "$1" >> "%s"\n' "$opened" > "$ORVELLE_DESKTOP/handler"
    chmod +x "$ORVELLE_DESKTOP/handler"
    cat > "$XDG_DATA_HOME/applications/walk-handler.desktop" <<DESKTOP
[Desktop Entry]
Type=Application
Name=Walk handler
Exec=$ORVELLE_DESKTOP/handler %u
MimeType=x-scheme-handler/http;
DESKTOP
    printf '[Default Applications]\nx-scheme-handler/http=walk-handler.desktop\n' > "$XDG_CONFIG_HOME/mimeapps.list"
    touch "$opened"
}
last_opened_is() { [ "$(tail -n 1 "$opened")" = "$1" ]; }

seed() {
    cat > "$ORVELLE_DESKTOP/tree.json" <<'JSON'
[{"name": "Alpha", "path": "http://alpha.invalid/first?a=1&b=2", "type": "url"},
 {"name": "Group", "path": "", "type": "group", "children":
   [{"name": "Inner & outer", "path": "http://inner.invalid/", "type": "url"},
    {"name": "Second", "path": "http://second.invalid/", "type": "url"}]},
 {"name": "A note", "path": "quicknote://1", "type": "note", "noteContent": "text"},
 {"name": "Zulu", "path": "http://zulu.invalid/", "type": "url"}]
JSON
    seed_tree "$ORVELLE_DESKTOP/tree.json" || fail "the tree could not be stored"
    "$orvelle" defaults write HasLaunchedBefore bool true || fail "the settings could not be stored"
}

icon_is_there() { tray_icon "$before"; }
click_icon() { # [BUTTON]
    read -r x y < <(tray_icon "$before") || fail "the icon is gone from the tray"
    click "$x" "$y" "${1:-1}"
}
open_by_click() {
    click_icon
    expect 10 "a click on the icon opened no menu" menus_open 1
}
open_by_command() {
    "$orvelle" toggle || fail "orvelle toggle failed"
    expect 10 "orvelle toggle opened no menu" menus_open 1
}
geometry() { eval "$(xdotool getwindowgeometry --shell "$1")"; }

mouse_opens_an_entry() {
    step "a click on the icon opens the menu, a click on an entry opens it"
    open_by_click
    geometry "$(menu_windows)"
    [ "$X" -ge 0 ] && [ "$Y" -ge 0 ] && [ $((X + WIDTH)) -le 1280 ] && [ $((Y + HEIGHT)) -le 800 ] ||
        fail "the menu leaves the screen: $X,$Y ${WIDTH}x$HEIGHT"
    click $((X + 60)) $((Y + 16))
    expect 10 "the first entry was not opened" last_opened_is 'http://alpha.invalid/first?a=1&b=2'
    expect 10 "the menu stayed open after a choice" menus_open 0
}

mouse_opens_a_nested_entry() {
    step "the pointer opens a submenu, a click opens its entry"
    open_by_click
    local first second offset
    first=$(menu_windows)
    geometry "$first"
    for ((offset = 16; offset < HEIGHT; offset += 6)); do
        xdotool mousemove $((X + 60)) $((Y + offset))
        wait_until 1 menus_open 2 && break
    done
    expect 2 "no submenu opened under the pointer" menus_open 2
    second=$(menu_windows | grep -v "^$first\$")
    geometry "$second"
    # Along the row first: the pointer crosses no other entry on its way.
    xdotool mousemove_relative -- 20 0
    click $((X + 40)) $((Y + 16))
    expect 10 "the nested entry was not opened" last_opened_is 'http://inner.invalid/'
    expect 10 "the menus stayed open after a choice" menus_open 0
}

keys_open_entries() {
    step "keyboard only: type-ahead, arrows, Enter, Escape; the focus comes back"
    xev > /dev/null 2>&1 &
    local other=$! other_window
    expect 10 "no other window to give the focus to" xdotool search --onlyvisible --name '^Event Tester$'
    other_window=$(xdotool search --onlyvisible --name '^Event Tester$' | head -n 1)
    xdotool windowactivate "$other_window"
    has_focus() { [ "$(xdotool getactivewindow)" = "$other_window" ]; }
    expect 10 "the other window did not take the focus" has_focus

    open_by_command
    xdotool key z u Return
    expect 10 "typing a name and Enter did not open it" last_opened_is 'http://zulu.invalid/'
    expect 10 "the menu stayed open after Enter" menus_open 0
    expect 10 "the focus did not come back" has_focus

    open_by_command
    xdotool key g r Right
    expect 10 "the right arrow key opened no submenu" menus_open 2
    xdotool key Down Return
    expect 10 "arrows and Enter did not open the nested entry" last_opened_is 'http://second.invalid/'

    expect 10 "the menu stayed open after Enter" menus_open 0
    open_by_command
    xdotool key Escape
    expect 10 "Escape did not close the menu" menus_open 0
    open_by_command
    "$orvelle" toggle
    expect 10 "a second toggle did not close the menu" menus_open 0
    expect 10 "the focus did not come back" has_focus
    kill "$other"
    wait "$other" 2> /dev/null
    other_is_gone() { ! xdotool search --onlyvisible --name '^Event Tester$'; }
    expect 10 "the other window stayed" other_is_gone
}

right_click_shows_two_items() {
    step "a right click shows two items: settings and quit"
    right_click
    xdotool key Down Return
    expect 10 "the first item of the right-click menu did not open the settings" app_window
    close_app_window
    is_running || fail "Orvelle ended with its settings window"
    "$orvelle" settings || fail "orvelle settings failed"
    expect 10 "orvelle settings opened no window" app_window
    close_app_window

    right_click
    xdotool key Down Down Return
    expect 10 "the second item of the right-click menu did not quit" has_ended
}
close_app_window() {
    xdotool windowactivate "$(app_window)"
    is_active() { [ "$(xdotool getactivewindow)" = "$(app_window)" ]; }
    expect 10 "the settings did not come to the front" is_active
    xdotool key alt+F4
    expect 10 "the settings did not close" no_app_window
}
# The menu of a right click may be the panel's own.
any_menu_open() {
    local window
    for window in $(xwininfo -root -children | grep -o '^ *0x[0-9a-f]*'); do
        xwininfo -id "$window" 2> /dev/null | grep -q 'IsViewable' &&
            xprop -id "$window" _NET_WM_WINDOW_TYPE 2> /dev/null | grep -q MENU && return 0
    done
    menus_open 1
}
right_click() {
    click_icon 3
    expect 10 "a right click opened no menu" any_menu_open
}

register_handler
seed
settled_shot "$before"
step "the icon appears in the tray"
start_orvelle
expect 20 "no icon appeared" icon_is_there
mouse_opens_an_entry
mouse_opens_a_nested_entry
keys_open_entries
[ "$(wc -l < "$opened")" -eq 4 ] || fail "opened too often: $(cat "$opened")"
right_click_shows_two_items

step "it starts again and quits on command"
start_orvelle
expect 20 "no icon appeared at the second start" icon_is_there
"$orvelle" quit || fail "orvelle quit failed"
expect 10 "orvelle quit did not end it" has_ended
wait "$orvelle_pid" || fail "Orvelle ended with code $?"
echo "all steps done"
