#!/usr/bin/env python3
"""real.py --orvelle PROGRAM --hand PROGRAM --minutes N --openings N --out FILE [--trial]

The real program on a virtual desktop (inside script/with-desktop with the
xfce4-panel and ORVELLE_OWN_NETWORK=yes in a network of its own) for some time,
while everything around it fails and comes back. Writes the figures to FILE.
"""
import argparse
import os
import pathlib
import pty
import random
import re
import shutil
import subprocess
import sys
import tempfile
import threading
import time

import figures
from surroundings import (LONGEST, Calendars, Hand, Logind, Network, OtherMachine, Panel, SessionBus, Weather, end, run,
                          wait_until)

BACK = 5  # seconds that a service may take to be back
COPIES_A_MINUTE = 1000
# Machines that sync seldom hold a change back that removes too much of the tree.
FIRST_LINKS, LINKS_KEPT = 120, 20


class Program:
    """The running Orvelle with what it costs and says."""

    def __init__(self, path, log):
        self.path, self.lines, self.log_count = path, figures.RepeatedLines(), 0
        ours, theirs = pty.openpty()  # with a terminal it writes its log there, not into the journal
        self.process = subprocess.Popen([path], stdin=subprocess.DEVNULL, stdout=theirs, stderr=theirs)
        os.close(theirs)
        threading.Thread(target=self.listen, args=(ours, log), daemon=True).start()

    def listen(self, source, log):
        with os.fdopen(source, "rb", 0) as output, open(log, "w", encoding="utf-8") as copy:
            rest = b""
            while True:
                try:
                    rest += os.read(output.fileno(), 65536)
                except OSError:
                    return
                *lines, rest = rest.split(b"\n")
                for line in lines:
                    text, moment = line.decode(errors="replace").strip(), time.monotonic()
                    if not text:
                        continue
                    self.lines.add(text, moment)
                    self.log_count += 1
                    print(f"{moment:.2f} {text}", file=copy, flush=True)

    def command(self, *arguments):
        return run(self.path, *arguments)

    def is_running(self):
        return self.process.poll() is None

    def cost(self):
        """Memory in MiB, open files and threads."""
        folder = pathlib.Path(f"/proc/{self.process.pid}")
        rollup = dict(re.findall(r"^(\w+): +(\d+) kB", (folder / "smaps_rollup").read_text(), re.MULTILINE))
        mebibytes = {name: int(rollup[name]) / 1024 for name in ("Rss", "Pss_Anon")}
        return {**mebibytes, "files": len(os.listdir(folder / "fd")), "threads": len(os.listdir(folder / "task"))}


class Soak:
    def __init__(self, options, folder):
        self.options, self.folder = options, folder
        desktop = os.environ["ORVELLE_DESKTOP"]
        self.bus = SessionBus(desktop)
        self.panel = Panel(self.bus, f"{desktop}/log/panel")
        self.logind = Logind(options.hand)
        self.calendars, self.weather, self.network = Calendars(self.bus), Weather(), Network()
        self.shared = folder / "shared"
        self.shared.mkdir()
        self.stop, self.measured, self.calm = threading.Event(), threading.Event(), threading.Lock()
        self.openings, self.copies, self.images, self.edits = 0, 0, 0, 0
        self.failures, self.back, self.samples, self.times = [], {}, [], []
        self.names, self.city, self.position = [], 1, None
        self.program, self.other, self.hand = None, None, None

    # What is set up before and looked at afterwards.

    def prepare(self):
        run("import", "-silent", "-window", "root", str(self.folder / "before.png"))
        settings = {"HasLaunchedBefore": ("bool", "true"), "ClipboardEnabled": ("bool", "true"),
                    "CalendarEnabled": ("bool", "true"), "TimerEnabled": ("bool", "true"),
                    "SystemInfoDisplayMode": ("string", "terminal"), "NetworkDisplayMode": ("string", "graph"),
                    "WeatherLocationMode": ("string", "manual"), "WeatherManualCity": ("string", "City1"),
                    "WeatherServiceHost": ("string", self.weather.host),
                    "WeatherGeocoderHost": ("string", self.weather.host)}
        for key, (kind, value) in settings.items():
            self.must("defaults", "write", key, kind, value)
        for number in range(FIRST_LINKS):
            self.must("add", f"http://first-{number}.invalid/")
        if self.calendars.is_installed():
            self.calendars.listen()
        self.program = Program(self.options.orvelle, self.options.out.with_suffix(".log"))
        self.expect("the program to start", lambda: self.bus.has("org.orvelle.Orvelle"))
        self.expect("the icon in the panel", self.panel.shows_icon)
        self.must("sync", "configure", "--folder", str(self.shared), "--create-new")
        self.other = OtherMachine(self.options.orvelle, self.folder / "other", self.shared)

    def must(self, *arguments):
        output = run(self.options.orvelle, *arguments)
        if output is None:
            self.failures.append(f"orvelle {' '.join(arguments)} failed")
        return output

    def expect(self, what, condition, seconds=30):
        if wait_until(condition, seconds) is None:
            sys.exit(f"soak: waited in vain for {what}")

    def came_back(self, service, condition):
        """Notes how long it took from now."""
        took = wait_until(condition)
        self.back.setdefault(service, []).append(took)
        print(f"  {service}: back after {'-' if took is None else f'{took:.2f} s'}", flush=True)

    def opens_again(self):
        before = self.openings
        return lambda: self.openings > before + 1

    # What goes on all the time.

    def open_menus(self):
        pause = 60 * self.options.minutes / self.options.openings
        began, asked = time.monotonic(), 0
        while not self.stop.is_set():
            asked += 1
            self.stop.wait(max(0, began + asked * pause - time.monotonic()))
            with self.calm:
                self.hand = self.hand or Hand(self.options.hand, "menu")
                answer = self.click() if asked % 20 == 0 else self.hand.do("toggle 1")
                if not answer.startswith("failed") and answer:
                    answer = self.hand.do("toggle 0")
                if answer and not answer.startswith("failed"):
                    self.openings += 1
                    continue
                self.failures.append(f"the menu at {time.monotonic():.0f}: {answer or 'nobody answers'}")
                run("xdotool", "key", "Escape")
                self.drop_hand()
        self.drop_hand()

    def drop_hand(self):
        if self.hand:
            self.hand.end()
        self.hand = None

    def click(self):
        """As with the mouse, where the icon is."""
        if not self.position:
            return self.hand.do("toggle 1")
        run("xdotool", "mousemove", *self.position, "click", "1")
        return self.hand.do("await 1")

    def find_icon(self):
        with self.calm:
            run("xdotool", "mousemove", "640", "300")
            found = run("bash", "-c", ". script/lib/desktop.sh; tray_icon \"$1\"", "_", str(self.folder / "before.png"))
        self.position = found.split() if found else None

    def copy_texts(self):
        hand, began = Hand(self.options.hand, "clipboard"), time.monotonic()
        while not self.stop.is_set():
            self.copies += hand.do(f"text copy number {self.copies} {'x' * random.randrange(2000)}") == "taken"
            self.stop.wait(max(0, began + self.copies * 60 / COPIES_A_MINUTE - time.monotonic()))
        hand.end()

    def edit(self):
        name = None
        while not self.stop.wait(5):
            with self.calm:
                self.edits += 1
                if name and self.edits % 5:
                    color = ("red", "blue", "green", "orange")[self.edits % 4]
                    self.must("update", self.id_of(name), "--color", color)
                    continue
                name = f"edit-{self.edits}.invalid"
                self.must("add", f"http://{name}/")
                self.names.append(name)
                if len(self.names) > LINKS_KEPT:
                    self.must("remove", self.id_of(self.names.pop(0)))

    def id_of(self, name):
        found = re.search(rf"([0-9A-Fa-f-]{{36}})[^\n]*{re.escape(name)}", self.program.command("links") or "")
        return found[1] if found else name

    def measure(self):
        pause = min(20, 60 * self.options.minutes / 40)
        while not self.measured.wait(pause):
            try:
                self.samples.append(self.program.cost())
                self.times.append(time.monotonic())
            except OSError:
                return

    # What happens now and then. Each is an event of its own in the schedule.

    def tray_restarts(self):
        with self.calm:
            position, self.position = self.position, None  # there is nothing to click on
        self.panel.kill()
        time.sleep(1)
        self.panel.start()
        self.came_back("icon in a panel that was restarted", self.panel.shows_icon)
        time.sleep(1)  # until it is drawn
        self.position = position

    def screens_change(self):
        run("xrandr", "--setmonitor", "left", "640/169x800/211+0+0", "screen")
        run("xrandr", "--setmonitor", "right", "640/169x800/211+640+0", "none")
        self.came_back("menu after a screen came", self.opens_again())
        run("xrandr", "--delmonitor", "right")
        run("xrandr", "--delmonitor", "left")
        self.came_back("menu after a screen went", self.opens_again())

    def machine_sleeps(self):
        self.logind.say("lock")
        self.logind.say("sleep")
        self.program.process.send_signal(19)  # nobody runs meanwhile
        time.sleep(3)
        self.program.process.send_signal(18)
        self.logind.say("wake")
        self.logind.say("unlock")
        self.came_back("menu after a suspend", self.opens_again())

    def logind_restarts(self):
        self.logind.say("leave")
        time.sleep(1)
        before = self.logind.inhibited
        self.logind.say("return")
        self.came_back("delay of the shutdown after logind restarted", lambda: self.logind.inhibited > before)

    def calendars_restart(self):
        self.calendars.kill()
        wait_until(self.calendars.are_there)
        before = self.calendars.calls
        self.came_back("calendars after their server restarted", lambda: self.calendars.calls > before)

    def network_fails(self):
        self.city += 1
        self.network.down()
        self.must("defaults", "write", "WeatherManualCity", "string", f"City{self.city}")
        time.sleep(3)
        self.network.up()
        place = f"latitude={40 + self.city / 100:g}"
        self.came_back("weather after the network came back",
                       lambda: any(place in each for each in list(self.weather.forecasts)))

    def session_bus_restarts(self):
        with self.calm:
            self.calendars.end_listening()
            self.drop_hand()  # it is connected to this bus
            self.position = None
            self.bus.kill()
            time.sleep(2)
            self.bus.start()
            self.came_back("commands on a restarted session bus", lambda: self.bus.has("org.orvelle.Orvelle"))
            self.program.lines.said.clear()  # what it says as it starts again is not repeated
        if self.calendars.is_installed():
            self.calendars.listen()
        self.panel.kill()
        self.panel.start()
        self.came_back("icon in the panel of a restarted session bus", self.panel.shows_icon)

    def image_is_copied(self):
        mebibytes = 64 if self.images % 2 else 40
        path = self.folder / "image.ppm"
        side = int((mebibytes * (1 << 20) / 3) ** 0.5)
        path.write_bytes(b"P6 %d %d 255\n" % (side, side) + os.urandom(side * side * 3))
        owner = subprocess.Popen(["xclip", "-quiet", "-selection", "clipboard", "-t", "image/x-portable-pixmap", "-i",
                                  str(path)], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        time.sleep(3)
        self.images += 1
        end(owner)
        path.unlink()

    def other_machine_edits(self):
        name = f"other-{int(time.monotonic())}.invalid"
        if not self.other.add(f"http://{name}/"):
            self.failures.append("the other machine could not synchronise")
        self.came_back("link of another machine", lambda: name in (self.program.command("links") or ""))

    def folder_goes_away(self):
        away = self.shared.with_name("away")
        self.shared.rename(away)
        time.sleep(3)
        away.rename(self.shared)
        self.came_back("synchronisation after its folder came back",
                       lambda: '"failure"' not in (self.program.command("sync", "status", "--json") or '"failure"'))

    def events(self):
        chosen = [self.tray_restarts, self.screens_change, self.machine_sleeps, self.image_is_copied,
                  self.other_machine_edits, self.logind_restarts, self.folder_goes_away]
        if self.calendars.is_installed():
            chosen.append(self.calendars_restart)
        if self.network.is_own:
            chosen.append(self.network_fails)
        return chosen

    # The whole.

    def go(self):
        self.prepare()
        self.find_icon()
        workers = [threading.Thread(target=work, daemon=True)
                   for work in (self.open_menus, self.copy_texts, self.edit, self.measure)]
        for each in workers:
            each.start()
        events, whole = self.events(), 60 * self.options.minutes
        rounds = max(1, int(self.options.minutes // 6))
        pause, began = whole / (rounds * len(events)), time.monotonic()
        for number in range(rounds * len(events)):
            time.sleep(max(0, began + number * pause - time.monotonic()))
            if not self.program.is_running():
                break
            what = events[number % len(events)]
            print(f"{time.monotonic() - began:6.0f} s: {what.__name__.replace('_', ' ')}", flush=True)
            what()
        time.sleep(max(0, began + whole - time.monotonic()))
        self.measured.set()
        # Last, as the program may begin anew with a new bus.
        self.session_bus_restarts()
        self.came_back("menu on a restarted session bus", self.opens_again())
        self.stop.set()
        for each in workers:
            each.join(30)

    def conclude(self):
        table, options = figures.Table("real"), self.options
        ran = self.program.is_running()
        table.add("the program still runs", int(ran), "", "1", ran)
        if not options.trial:
            self.conclude_long(table)
        table.at_least("menu openings", self.openings, 10 if options.trial else options.openings * 0.99)
        table.at_least("copies", self.copies, 10 if options.trial else COPIES_A_MINUTE * options.minutes * 0.99)
        table.at_least("large images", self.images, 1)
        table.at_most("failures", len(self.failures), 0)
        links = self.program.command("links") or ""
        table.at_most("edits that were lost", sum(name not in links for name in self.names), 0)
        table.at_most("log lines repeated more than once a minute", len(self.program.lines.repeated), 0)
        for service, times in sorted(self.back.items()):
            missing = sum(took is None for took in times)
            table.at_most(f"{service} ({len(times)}x)", None if missing else max(times), LONGEST if options.trial else BACK,
                          "s")
        table.notes += [f"log: {count}x too soon: {line}" for line, count in self.program.lines.repeated.items()]
        table.notes += [f"failure: {each}" for each in self.failures[:40]]
        table.notes.append(f"{self.edits} edits, {self.program.log_count} log lines, load {os.getloadavg()[1]:.1f}")
        table.write(options.out)

    def conclude_long(self, table):
        # Not Pss: it grows when another program ends that used the same libraries.
        for what in ("Pss_Anon", "Rss"):
            table.flat(f"memory ({what})", [each[what] for each in self.samples], 0.03, "MiB")
        table.flat("open files", [each["files"] for each in self.samples], 0, "")
        table.flat("threads", [each["threads"] for each in self.samples], 0, "")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--orvelle", required=True)
    parser.add_argument("--hand", required=True)
    parser.add_argument("--minutes", type=float, default=60)
    parser.add_argument("--openings", type=int)
    parser.add_argument("--trial", action="store_true")
    parser.add_argument("--out", type=pathlib.Path, required=True)
    options = parser.parse_args()
    options.openings = options.openings or max(1, int(20000 * options.minutes / 60))
    folder = pathlib.Path(tempfile.mkdtemp(prefix="soak", dir=os.environ["ORVELLE_DESKTOP"]))
    soak = Soak(options, folder)
    try:
        soak.go()
        soak.conclude()
        if soak.program.is_running():
            soak.must("quit")
    finally:
        if soak.program and soak.program.is_running():
            end(soak.program.process)
        soak.logind.end()
        shutil.rmtree(folder, ignore_errors=True)


main()
