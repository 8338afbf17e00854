# For the proof_*.sh scripts, which try the whole program on a virtual desktop:
#   proof_X.sh PROGRAM   inside script/with-desktop. Sourced by bash, not run.
set -uo pipefail
cd "$(dirname "$0")/../.."
orvelle=$1
. script/lib/desktop.sh

database=$XDG_CONFIG_HOME/orvelle/defaults.sqlite
pictures=${ORVELLE_PICTURES:-build/screenshots}
proof=$(basename "$0" .sh)

fail() { give_up_with "$1" "$pictures/$proof-failed.png"; }
picture() { # NAME
    mkdir -p "$pictures"
    settled_shot "$pictures/$proof-$1.png"
}

alone() { DBUS_SESSION_BUS_ADDRESS=disabled: "$orvelle" "$@"; }
on_the_bus() {
    dbus-send --session --print-reply --dest=org.freedesktop.DBus / org.freedesktop.DBus.NameHasOwner \
        string:org.orvelle.Orvelle | grep -q 'boolean true'
}
off_the_bus() { ! on_the_bus; }
# Ready is who answers a command.
start_ready() { # [ARGUMENT...]
    start_orvelle "$@"
    expect 20 "Orvelle did not start" on_the_bus
    "$orvelle" links > /dev/null || fail "the running program does not answer"
}
quit_orvelle() {
    "$orvelle" quit || fail "orvelle quit failed"
    wait "$orvelle_pid" || fail "Orvelle ended with code $?"
}
no_first_steps() {
    alone defaults write HasLaunchedBefore bool true || fail "the settings could not be stored"
}
alert_is_there() { app_window '^Orvelle$'; }
dismiss_alert() {
    xdotool windowactivate --sync "$(app_window '^Orvelle$')" key Return
}
no_alert() { ! alert_is_there; }
