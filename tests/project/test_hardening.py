#!/usr/bin/env python3
"""test_hardening.py COMPILER

Builds small programs, one with every protection and one for each that is left
out, and sees that the check notices which it is.
"""
import pathlib
import platform
import subprocess
import sys
import tempfile

FULL = {
    "pie": ["-fPIE", "-pie"],
    "stack": ["-fstack-protector-strong"],
    "fortify": ["-D_FORTIFY_SOURCE=2"],
    "flow": ["-fcf-protection=full"] if platform.machine() == "x86_64" else ["-mbranch-protection=standard"],
    "relro": ["-Wl,-z,relro"],
    "now": ["-Wl,-z,now"],
    "execstack": ["-Wl,-z,noexecstack"],
    "rpath": [],
    "rwx": [],
}
WITHOUT = [
    ("pie", ["-fno-PIE", "-no-pie"], "not position independent"),
    ("stack", ["-fno-stack-protector"], "stacks are not guarded"),
    ("fortify", ["-U_FORTIFY_SOURCE"], "copies are not checked"),
    ("flow", ["-fcf-protection=none"] if platform.machine() == "x86_64" else ["-mbranch-protection=none"],
     "targets of jumps are not marked"),
    ("relro", ["-Wl,-z,norelro"], "no read-only relocations"),
    ("now", ["-Wl,-z,lazy"], "relocations are not resolved at the start"),
    ("execstack", ["-Wl,-z,execstack"], "an executable stack"),
    ("rpath", ["-Wl,-rpath,/tmp/lib"], "a search path for libraries of its own"),
    ("rwx", ["-DWRITABLE_CODE"], "memory that is writable and executable"),
]
SOURCE = r"""
#include <cstdio>
#include <cstring>
#ifdef WRITABLE_CODE
asm(".section .changing,\"awx\"\n.byte 0\n.text");
#endif
int main(int argc, char **argv)
{
    char text[16];
    std::strcpy(text, argv[argc - 1]);
    return std::puts(text);
}
"""


def verdict(compiler, folder, flags):
    source, program = folder / "x.cpp", folder / "x"
    source.write_text(SOURCE)
    subprocess.run([compiler, "-O2", "-w", *flags, str(source), "-o", str(program)], check=True, capture_output=True)
    check = pathlib.Path(__file__).parent / "check_hardening.py"
    return subprocess.run([sys.executable, str(check), str(program), "--optimised"], capture_output=True, text=True)


def main():
    if platform.machine() not in ("x86_64", "aarch64"):
        sys.exit(77)
    failures = []
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        full = verdict(sys.argv[1], folder, sum(FULL.values(), []))
        if full.returncode != 0:
            failures.append(f"everything on: {full.stdout}")
        for left_out, flags, fault in WITHOUT:
            rest = sum((value for key, value in FULL.items() if key != left_out), [])
            result = verdict(sys.argv[1], folder, [*rest, *flags])
            if result.returncode != 1 or fault not in result.stdout:
                failures.append(f"without {left_out}: {result.stdout or 'nothing noticed'}")
    print("\n".join(failures) or "each protection is missed when it is left out")
    sys.exit(1 if failures else 0)


main()
