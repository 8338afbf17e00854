# The manual's pictures, on a virtual desktop: PROGRAM TREE FOLDER
set -euo pipefail
orvelle=$1 tree=$2 folder=$3
. script/lib/desktop.sh

fail() {
    echo "manual: $1" >&2
    cat "$ORVELLE_DESKTOP/log/orvelle" >&2 || true
    exit 1
}

# Windows with their frames and a little of the ground around them.
picture() { # NAME WINDOW...
    local window left=99999 top=99999 right=0 bottom=0 x y width height before after above below
    for window in "${@:2}"; do
        read -r x y width height < <(xwininfo -id "$window" | awk '
            /Absolute upper-left X/ {x = $NF} /Absolute upper-left Y/ {y = $NF}
            /^  Width:/ {w = $NF} /^  Height:/ {print x, y, w, $NF}')
        before=0 after=0 above=0 below=0
        IFS=', ' read -r before after above below < <(xprop -id "$window" _NET_FRAME_EXTENTS | sed -n 's/.*= //p') || true
        [ $((x - before)) -ge "$left" ] || left=$((x - before))
        [ $((y - above)) -ge "$top" ] || top=$((y - above))
        [ $((x + width + after)) -le "$right" ] || right=$((x + width + after))
        [ $((y + height + below)) -le "$bottom" ] || bottom=$((y + height + below))
    done
    settled_shot "$ORVELLE_DESKTOP/screen.png"
    convert "$ORVELLE_DESKTOP/screen.png" -crop "$((right - left + 24))x$((bottom - top + 24))+$((left - 12))+$((top - 12))" \
        +repage -strip -define png:exclude-chunks=date,time "$folder/$1.png"
}
window_picture() { # NAME TITLE-PATTERN
    wait_until 20 app_window "$2" || fail "no window for $1"
    picture "$1" "$(app_window "$2")"
}
gone() { ! app_window "$1"; }
close_window() { # TITLE-PATTERN
    xdotool key Escape
    wait_until 10 gone "$1" || { xdotool windowclose "$(app_window "$1")"; wait_until 10 gone "$1"; } || fail "$1 stays open"
}

welcome='Welcome|Bienvenue' settings='Settings|Réglages'
mkdir -p "$folder"
xsetroot -solid '#dfe6ec' 2> /dev/null || true
seed_tree "$tree"
for setting in 'TimerEnabled bool true' 'ClipboardEnabled bool true' 'SystemInfoDisplayMode string discreet'; do
    "$orvelle" defaults write $setting
done
start_in_tray 40

click "$x" "$y"
wait_until 20 menus_open 1 || fail "no menu opened"
xdotool key Down Down Down Right
wait_until 10 menus_open 2 || fail "no group opened"
picture menu $(menu_windows)
"$orvelle" toggle
wait_until 10 menus_open 0 || fail "the menu stays open"

"$orvelle" settings
window_picture welcome "$welcome"
close_window "$welcome"
window_picture general "$settings"
xdotool key ctrl+Next
window_picture widgets "$settings"
xdotool key ctrl+Next
window_picture sync "$settings"
close_window "$settings"

"$orvelle" quick-add https://www.example.org/
wait_until 20 app_window || fail "quick add did not open"
picture quickadd "$(app_window)"
close_window '.'

note=$(grep -B3 '"type": *"note"' "$tree" | sed -n 's/.*"name": *"\(.*\)".*/\1/p' | tail -1)
id=$("$orvelle" links | grep -F "$note" | awk '{print $1; exit}')
"$orvelle" open "$id"
wait_until 20 app_window || fail "the note did not open"
picture note "$(app_window)"
"$orvelle" quit
wait_until 20 has_ended || fail "Orvelle did not quit"
