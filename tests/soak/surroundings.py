"""What is around the program in a long run: buses, panel, screens, services,
network and another machine, each of which can fail and come back."""
import http.server
import json
import os
import pathlib
import re
import subprocess
import threading
import time

POLL = 0.05
LONGEST = 30
BUS = "org.freedesktop.DBus"


def wait_until(condition, seconds=LONGEST):
    """How long it took, or None."""
    began = time.monotonic()
    while not condition():
        if time.monotonic() - began > seconds:
            return None
        time.sleep(POLL)
    return time.monotonic() - began


def run(*command, **more):
    """The output; None when it fails."""
    try:
        done = subprocess.run(command, capture_output=True, text=True, timeout=LONGEST, **more)
    except subprocess.TimeoutExpired:
        return None
    return done.stdout if done.returncode == 0 else None


def end(process):
    process.kill()
    process.wait()


class Hand:
    """A process that does as it is told, a line each."""

    def __init__(self, program, role):
        self.process = subprocess.Popen([program, role], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True,
                                        bufsize=1)

    def do(self, line):
        """The answer; empty when the hand is gone."""
        try:
            self.process.stdin.write(line + "\n")
            return self.process.stdout.readline().strip()
        except (BrokenPipeError, ValueError):
            return ""

    def end(self):
        end(self.process)


class SessionBus:
    """The one of with-desktop, and then those that come after it."""

    def __init__(self, desktop):
        # As in a login: its address says nothing of which bus it is.
        self.address = f"unix:path={desktop}/runtime/bus"
        self.socket = f"{desktop}/runtime/bus"
        os.environ["DBUS_SESSION_BUS_ADDRESS"] = self.address
        self.process = None

    def ask(self, service, path, method, *arguments):
        return run("dbus-send", "--session", "--print-reply", f"--dest={service}", path, method, *arguments)

    def has(self, name):
        return "boolean true" in (self.ask(BUS, "/", f"{BUS}.NameHasOwner", f"string:{name}") or "")

    def pid_of(self, name):
        answer = self.ask(BUS, "/", f"{BUS}.GetConnectionUnixProcessID", f"string:{name}")
        found = re.search(r"uint32 (\d+)", answer or "")
        return int(found[1]) if found else None

    def kill(self):
        pid = self.pid_of(BUS)
        os.kill(pid, 9)
        if self.process:
            self.process.wait()
        wait_until(lambda: not pathlib.Path(f"/proc/{pid}").exists() or "Z" in
                   pathlib.Path(f"/proc/{pid}/stat").read_text().split(")")[-1][:3])

    def start(self):
        pathlib.Path(self.socket).unlink(missing_ok=True)
        self.process = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--nopidfile",
                                         f"--address={self.address}", "--print-address=1"],
                                        stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        self.process.stdout.readline()


class Panel:
    """The panel of with-desktop, ended and started again."""

    watcher = "org.kde.StatusNotifierWatcher"

    def __init__(self, bus, log):
        self.bus, self.log, self.process = bus, log, None

    def kill(self):
        pid = self.bus.pid_of(self.watcher)
        if pid:
            os.kill(pid, 9)
        if self.process:
            self.process.wait()
        wait_until(lambda: not self.bus.has(self.watcher))

    def start(self):
        """Returns when there is a tray again."""
        with open(self.log, "a") as log:
            self.process = subprocess.Popen(["xfce4-panel", "--disable-wm-check"], stdout=log, stderr=log,
                                            stdin=subprocess.DEVNULL)
        wait_until(lambda: self.bus.has(self.watcher))

    def shows_icon(self):
        items = self.bus.ask(self.watcher, "/StatusNotifierWatcher", f"{BUS}.Properties.Get",
                             f"string:{self.watcher}", "string:RegisteredStatusNotifierItems")
        return (items or "").count('  string "') == 1


class Logind:
    """A system bus where the environment says that it is, with logind alone."""

    def __init__(self, hand):
        self.daemon = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address=1",
                                        f"--address={os.environ['DBUS_SYSTEM_BUS_ADDRESS']}"],
                                       stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        self.daemon.stdout.readline()
        self.hand, self.inhibited, self.answers = Hand(hand, "logind"), 0, []
        self.hand.process.stdout.readline()  # ready
        threading.Thread(target=self.listen, daemon=True).start()

    def listen(self):
        for line in self.hand.process.stdout:
            if line.strip() == "inhibited":
                self.inhibited += 1
            else:
                self.answers.append(line.strip())

    def say(self, command):
        before = len(self.answers)
        self.hand.process.stdin.write(command + "\n")
        wait_until(lambda: len(self.answers) > before)

    def end(self):
        self.hand.end()
        end(self.daemon)


class Calendars:
    """The distribution's calendar server, if it is there."""

    names = ("org.gnome.evolution.dataserver.Calendar8", "org.gnome.evolution.dataserver.Sources5")

    def __init__(self, bus):
        self.bus, self.calls, self.monitor = bus, 0, None

    def is_installed(self):
        return os.path.exists("/usr/libexec/evolution-calendar-factory")

    def listen(self):
        """Counts what the program asks of calendars from here on."""
        self.monitor = subprocess.Popen(
            ["dbus-monitor", "--session", "type='method_call',interface='org.gnome.evolution.dataserver.Calendar'"],
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        threading.Thread(target=self.count, args=(self.monitor,), daemon=True).start()

    def count(self, monitor):
        for line in monitor.stdout:
            self.calls += line.startswith("method call")

    def end_listening(self):
        if self.monitor:
            end(self.monitor)

    def kill(self):
        for name in self.names:
            pid = self.bus.pid_of(name)
            if pid:
                os.kill(pid, 9)
        wait_until(lambda: not any(self.bus.has(name) for name in self.names))

    def are_there(self):
        return all(self.bus.has(name) for name in self.names)


class Weather:
    """A city's weather from a server behind a network that goes and comes."""

    def __init__(self):
        self.city, self.forecasts = "", []
        outer = self

        class Answers(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                body = outer.answer(self.path)
                self.send_response(200)
                self.send_header("Content-Type", "application/json")
                self.send_header("Content-Length", str(len(body)))
                self.end_headers()
                self.wfile.write(body)

            def log_message(self, *_):
                pass

        self.server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Answers)
        self.host = f"http://127.0.0.1:{self.server.server_port}"
        threading.Thread(target=self.server.serve_forever, daemon=True).start()

    def answer(self, path):
        if path.startswith("/v1/search"):
            found = re.search(r"[?&]name=([^&]*)", path)
            number = int(re.sub(r"\D", "", found[1] if found else "") or 0)
            return json.dumps({"results": [{"name": f"City{number}", "latitude": 40 + number / 100,
                                            "longitude": 4.85}]}).encode()
        self.forecasts.append(path)
        return json.dumps({"current": {"temperature_2m": 20.5, "weather_code": 2, "is_day": 1},
                           "daily": {"temperature_2m_min": [11.4], "temperature_2m_max": [24]}}).encode()


class Network:
    """That of a namespace of its own, if the run has one."""

    def __init__(self):
        self.is_own = os.environ.get("ORVELLE_OWN_NETWORK") == "yes"
        if self.is_own:
            self.up()

    def up(self):
        subprocess.run(["ip", "link", "set", "lo", "up"], check=True)

    def down(self):
        subprocess.run(["ip", "link", "set", "lo", "down"], check=True)


class OtherMachine:
    """Another machine of the same user, which shares the folder."""

    def __init__(self, program, folder, shared):
        self.program, self.shared = program, shared
        names = ("HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR")
        self.environment = dict(os.environ, DBUS_SESSION_BUS_ADDRESS="disabled:")
        for name in names:
            path = pathlib.Path(folder, name)
            path.mkdir(parents=True, mode=0o700)
            self.environment[name] = str(path)
        self.command("sync", "configure", "--folder", str(shared), "--use-existing")

    def command(self, *arguments):
        return run(self.program, *arguments, env=self.environment)

    def add(self, address):
        """False when the others cannot know of it."""
        return self.command("add", address) is not None and self.command("sync", "now") is not None
