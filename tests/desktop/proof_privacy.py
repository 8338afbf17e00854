#!/usr/bin/env python3
"""proof_privacy.py PROGRAM [--day]

Runs Orvelle in a network of its own, in which every address leads back to this
test, and lists whom it calls: nobody from a fresh profile, and only the two
services that have a switch once they have something to ask. With --day each of
these profiles is left running for 24 hours, on a clock that libfaketime puts
forward by half an hour again and again, with the menu opened each time. In
between it goes as fast as any, so that requests have the time that they need.
Exits with 77 where such a network may not be made, or there is no such clock.
"""
import glob
import json
import os
import shutil
import socket
import struct
import subprocess
import sys
import tempfile
import threading
import time

# Start-up has jobs after one, three and five seconds.
QUIET_SECONDS = 7
ETH_P_ALL = 3
DAY_SECONDS = 24 * 3600
EPOCH = 978307200  # stored dates count from 2001
LEAP_SECONDS = 1800
PAUSE_SECONDS = 1


class Network:
    """Names get an address each; whatever is sent to one is noted."""

    def __init__(self):
        self.names, self.calls, self.openings, self.lock = {}, set(), 0, threading.Lock()
        for command in (["link", "set", "lo", "up"], ["route", "add", "local", "default", "dev", "lo"],
                        ["-6", "route", "add", "local", "default", "dev", "lo"]):
            # A machine without IPv6 has nothing to be called by it.
            subprocess.run(["ip", *command], check="-6" not in command, stderr=subprocess.DEVNULL)
        self.tap = socket.socket(socket.AF_PACKET, socket.SOCK_DGRAM, socket.htons(ETH_P_ALL))
        self.resolver = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self.resolver.bind(("127.0.0.1", 53))
        for work in (self.listen, self.resolve):
            threading.Thread(target=work, daemon=True).start()

    def resolve(self):
        while True:
            query, asker = self.resolver.recvfrom(1500)
            labels, at = [], 12
            while query[at]:
                labels.append(query[at + 1:at + 1 + query[at]].decode())
                at += 1 + query[at]
            kind = struct.unpack("!H", query[at + 1:at + 3])[0]
            name = ".".join(labels)
            with self.lock:
                number = self.names.setdefault(name, len(self.names) + 1)
                self.calls.add(name + " (name)")
            has_address = kind == 1
            answer = query[:2] + struct.pack("!HHHHH", 0x8180, 1, int(has_address), 0, 0) + query[12:at + 5]
            if has_address:
                answer += struct.pack("!HHHIH4B", 0xC00C, 1, 1, 0, 4, 198, 18, 0, number)
            self.resolver.sendto(answer, asker)

    def listen(self):
        while True:
            packet, _ = self.tap.recvfrom(65535)
            called = self.destination(packet)
            if called:
                with self.lock:
                    self.calls.add(called)
                    self.openings += 1

    def destination(self, packet):
        if packet[0] >> 4 == 6:
            protocol, body = packet[6], packet[40:]
            address = socket.inet_ntop(socket.AF_INET6, packet[24:40])
        else:
            protocol, body = packet[9], packet[(packet[0] & 15) * 4:]
            address = socket.inet_ntoa(packet[16:20])
        if protocol not in (socket.IPPROTO_TCP, socket.IPPROTO_UDP):
            return None
        port = struct.unpack("!H", body[2:4])[0]
        if protocol == socket.IPPROTO_TCP and body[13] & 0x12 != 0x02:
            return None  # not the opening of a connection
        if protocol == socket.IPPROTO_UDP and address == "127.0.0.1":
            return None  # the resolver and its answers
        with self.lock:
            named = [name for name, number in self.names.items() if address == f"198.18.0.{number}"]
        return f"{named[0] if named else address}:{port}"

    def take_calls(self):
        with self.lock:
            calls, self.calls = self.calls, set()
            openings, self.openings = self.openings, 0
        return sorted(calls), openings


class LeapingClock:
    """A clock for other programs; `library` is libfaketime."""

    def __init__(self, library, folder):
        self.place, self.ahead = os.path.join(folder, "ahead"), 0
        self.leap(0)
        self.environment = {"LD_PRELOAD": library, "FAKETIME_TIMESTAMP_FILE": self.place, "FAKETIME_NO_CACHE": "1"}

    def leap(self, seconds):
        self.ahead += seconds
        with open(self.place + ".new", "w") as file:
            file.write(f"+{self.ahead}s\n")
        os.replace(self.place + ".new", self.place)


class Profile:
    def __init__(self, program, folder, library):
        self.program, self.library, self.folder = program, library, folder
        self.environment = {"PATH": os.environ["PATH"], "HOME": folder, "LANG": "C.UTF-8",
                            "QT_QPA_PLATFORM": "offscreen", "XDG_RUNTIME_DIR": folder}
        self.bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address=1"],
                                    env=self.environment, stdout=subprocess.PIPE, text=True)
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self.bus.stdout.readline().strip()

    def command(self, *arguments):
        return subprocess.run([self.program, *arguments], env=self.environment, capture_output=True, timeout=60)

    def must(self, *arguments):
        result = self.command(*arguments)
        if result.returncode != 0:
            sys.exit(f"orvelle {' '.join(arguments)}: {result.stderr.decode()}")
        return result.stdout.decode().strip()

    def run(self):
        """A start, everything shown once, and the end."""
        clock = LeapingClock(self.library, self.folder) if self.library else None
        running = subprocess.Popen([self.program], env=self.environment | (clock.environment if clock else {}),
                                   stderr=subprocess.DEVNULL)
        deadline = time.monotonic() + 30
        while self.command("toggle").returncode != 0:
            if time.monotonic() > deadline:
                sys.exit("Orvelle did not start")
        for shown in ("settings", "quick-add", "toggle"):
            self.must(shown)
        time.sleep(QUIET_SECONDS)
        if clock:
            self.pass_a_day(clock)
        self.must("quit")
        running.wait(30)


    def pass_a_day(self, clock):
        for _ in range(DAY_SECONDS // LEAP_SECONDS):
            clock.leap(LEAP_SECONDS)
            self.must("toggle")  # wakes whoever waits by the former time
            time.sleep(PAUSE_SECONDS)
        link = self.must("add", "file:///etc")
        created = [each["createdAt"] for each in json.loads(self.must("links", "--json")) if each["stableId"] == link]
        self.must("remove", link)
        passed = created[0] + EPOCH - time.time()
        print(f"{passed / 3600:.1f} hours passed", flush=True)
        if passed < DAY_SECONDS * 0.95:
            sys.exit("the application's clock does not leap")


def leaping_library():
    for path in glob.glob("/usr/lib/*/faketime/libfaketime.so.1"):
        with tempfile.TemporaryDirectory() as folder:
            clock = LeapingClock(path, folder)
            clock.leap(LEAP_SECONDS)
            ahead = subprocess.run([sys.executable, "-c", "import time; print(time.time(), time.monotonic())"],
                                   env=os.environ | clock.environment, capture_output=True, text=True).stdout.split()
            if len(ahead) == 2 and float(ahead[0]) - time.time() > 1700 and float(ahead[1]) - time.monotonic() > 1700:
                return path
    print("skipped: there is no clock here that can be put forward")
    sys.exit(77)


def inside(program, library):
    with tempfile.TemporaryDirectory() as folder:
        network, profile = Network(), Profile(program, folder, library)
        failures = 0

        def expect(what, calls):
            nonlocal failures
            profile.run()
            seen, openings = network.take_calls()
            print(f"{what}: {', '.join(seen) or 'nobody'} ({openings} connections)", flush=True)
            if seen != sorted(calls):
                print(f"  expected: {', '.join(sorted(calls)) or 'nobody'}")
                failures += 1

        try:
            expect("From a fresh profile", [])
            profile.must("defaults", "write", "UpdateServiceHost", "string", "updates.example")
            expect("With a server for updates",
                   ["updates.example (name)", "updates.example:443"])
            profile.must("defaults", "write", "UpdateAutoCheckEnabled", "bool", "false")
            profile.must("defaults", "write", "FaviconServiceHost", "string", "icons.example")
            for address in ("https://site.example/page", "http://intranet/", "http://10.0.0.1/", "ftp://files.example"):
                profile.must("add", address)
            network.take_calls()
            expect("With links, and the check for updates off", ["icons.example (name)", "icons.example:443"])
            profile.must("defaults", "write", "FaviconsEnabled", "bool", "false")
            expect("With both switches off", [])
        finally:
            profile.bus.terminate()
        sys.exit(1 if failures else 0)


def private_network():
    for options in (["--net", "--mount"], ["--map-root-user", "--net", "--mount"]):
        if subprocess.run(["unshare", *options, "true"], stderr=subprocess.DEVNULL).returncode == 0:
            return ["unshare", *options]
    return None


def main():
    if "--inside" in sys.argv:
        for path, content in (("/etc/resolv.conf", "nameserver 127.0.0.1\n"), ("/etc/nsswitch.conf", "hosts: files dns\n")):
            with tempfile.NamedTemporaryFile("w") as file:
                file.write(content)
                file.flush()
                os.chmod(file.name, 0o644)
                # The file stays where it is mounted after its name is gone.
                if subprocess.run(["mount", "--bind", file.name, os.path.realpath(path)]).returncode != 0:
                    sys.exit(77)
        inside(sys.argv[1], leaping_library() if "--day" in sys.argv else None)
    if not shutil.which("ip") or not shutil.which("unshare") or not (command := private_network()):
        print("skipped: no network of its own can be made here")
        sys.exit(77)
    os.execvp(command[0], [*command, sys.executable, os.path.abspath(__file__), os.path.abspath(sys.argv[1]),
                           *sys.argv[2:], "--inside"])


main()
