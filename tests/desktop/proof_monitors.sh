#!/usr/bin/env bash
# Each menu stays on the monitor where it was asked for:  proof_monitors.sh PROGRAM
# inside script/with-desktop with a monitor to the left and one to the right
# whose edges do not line up.
. "$(dirname "$0")/proof_lib.sh"

# All open menus lie within the monitor WxH+X+Y.
menus_are_within() { # MONITOR
    local window width height left top
    IFS=x+ read -r width height left top <<< "$1"
    for window in $(menu_windows); do
        eval "$(xdotool getwindowgeometry --shell "$window")"
        [ "$X" -ge "$left" ] && [ $((X + WIDTH)) -le $((left + width)) ] &&
            [ "$Y" -ge "$top" ] && [ $((Y + HEIGHT)) -le $((top + height)) ] || return 1
    done
}
opens_within() { # MONITOR X Y
    step "menus asked for at $2,$3 stay on $1"
    xdotool mousemove "$2" "$3"
    "$orvelle" toggle || fail "orvelle toggle failed"
    expect 10 "no menu opened at $2,$3" menus_open 1
    xdotool key Home Right
    expect 10 "no submenu opened at $2,$3" menus_open 2
    menus_are_within "$1" || fail "a menu left the monitor $1"
    xdotool key Escape Escape
    expect 10 "the menus at $2,$3 stayed" menus_open 0
}

cat > "$ORVELLE_DESKTOP/tree.json" <<'JSON'
[{"name": "A group", "path": "", "type": "group", "children":
   [{"name": "A member with a name that makes the menu wide", "path": "http://inner.invalid/", "type": "url"}]},
 {"name": "Alpha", "path": "http://alpha.invalid/", "type": "url"}]
JSON
seed_tree "$ORVELLE_DESKTOP/tree.json" || fail "the tree could not be stored"
no_first_steps
start_ready
left=1280x800+0+200 right=1024x768+1280+0
opens_within "$left" 1270 400
opens_within "$left" 5 990
opens_within "$right" 1285 740
opens_within "$right" 2300 5
quit_orvelle
echo "all steps done"
