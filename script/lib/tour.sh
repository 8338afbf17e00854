# script/screenshots on the virtual desktop: PROGRAM TREE FOLDER
set -euo pipefail
orvelle=$1 tree=$2 folder=$3
. script/lib/desktop.sh

fail() {
    echo "screenshots: $1" >&2
    shot "$folder/failed.png" || true
    cat "$ORVELLE_DESKTOP/log/orvelle" >&2 || true
    exit 1
}

xsetroot -solid '#3b5a72' 2> /dev/null || true
seed_tree "$tree"
start_in_tray 20

click "$x" "$y"
wait_until 10 menus_open 1 || fail "a click on the icon at $x,$y opened no menu"
settled_shot "$folder/1-menu.png"
xdotool key Down Down Down Right
wait_until 10 menus_open 2 || fail "no submenu opened"
settled_shot "$folder/2-submenu.png"
xdotool key Escape Escape
wait_until 10 menus_open 0 || { xdotool key Escape; wait_until 5 menus_open 0; } || fail "Escape closed no menu"

click "$x" "$y" 3
wait_until 10 menus_open 1 || true
settled_shot "$folder/3-right-click.png"
xdotool key Escape
wait_until 10 menus_open 0 || true

# On a first launch the welcome comes with the settings.
"$orvelle" settings
wait_until 10 app_window 'Welcome|Bienvenue' || fail "the settings opened without a welcome"
settled_shot "$folder/4-welcome.png"
xdotool key Escape
no_welcome() { ! app_window 'Welcome|Bienvenue'; }
wait_until 10 no_welcome || fail "Escape did not close the welcome"
wait_until 10 app_window || fail "the settings did not open"

next_tab() { # FILE
    xdotool key ctrl+Next
    settled_shot "$1"
}
settled_shot "$folder/5-settings-general.png"
next_tab "$folder/6-settings-widgets.png"
next_tab "$folder/7-settings-sync.png"
grep -o '"stableId": *"[^"]*"' "$tree" | sed 's/.*"\(.*\)"/\1/' | head -3 | while read -r id; do
    "$orvelle" remove "$id" > /dev/null 2>&1 || true # what was inside a removed group is gone already
done
"$orvelle" snapshots | grep -q . || fail "removing left no snapshot"
settled_shot "$folder/8-settings-snapshots.png"
case "${LANGUAGE-}" in fr*) look_inside=alt+u ;; *) look_inside=alt+l ;; esac
xdotool key "$look_inside"
wait_until 10 app_window '^(Snapshot|Instantané)$' || fail "$look_inside did not open the snapshot"
settled_shot "$folder/9-snapshot.png"
xdotool key Escape
next_tab "$folder/10-settings-about.png"
xdotool key Escape
wait_until 10 no_app_window || fail "Escape did not close the settings"
"$orvelle" quit
wait_until 10 has_ended || fail "Orvelle did not quit"
