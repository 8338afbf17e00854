#!/usr/bin/env python3
"""report.py FILE...: prints the tables of script/soak; exits 1 when a target is missed."""
import json
import pathlib
import sys

import figures


def show(path):
    if path.exists():
        return figures.show(json.loads(path.read_text(encoding="utf-8")))
    print(f"{path.stem}: MISS, it ended without figures")
    return False


results = [show(pathlib.Path(each)) for each in sys.argv[1:]]
sys.exit(0 if results and all(results) else 1)
