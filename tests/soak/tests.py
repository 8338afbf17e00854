#!/usr/bin/env python3
"""tests.py PART OUT CODE LOG [RAW]

Makes the figures of a run of tests that left CODE and LOG behind, and for the
simulated weeks those of what they measured.
"""
import json
import pathlib
import re
import sys

import figures

part, out, code, log = sys.argv[1], pathlib.Path(sys.argv[2]), int(sys.argv[3]), pathlib.Path(sys.argv[4])
table, said = figures.Table(part), log.read_text(encoding="utf-8", errors="replace")
passed = [int(count) for count in re.findall(r"\[  PASSED  \] (\d+) test", said)]
failed = re.findall(r"^\[  FAILED  \] (\S+) \(", said, re.MULTILINE)
skipped = re.findall(r"^\[  SKIPPED \] (\S+) \(", said, re.MULTILINE)
table.at_least("tests that passed", sum(passed), 1)
table.at_most("tests that failed", len(failed) if passed or failed else None, 0)
table.at_most("exit code", code, 0)
table.notes += [f"failed: {each}" for each in failed] + [f"skipped: {each}" for each in skipped]
if len(sys.argv) > 5:
    raw = json.loads(pathlib.Path(sys.argv[5]).read_text(encoding="utf-8"))
    table.at_least("simulated days", raw["days"], 1)
    table.flat("memory in use", [each / 1024 for each in raw["memory"]], 0.03, "KiB")
    table.flat("open files", raw["files"], 0, "")
    table.flat("timers that wait", raw["timers"], 0, "")
    table.at_most("log lines repeated more than once a minute", len(raw["repeated"]), 0)
    table.notes += [f"log: {each}" for each in raw["repeated"]]
    table.notes.append(", ".join(f"{count} {what}" for what, count in raw["done"].items()))
table.write(out)
