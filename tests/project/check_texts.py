#!/usr/bin/env python3
"""Compares the text keys of the sources with the text tables.

Every "..."_text literal in src/ needs a text in every language, a key of a
table has to be used, and the placeholders of key and texts have to agree.
Prints what is wrong and exits 1; tests/project/check_texts.py SOURCE_DIR.
"""
import collections
import pathlib
import re
import sys
import xml.etree.ElementTree

LANGUAGES = ("en", "fr")
KEY = re.compile(r'"((?:[^"\\\n]|\\.)+)"_text\b')
PLACEHOLDER = re.compile(r"%@|%lld")


def keys_of_sources(source_dir):
    used = collections.defaultdict(set)
    for path in sorted((source_dir / "src").rglob("*")):
        if path.suffix in (".cpp", ".h"):
            for key in KEY.findall(path.read_text(encoding="utf-8")):
                used[key].add(str(path.relative_to(source_dir)))
    return used


def read_table(path):
    """The texts by key, and what is wrong with the table itself."""
    texts, problems = {}, []
    for message in xml.etree.ElementTree.parse(path).iter("message"):
        key = message.get("id")
        translation = message.find("translation")
        text = translation.text if translation is not None else None
        if key in texts:
            problems.append(f"{path.name}: {key!r} stands twice")
        if not (text or "").strip():
            problems.append(f"{path.name}: {key!r} has no text")
        elif translation.get("type"):
            problems.append(f"{path.name}: {key!r} is marked {translation.get('type')}")
        elif sorted(PLACEHOLDER.findall(key)) != sorted(PLACEHOLDER.findall(text)):
            problems.append(f"{path.name}: {key!r} has other placeholders than its text {text!r}")
        texts[key] = text
    return texts, problems


def main():
    source_dir = pathlib.Path(sys.argv[1])
    used = keys_of_sources(source_dir)
    problems = []
    if not used:
        problems.append("no key found in src/: is this the source folder?")
    for language in LANGUAGES:
        path = source_dir / "resources" / "i18n" / f"orvelle_{language}.ts"
        texts, wrong = read_table(path)
        problems += wrong
        problems += [f"{path.name}: no text for {key!r} of {min(used[key])}" for key in sorted(used.keys() - texts)]
        problems += [f"{path.name}: {key!r} is used nowhere" for key in sorted(texts.keys() - used)]
    print("\n".join(problems) or f"{len(used)} keys, {len(LANGUAGES)} languages, all in order")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
