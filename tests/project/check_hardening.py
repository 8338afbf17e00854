#!/usr/bin/env python3
"""check_hardening.py PROGRAM [--optimised]

Fails when a built program lacks what makes faults in it hard to use: a random
place in memory, tables that are read-only after loading, guarded stacks, no
memory that is both writable and executable, no search path for libraries of its
own, and, in an optimised build, checked copies.
"""
import re
import subprocess
import sys


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


def main():
    program = sys.argv[1]
    found = faults(readelf("--file-header", program), readelf("--program-headers", program),
                   readelf("--dynamic", program), readelf("--dyn-syms", program), "--optimised" in sys.argv)
    for fault in found:
        print(f"{program}: {fault}")
    sys.exit(1 if found else 0)


if __name__ == "__main__":
    main()
