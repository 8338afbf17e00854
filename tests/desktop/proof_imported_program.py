#!/usr/bin/env python3
"""proof_imported_program.py PROGRAM

A script is opened at once by a link that the user made, and by one that an
import brought only after a question, which a command alone cannot ask. Needs no
display.
"""
import json
import os
import subprocess
import sys
import tempfile
import time

PATIENCE = 60  # seconds, for a busy machine


class Desk:
    """A home in which a program for scripts writes down what it is given."""

    def __init__(self, program, home):
        self.program, self.home, self.log = program, home, os.path.join(home, "opened")
        self.environment = {"PATH": os.environ["PATH"], "HOME": home, "LANG": "C.UTF-8", "XDG_RUNTIME_DIR": home,
                            "XDG_DATA_HOME": home + "/data", "XDG_CONFIG_HOME": home + "/config",
                            "QT_QPA_PLATFORM": "offscreen"}
        handler = self.write("handler", f'#!/bin/sh\necho "$1" >> "{self.log}"\n', 0o700)
        self.write("data/applications/scripts.desktop",
                   f"[Desktop Entry]\nType=Application\nName=Scripts\nExec={handler} %f\n"
                   "MimeType=application/x-shellscript;\n")
        self.write("config/mimeapps.list", "[Default Applications]\napplication/x-shellscript=scripts.desktop\n")
        self.tool = self.write("holiday.sh", "#!/bin/sh\n", 0o700)
        self.bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address=1"],
                                    env=self.environment, stdout=subprocess.PIPE, text=True)
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self.bus.stdout.readline().strip()

    def write(self, name, content, mode=0o600):
        path = os.path.join(self.home, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w") as file:
            file.write(content)
        os.chmod(path, mode)
        return path

    def run(self, *arguments):
        return subprocess.run([self.program, *arguments], env=self.environment, capture_output=True, text=True,
                              timeout=PATIENCE)

    def must(self, *arguments):
        result = self.run(*arguments)
        if result.returncode != 0:
            sys.exit(f"orvelle {' '.join(arguments)}: {result.stderr}")
        return result.stdout.strip()

    def opened(self):
        return open(self.log).read().split() if os.path.exists(self.log) else []

    def wait_until(self, what, condition):
        deadline = time.monotonic() + PATIENCE
        while not condition():
            if time.monotonic() > deadline:
                sys.exit(f"it did not happen: {what}")
            time.sleep(0.1)


def check(what, holds):
    print(("ok: " if holds else "NOT: ") + what)
    return holds


def attempts(desk):
    own = desk.must("add", "file://" + desk.tool)
    desk.must("open", own)
    desk.wait_until("the own link is opened", lambda: desk.opened() == [desk.tool])

    item = {"name": "Holiday", "path": desk.tool, "type": "file", "stableId": "6C1F5C52-9C1E-4A9E-8F0B-0A4B8E0D5C11"}
    document = {"version": 6, "appVersion": "1", "appBuild": "1", "exportDate": "2026-01-01T00:00:00Z",
                "links": [item]}
    desk.must("import", desk.write("gift.ovexport", json.dumps(document)), "--mode", "merge")
    refused = desk.run("open", item["stableId"])
    yield "a command alone refuses and names the file", refused.returncode == 1 and desk.tool in refused.stderr

    running = subprocess.Popen([desk.program], env=desk.environment, stderr=subprocess.DEVNULL)
    try:
        desk.wait_until("Orvelle starts", lambda: desk.run("toggle").returncode == 0)
        desk.must("open", item["stableId"])
        # Opened after the other one, so that the first had all the time.
        desk.must("open", own)
        desk.wait_until("the own link is opened again", lambda: len(desk.opened()) >= 2)
        yield "the running application asks first", desk.opened() == [desk.tool, desk.tool]
    finally:
        running.kill()
        running.wait(30)


def main():
    with tempfile.TemporaryDirectory() as home:
        desk = Desk(os.path.abspath(sys.argv[1]), os.path.realpath(home))
        try:
            results = [check(*each) for each in attempts(desk)]
        finally:
            desk.bus.terminate()
        sys.exit(0 if len(results) == 2 and all(results) else 1)


main()
