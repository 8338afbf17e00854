#!/usr/bin/env python3
"""proof_bus.py PROGRAM

Compares everything that the running application offers on the session bus with
a list, so that nothing is offered by accident. Needs no display.
"""
import os
import subprocess
import sys
import tempfile
import time
import xml.etree.ElementTree as xml

STANDARD = {"org.freedesktop.DBus.Introspectable", "org.freedesktop.DBus.Peer", "org.freedesktop.DBus.Properties"}
# Object and interface: what can be called (with the types of its arguments), and what can be set.
ALLOWED = {
    "/org/orvelle/Orvelle org.freedesktop.Application": {"Activate(a{sv})", "Open(as,a{sv})",
                                                         "ActivateAction(s,av,a{sv})"},
    "/org/orvelle/Orvelle org.orvelle.Orvelle1": {"RunCommand(as,s)"},
    "/StatusNotifierItem org.kde.StatusNotifierItem": {"Activate(i,i)", "SecondaryActivate(i,i)", "ContextMenu(i,i)",
                                                       "Scroll(i,s)", "ProvideXdgActivationToken(s)"},
    "/MenuBar com.canonical.dbusmenu": {"GetLayout(i,i,as)", "GetGroupProperties(ai,as)", "GetProperty(i,s)",
                                        "Event(i,s,v,u)", "EventGroup(a(isvu))", "AboutToShow(i)",
                                        "AboutToShowGroup(ai)"},
}


def introspect(environment, owner, path):
    sent = subprocess.run(["dbus-send", "--session", "--print-reply=literal", f"--dest={owner}", path,
                           "org.freedesktop.DBus.Introspectable.Introspect"],
                          env=environment, capture_output=True, text=True, timeout=60)
    return xml.fromstring(sent.stdout[sent.stdout.index("<"):]) if sent.returncode == 0 else None


def offered(environment, owner, path="/"):
    """Object and interface, and what it has."""
    found = {}
    node = introspect(environment, owner, path)
    if node is None:
        return found
    for interface in node.findall("interface"):
        if interface.get("name") in STANDARD:
            continue
        methods = {f"{method.get('name')}("
                   + ",".join(each.get("type") for each in method.findall("arg") if each.get("direction") != "out") + ")"
                   for method in interface.findall("method")}
        writable = {f"{each.get('name')} can be set" for each in interface.findall("property")
                    if each.get("access") != "read"}
        found[f"{path} {interface.get('name')}"] = methods | writable
    for child in node.findall("node"):
        found |= offered(environment, owner, path.rstrip("/") + "/" + child.get("name"))
    return found


def owners(environment):
    """Everybody on the bus but the bus."""
    sent = subprocess.run(["dbus-send", "--session", "--print-reply=literal", "--dest=org.freedesktop.DBus", "/",
                           "org.freedesktop.DBus.ListNames"], env=environment, capture_output=True, text=True)
    return [word for word in sent.stdout.split() if word.startswith(":")]


def main():
    program = os.path.abspath(sys.argv[1])
    with tempfile.TemporaryDirectory() as home:
        environment = {"PATH": os.environ["PATH"], "HOME": home, "LANG": "C.UTF-8", "XDG_RUNTIME_DIR": home,
                       "QT_QPA_PLATFORM": "offscreen"}
        bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address=1"], env=environment,
                               stdout=subprocess.PIPE, text=True)
        environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()
        running = subprocess.Popen([program], env=environment, stderr=subprocess.DEVNULL)
        try:
            deadline = time.monotonic() + 60
            while subprocess.run([program, "toggle"], env=environment, capture_output=True).returncode != 0:
                if time.monotonic() > deadline:
                    sys.exit("Orvelle did not start")
            found = {}
            # The application may have more than one connection, and each its own objects.
            for owner in owners(environment):
                found |= offered(environment, owner)
        finally:
            running.terminate()
            running.wait(30)
            bus.terminate()
    extra = [f"{place}: {what}" for place, members in found.items() for what in members - ALLOWED.get(place, set())]
    missing = [place for place in list(ALLOWED)[:2] if place not in found]
    for place, members in sorted(found.items()):
        print(place, *sorted(members), sep="\n    ")
    for line in extra:
        print("not on the list:", line)
    for line in missing:
        print("not offered:", line)
    sys.exit(1 if extra or missing else 0)


main()
