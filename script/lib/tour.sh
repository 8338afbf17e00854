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
"$orvelle" defaults write HasLaunchedBefore bool true
shot "$ORVELLE_DESKTOP/before.png"
start_orvelle
wait_until 20 tray_icon "$ORVELLE_DESKTOP/before.png" || fail "no icon appeared in the tray"
read -r x y < <(tray_icon "$ORVELLE_DESKTOP/before.png")

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

"$orvelle" settings
wait_until 10 app_window || fail "the settings did not open"
settled_shot "$folder/4-settings.png"
"$orvelle" quit
wait_until 10 has_ended || fail "Orvelle did not quit"
