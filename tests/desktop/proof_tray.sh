#!/usr/bin/env bash
# Trays that come late, change, go and come back, and a desktop without any.
. "$(dirname "$0")/proof_lib.sh"

embedded_icon() {
    local window
    for window in $(xdotool search --onlyvisible --classname '^orvelle$' 2> /dev/null); do
        eval "$(xdotool getwindowgeometry --shell "$window")"
        [ "$WIDTH" -le 48 ] && return 0
    done
    return 1
}
no_embedded_icon() { ! embedded_icon; }
registered_items() {
    dbus-send --session --print-reply --dest=org.kde.StatusNotifierWatcher /StatusNotifierWatcher \
        org.freedesktop.DBus.Properties.Get string:org.kde.StatusNotifierWatcher \
        string:RegisteredStatusNotifierItems 2> /dev/null | grep -c '  string'
}
one_registered() { [ "$(registered_items)" = 1 ]; }
noted() { # LOG-LINE TIMES
    [ "$(grep -c "$1" "$ORVELLE_DESKTOP/log/orvelle")" -ge "$2" ]
}
panel_shows() { xdotool search --onlyvisible --class "$1"; }
start_panel() { # NAME COMMAND...
    local name=$1; shift
    "$@" > "$ORVELLE_DESKTOP/log/$name" 2>&1 < /dev/null &
    panel_pid=$!
    expect 20 "$name did not start" panel_shows "$name"
}
end_panel() { # PID SIGNAL
    kill "-$2" "$1"
    wait "$1" 2> /dev/null
}
write_panel_settings() {
    local folder=$XDG_CONFIG_HOME/xfce4/xfconf/xfce-perchannel-xml
    printf '%s\n' 'panel_items = TSC' 'panel_size = 100% 30' 'panel_position = bottom center horizontal' \
        > "$ORVELLE_DESKTOP/tint2rc"
    mkdir -p "$folder"
    cat > "$folder/xfce4-panel.xml" <<'XML'
<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="length" type="uint" value="100"/>
      <property name="size" type="uint" value="30"/>
      <property name="plugin-ids" type="array"><value type="int" value="1"/></property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="systray"/>
  </property>
</channel>
XML
}
tint2_starts() { start_panel tint2 tint2 -c "$ORVELLE_DESKTOP/tint2rc"; }
xfce_starts() { start_panel xfce4-panel xfce4-panel --disable-wm-check; }

write_panel_settings
no_first_steps
alone add http://one.invalid/ > /dev/null
start_ready

step "no tray at all: one message, which names the command"
expect 15 "no message about the missing tray" alert_is_there
picture no-tray
dismiss_alert
expect 5 "the message stayed" no_alert
"$orvelle" toggle && expect 10 "no menu without a tray" menus_open 1
"$orvelle" toggle && expect 10 "the menu stayed" menus_open 0

step "a panel with an embedding tray comes late"
tint2_starts
tint2_pid=$panel_pid
expect 15 "no icon in the late panel" embedded_icon
picture late-tint2

step "it is killed and comes back"
end_panel "$tint2_pid" KILL
expect 10 "an icon without a panel" no_embedded_icon
tint2_starts
tint2_pid=$panel_pid
expect 15 "the icon did not come back" embedded_icon

step "a panel with a notifier tray comes beside it: the icon moves there"
xfce_starts
expect 20 "not registered with the late watcher" one_registered
expect 10 "the icon stayed in the old tray too" no_embedded_icon
picture moved-to-xfce

step "that panel is killed and comes back"
end_panel "$panel_pid" KILL
expect 10 "the icon was not missed" noted 'the tray host is gone' 1
xfce_starts
expect 20 "not registered again" one_registered
no_embedded_icon || fail "the icon is in both trays"

step "all trays go: no second message"
end_panel "$tint2_pid" TERM
end_panel "$panel_pid" KILL
expect 15 "the loss of every tray went unnoticed" noted 'the desktop has no tray' 2
noted 'No tray found' 2 && fail "a second message about the missing tray"
no_alert || fail "a second message about the missing tray"
quit_orvelle
echo "all steps done"
