#!/usr/bin/env python3
"""proof_private_files.py PROGRAM

Starts Orvelle with an empty home and a umask that forbids nothing, lets it
write what it writes, and looks at every file and folder for rights of others.
"""
import os
import stat
import subprocess
import sys
import tempfile
import time


def run(program, environment, *arguments):
    return subprocess.run([program, *arguments], env=environment, capture_output=True, timeout=60)


def use(program, environment):
    """The running application and single commands, both writing."""
    def must(*arguments):
        result = run(program, environment, *arguments)
        if result.returncode != 0:
            sys.exit(f"orvelle {' '.join(arguments)}: {result.stderr.decode()}")
        return result.stdout.decode().strip()

    must("add", "file:///etc")
    running = subprocess.Popen([program], env=environment, stderr=subprocess.DEVNULL)
    deadline = time.monotonic() + 30
    while run(program, environment, "toggle").returncode != 0:
        if time.monotonic() > deadline:
            sys.exit("Orvelle did not start")
    for opened in ("settings", "quick-add"):
        must(opened)
    link = must("add", "http://127.0.0.1/")
    must("remove", link)
    must("undo")
    must("export", os.path.join(environment["HOME"], "all.ovexport"))
    must("quit")
    running.wait(30)
    must("remove", link)


def main():
    program = os.path.abspath(sys.argv[1])
    with tempfile.TemporaryDirectory() as home, tempfile.TemporaryDirectory() as runtime:
        environment = {"PATH": os.environ["PATH"], "HOME": home, "LANG": "C.UTF-8", "XDG_RUNTIME_DIR": runtime,
                       "QT_QPA_PLATFORM": "offscreen"}
        bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address=1"], env=environment,
                               stdout=subprocess.PIPE, text=True)
        environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()
        before = set(os.listdir(runtime))
        os.umask(0)
        try:
            use(program, environment)
        finally:
            bus.terminate()
        found = [os.path.join(folder, name) for folder, folders, files in os.walk(home) for name in folders + files]
        found += [os.path.join(runtime, name) for name in set(os.listdir(runtime)) - before]
        modes = {path: os.lstat(path).st_mode for path in found}
        open_to_others = [path for path, mode in modes.items() if not stat.S_ISLNK(mode) and mode & 0o077]
        for path in sorted(found):
            print(stat.filemode(modes[path]), path.removeprefix(home))
        if len(found) < 5 or open_to_others:
            sys.exit(f"open to others: {open_to_others}")


main()
