"""What is wrong with any window for somebody who does not see it."""
import re
import time

from gi.repository import GLib

from accessible import Atspi, Failed, Role, State, key

BUTTONS = {Role.PUSH_BUTTON, Role.TOGGLE_BUTTON, Role.CHECK_BOX, Role.RADIO_BUTTON}
NEED_ACTION = BUTTONS | {Role.MENU_ITEM, Role.CHECK_MENU_ITEM, Role.RADIO_MENU_ITEM, Role.COMBO_BOX, Role.PAGE_TAB}
WINDOWS = {Role.FRAME, Role.DIALOG, Role.WINDOW}
# One stop of Tab for all of what they hold; arrows lead from one to the next.
VIEWS = {Role.TREE, Role.TREE_TABLE, Role.TABLE, Role.LIST, Role.PAGE_TAB_LIST, Role.COMBO_BOX, Role.SPIN_BUTTON}


class Seen:
    """An object as it was at one moment, with all that shows below it."""

    def __init__(self, node, parent=None):
        self.node, self.parent = node, parent
        self.name, self.description = node.name.strip(), node.description
        self.role, self.states = node.role, node.states
        self.children = [seen for seen in (Seen(child, self) for child in node.children)
                         if State.SHOWING in seen.states]

    def __str__(self):
        return f"{self.role.value_nick} “{self.name}”" + (f" under {self.parent}" if not self.name else "")

    def walk(self):
        yield self
        for child in self.children:
            yield from child.walk()


def looked_at(window, symbols, attempts=20):
    """The window as it was at one moment, and its faults. What goes while it is
    looked at, such as a row that is made anew, has it looked at again."""
    for left in reversed(range(attempts)):
        try:
            seen = Seen(window)
            return seen, faults(seen, symbols)
        except GLib.Error:
            if left == 0:
                raise
            time.sleep(0.1)


def faults(window, symbols):
    """The faults of each object by itself; `symbols` are the names of icons."""
    found = [] if window.name else [f"{window} has no name"]
    for seen in window.walk():
        found += [f"{seen} {fault}" for fault in faults_of(seen, symbols)]
        names = [child.name for child in seen.children if child.role in BUTTONS]
        found += [f"{seen} has more than one “{name}”" for name in set(names) if names.count(name) > 1]
    return found


def faults_of(seen, symbols):
    node, role, name = seen.node, seen.role, seen.name
    if State.FOCUSABLE in seen.states and not name and not is_further_column(seen):
        if not any(label.name for label in node.labels):
            yield "takes the focus and has no name"
    if name in symbols and State.FOCUSABLE in seen.states:
        yield "has the name of an icon"
    if "&" in name:
        yield "shows the mark of its key"
    if re.search(r"</?[a-z]+[ >]|&[a-z]+;", name + seen.description):
        yield f"is read as markup: {seen.description}"
    if role == Role.COMBO_BOX and not node.labels:
        yield "is a box whose name is its value, without a label"
    if role in NEED_ACTION and State.ENABLED in seen.states and not node.actions:
        yield "has no action"
    area = node.area
    if area.width <= 0 or area.height <= 0:
        yield f"shows with the size {area.width} x {area.height}"


def is_further_column(seen):
    """A cell that may be empty, as the row's first one has the name."""
    return seen.role == Role.TABLE_CELL and Atspi.Table.get_column_at_index(seen.parent.node.raw, seen.node.index) > 0


def stops(seen):
    """What Tab has to reach: all that can be operated. A label that can be
    selected with the pointer is none of it."""
    if {State.FOCUSABLE, State.ENABLED} <= seen.states and seen.role not in WINDOWS | {Role.LABEL}:
        if seen.role != Role.RADIO_BUTTON or State.CHECKED in seen.states:
            yield seen
    if seen.role not in VIEWS:
        for child in seen.children:
            yield from stops(child)


def walk_by_tab(events, keys, most=120):
    """Presses Tab until the focus comes round; what it was on, in order."""
    order, steps = [], set()
    for _ in range(most):
        events.clear()
        key(keys)
        events.wait("object:state-changed:focused", lambda _: True,
                    lambda: f"{keys} leads nowhere from {order[-1] if order else 'the beginning'}")
        # A view is told first and then its current item.
        for node in [node for kind, node in events.seen if kind.startswith("object:state-changed:focused")]:
            step = (order[-1] if order else None, node)
            if step in steps:
                return order
            steps.add(step)
            order.append(node)
    raise Failed(f"{keys} never comes round: {', '.join(map(str, order))}")


def unreached(window, events, keys="Tab"):
    wanted = list(stops(window))
    if len(wanted) < 2:
        return [f"{stop} does not have the focus" for stop in wanted if State.FOCUSED not in stop.states]
    order = walk_by_tab(events, keys)
    reached = set(order)
    return [f"{keys} does not reach {stop}, only {', '.join(map(str, order))}" for stop in wanted
            if reached.isdisjoint(each.node for each in stop.walk())]
