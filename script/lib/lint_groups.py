#!/usr/bin/env python3
"""Runs clang-tidy on several sources at once, as most of its time goes into
headers of the toolkit that they share.

lint_groups.py BUILD-FOLDER JOBS FILE...

Sources are put together when no name of their anonymous namespaces is the same.
A group that does not compile as one is halved, so that every file is looked at.
Prints the findings and exits 1 when there are any.
"""
import concurrent.futures
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys

FILES, LINES = 14, 2500  # the most of a group; more takes long to halve
LOCAL = re.compile(r"^namespace \{\n(.*?)^\} // namespace$", re.DOTALL | re.MULTILINE)
STATIC = re.compile(r"^static [^=({]*?(\w+)\s*[=({]", re.MULTILINE)
# What does not follow a compiler's program is what only an object file needs.
WITH_VALUE, ALONE = {"-o", "-c", "-MT", "-MF"}, ("-MD", "-Winvalid-pch", "-fpch")


def local_names(text):
    """The words in the first lines of what only this file sees: its names, and
    some that are none."""
    names = set(STATIC.findall(text))
    for block in LOCAL.findall(text):
        for line in block.split("\n"):
            if line and line[0].isalpha():
                names.update(re.findall(r"[A-Za-z_]\w*", re.split("[={]", line)[0]))
    return names


def words_of_all(names_of_files):
    """Types and keywords, which many files name and none makes."""
    files_with = {}
    for names in names_of_files.values():
        for name in names:
            files_with[name] = files_with.get(name, 0) + 1
    return {name for name, count in files_with.items() if count > max(10, len(names_of_files) / 30)}


def groups(files, commands):
    """Only of files that the compiler is told the same about."""
    names_of_files = {file: local_names(pathlib.Path(file).read_text(encoding="utf-8")) for file in files}
    common = words_of_all(names_of_files)
    made = []
    for file, all_names in names_of_files.items():
        names, told = all_names - common, flags(commands[os.path.abspath(file)])
        lines = pathlib.Path(file).read_text(encoding="utf-8").count("\n")
        for group in made:
            if (group["flags"] == told and len(group["files"]) < FILES and group["lines"] + lines < LINES
                    and not group["names"] & names):
                group["files"].append(file)
                group["names"] |= names
                group["lines"] += lines
                break
        else:
            made.append({"flags": told, "files": [file], "names": set(names), "lines": lines})
    return [group["files"] for group in made]


def flags(command):
    """What the compiler is told, less the files."""
    words = shlex.split(command)
    rest = iter(words[next(place for place, word in enumerate(words) if "clang++" in word) + 1:])
    told = []
    for word in rest:
        if word in WITH_VALUE:
            next(rest)
        elif not word.startswith(ALONE):
            told.append(word)
    return told


def look(folder, commands, files):
    """The findings in the files, as text."""
    together = folder / f"together-{files[0].replace('/', '-')}"
    together.write_text("".join(f'#include "{os.path.abspath(file)}"\n' for file in files), encoding="utf-8")
    # Relative paths in the flags are meant from the build folder. A name in one
    # file may be a local one in another.
    ran = subprocess.run(["nice", "-n", "19", "clang-tidy", "--quiet", "--checks=-bugprone-suspicious-include",
                          f"--config-file={os.path.abspath('.clang-tidy')}", str(together.resolve()), "--",
                          *flags(commands[os.path.abspath(files[0])]), "-Wno-shadow"],
                         capture_output=True, text=True, cwd=folder, check=False)
    together.unlink()
    if ran.returncode == 0:
        return ""
    if len(files) > 1 and (not ran.stdout or "clang-diagnostic-error" in ran.stdout):
        half = len(files) // 2
        return look(folder, commands, files[:half]) + look(folder, commands, files[half:])
    return ran.stdout or f"{files[0]}: clang-tidy ended with {ran.returncode}: {ran.stderr[-1000:]}\n"


def main():
    folder, jobs, files = pathlib.Path(sys.argv[1]), int(sys.argv[2]), sys.argv[3:]
    commands = {each["file"]: each["command"] for each in json.loads((folder / "compile_commands.json").read_text())}
    found = False
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        for findings in pool.map(lambda group: look(folder, commands, group), groups(files, commands)):
            found |= bool(findings)
            print(findings, end="", flush=True)
    sys.exit(found)


main()
