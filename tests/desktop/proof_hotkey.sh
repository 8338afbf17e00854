#!/usr/bin/env bash
# The global shortcut in the whole program: where the focus goes afterwards,
# and what a key that is pressed again or held down does.
#   proof_hotkey.sh PROGRAM ENTRY-PROGRAM
. "$(dirname "$0")/proof_lib.sh"
entry=$2

press() { xdotool key super+alt+x; }
all_closed() { expect 5 "the menu stayed open" menus_open 0; }
entry_window() { xdotool search --onlyvisible --name "^entry:$1\$"; }
held_down() { xdotool keydown super keydown alt keydown x; }
let_go() { xdotool keyup x keyup alt keyup super; }

no_first_steps
printf '[{"name": "Zulu", "path": "quicknote://1", "type": "note", "noteContent": "x"}]' > "$ORVELLE_DESKTOP/tree.json"
DBUS_SESSION_BUS_ADDRESS=disabled: seed_tree "$ORVELLE_DESKTOP/tree.json"
start_ready
"$entry" > /dev/null 2>&1 &
entry_pid=$!
expect 10 "no window to type into" entry_window ''
other=$(entry_window '')
xdotool windowactivate --sync "$other"
xdotool type a
expect 5 "the window does not take what is typed" entry_window a

step "the focus is back in the window of before, however the menu is closed"
press
expect 10 "the shortcut opened no menu" menus_open 1
xdotool key Down Down Escape
all_closed
xdotool type b
expect 5 "after Escape the typing went elsewhere" entry_window ab
sleep 0.3
press
expect 10 "the shortcut opened no menu again" menus_open 1
click 5 400
all_closed
xdotool type c
expect 5 "after a click elsewhere the typing went elsewhere" entry_window abc

step "pressed while the menu is open, and just after: no second menu"
sleep 0.3
press
expect 10 "the shortcut opened no menu a third time" menus_open 1
press
sleep 0.3
menus_open 1 || fail "there is more or less than one menu"
xdotool key Escape super+alt+x
sleep 0.5
menus_open 0 || fail "a press just after the menu closed opened it again"

step "held down: one menu, which stays"
xset r rate 150 40
held_down
expect 10 "the held shortcut opened no menu" menus_open 1
sleep 1
menus_open 1 || fail "holding the key closed the menu or opened another"
xdotool key --clearmodifiers Escape
all_closed
sleep 0.6
menus_open 0 || fail "the key that is still held opened the menu again"
let_go
sleep 0.3
press
expect 10 "the shortcut is dead after it was held" menus_open 1
xdotool key Escape
all_closed
xdotool type d
expect 5 "in the end the typing went elsewhere" entry_window abcd

kill "$entry_pid"
quit_orvelle
echo "all steps done"
