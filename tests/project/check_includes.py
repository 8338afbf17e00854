#!/usr/bin/env python3
"""Checks the include directions between the folders of src/.

Prints each include that goes the wrong way and exits 1;
tests/project/check_includes.py SOURCE_DIR.
"""
import pathlib
import re
import sys

# What a folder may include besides itself.
BASE = {"base"}
PLATFORM = BASE | {"platform"}
SERVICES = PLATFORM | {"services"}
LINKS = SERVICES | {"links"}
MENUBAR = LINKS | {"widgets", "menubar"}
ALLOWED = {
    "base": set(),
    "platform": BASE,
    "platform/freedesktop": PLATFORM,
    "services": PLATFORM,
    "links": SERVICES,
    "sync": LINKS,
    "widgets": SERVICES,
    "menubar": MENUBAR,
    "ui": MENUBAR | {"sync"},
    "app": MENUBAR | {"sync", "ui", "platform/freedesktop"},
}
# Folders whose subfolders do not see each other, and the one they all see.
SEPARATE = {"ui": "common", "widgets": None}
MAY_USE_WIDGETS = {"ui", "app"}

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.MULTILINE)
QT_ROOTS = [pathlib.Path(p) for p in ("/usr/include/x86_64-linux-gnu/qt6", "/usr/include/qt6", "/usr/lib/qt6/include")]


def folder_of(path):
    """The folder of the table in which a path relative to src/ lies."""
    if path.parts[:2] == ("platform", "freedesktop"):
        return "platform/freedesktop"
    return path.parts[0]


def widget_headers():
    """The names of the Qt Widgets headers, from the installed Qt."""
    for root in QT_ROOTS + [p.parent for p in pathlib.Path("/usr/include").glob("*/qt6/QtWidgets")]:
        headers = root / "QtWidgets"
        if headers.is_dir():
            return {h.name for h in headers.iterdir() if h.name != "qtwidgetsglobal.h"}
    return {"QWidget", "QtWidgets", "QMenu", "QAction", "QApplication", "QLabel", "QDialog", "QMessageBox", "QStyle"}


def wrong_include(path, target, source_root):
    """Why the file at `path` may not include the project's header `target`."""
    if not (source_root / target).is_file():
        return "is not a path from src/"
    here, there = folder_of(path), folder_of(target)
    if here != there:
        return None if there in ALLOWED.get(here, set()) else f"{here}/ may not include {there}/"
    own, other = path.parts[1], target.parts[1]
    if here in SEPARATE and len(path.parts) > 2 and len(target.parts) > 2 and own != other:
        return None if other == SEPARATE[here] else f"{here}/{own}/ may not include {here}/{other}/"
    return None


def main():
    source_root = pathlib.Path(sys.argv[1]) / "src"
    widgets = widget_headers()
    problems, count = [], 0
    for file in sorted(source_root.rglob("*")):
        if file.suffix not in (".cpp", ".h"):
            continue
        path = file.relative_to(source_root)
        for bracket, name in INCLUDE.findall(file.read_text(encoding="utf-8")):
            count += 1
            reason = None
            if bracket == '"' and not name.endswith(".moc"):
                reason = wrong_include(path, pathlib.PurePosixPath(name), source_root)
            elif name.split("/")[-1] in widgets and folder_of(path) not in MAY_USE_WIDGETS:
                reason = "is a header of Qt Widgets"
            if reason:
                problems.append(f"src/{path}: {name} {reason}")
    if not count:
        problems.append("no include found in src/: is this the source folder?")
    print("\n".join(problems) or f"{count} includes, all in the right direction")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
