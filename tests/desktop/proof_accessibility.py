#!/usr/bin/python3
"""proof_accessibility.py PROGRAM LANGUAGE [PART...]

Orvelle as people have it who hear their screen: everything is read, operated
and written over AT-SPI, and each window is searched for what they could not
use. Inside script/with-desktop; exits with 77 where there is no AT-SPI.
"""
import base64
import json
import os
import re
import subprocess
import sys
import time
import xml.etree.ElementTree as ElementTree
from pathlib import Path

try:
    from accessible import Atspi, Events, Failed, Node, Program, Role, State, Tray, key, outline, until
except (ImportError, ValueError) as missing:
    print(f"skipped: {missing} (script/install-packages test)")
    sys.exit(77)
from accessibility_audit import looked_at, unreached

root = Path(__file__).resolve().parents[2]
program, language = os.path.abspath(sys.argv[1]), sys.argv[2]
started = time.monotonic()
desktop = Path(os.environ["ORVELLE_DESKTOP"])
log = desktop / "log" / "orvelle"
opened = desktop / "opened"

FOCUSED = "object:state-changed:focused"
TREE = [
    {"name": "Zulu", "path": "http://zulu/", "type": "url"},
    {"name": "Depot", "path": "", "type": "group", "children": [
        {"name": "Tango", "path": "http://tango/", "type": "url"},
        {"name": "Sierra", "path": "http://sierra/", "type": "url"}]},
    {"name": "Vacant", "path": "", "type": "group", "children": []},
    {"name": "Reminder", "path": "quicknote://1", "type": "note", "noteContent": "x"},
]
SETTINGS = {
    "HasLaunchedBefore": ("bool", "true"), "TimerEnabled": ("bool", "true"), "ClipboardEnabled": ("bool", "true"),
    "SystemInfoDisplayMode": ("string", "discreet"), "WeatherLocationMode": ("string", "manual"),
    "CalendarEnabled": ("bool", "true"), "GlobalShortcutEnabled": ("bool", "false"),
}


def texts_of(name):
    tree = ElementTree.parse(root / "resources" / "i18n" / f"orvelle_{name}.ts")
    return {message.get("id"): message.findtext("translation") for message in tree.iter("message")}


texts = texts_of(language)
symbols = {line.split()[0] for line in (root / "resources" / "icons" / "symbols.txt").read_text().splitlines()
           if line and not line.startswith("#")}


def text(name, argument=""):
    """As it is read: without the mark of its key."""
    return re.sub("&(.)", r"\1", texts[name]).replace("%@", argument)


def foreign(said):
    """What is an English text of ours in a program of another language."""
    def pattern(value):
        parts = re.split(r"%@|%lld", re.sub("&(.)", r"\1", value).rstrip(":… "))
        return ".+".join(map(re.escape, parts)) + "[:… ]*" if any(len(part) > 2 for part in parts) else None
    ours = {pattern(value) for value in texts.values()}
    english = {pattern(value) for name, value in texts_of("en").items() if texts[name] != value} - ours - {None}
    anything = re.compile("|".join(english)) if english and language != "en" else None
    return sorted(each for each in said if anything and any(map(anything.fullmatch, [each, *re.split(": |, ", each)])))


def spoken(name):
    """What a label's control is called."""
    return text(name).rstrip(":…\u00a0\u202f ")


def orvelle(*arguments):
    done = subprocess.run([program, *arguments], capture_output=True, text=True, timeout=60)
    if done.returncode != 0:
        raise Failed(f"orvelle {' '.join(arguments)}: {done.stderr}")
    return done.stdout.strip()


def stored(name):
    """A setting as it is printed, empty without one."""
    return subprocess.run([program, "defaults", "read", name], capture_output=True, text=True, timeout=60).stdout.strip()


def step(what):
    print(f"{time.monotonic() - started:5.1f} s  {what}", flush=True)


def prepare():
    """A profile with links of every kind, and a handler that notes what is opened."""
    applications = Path(os.environ["XDG_DATA_HOME"]) / "applications"
    applications.mkdir(parents=True)
    handler = desktop / "handler"
    handler.write_text(f'#!/bin/sh\nprintf "%s\\n" "$1" >> "{opened}"\n')
    handler.chmod(0o755)
    (applications / "handler.desktop").write_text(
        f"[Desktop Entry]\nType=Application\nName=Handler\nExec={handler} %u\nMimeType=x-scheme-handler/http;\n")
    (Path(os.environ["XDG_CONFIG_HOME"]) / "mimeapps.list").write_text(
        "[Default Applications]\nx-scheme-handler/http=handler.desktop\n")
    orvelle("defaults", "write", "orvelle_savedLinks", "data", base64.b64encode(json.dumps(TREE).encode()).decode())
    for name, (kind, value) in SETTINGS.items():
        orvelle("defaults", "write", name, kind, value)


def outline_of_links():
    def said(items):
        return " ".join(item["name"] + (f"[{said(item.get('children', []))}]" if item["type"] == "group" else "")
                        for item in items)
    return said(json.loads(orvelle("links", "--json")))


class Proof:
    def __init__(self):
        prepare()
        self.tray = Tray()
        environment = dict(os.environ, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", LANGUAGE=language)
        self.process = subprocess.Popen([program], env=environment, stdout=log.open("w"), stderr=subprocess.STDOUT)
        self.app = Program("orvelle")
        self.events = Events()
        self.faults, self.said = [], set()

    def audit(self, window, what, keys="Tab"):
        until(lambda: window.has(State.ACTIVE), f"{window} is not active")
        seen, found = looked_at(window, symbols)
        self.said.update(said for each in seen.walk() for said in (each.name, each.description))
        if language == "en":  # the way is the same in all
            found += unreached(seen, self.events, keys)
        self.faults += [f"{what}: {fault}" for fault in found]

    def menu(self):
        return self.app.window(lambda w: w.role == Role.POPUP_MENU, "menu")

    def open_menu(self):
        self.events.clear()
        self.tray.click(20, 20)
        menu = self.menu()
        self.events.wait(FOCUSED, lambda node: node == menu, "the focus is not said to be in the open menu")
        return menu

    def menu_is_closed(self):
        until(lambda: not [w for w in self.app.windows() if w.role == Role.POPUP_MENU], "the menu stays open")

    def named(self, title):
        return self.app.window(lambda w: w.name == title, f"window “{title}”")

    def press(self, *keys):
        self.events.clear()
        key(*keys)

    def focus_moves_to(self, name):
        return self.events.wait(FOCUSED, lambda node: node.name == name,
                                lambda: f"the focus is not said to be on “{name}” but {[str(node) for kind, node in self.events.seen if kind.startswith(FOCUSED)]}")

    # The parts, each from a desktop without windows to one.

    def reads_the_menu(self):
        step("the menu: its rows, by arrows and by themselves")
        menu = self.open_menu()
        for name in ("Zulu", "Depot", "Vacant", "Reminder", text("menu.quickAdd"), text("menu.quickNote"),
                     text("menu.settings"), text("timer.title"), text("clipboard.title")):
            menu.find(None, name)
        work = menu.find(Role.MENU_ITEM, "Depot")
        if not work.has(State.EXPANDABLE) or work.has(State.EXPANDED):
            raise Failed(f"a group is not said to be one: {work.states}")
        self.audit_menu(menu)
        for arrow, name in (("Home", "Zulu"), ("Down", "Depot"), ("Down", "Vacant"), ("Down", "Reminder"),
                            ("End", text("menu.quickAdd")), ("Right", text("menu.quickNote"))):
            self.press(arrow)
            row = self.focus_moves_to(name)
            if not row.has(State.FOCUSED, State.SELECTED) or row.index != menu.children.index(row):
                raise Failed(f"{row} is current but says {row.states}")
        self.press("Home", "Down", "Right")
        child = self.focus_moves_to("Tango")
        if not work.has(State.EXPANDED) or child.parent.parent != work:
            raise Failed(f"the open group is not one: {work.states}, {child.parent.parent}")
        self.press("Left")
        self.focus_moves_to("Depot")
        self.press("Escape")
        self.menu_is_closed()

    def audit_menu(self, menu):
        seen, found = looked_at(menu, symbols)
        self.said.update(said for each in seen.walk() for said in (each.name, each.description))
        self.faults += [f"menu: {fault}" for fault in found]

    def chooses_by_action(self):
        step("a group opens and a link in it is chosen by their actions")
        menu = self.open_menu()
        group = menu.find(Role.MENU_ITEM, "Depot")
        group.do("Press")
        group.find(Role.MENU_ITEM, "Sierra").do("Press")
        self.menu_is_closed()
        until(lambda: opened.exists() and opened.read_text() == "http://sierra/\n", "the link was not opened")

    def operates_widgets(self):
        step("widgets: what is live is told, buttons work")
        menu = self.open_menu()
        timer = next(row for row in menu.children if row.name == text("timer.title"))
        next(timer.all(Role.PUSH_BUTTON)).do("Press")
        self.events.wait("object:property-change:accessible-description", lambda node: node == timer,
                         "the countdown is not told")
        if not re.search(r"\d:\d\d", timer.description):
            raise Failed(f"the running timer says “{timer.description}”")
        timer.find(Role.PUSH_BUTTON, text("timer.stop")).do("Press")
        until(lambda: not timer.description, "the timer does not stop")
        timer.find(Role.PUSH_BUTTON, text("timer.customButton")).do("Press")
        window = self.named(text("timer.customTitle"))
        self.menu_is_closed()
        self.audit(window, "custom timer")
        window.find(Role.SPIN_BUTTON, text("timer.unitMinutes")).set_value(7)
        window.find(Role.PUSH_BUTTON, text("timer.startButton")).do("Press")
        timer = self.open_menu().find(None, text("timer.title"))
        until(lambda: re.match("0?6:", timer.description), lambda: f"the timer of 7 minutes says {timer.description}")
        timer.find(Role.PUSH_BUTTON, text("timer.stop")).do("Press")
        self.press("Escape")
        self.menu_is_closed()

    def restores_a_copy(self):
        step("the clipboard: an earlier copy comes back")
        for copy in ("earlier copy", "later copy"):
            subprocess.run(["xclip", "-selection", "clipboard"], input=copy, text=True, check=True)
            self.open_menu().find(Role.PUSH_BUTTON, copy)
            self.press("Escape")
            self.menu_is_closed()
        self.open_menu().find(Role.PUSH_BUTTON, "earlier copy").do("Press")
        self.menu_is_closed()
        until(lambda: subprocess.run(["xclip", "-selection", "clipboard", "-o"], capture_output=True, text=True,
                                     timeout=20).stdout == "earlier copy", "the earlier copy does not come back")

    def open_settings(self, tab):
        orvelle("settings")
        window = self.named(text("settings.windowTitle"))
        until(lambda: window.has(State.ACTIVE), "the settings are not active")
        self.show_tab(window, tab)
        return window

    def show_tab(self, window, tab):
        page = window.find(Role.PAGE_TAB, text(f"settings.tab.{tab}"))
        page.do("Press")
        until(lambda: page.parent.name == page.name, f"{page} does not show")

    def close(self, window, keys="Escape"):
        until(lambda: window.has(State.ACTIVE), f"{window} is not active")
        key(keys)
        until(lambda: window not in self.app.windows(), f"{window} stays open")

    def reads_the_settings(self):
        step("the settings: every tab and every section")
        window = self.open_settings("general")
        for tab in ("general", "sync", "about"):
            self.show_tab(window, tab)
            self.audit(window, tab)
        self.show_tab(window, "widgets")
        order = window.find(None, text("settings.widgetOrder"))
        for number, item in enumerate(order.children):
            Atspi.Table.add_row_selection(order.raw, number)
            window.find(Role.LABEL, item.name)
            self.audit(window, item.name)
        self.close(window)

    def select(self, view, name):
        """In a list or tree: the item of that name."""
        item = view.find(None, name)
        row = Atspi.Table.get_row_at_index(view.raw, item.index)
        Atspi.Table.add_row_selection(view.raw, row)
        for other in Atspi.Table.get_selected_rows(view.raw):
            if other != row:
                Atspi.Table.remove_row_selection(view.raw, other)
        until(lambda: item.has(State.SELECTED), f"{item} cannot be selected")
        return item

    def sets_values(self):
        step("a value of each kind of control is set and stored")
        window = self.open_settings("general")
        window.find(Role.CHECK_BOX, text("settings.confirmBeforeQuit")).do("Toggle", "Press")
        until(lambda: stored("ConfirmBeforeQuit") == "false", "the box stores nothing")
        window.find(Role.RADIO_BUTTON, text("menulet.iconStar")).do("Toggle", "Press")
        until(lambda: stored("MenuletIcon") == "star", "the radio button stores nothing")
        self.show_tab(window, "widgets")
        order = window.find(None, text("settings.widgetOrder"))
        self.select(order, text("timer.title"))
        window.find(Role.SPIN_BUTTON, spoken("timer.presetsLabel") + " 2").set_value(42)
        until(lambda: "2520" in stored("TimerPresets"), "the number is not stored")
        window.find(Role.PUSH_BUTTON, text("settings.moveUp")).do()
        until(lambda: re.findall(r"\w+", stored("WidgetOrder"))[-2:-1] == ["timer"], "the order is not stored")
        self.select(order, text("weather.title"))
        window.find(Role.TEXT, spoken("weather.modeManual")).write("Rennes")
        window.find(Role.PUSH_BUTTON, text("weather.search")).do()
        until(lambda: stored("WeatherManualCity") == "Rennes", "the text is not stored")
        self.select(order, text("quicklaunch.title"))
        box = window.find_labelled(Role.COMBO_BOX, spoken("quicklaunch.style"))
        box.do("ShowMenu", "Press")
        self.press("End", "Return")
        until(lambda: stored("QuickLaunchDisplayStyle") == "encre", "the choice is not stored")
        self.close(window)

    def edits_links(self):
        step("the tree: selected, opened, renamed, moved, removed and taken back")
        window = self.open_settings("general")
        tree = window.find(None, text("settings.links"))
        if tree.role not in (Role.TREE, Role.TREE_TABLE):
            raise Failed(f"the links are {tree}")
        search = window.find(Role.TEXT, text("settings.search"))
        group = self.select(tree, "Depot")
        search.focus()
        self.press("Down")
        self.events.wait(FOCUSED, lambda node: node == tree or node.parent == tree, "Down does not lead to the tree")
        self.press("Right")
        until(lambda: group.has(State.EXPANDED), "the group does not open")
        self.select(tree, "Sierra")
        name = window.find(Role.TEXT, text("settings.column.name"))
        name.focus()
        until(lambda: name.has(State.FOCUSED), "the name does not take the focus")
        name.write("Oscar")
        search.focus()
        until(lambda: outline_of_links() == "Zulu Depot[Tango Oscar] Vacant[] Reminder", "the name is not stored")
        self.press("Down", "alt+Up")
        until(lambda: outline_of_links() == "Zulu Depot[Oscar Tango] Vacant[] Reminder", "the link does not move")
        window.find(Role.PUSH_BUTTON, text("settings.undo")).do()
        until(lambda: outline_of_links() == "Zulu Depot[Tango Oscar] Vacant[] Reminder", "the move is not taken back")
        self.close(window)

    def adds_quickly(self):
        step("quick add: an address, a group, and it is in the tree")
        orvelle("quick-add")
        panel = self.named(text("menu.quickAdd"))
        until(lambda: panel.has(State.ACTIVE), "quick add is not active")
        panel.find_labelled(Role.TEXT, spoken("quickAdd.address")).write("https://kilo.invalid/page")
        panel.find_labelled(Role.TEXT, spoken("quickAdd.name")).write("Kilo")
        self.audit(panel, "quick add")
        panel.find_labelled(Role.COMBO_BOX, spoken("quickAdd.selectFolder")).do("ShowMenu", "Press")
        self.press("Down", "Return")
        add = panel.find(Role.PUSH_BUTTON, text("quickAdd.add"))
        if not add.has(State.IS_DEFAULT):
            raise Failed("quick add has no default button")
        add.do()
        until(lambda: "Kilo]" in outline_of_links(), lambda: f"the link was not added: {outline_of_links()}")

    def writes_a_note(self):
        step("a note: its name and its text are written and stored")
        menu = self.open_menu()
        menu.find(Role.MENU_ITEM, "Reminder").do("Press")
        self.menu_is_closed()
        window = self.app.window(lambda w: "Reminder" in w.name, "note")
        until(lambda: window.has(State.ACTIVE), "the note is not active")
        self.audit(window, "note", "shift+Tab")
        window.find(None, text("note.text")).write("Buy bread")
        window.find(None, text("note.name")).write("Bakery")
        key("ctrl+w")
        until(lambda: "Bakery" in outline_of_links(), "the note's name is not stored")
        if "Buy bread" not in orvelle("links", "--json"):
            raise Failed("the note's text is not stored")

    def answers_an_alert(self):
        step("an alert has a name, a text and a default button")
        window = self.open_settings("about")
        window.find(Role.PUSH_BUTTON, text("debug.clearData")).do()
        alert = self.named(text("debug.clearTitle"))
        self.audit(alert, "alert")
        if not alert.find(Role.PUSH_BUTTON, text("sheet.cancel")).has(State.IS_DEFAULT):
            raise Failed("Enter does not mean the cautious button")
        if text("debug.clearMessage") not in alert.description:
            raise Failed(f"the alert says “{alert.description}”")
        self.close(alert)
        self.close(window)

    def shows_the_welcome(self):
        step("the welcome: a click's worth of sample")
        window = self.open_settings("about")
        window.find(Role.PUSH_BUTTON, text("welcome.show")).do()
        welcome = self.named(text("welcome.title"))
        self.audit(welcome, "welcome")
        welcome.find(Role.PUSH_BUTTON, text("welcome.start")).do()
        until(lambda: welcome not in self.app.windows(), "the welcome stays open")
        self.close(window)

    def imports_a_document(self):
        step("the import: the file by its name, the ways to take it in")
        document = desktop / "import.ovexport"
        orvelle("export", str(document))
        window = self.open_settings("sync")
        window.find(Role.PUSH_BUTTON, f"{spoken('sync.import')}: {text('sync.backup')}").do()
        files = self.app.window(lambda w: w.role in (Role.DIALOG, Role.FILE_CHOOSER), "file dialog")
        until(lambda: files.has(State.ACTIVE), "the file dialog is not active")
        files.find(Role.TEXT).write(str(document))
        key("Return")
        # Both may be called the same.
        until(lambda: files not in self.app.windows(), "the file dialog stays open")
        dialog = self.named(text("import.title"))
        self.audit(dialog, "import")
        dialog.find(Role.RADIO_BUTTON, text("import.replaceAll")).do("Toggle")
        until(lambda: dialog.find(Role.RADIO_BUTTON, text("import.replaceAll")).has(State.CHECKED), "no way is chosen")
        if not dialog.find(Role.PUSH_BUTTON, text("import.confirm")).has(State.IS_DEFAULT):
            raise Failed("the import has no default button")
        self.close(dialog)
        self.close(window)

    def previews_a_document(self):
        step("a document: the question, the preview of what it changes, the changes")
        document = desktop / "links.ovexport"
        orvelle("export", str(document))
        orvelle("add", "http://yankee/", "--name", "Yankee")
        before = outline_of_links()
        subprocess.run([program, str(document)], check=True, timeout=60)
        question = self.named(text("import.fileOpenTitle"))
        question.find(Role.PUSH_BUTTON, text("import.sync")).do()
        summary = self.named(text("sync.confirmTitle"))
        summary.find(Role.PUSH_BUTTON, text("sync.showChanges")).do()
        preview = self.named(text("sync.preview.title"))
        preview.find(None, "Yankee")
        self.audit(preview, "preview")
        self.close(preview)
        if outline_of_links() != before:
            raise Failed("what was only looked at has been done")


def main():
    proof = Proof()
    try:
        parts = [proof.reads_the_menu, proof.chooses_by_action, proof.operates_widgets, proof.reads_the_settings,
                 proof.sets_values, proof.edits_links, proof.adds_quickly, proof.writes_a_note,
                 proof.answers_an_alert, proof.shows_the_welcome, proof.imports_a_document, proof.previews_a_document, proof.restores_a_copy]
        for part in parts:
            if not sys.argv[3:] or part.__name__ in sys.argv[3:]:
                part()
        proof.faults += [f"not {language}: “{said}”" for said in foreign(proof.said)]
        if proof.faults:
            raise Failed("\n".join(proof.faults))
        orvelle("quit")
        proof.process.wait(30)
    except Failed as failure:
        print(f"FAILED: {failure}\n--- Orvelle's output\n{log.read_text()[-2000:]}", file=sys.stderr)
        proof.process.kill()
        sys.exit(1)
    print("all parts done")


main()
