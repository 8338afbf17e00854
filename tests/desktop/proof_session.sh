#!/usr/bin/env bash
# The session is to end while a note holds text that is not saved yet, and then
# it does not, because another program objects.
. "$(dirname "$0")/proof_lib.sh"
manager=$2

note_window() { app_window '^Diary$'; }
active() { [ "$(xdotool getactivewindow)" = "$(note_window)" ]; }
stored_text() { alone links --json | grep -o '"noteContent":"[^"]*"' | cut -d '"' -f 4; }
said() { [ "$(grep -c "^$1$" "$ORVELLE_DESKTOP/session")" -ge "$2" ]; }

printf '[{"name": "Diary", "path": "quicknote://1", "type": "note", "noteContent": ""}]' > "$ORVELLE_DESKTOP/tree.json"
seed_tree "$ORVELLE_DESKTOP/tree.json" || fail "the tree could not be stored"
no_first_steps

mkfifo "$ORVELLE_DESKTOP/orders"
"$manager" < "$ORVELLE_DESKTOP/orders" > "$ORVELLE_DESKTOP/session" &
exec 9> "$ORVELLE_DESKTOP/orders"
expect 10 "no session manager" test -s "$ORVELLE_DESKTOP/session"
SESSION_MANAGER=$(head -n 1 "$ORVELLE_DESKTOP/session")
export SESSION_MANAGER

step "the program is of the session"
start_ready
expect 10 "the program is not of the session" said saved 1
"$orvelle" open "$("$orvelle" links | cut -d ' ' -f 1)" || fail "the note cannot be opened"
expect 10 "no note editor" active

step "an end that is called off"
xdotool key ctrl+End
xdotool type --delay 4 first
echo end >&9
expect 10 "the program did not save itself" said saved 2
[ "$(stored_text)" = first ] || fail "stored is '$(stored_text)'"
echo cancel >&9
xdotool type --delay 4 second
expect 10 "what is typed afterwards is not stored" sh -c "DBUS_SESSION_BUS_ADDRESS=disabled: '$orvelle' links --json | grep -q firstsecond"
kill -0 "$orvelle_pid" || fail "Orvelle ended with a session that goes on"
"$orvelle" menu > /dev/null || fail "Orvelle answers no more"

step "an end"
xdotool type --delay 4 third
echo end >&9
expect 10 "the program did not save itself" said saved 3
echo die >&9
expect 10 "Orvelle did not end" has_ended
wait "$orvelle_pid" || fail "Orvelle ended with code $?"
[ "$(stored_text)" = firstsecondthird ] || fail "stored is '$(stored_text)'"
said "asks the user" 1 && fail "a question was asked"
no_app_window || fail "a window stays"
echo "all steps done"
