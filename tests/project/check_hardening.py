#!/usr/bin/env python3
"""check_hardening.py PROGRAM [--optimised]

Fails when a built program lacks what makes faults in it hard to use: a random
place in memory, tables that are read-only after loading, guarded stacks, no
memory that is both writable and executable, no search path for libraries of its
own, and, in an optimised build, checked copies and marked targets of jumps.
"""
import re
import subprocess
import sys


# The first instruction of a function that may be jumped to: endbr64 of Intel's
# control flow enforcement; bti c or paciasp of Arm's.
LANDINGS = {"X86-64": [bytes.fromhex("f30f1efa")],
            "AArch64": [bytes.fromhex("5f2403d5"), bytes.fromhex("3f2303d5")]}


def readelf(option, program):
    return subprocess.run(["readelf", "--wide", option, program], check=True, capture_output=True, text=True).stdout


def faults(header, segments, dynamic, symbols, optimised):
    """What is missing, of the words of readelf."""
    rows = [line.split() for line in segments.splitlines()]
    stack = [row for row in rows if row[:1] == ["GNU_STACK"]]
    writable_code = [row for row in rows if row[:1] == ["LOAD"] and "RWE" in "".join(row[6:-1])]
    checks = [
        (re.search(r"Type:\s+DYN", header) and re.search(r"FLAGS_1\).*\bPIE\b", dynamic), "not position independent"),
        ("GNU_RELRO" in segments, "no read-only relocations"),
        (re.search(r"\bBIND_NOW\b|FLAGS_1\).*\bNOW\b", dynamic), "relocations are not resolved at the start"),
        (stack and all("E" not in "".join(row[6:-1]) for row in stack), "an executable stack"),
        (not writable_code, "memory that is writable and executable"),
        ("__stack_chk_fail" in symbols, "stacks are not guarded"),
        (not re.search(r"\((RPATH|RUNPATH)\)", dynamic), "a search path for libraries of its own"),
        (not optimised or re.search(r"\b__\w+_chk\b", symbols.replace("__stack_chk_fail", "")), "copies are not checked"),
    ]
    return [fault for holds, fault in checks if not holds]


def jump_faults(header, segments, symbols, content):
    """Whether `main` begins with a mark for jumps, where its symbol is kept."""
    machine = [name for name in LANDINGS if name in header]
    place = re.search(r":\s+([0-9a-f]+)\s+\d+\s+FUNC\s.*\smain$", symbols, re.MULTILINE)
    if not machine or not place:
        return []
    address = int(place[1], 16)
    for row in (line.split() for line in segments.splitlines()):
        if row[:1] == ["LOAD"]:
            offset, begin, size = (int(row[i], 16) for i in (1, 2, 4))
            if begin <= address < begin + size:
                first = content[address - begin + offset:][:4]
                return [] if first in LANDINGS[machine[0]] else ["targets of jumps are not marked"]
    return ["the place of main is not known"]


def main():
    program = sys.argv[1]
    header, segments = readelf("--file-header", program), readelf("--program-headers", program)
    optimised = "--optimised" in sys.argv
    found = faults(header, segments, readelf("--dynamic", program), readelf("--dyn-syms", program), optimised)
    if optimised:
        with open(program, "rb") as file:
            found += jump_faults(header, segments, readelf("--symbols", program), file.read())
    for fault in found:
        print(f"{program}: {fault}")
    sys.exit(1 if found else 0)


if __name__ == "__main__":
    main()
