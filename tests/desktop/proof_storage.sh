#!/usr/bin/env bash
# A full disk, a read-only folder, a damaged database and links that cannot be
# read: a message says so, nothing that was stored is lost, the program runs on.
# Mounts a small file system of its own where that is permitted, else ends
# with 77.
if [ -z "${ORVELLE_OWN_MOUNTS-}" ]; then
    export ORVELLE_OWN_MOUNTS=yes
    for namespaces in "--mount" "--user --map-root-user --mount"; do
        # shellcheck disable=SC2086
        unshare $namespaces mount -t tmpfs tmpfs "$XDG_CACHE_HOME" 2> /dev/null && exec unshare $namespaces "$0" "$@"
    done
    echo "SKIPPED: no file system may be mounted here"
    exit 77
fi
. "$(dirname "$0")/proof_lib.sh"

folder=$XDG_CONFIG_HOME/orvelle
filler=$folder/filler
names() { "$@" links --json | grep -o '"name":"[^"]*"' | cut -d '"' -f 4 | tr '\n' ' '; }
expect_names() { # WHO EXPECTED
    [ "$(names "$1")" = "$2" ] || fail "$1 has '$(names "$1")' instead of '$2'"
}
must_refuse() {
    "$@" > /dev/null 2> "$ORVELLE_DESKTOP/refusal" && fail "not refused: $*"
    [ -s "$ORVELLE_DESKTOP/refusal" ] || fail "refused without a word: $*"
}
add() { "$1" add "http://$2/" > /dev/null; }
fill() {
    dd if=/dev/zero of="$filler" bs=64k status=none 2> /dev/null
    dd if=/dev/zero of="$filler" bs=512 oflag=append conv=notrunc status=none 2> /dev/null
}

full_disk() {
    step "a full disk: a message, and later everything is saved"
    add "$orvelle" first || fail "the first link was not stored"
    fill
    must_refuse "$orvelle" add http://second/
    expect_names alone 'first '
    expect 10 "no message about the full disk" alert_is_there
    picture full-disk
    dismiss_alert
    expect 5 "the message stayed" no_alert
    # Stored or not: a checkpoint may have made room in the log by now.
    "$orvelle" add http://third/ > /dev/null 2>&1 || true
    no_alert || fail "a second message for the same full disk"
    expect_names "$orvelle" 'first second third '
    rm "$filler"
    add "$orvelle" fourth || fail "not stored after space returned"
    expect_names alone 'first second third fourth '
    expect_names "$orvelle" 'first second third fourth '
    quit_orvelle
}

read_only_folder() {
    step "a read-only folder: a message, the links are there, and later everything is saved"
    mount -o remount,ro "$folder" || fail "the folder cannot be made read-only"
    start_ready
    expect 10 "no message about the read-only folder" alert_is_there
    picture read-only
    dismiss_alert
    expect 5 "the message stayed" no_alert
    expect_names "$orvelle" 'first second third fourth '
    must_refuse "$orvelle" add http://fifth/
    must_refuse alone add http://nowhere/
    expect_names alone 'first second third fourth '
    mount -o remount,rw "$folder"
    add "$orvelle" sixth || fail "not stored after the folder was writable again"
    expect_names alone 'first second third fourth fifth sixth '
    quit_orvelle
    expect_names alone 'first second third fourth fifth sixth '
}

unreadable_links() {
    step "links that cannot be read: kept, told, and offered for another try"
    local broken
    broken=$(printf '[{"name": "kept"' | base64 --wrap=0)
    alone defaults write orvelle_savedLinks data "$broken"
    start_ready
    expect 10 "no message about the links" alert_is_there
    picture unreadable-links
    dismiss_alert
    local key
    key=$("$orvelle" defaults list | grep -o '^orvelle_savedLinks_[^[:space:]]*') || fail "the bytes were not kept"
    [ "$("$orvelle" defaults read "$key")" = "$broken" ] || fail "other bytes were kept"
    "$orvelle" settings
    expect 10 "no settings window" app_window 'ettings'
    picture unreadable-settings
    quit_orvelle
}

refused_removal() {
    step "no snapshot can be kept: the removal is refused with a message, each time"
    rm -rf "$XDG_DATA_HOME/orvelle"
    : > "$XDG_DATA_HOME/orvelle"
    start_ready
    "$orvelle" settings
    expect 10 "no settings window" app_window 'ettings'
    xdotool windowactivate --sync "$(app_window 'ettings')"
    eval "$(xdotool getwindowgeometry --shell "$(app_window 'ettings')")"
    settings_are_active() { [ "$(xdotool getactivewindow)" = "$(app_window 'ettings')" ]; }
    click $((X + 120)) $((Y + 110))
    local try
    for try in first second; do
        expect 5 "the settings are not active" settings_are_active
        xdotool key Home Delete
        expect 5 "no message about the refused removal ($try)" alert_is_there
        [ "$try" = second ] || picture refused
        dismiss_alert
        expect 5 "the message stayed" no_alert
    done
    expect_names "$orvelle" 'first second third fourth fifth sixth '
    rm "$XDG_DATA_HOME/orvelle"
    expect 5 "the settings are not active" settings_are_active
    xdotool key Home Delete
    removed() { [ "$(names alone)" = 'second third fourth fifth sixth ' ]; }
    expect 5 "nothing was removed" removed
    "$orvelle" undo > /dev/null || fail "the removal cannot be undone"
    expect_names alone 'first second third fourth fifth sixth '
    quit_orvelle
}

damaged_database() {
    step "a damaged database: moved aside whole, told, and the program starts"
    rm -f "$database"-*
    head -c 60000 /dev/urandom > "$database"
    local sum
    sum=$(sha256sum < "$database")
    start_ready
    expect 10 "no message about the damaged settings" alert_is_there
    picture damaged
    dismiss_alert
    local copy
    for copy in "$folder"/*; do
        [ "$(sha256sum < "$copy")" = "$sum" ] && break
        copy=
    done
    [ -n "$copy" ] || fail "the damaged file was not kept whole"
    add "$orvelle" anew || fail "the new settings take nothing"
    expect_names alone 'anew '
    quit_orvelle
}

mkdir -p "$folder"
mount -t tmpfs -o size=1m,mode=700 tmpfs "$folder" || fail "the file system could not be mounted"
no_first_steps
# A known tray, so that its absence is not what the messages are about.
start_ready
full_disk
read_only_folder
refused_removal
unreadable_links
damaged_database
echo "all steps done"
