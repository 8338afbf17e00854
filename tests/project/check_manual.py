#!/usr/bin/env python3
"""The manual: check_manual.py SOURCE-FOLDER [PROGRAM]

The languages have the same chapters and pictures; every link inside leads
somewhere. With PROGRAM the manual is built with it: the pages have their
pictures too, and no picture is empty.
"""
import re
import struct
import subprocess
import sys
import tempfile
from html.parser import HTMLParser
from pathlib import Path

problems = []


class Page(HTMLParser):
    def __init__(self, text):
        super().__init__()
        self.ids, self.links, self.pictures = set(), [], []
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        found = dict(attributes)
        if "id" in found:
            self.ids.add(found["id"])
        if tag == "a":
            self.links.append(found.get("href", ""))
        if tag == "img":
            self.pictures.append((found.get("src", ""), found.get("alt", "")))


def outline(source):
    return re.findall(r"^(#+) .*\{#([a-z]+)\}$", source, re.MULTILINE)


def check_sources(folder):
    sources = {path.name: path.read_text(encoding="utf-8") for path in sorted(folder.glob("docs/manual*.md"))}
    english = sources["manual.md"]
    if len(sources) < 2:
        problems.append("there is one language only")
    for name, source in sources.items():
        headings = re.findall(r"^#+ .*$", source, re.MULTILINE)
        if len(headings) != len(outline(source)):
            problems.append(f"{name}: a heading has no name")
        if outline(source) != outline(english):
            problems.append(f"{name}: has other chapters than the English one")
        pictures = re.findall(r"!\[[^\]]+\]\((.*?)\)", source)
        if pictures != re.findall(r"!\[[^\]]+\]\((.*?)\)", english):
            problems.append(f"{name}: has other pictures than the English one")
        for target in re.findall(r"[^!]\[[^\]]+\]\(#(.*?)\)", source):
            if target not in [each for _, each in outline(source)]:
                problems.append(f"{name}: nothing is called {target}")
    return sources


def check_pictures(page, name, folder):
    for source, alternative in page.pictures:
        file = folder / source
        if not alternative:
            problems.append(f"{name}: {source} has no words for those who do not see it")
        if not file.is_file():
            problems.append(f"{name}: {source} is missing")
            continue
        data = file.read_bytes()
        if data[:8] != b"\x89PNG\r\n\x1a\n" or min(struct.unpack(">II", data[16:24])) < 100 or len(data) < 3000:
            problems.append(f"{name}: {source} shows nothing")


def check_pages(sources, folder):
    pages = {path.name: Page(path.read_text(encoding="utf-8")) for path in folder.glob("manual*.html")}
    if set(pages) != {Path(name).stem + ".html" for name in sources}:
        problems.append(f"the pages are {sorted(pages)}")
    for name, page in pages.items():
        check_pictures(page, name, folder)
        for link in page.links:
            file, _, target = link.partition("#")
            if file.startswith(("http:", "https:")):
                continue
            other = pages.get(file or name)
            if other is None or (target and target not in other.ids):
                problems.append(f"{name}: {link} leads nowhere")
    if not any(page.pictures for page in pages.values()):
        problems.append("no page has a picture")


def main():
    sources = check_sources(Path(sys.argv[1]))
    if len(sys.argv) > 2:
        with tempfile.TemporaryDirectory() as folder:
            subprocess.run([f"{sys.argv[1]}/script/manual", "--program", sys.argv[2], "--to", folder], check=True)
            check_pages(sources, Path(folder))
    for problem in problems:
        print(problem)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
