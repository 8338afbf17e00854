#!/usr/bin/env bash
# The history of the clipboard in the whole program: what a password manager
# marks is never asked for, nothing of what is copied is written down, what is
# restored outlives the program that it came from, and nothing is left behind.
. "$(dirname "$0")/proof_lib.sh"

canary=CANARY-4b1d77
cache=$XDG_RUNTIME_DIR/orvelle-clipboard
log=$ORVELLE_DESKTOP/log

own() { # TYPE, the content from the input: until end_owner
    xclip -quiet -selection clipboard -t "$1" <&0 > /dev/null 2>&1 &
    owner=$!
    sleep 0.3
}
end_owner() { kill "$owner" 2> /dev/null; wait "$owner" 2> /dev/null; }
look() { "$orvelle" menu > /dev/null || fail "the menu is not built"; }
pictures_kept() { [ "$(find "$cache" -type f 2> /dev/null | wc -l)" = "$1" ]; }
pasted_is() { [ "$(timeout 5 xclip -o -selection clipboard -t UTF8_STRING 2> /dev/null)" = "$1" ]; }

no_first_steps
alone defaults write ClipboardEnabled bool true || fail "the settings could not be stored"
start_ready

step "a text outlives its program"
own UTF8_STRING < <(printf '%s restored' $canary)
look; sleep 1
end_owner
pasted_is "" || fail "the text is still there"
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

step "nothing that was copied is written down"
files=$(grep -rlF "$canary" "$XDG_CONFIG_HOME" "$XDG_DATA_HOME" "$XDG_CACHE_HOME" "$XDG_STATE_HOME" "$log" 2> /dev/null)
[ -z "$files" ] || fail "the copied text is in $files"
! "$orvelle" log | grep -qF "$canary" || fail "the copied text is in the log"

quit_orvelle
[ ! -e "$cache" ] || fail "the cache is still there at the end"
echo "all steps done"
