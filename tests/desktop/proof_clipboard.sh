#!/usr/bin/env bash
# The history of the clipboard in the whole program: what a password manager
# marks is never asked for, nothing of what is copied is written down, what is
# restored outlives the program that it came from and this one, and nothing is
# left behind.
#   proof_clipboard.sh PROGRAM CLIPBOARD-PROGRAM
. "$(dirname "$0")/proof_lib.sh"
other=$2

canary=CANARY-4b1d77
secret=SECRET-9e2c51
cache=$XDG_RUNTIME_DIR/orvelle-clipboard
log=$ORVELLE_DESKTOP/log
bus=$ORVELLE_DESKTOP/bus-messages

own() { # TYPE, the content from the input: until end_owner
    xclip -quiet -selection clipboard -t "$1" <&0 > /dev/null 2>&1 &
    owner=$!
    sleep 0.3
}
end_owner() { kill "$owner" 2> /dev/null; wait "$owner" 2> /dev/null; }
look() { "$orvelle" menu > /dev/null || fail "the menu is not built"; }
pictures_kept() { [ "$(find "$cache" -type f 2> /dev/null | wc -l)" = "$1" ]; }
pasted_is() { [ "$(timeout 5 xclip -o -selection clipboard -t UTF8_STRING 2> /dev/null)" = "$1" ]; }
has_said() { grep -qxF "$2" "$ORVELLE_DESKTOP/$1"; }
program() { # NAME ARGUMENT...: what it prints is in the file NAME
    local name=$1; shift
    "$other" "$@" > "$ORVELLE_DESKTOP/$name" &
    program_pid=$!
    expect 5 "the other program does not start" has_said "$name" ready
}
# Whether the running program holds the text anywhere; 2 where nobody may look.
in_memory() { # TEXT
    python3 - "$orvelle_pid" "$1" << 'END'
import sys
pid, text = sys.argv[1], sys.argv[2]
forms = [text.encode(), text.encode("utf-16-le")]
try:
    memory = open(f"/proc/{pid}/mem", "rb", 0)
except OSError:
    sys.exit(2)
for line in open(f"/proc/{pid}/maps"):
    first, last = (int(each, 16) for each in line.split()[0].split("-"))
    if last - first > 1 << 32:  # what a sanitizer keeps for itself
        continue
    try:
        memory.seek(first)
        block = memory.read(last - first)
    except (OSError, ValueError, OverflowError):
        continue
    if any(form in block for form in forms):
        sys.exit(0)
sys.exit(1)
END
}
nothing_written() { # TEXT
    local files
    files=$(grep -rlF "$1" "$XDG_CONFIG_HOME" "$XDG_DATA_HOME" "$XDG_CACHE_HOME" "$XDG_STATE_HOME" \
        "$XDG_RUNTIME_DIR" "$log" "$bus" 2> /dev/null)
    [ -z "$files" ] || fail "the copied text is in $files"
    ! "$orvelle" log | grep -qF "$1" || fail "the copied text is in the log"
}

no_first_steps
alone defaults write ClipboardEnabled bool true || fail "the settings could not be stored"
dbus-monitor --session > "$bus" 2>&1 &
monitor_pid=$!
start_ready

step "a text outlives its program"
own UTF8_STRING < <(printf '%s restored' $canary)
look; sleep 1
end_owner
pasted_is "" || fail "the text is still there"
in_memory "$canary"
case $? in
    1) fail "the text that is in the history is not found in the memory, so nothing would be" ;;
    2) may_look=no ;;
    *) may_look=yes ;;
esac
"$orvelle" toggle
sleep 1
xdotool key Home
picture menu
xdotool key Return
expect 10 "the text is not back" pasted_is "$canary restored"

step "a picture is a private file"
own image/png < <(convert -size 64x64 xc:red png:-)
look
expect 10 "the picture is not kept" pictures_kept 1
[ "$(stat -c %a "$cache")" = 700 ] || fail "others may look into the cache"
end_owner

step "what is marked as a secret is never asked for"
program secret own UTF8_STRING "$secret" text/plain "$secret" STRING "$secret" x-kde-passwordManagerHint secret
for _ in 1 2; do
    look
    "$orvelle" toggle
    expect 10 "no menu opened" menus_open 1
    sleep 0.5
    xdotool key Escape
    expect 10 "the menu stayed open" menus_open 0
done
expect 5 "the kinds of the content were not looked at" has_said secret "asked TARGETS"
asked=$(grep '^asked' "$ORVELLE_DESKTOP/secret" | grep -vE '^asked (TARGETS|x-kde-passwordManagerHint)$')
[ -z "$asked" ] || fail "the secret was $asked"
[ $may_look = no ] || ! in_memory "$secret" || fail "the secret is in the program's memory"
kill "$program_pid"
wait "$program_pid" 2> /dev/null

step "the same content without the mark is read, so the mark it was"
program plain own UTF8_STRING "$secret"
look
expect 10 "what is not marked was not read" has_said plain "asked UTF8_STRING"
kill "$program_pid"
wait "$program_pid" 2> /dev/null

step "nothing that was copied is written down or told on the bus"
grep -q org.orvelle.Orvelle "$bus" || fail "the bus was not listened to"
nothing_written "$canary"
nothing_written "$secret"

step "the desktop's clipboard manager has it after the end"
program manager manager
manager_pid=$program_pid
"$orvelle" toggle
sleep 1
xdotool key Home Down Down Return
expect 10 "the text is not back" pasted_is "$canary restored"
quit_orvelle
expect 5 "nothing was handed over" grep -q '^saved [1-9]' "$ORVELLE_DESKTOP/manager"
pasted_is "$canary restored" || fail "what was restored has gone with Orvelle"
kill "$manager_pid" "$monitor_pid"
[ ! -e "$cache" ] || fail "the cache is still there at the end"
echo "all steps done"
