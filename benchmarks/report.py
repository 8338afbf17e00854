#!/usr/bin/env python3
"""Prints the figures of script/bench beside their references.

benchmarks/report.py FOLDER PART...; exits 1 when a target is missed.
"""
import json
import pathlib
import sys

# What, unit, its series, the reference's series, and the targets: at most so
# many times the reference's median; median and 95th percentile below so much.
FIGURES = {
    "store": [
        ("load 10,000 links from the store", "ms", "load/orvelle/10000", "load/simdjson/10000", "a bare parse", 3, None, None),
        ("one durable edit, 1,000 links", "ms", "edit/orvelle/1000", None, None, None, 5, None),
        ("one durable edit, 10,000 links", "ms", "edit/orvelle/10000", None, None, None, 60, None),
    ],
    "editing": [
        ("a move among groups, 10,000 links", "ms", "move/grouped/10000/100", None, None, None, 5, None),
        ("a move in a flat list of 10,000", "ms", "move/flat/10000/0", None, None, None, 5, None),
        ("a move of 100 items, 10,000 links", "ms", "move/hundred/10000/100", None, None, None, 5, None),
    ],
    "exchange": [
        ("import a document of 10,000 links", "ms", "import/orvelle/10000", "import/simdjson/10000", "a bare parse", 3, None, None),
        ("export 10,000 links", "ms", "export/orvelle/10000", "export/rapidjson/10000", "a bare write", 3, None, None),
        ("checksum of 10,000 links", "ms", "checksum/orvelle/10000", None, None, None, 60, None),
    ],
    "merge": [
        ("merge 10,000 links with 10,000 edited ones", "ms", "merge/edited", "merge/copy", "a deep copy of both", 3, None, None),
        ("merge 10,000 links with the same", "ms", "merge/equal", "merge/copy", "a deep copy of both", 3, None, None),
    ],
    "sync": [
        ("10,000 links: the main thread, an upload", "ms", "main/upload", None, None, None, None, 50),
        ("10,000 links: the main thread, a merge", "ms", "main/merge", None, None, None, None, 50),
        ("10,000 links: the main thread, a load", "ms", "main/load", None, None, None, None, 50),
        ("10,000 links: the main thread, the beginning", "ms", "main/configure", None, None, None, None, 50),
        ("10,000 links: the main thread, an edit", "ms", "main/edit", None, None, None, 60, None),
        ("edit here to the menu there, a folder", "s", "distance/folder", None, None, None, None, 6),
        ("edit here to the menu there, a server", "s", "distance/server", None, None, None, None, 36),
        ("opening the menu there, a server", "s", "distance/opened", None, None, None, 1, None),
        ("sent in an idle hour, a server", "KiB", "idle/server", None, None, None, 200, None),
    ],
    "menu": [
        ("menu's first frame, 1,000 links in 30 groups", "ms", "first_frame/grouped/1000", "first_frame/toolkit/10",
         "the toolkit's menu of 10", 2, None, 16),
        ("menu's first frame with all seven widgets", "ms", "first_frame/widgets/1000", "first_frame/grouped/1000",
         "without them", 1.5, None, None),
        ("menu's first frame, 10,000 links in groups", "ms", "first_frame/grouped/10000", "first_frame/grouped/1000",
         "1,000 links", 1.3, None, None),
        ("menu's first frame, flat list of 10,000", "ms", "first_frame/flat/10000", "first_frame/toolkit/10",
         "the toolkit's menu of 10", None, None, 50),
    ],
    "settings": [
        ("settings open on a flat list of 10,000 links", "ms", "list_opens/flat/10000", "list_opens/flat/10",
         "10 links", None, None, 150),
        ("settings open on 10,000 links in 300 groups", "ms", "list_opens/grouped/10000", "list_opens/flat/10",
         "10 links", None, None, 150),
        ("one key in the search field, flat list of 10,000", "ms", "list_key/flat/10000", None, None, None, None, 50),
        ("one key in the search field, 300 groups", "ms", "list_key/grouped/10000", None, None, None, None, 50),
        ("one step of a drag over 10,000 links", "ms", "list_drag/flat/10000", None, None, None, None, 16),
    ],
    "calendar": [
        ("next events out of 50,000, at hand", "ms", "calendar_warm", None, None, None, 50, None),
        ("next events out of 50,000, first read", "ms", "calendar_cold", "calendar_bytes", "reading the bytes", None, None, None),
    ],
    "widgets": [
        ("wake-ups a second, all widgets, menu shut", "", "shut/wakeups", None, None, None, 0.5, None),
        ("processor, all widgets, menu shut", "%", "shut/cpu", None, None, None, 0.1, None),
        ("processor, all widgets, menu open", "%", "open/cpu", None, None, None, 1, None),
        ("hot key pressed to the menu's window", "ms", "hotkey", "click", "a click on the icon", 1.3, None, None),
        ("memory (PSS) after ten images of 50 MiB", "MiB", "images/after", "images/before", "before them", None, 143, None),
    ],
    "process": [
        ("start to registered icon, 1,000 links", "ms", "start/orvelle", "start/minimal", "minimal program", 3, None, None),
        ("memory (PSS), 1,000 links", "MiB", "pss/orvelle", "pss/minimal", "minimal program", 2.5, None, None),
        ("wake-ups in 30 idle seconds", "", "idle/orvelle", "idle/minimal", "minimal program", None, 1, None),
    ],
}


def read_series(path):
    """Median, 95th percentile and number of runs of each series by name."""
    data = json.loads(path.read_text(encoding="utf-8"))
    if "benchmarks" not in data:
        return {name: (one["median"], one["p95"], len(one["values"])) for name, one in data.items()}
    by_name = {}
    for row in data["benchmarks"]:
        if row.get("error_occurred"):
            sys.exit(f"report: {row['name']}: {row['error_message']}")
        name = row["run_name"].split("/iterations:")[0]
        entry = by_name.setdefault(name, {"runs": 0})
        if row["run_type"] == "aggregate":
            entry[row["aggregate_name"]] = row["real_time"]
        else:
            entry["runs"] += 1
    return {name: (one["median"], one["p95"], one["runs"]) for name, one in by_name.items()}


def verdict(own, other, factor, median_limit, p95_limit):
    """What was asked for in words, and whether it is so."""
    words, good = [], True
    if factor is not None:
        words.append(f"x{own[0] / other[0]:.2f} (at most x{factor})")
        good &= own[0] <= factor * other[0]
    if median_limit is not None:
        words.append(f"median at most {median_limit}")
        good &= own[0] <= median_limit
    if p95_limit is not None:
        words.append(f"p95 below {p95_limit}")
        good &= own[1] < p95_limit
    return ", ".join(words), good


def main():
    folder, parts = pathlib.Path(sys.argv[1]), sys.argv[2:]
    all_good = True
    print(f"{'':52}{'median':>9}{'p95':>9}{'runs':>6}")
    for part in parts:
        series = read_series(folder / f"{part}.json")
        for what, unit, own_name, other_name, other_text, *limits in FIGURES[part]:
            own, other = series[own_name], series.get(other_name)
            words, good = verdict(own, other, *limits)
            all_good &= good
            print(f"{what:52}{own[0]:9.2f}{own[1]:9.2f}{own[2]:6} {unit:4} {'ok  ' if good else 'MISS'} {words}")
            if other:
                print(f"    {'beside ' + other_text:48}{other[0]:9.2f}{other[1]:9.2f}{other[2]:6} {unit}")
    return 0 if all_good else 1


if __name__ == "__main__":
    sys.exit(main())
