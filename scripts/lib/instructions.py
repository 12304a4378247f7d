#!/usr/bin/env python3
"""Counts the instructions of the hottest operations and compares the counts with the kept ones.

    instructions.py PROGRAM [--update]

PROGRAM is built from bench/instructions.cpp. Fails if an operation needs more than 3 % more instructions than
bench/instructions.txt says; --update writes that file. The counts depend on the compiler and the C library: with others
than those in the file, nothing is compared, and the reason is printed.
"""

import pathlib
import platform
import re
import subprocess
import sys
import tempfile

KEPT = pathlib.Path(__file__).resolve().parents[2] / "bench/instructions.txt"
MOST = 1.03
# The C library chooses among its functions by the processor; without these, the choice is the same on all.
ENVIRONMENT = {"PATH": "/usr/bin:/bin", "GLIBC_TUNABLES": "glibc.cpu.hwcaps=-AVX,-AVX2,-AVX512F,-AVX512VL,-ERMS,-FSRM"}


def tools():
    compiler = subprocess.run(["g++", "-dumpfullversion"], check=True, capture_output=True, text=True).stdout.strip()
    return f"{platform.machine()}, g++ {compiler}, {' '.join(platform.libc_ver())}"


def count(program):
    """Returns the instructions of one call of each operation, by name."""
    with tempfile.TemporaryDirectory() as folder:
        # One dump after each loop, numbered from 1; only the loops are counted.
        run = subprocess.run(
            ["valgrind", "--tool=callgrind", "--quiet", "--toggle-collect=measured_loop", "--dump-after=measured_loop",
             f"--callgrind-out-file={folder}/out", program],
            check=True, capture_output=True, text=True, env=ENVIRONMENT)
        counts = {}
        for number, line in enumerate(run.stdout.splitlines(), 1):
            name, repetitions = line.split()
            dump = pathlib.Path(folder, f"out.{number}").read_text()
            total = int(re.search(r"^(?:totals|summary): (\d+)", dump, re.MULTILINE).group(1))
            counts[name] = total / int(repetitions)
        return counts


def read_kept():
    """Returns the tools in the first line, and the counts."""
    lines = KEPT.read_text().splitlines()
    return lines[0].removeprefix("# "), {name: float(value) for name, value in map(str.split, lines[1:])}


def main():
    program = sys.argv[1]
    if "--update" in sys.argv[2:]:
        counts = count(program)
        KEPT.write_text(f"# {tools()}\n" + "".join(f"{name} {value:.1f}\n" for name, value in counts.items()))
        print(f"kept the counts of {len(counts)} operations")
        return 0

    kept_tools, kept = read_kept()
    if tools() != kept_tools:
        print(f"skipped: instructions: the kept counts are for {kept_tools}, and this is {tools()}")
        return 0
    counts = count(program)
    failed = [name for name in kept if name not in counts]
    for name in failed:
        print(f"{name}: not counted")
    for name, value in counts.items():
        before = kept.get(name)
        if before is None:
            print(f"{name}: {value:.1f}, which is not kept: use --update")
            failed.append(name)
        elif value > MOST * before:
            print(f"{name}: {value:.1f} instructions, {value / before - 1:.1%} more than the {before:.1f} kept")
            failed.append(name)
        elif value * MOST < before:
            print(f"{name}: {value:.1f} instructions, less than the {before:.1f} kept: use --update")
    print(f"{len(counts)} operations counted, {len(failed)} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
