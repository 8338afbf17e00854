#!/usr/bin/env python3
"""proof_core.py PROGRAM

Kills Orvelle by the signals that leave a core file, while it holds something
that was typed, and sees that none is left; also where a program does so by
itself. Exits with 77 where no program leaves one.
"""
import os
import resource
import signal
import subprocess
import sys
import tempfile
import time

CANARY = "http://canary-4b1d77.example/"


def start(arguments, environment, folder):
    def allow_core():
        resource.setrlimit(resource.RLIMIT_CORE, (resource.RLIM_INFINITY, resource.RLIM_INFINITY))
        os.chdir(folder)
    return subprocess.Popen(arguments, env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                            preexec_fn=allow_core)


def end(process, number):
    """Whether the process died of the signal, and whether it left a core file."""
    process.send_signal(number)
    _, status = os.waitpid(process.pid, 0)
    process.returncode = 0
    return os.WIFSIGNALED(status) and os.WTERMSIG(status) == number, os.WCOREDUMP(status)


def holds(pid, text):
    """Whether the text is in the memory; None where nobody may look."""
    forms = [text.encode(), text.encode("utf-16-le")]
    try:
        memory = open(f"/proc/{pid}/mem", "rb", 0)
    except OSError:
        return None
    for line in open(f"/proc/{pid}/maps"):
        first, last = (int(each, 16) for each in line.split()[0].split("-"))
        try:
            memory.seek(first)
            block = memory.read(min(last - first, 1 << 28))
        except (OSError, ValueError, OverflowError):
            continue
        if any(form in block for form in forms):
            return True
    return False


def try_signal(program, environment, folder, number):
    running = start([program], environment, folder)

    def command(*arguments):
        return subprocess.run([program, *arguments], env=environment, capture_output=True, timeout=60).returncode

    deadline = time.monotonic() + 60
    # What only a running application answers; the other would start one itself.
    while command("toggle") != 0:
        if time.monotonic() > deadline:
            running.kill()
            sys.exit("Orvelle did not start")
    command("quick-add", CANARY)
    if holds(running.pid, CANARY) is False:
        running.kill()
        sys.exit("what was typed is not in the memory, so no core file would have it")
    died, left_core = end(running, number)
    print(f"{signal.Signals(number).name}: died of it: {died}, core file: {left_core}")
    return died and not left_core


def main():
    program = os.path.abspath(sys.argv[1])
    with tempfile.TemporaryDirectory() as home, tempfile.TemporaryDirectory() as folder:
        environment = {"PATH": os.environ["PATH"], "HOME": home, "LANG": "C.UTF-8", "XDG_RUNTIME_DIR": home,
                       "QT_QPA_PLATFORM": "offscreen"}
        other = start(["sleep", "600"], environment, folder)
        while os.readlink(f"/proc/{other.pid}/exe") == os.path.realpath(sys.executable):
            time.sleep(0.01)
        if end(other, signal.SIGSEGV) != (True, True):
            print("skipped: no program leaves a core file here")
            sys.exit(77)
        bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address=1"], env=environment,
                               stdout=subprocess.PIPE, text=True)
        environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()
        try:
            results = [try_signal(program, environment, folder, number)
                       for number in (signal.SIGSEGV, signal.SIGABRT, signal.SIGQUIT)]
        finally:
            bus.terminate()
        sys.exit(0 if all(results) else 1)


main()
