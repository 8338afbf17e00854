#!/usr/bin/env bash
# The tree edited as its user does it, with real keys and clicks in the settings
# window, quick add and a note:  proof_settings.sh PROGRAM  inside
# script/with-desktop.
. "$(dirname "$0")/proof_lib.sh"

key() { xdotool key --delay 40 "$@"; }
outline() { # names in display order, groups with their members in brackets
    "$orvelle" links --json | python3 -c '
import json, sys
def outline(items):
    return " ".join(i["name"] + ("[" + outline(i.get("children", [])) + "]" if i["type"] == "group" else "")
                    for i in items)
print(outline(json.load(sys.stdin)))'
}
tree_is() { [ "$(outline)" = "$1" ]; }
becomes() { # OUTLINE WHAT
    expect 10 "$2: the tree is $(outline), not $1" tree_is "$1"
}
find_row() { # NAME: selects the item that the search finds
    key ctrl+f
    key ctrl+a
    xdotool type --delay 40 "$1"
    key Return
    # Escape empties the field; the selection stays.
    key ctrl+f Escape Return
}
front() { # TITLE-PATTERN
    expect 10 "no window $1" app_window "$1"
    xdotool windowactivate --sync "$(app_window "$1")"
}

cat > "$ORVELLE_DESKTOP/tree.json" <<'JSON'
[{"name": "alpha", "path": "http://alpha.invalid/", "type": "url"},
 {"name": "group", "path": "", "type": "group", "children":
   [{"name": "beta", "path": "http://beta.invalid/", "type": "url"},
    {"name": "gamma", "path": "http://gamma.invalid/", "type": "url"}]},
 {"name": "zulu", "path": "http://zulu.invalid/", "type": "url"}]
JSON
seed_tree "$ORVELLE_DESKTOP/tree.json" || fail "the tree could not be stored"
no_first_steps
start_ready --login
step "a start with the session leaves a running program alone"
"$orvelle" --login || fail "orvelle --login failed"
"$orvelle" links > /dev/null || fail "the running program does not answer"
! app_window 'Settings' || fail "a start with the session opened the settings"
"$orvelle" || fail "a second start failed"
front 'Settings'

step "a key renames"
find_row zulu
key F2
key ctrl+a
xdotool type --delay 40 "yankee"
key Return
becomes "alpha group[beta gamma] yankee" "after the renaming"

step "keys move, indent and outdent"
find_row yankee
key alt+Right
becomes "alpha group[beta gamma yankee]" "after the indenting"
key alt+Up
becomes "alpha group[beta yankee gamma]" "after the move"
key alt+Left
becomes "alpha group[beta gamma] yankee" "after the outdenting"

step "each step is taken back by one key, and done again by another"
key ctrl+z
becomes "alpha group[beta yankee gamma]" "after undo"
key ctrl+shift+z
becomes "alpha group[beta gamma] yankee" "after redo"

step "Delete removes a group, undo brings it back whole"
find_row group
key Delete
becomes "alpha yankee" "after the removal"
key ctrl+z
becomes "alpha group[beta gamma] yankee" "after its undo"

step "another process's edit shows, and the next key works on it"
"$orvelle" sort "$("$orvelle" links | awk '/group/ {print $1; exit}')" > /dev/null
"$orvelle" add http://delta.invalid/ --name delta > /dev/null || fail "orvelle add failed"
becomes "alpha group[beta gamma] yankee delta" "after the command"
find_row delta
key alt+Up
becomes "alpha group[beta gamma] delta yankee" "after the move of what another process added"
picture general

step "each tab is reached by a key"
for tab in widgets sync about; do
    key ctrl+Next
    picture "$tab"
done
key ctrl+Next

step "quick add takes an address by keyboard and closes"
"$orvelle" quick-add || fail "orvelle quick-add failed"
front '(Quick|Add|link)'
key ctrl+a
xdotool type --delay 20 "https://quick.invalid/page"
picture quickadd
key Return
becomes "alpha group[beta gamma] delta yankee quick.invalid" "after quick add"

step "a document goes out, in, and comes back the same"
"$orvelle" export "$ORVELLE_DESKTOP/all.ovexport" || fail "export failed"
"$orvelle" verify "$ORVELLE_DESKTOP/all.ovexport" > /dev/null || fail "the document does not verify"
"$orvelle" remove "$("$orvelle" links | awk '/alpha/ {print $1; exit}')" || fail "remove failed"
"$orvelle" import "$ORVELLE_DESKTOP/all.ovexport" --mode replace > /dev/null || fail "import failed"
becomes "alpha group[beta gamma] delta yankee quick.invalid" "after the import"
"$orvelle" undo > /dev/null || fail "undo failed"
becomes "group[beta gamma] delta yankee quick.invalid" "after the import was taken back"

quit_orvelle
echo "all steps done"
