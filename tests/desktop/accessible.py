"""What a screen reader sees of a program, and does with it, over AT-SPI.

Nodes are asked anew each time (nothing is cached), waiting is for conditions.
"""
import subprocess
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, Gio, GLib  # noqa: E402

Role, State = Atspi.Role, Atspi.StateType

PATIENCE = 20  # seconds that a loaded machine may take for anything


class Failed(Exception):
    pass


def pump():
    context = GLib.MainContext.default()
    while context.iteration(False):
        pass


def until(condition, what, seconds=PATIENCE):
    """The first true value of `condition`; what is gone meanwhile is not there yet."""
    deadline = time.monotonic() + seconds
    while True:
        pump()
        try:
            result = condition()
            if result:
                return result
        except GLib.Error:
            pass
        if time.monotonic() > deadline:
            raise Failed(what() if callable(what) else what)
        time.sleep(0.01)


class Keyboard:
    """One program that presses keys, as starting one for each takes most of the time."""

    program = None

    @classmethod
    def press(cls, *names):
        if cls.program is None:
            cls.program = subprocess.Popen(["xdotool", "-"], stdin=subprocess.PIPE, text=True)
        cls.program.stdin.write(f"key --delay 5 {' '.join(names)}\n")
        cls.program.stdin.flush()


key = Keyboard.press


class Node:
    """One accessible object. Equal when it is the same object of the program."""

    def __init__(self, raw):
        self.raw = raw

    def __eq__(self, other):
        return isinstance(other, Node) and self.raw == other.raw

    def __hash__(self):
        return hash(self.raw)

    def __str__(self):
        try:
            return f"{self.raw.get_role_name()} “{self.name}”"
        except GLib.Error:
            return "something that is gone"

    @property
    def name(self):
        return self.raw.get_name() or ""

    @property
    def description(self):
        return self.raw.get_description() or ""

    @property
    def role(self):
        return self.raw.get_role()

    @property
    def states(self):
        return set(self.raw.get_state_set().get_states())

    def has(self, *states):
        return self.states.issuperset(states)

    @property
    def parent(self):
        raw = self.raw.get_parent()
        return Node(raw) if raw else None

    @property
    def children(self):
        return [Node(raw) for raw in map(self.raw.get_child_at_index, range(self.raw.get_child_count())) if raw]

    @property
    def index(self):
        return self.raw.get_index_in_parent()

    @property
    def text(self):
        return Atspi.Text.get_text(self.raw, 0, -1) if self.raw.get_text_iface() else None

    @property
    def value(self):
        return Atspi.Value.get_current_value(self.raw) if self.raw.get_value_iface() else None

    @property
    def area(self):
        return Atspi.Component.get_extents(self.raw, Atspi.CoordType.SCREEN)

    @property
    def actions(self):
        if not self.raw.get_action_iface():
            return []
        return [Atspi.Action.get_action_name(self.raw, i) for i in range(Atspi.Action.get_n_actions(self.raw))]

    @property
    def labels(self):
        """What is said to label this."""
        found = []
        for relation in self.raw.get_relation_set():
            if relation.get_relation_type() == Atspi.RelationType.LABELLED_BY:
                found += [Node(relation.get_target(i)) for i in range(relation.get_n_targets())]
        return found

    @property
    def label_names(self):
        return [each.name.rstrip(":\u00a0\u202f ") for each in (self, *self.labels)]

    def do(self, *wanted):
        """The first of the wanted actions that there is, or the first action at all."""
        names = self.actions
        chosen = next((name for name in wanted if name in names), None if wanted else next(iter(names), None))
        if chosen is None:
            raise Failed(f"{self} has no action {' or '.join(wanted)}, only {names}")
        Atspi.Action.do_action(self.raw, names.index(chosen))

    def write(self, text):
        if not self.raw.get_editable_text_iface():
            raise Failed(f"{self} cannot be written into")
        Atspi.EditableText.set_text_contents(self.raw, text)

    def set_value(self, value):
        Atspi.Value.set_current_value(self.raw, value)

    def select(self, child):
        Atspi.Selection.select_child(self.raw, child)

    def focus(self):
        Atspi.Component.grab_focus(self.raw)

    def walk(self, shown=True):
        """This and all below it, by default only what shows."""
        yield self
        for child in self.children:
            if not shown or child.has(State.SHOWING):
                yield from child.walk(shown)

    def all(self, role=None, name=None, shown=True):
        for node in self.walk(shown):
            if (role is None or node.role == role) and (name is None or name == node.name):
                yield node

    def find_labelled(self, role, label):
        """A control by what its label says, such as a box whose name is its value."""
        return until(lambda: next((node for node in self.all(role) if label in node.label_names), None),
                     lambda: f"no {role.value_nick} with the label “{label}” in {self}:\n{outline(self)}")

    def find(self, role=None, name=None):
        """Waits for one that shows."""
        return until(lambda: next(self.all(role, name), None),
                     lambda: f"no {role.value_nick if role else 'object'} “{name}” in {self}:\n{outline(self)}")


def outline(node, depth=0, limit=150):
    """For people: one object a line."""
    lines = []

    def add(each, level):
        if len(lines) >= limit:
            return
        states = " ".join(sorted(s.value_nick for s in each.states
                                 if s in (State.FOCUSED, State.FOCUSABLE, State.CHECKED, State.EXPANDED,
                                          State.SELECTED, State.EXPANDABLE)))
        lines.append(f"{'  ' * level}{each} {each.description!r} [{states}] {each.actions}")
        for child in each.children:
            if child.has(State.SHOWING):
                add(child, level + 1)

    add(node, depth)
    return "\n".join(lines)


class Events:
    """Notes what the program tells assistive technology."""

    KINDS = ("object:state-changed:focused", "object:property-change:accessible-name",
             "object:property-change:accessible-description", "object:children-changed",
             "object:text-changed", "window:activate")

    def __init__(self):
        self.seen = []
        self.listener = Atspi.EventListener.new(self.note)
        for kind in self.KINDS:
            self.listener.register(kind)

    def note(self, event, *_):
        if event.type.startswith("object:state-changed") and not event.detail1:
            return
        self.seen.append((event.type, Node(event.source)))

    def clear(self):
        pump()
        self.seen.clear()

    def wait(self, kind, matches, what):
        def heard():
            return next((node for seen, node in self.seen if seen.startswith(kind) and matches(node)), None)
        return until(heard, what)


class Program:
    """The one program on this desktop that has windows."""

    def __init__(self, name):
        Atspi.init()
        Atspi.set_timeout(PATIENCE * 1000, PATIENCE * 1000)
        self.desktop = Atspi.get_desktop(0)
        self.desktop.set_cache_mask(Atspi.Cache.NONE)
        self.root = until(lambda: self.registered(name), f"{name} is not on the accessibility bus")
        self.root.raw.set_cache_mask(Atspi.Cache.NONE)

    def registered(self, name):
        return next((each for each in Node(self.desktop).children if each.name == name), None)

    def windows(self):
        return [window for window in self.root.children if window.has(State.SHOWING)]

    def window(self, matches, what):
        return until(lambda: next((w for w in self.windows() if matches(w)), None),
                     lambda: f"no {what}; windows: {', '.join(map(str, self.root.children))}")


class Tray:
    """A tray without a picture: it knows the one icon and clicks on it."""

    XML = """<node><interface name="org.kde.StatusNotifierWatcher">
        <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
        <method name="RegisterStatusNotifierHost"><arg type="s" direction="in"/></method>
        <property name="RegisteredStatusNotifierItems" type="as" access="read"/>
        <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
        <property name="ProtocolVersion" type="i" access="read"/>
        <signal name="StatusNotifierHostRegistered"/></interface></node>"""
    VALUES = {"RegisteredStatusNotifierItems": GLib.Variant("as", []),
              "IsStatusNotifierHostRegistered": GLib.Variant("b", True), "ProtocolVersion": GLib.Variant("i", 0)}

    def __init__(self):
        self.bus, self.item = Gio.bus_get_sync(Gio.BusType.SESSION), None
        interface = Gio.DBusNodeInfo.new_for_xml(self.XML).interfaces[0]
        self.bus.register_object("/StatusNotifierWatcher", interface, self.called, lambda *call: self.VALUES[call[4]], None)
        Gio.bus_own_name_on_connection(self.bus, "org.kde.StatusNotifierWatcher", Gio.BusNameOwnerFlags.NONE, None, None)

    def called(self, _bus, sender, _path, _interface, method, arguments, call):
        if method == "RegisterStatusNotifierItem":
            said = arguments.unpack()[0]
            self.item = (sender, said) if said.startswith("/") else (said, "/StatusNotifierItem")
        call.return_value(None)

    def click(self, x, y):
        name, path = until(lambda: self.item, "no icon comes into the tray")
        self.bus.call(name, path, "org.kde.StatusNotifierItem", "Activate", GLib.Variant("(ii)", (x, y)), None,
                      Gio.DBusCallFlags.NONE, -1, None, None)
