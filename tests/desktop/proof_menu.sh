#!/usr/bin/env bash
# The menu with real keys: focus, names of every kind, long groups, buttons.
#   proof_menu.sh PROGRAM ENTRY-PROGRAM
. "$(dirname "$0")/proof_lib.sh"
entry=$2

opened=$ORVELLE_DESKTOP/opened
log_lines() { wc -l < "$opened"; }
last_is() { [ "$(tail -n 1 "$opened")" = "$1" ]; }
open_menu() {
    "$orvelle" toggle || fail "orvelle toggle failed"
    expect 10 "no menu opened" menus_open 1
}
all_closed() { expect 5 "the menu stayed open" menus_open 0; }
click_icon() {
    local x y
    read -r x y < <(tray_icon /dev/null) || fail "no icon in the tray"
    click "$x" "$y"
}
entry_window() { xdotool search --onlyvisible --name "^entry:$1\$"; }

register_handler() {
    mkdir -p "$XDG_DATA_HOME/applications"
    printf '#!/bin/sh\nprintf "%%s\\n" "$1" >> "%s"\n' "$opened" > "$ORVELLE_DESKTOP/handler"
    chmod +x "$ORVELLE_DESKTOP/handler"
    printf '[Desktop Entry]\nType=Application\nName=Handler\nExec=%s %%u\nMimeType=x-scheme-handler/http;\n' \
        "$ORVELLE_DESKTOP/handler" > "$XDG_DATA_HOME/applications/handler.desktop"
    printf '[Default Applications]\nx-scheme-handler/http=handler.desktop\n' > "$XDG_CONFIG_HOME/mimeapps.list"
    : > "$opened"
}
link() { printf '{"name": "%s", "path": "http://%s/", "type": "url"}' "$1" "$2"; }
seed() {
    local long='A name that is much too long for any menu because whoever wrote it put the whole story of the page into it and then some more words'
    {
        printf '[%s, %s, %s, ' "$(link Zulu zulu)" "$(link 'Salt & pepper' salt)" "$(link "$long" long)"
        printf '%s, ' "$(link 'Éléphant' elephant)"
        printf '{"name": "Rouge", "path": "", "type": "group", "customIconColor": "red", "noteColoredInMenu": true, "children": []}, '
        printf '{"name": "Reminder", "path": "quicknote://1", "type": "note", "noteContent": "x"}, '
        printf '{"name": "Many", "path": "", "type": "group", "children": ['
        printf '{"name":"Entry %s","path":"http://many%s/","type":"url"},' \
            $(seq -f '%04g' 1 1499 | sed 'p')
        link 'Entry 1500' many1500
        printf ']}]'
    } > "$ORVELLE_DESKTOP/tree.json"
    seed_tree "$ORVELLE_DESKTOP/tree.json" || fail "the tree could not be stored"
    "$orvelle" defaults write HasLaunchedBefore bool true
}

focus_comes_back() {
    step "another window keeps the focus: what is typed after the menu goes there"
    "$entry" > /dev/null 2>&1 &
    entry_pid=$!
    expect 10 "no window to type into" entry_window ''
    xdotool windowactivate --sync "$(entry_window '')"
    xdotool type before
    expect 5 "the window does not take what is typed" entry_window before
    open_menu
    xdotool key z Escape
    all_closed
    xdotool type between
    expect 5 "after Escape the typing went elsewhere" entry_window beforebetween
    open_menu
    xdotool key z u Return
    expect 5 "the chosen entry was not opened" last_is http://zulu/
    all_closed
    xdotool type after
    expect 5 "after a choice the typing went elsewhere" entry_window beforebetweenafter
}

names() {
    step "type-ahead without accents, & as itself, a long name elided with a tooltip"
    open_menu
    xdotool key e l e
    picture elephant
    xdotool key Return
    expect 5 "typing ele did not choose Éléphant" last_is http://elephant/
    all_closed
    open_menu
    xdotool type 'salt & p'
    xdotool key Return
    expect 5 "typing a name with & and blanks did not choose it" last_is http://salt/
    all_closed
    open_menu
    eval "$(xdotool getwindowgeometry --shell "$(menu_windows)")"
    [ "$WIDTH" -le 640 ] || fail "a long name makes the menu $WIDTH wide"
    xdotool mousemove $((X + 80)) $((Y + 62))
    xdotool mousemove_relative 2 1
    expect 5 "no tooltip for a name that is cut" menus_open 2
    picture tooltip
    xdotool key Escape
    all_closed
}

long_group() {
    step "a group of 1,500: End, Home, Page Down, type-ahead"
    local keys expected
    while read -r expected keys; do
        open_menu
        xdotool key m a Right
        expect 5 "the group did not open" menus_open 2
        # shellcheck disable=SC2086
        xdotool key $keys
        [ "$expected" != many1500 ] || picture end
        [ "$expected" != many0001 ] || picture home
        xdotool key Return
        expect 5 "$keys did not lead to $expected but $(tail -n 1 "$opened")" last_is "http://$expected/"
        all_closed
    done <<'KEYS'
many1500 End
many0001 End Home
many1499 End Up
many1500 End Page_Up Page_Down Page_Down
KEYS
    open_menu
    xdotool key m a Right
    expect 5 "the group did not open" menus_open 2
    xdotool type 'entry 0777'
    picture typed
    xdotool key Return
    expect 5 "typing did not lead to 0777 but $(tail -n 1 "$opened")" last_is http://many0777/
    all_closed
}

buttons() {
    step "Tab reaches the buttons at the bottom, Enter presses them"
    click_icon
    expect 10 "a click on the icon opened no menu" menus_open 1
    xdotool key m a Tab Tab
    picture second-button
    xdotool key shift+Tab Return
    all_closed
    expect 5 "no quick add" app_window 'link|Link'
    picture quick-add
    xdotool windowactivate --sync "$(app_window 'link|Link')" key Escape
    expect 5 "quick add stayed" no_app_window
}

register_handler
seed
alone defaults write QuickLaunchEnabled bool false || fail "the settings could not be stored"
start_ready
open_menu
picture menu
xdotool key Escape
all_closed
focus_comes_back
names
long_group
buttons
kill "$entry_pid"
quit_orvelle
echo "all steps done"
