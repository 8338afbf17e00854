# For scripts that drive Orvelle on a virtual desktop (inside script/with-desktop).
# They set `orvelle` to the program first. Sourced by bash, not run.

wait_until() { # SECONDS COMMAND...: polls the command until it succeeds
    local deadline=$((SECONDS + $1)); shift
    until "$@" > /dev/null 2>&1; do
        [ "$SECONDS" -lt "$deadline" ] || return 1
        sleep 0.05
    done
}

step() { echo "- $1"; }
expect() { # SECONDS WHAT COMMAND...: ends the script by its own `fail`
    local seconds=$1 what=$2; shift 2
    wait_until "$seconds" "$@" || fail "$what"
}

seed_tree() { # JSON-FILE: makes it the tree of this desktop's own profile
    "$orvelle" defaults write orvelle_savedLinks data "$(base64 --wrap=0 "$1")"
}

# Ends the script: says what failed and shows what can be seen of it.
give_up_with() { # MESSAGE PICTURE
    echo "FAILED: $1" >&2
    mkdir -p "$(dirname "$2")"
    shot "$2" && echo "the screen is in $2" >&2
    echo "--- windows" >&2; xwininfo -root -children >&2
    echo "--- Orvelle's output" >&2; tail -n 40 "$ORVELLE_DESKTOP/log/orvelle" >&2
    exit 1
}

shot() { import -silent -window root "$1"; }

# Sees to it that a picture is not taken while something is still being drawn.
settled_shot() { # FILE
    local previous='' current tries=40
    while [ $((tries -= 1)) -gt 0 ]; do
        shot "$1"
        current=$(convert "$1" rgb:- | sha256sum)
        [ "$current" != "$previous" ] || return 0
        previous=$current
        sleep 0.15
    done
}

# The place of the icon in the tray as "X Y" (its middle). An embedded icon is
# a window of its own; one drawn by the panel is what differs from a picture
# of the panel without it. The clock, right of the tray, ticks and is left out.
tray_icon() { # PICTURE-WITHOUT-ICON
    local window box now width height edge scale=${QT_SCALE_FACTOR:-1}
    scale=${scale%%.*}
    for window in $(xdotool search --onlyvisible --classname '^orvelle$' 2> /dev/null); do
        eval "$(xdotool getwindowgeometry --shell "$window")"
        if [ "$WIDTH" -le $((48 * scale)) ] && [ "$HEIGHT" -le $((48 * scale)) ]; then
            echo $((X + WIDTH / 2)) $((Y + HEIGHT / 2))
            return 0
        fi
    done
    now=$(mktemp --suffix=.png)
    shot "$now"
    read -r width height < <(identify -format '%w %h\n' "$now")
    for edge in 0 $((height - 40 * scale)); do
        box=$(convert "$1" "$now" -compose difference -composite -crop "$((width - 68 * scale))x$((40 * scale))+0+$edge" +repage \
            -colorspace Gray -threshold 4% -bordercolor black -border 1 -format '%@' info: 2> /dev/null)
        [[ $box =~ ^([0-9]+)x([0-9]+)\+([0-9]+)\+([0-9]+) ]] || continue
        [ "${BASH_REMATCH[1]}" -ge 6 ] && [ "${BASH_REMATCH[1]}" -le $((64 * scale)) ] || continue
        echo $((BASH_REMATCH[3] + BASH_REMATCH[1] / 2)) $((edge + BASH_REMATCH[4] + BASH_REMATCH[2] / 2))
        rm -f "$now"
        return 0
    done
    rm -f "$now"
    return 1
}

start_orvelle() { # [ARGUMENT...]: sets orvelle_pid
    "$orvelle" "$@" > "${ORVELLE_DESKTOP:-/tmp}/log/orvelle" 2>&1 < /dev/null &
    orvelle_pid=$!
}

# Starts it on a desktop that shows nothing else; sets x and y, where its icon is
# in the tray.
start_in_tray() { # SECONDS
    local before=$ORVELLE_DESKTOP/before.png
    shot "$before"
    start_orvelle
    wait_until "$1" tray_icon "$before" || fail "no icon appeared in the tray"
    read -r x y < <(tray_icon "$before")
}

is_running() { kill -0 "$orvelle_pid" 2> /dev/null; }
has_ended() { ! is_running; }

click() { # X Y [BUTTON]
    xdotool mousemove "$1" "$2" click "${3:-1}"
}

# Open menus and submenus: windows of ours that no window manager handles, but
# for the icon. One window id a line, in the order in which they were opened.
menu_windows() {
    local window
    for window in $(xdotool search --onlyvisible --classname '^orvelle$' 2> /dev/null); do
        xwininfo -id "$window" 2> /dev/null | awk -v id="$window" '
            /Width:/ {width = $2} /Override Redirect State: yes/ {free = 1}
            END {if (free && width > 60) print id}'
    done
}
menus_open() { # COUNT
    [ "$(menu_windows | wc -l)" -eq "$1" ]
}

# Windows with a frame, by a part of their title or any.
app_window() { # [TITLE-PATTERN]
    local window
    for window in $(xdotool search --onlyvisible --class '^orvelle$' 2> /dev/null); do
        xprop -id "$window" WM_STATE _NET_WM_NAME 2> /dev/null | grep -q 'window state: Normal' || continue
        xdotool getwindowname "$window" | grep -Eq -- "${1:-.}" && { echo "$window"; return 0; }
    done
    return 1
}
no_app_window() { ! app_window; }
