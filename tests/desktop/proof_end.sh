#!/usr/bin/env bash
# The session ends while a note holds text that is not saved yet.
. "$(dirname "$0")/proof_lib.sh"

note_window() { app_window '^Diary$'; }
active() { [ "$(xdotool getactivewindow)" = "$(note_window)" ]; }
stored_text() { alone links --json | grep -o '"noteContent":"[^"]*"' | cut -d '"' -f 4; }

printf '[{"name": "Diary", "path": "quicknote://1", "type": "note", "noteContent": ""}]' > "$ORVELLE_DESKTOP/tree.json"
seed_tree "$ORVELLE_DESKTOP/tree.json" || fail "the tree could not be stored"
no_first_steps

written=
# A shell starts its background programs deaf to INT.
for signal in TERM HUP; do
    step "SIG$signal while a note is being written"
    start_ready
    "$orvelle" open "$("$orvelle" links | cut -d ' ' -f 1)" || fail "the note cannot be opened"
    expect 10 "no note editor" active
    xdotool key ctrl+End
    # Typed in less time than the editor waits before it saves.
    xdotool type --delay 4 "seen$signal"
    written+=seen$signal
    kill "-$signal" "$orvelle_pid"
    expect 10 "Orvelle did not end" has_ended
    wait "$orvelle_pid" || fail "Orvelle ended with code $? on SIG$signal"
    [ "$(stored_text)" = "$written" ] || fail "stored is '$(stored_text)' instead of '$written'"
    no_app_window || fail "a question was asked"
done
echo "all steps done"
