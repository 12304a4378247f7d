#!/usr/bin/env python3
"""Counts the instructions of the hottest operations and compares the counts with the kept ones.

    instructions.py PROGRAM ARM_PROGRAM [--update]

Both programs are built from bench/instructions.cpp, the second for 32-bit ARM. Fails if an operation needs more than 3 % more instructions than
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


ARM_REPETITIONS = 100


def version_of(compiler):
    return subprocess.run([compiler, "-dumpfullversion"], check=True, capture_output=True, text=True).stdout.strip()


def tools():
    return (f"{platform.machine()}: g++ {version_of('g++')}; arm: g++ {version_of('arm-linux-gnueabihf-g++')}; "
            f"{' '.join(platform.libc_ver())}")


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


def count_arm(program):
    """Does the same for ARM: qemu writes a line for each instruction, which ends with the name of the function."""
    totals, counting = [], False
    command = ["qemu-arm", "-singlestep", "-d", "exec,nochain", program, str(ARM_REPETITIONS)]
    with tempfile.TemporaryFile() as names:
        with subprocess.Popen(command, stdout=names, stderr=subprocess.PIPE, env=ENVIRONMENT) as run:
            for line in run.stderr:
                if line.endswith(b" measured_loop\n"):
                    if not counting:
                        totals.append(0)
                    counting = True
                elif line.endswith(b" main\n"):
                    counting = False
                if counting:
                    totals[-1] += 1
        if run.returncode != 0:
            sys.exit(f"{program}: exit code {run.returncode}")
        names.seek(0)
        operations = [line.split()[0] for line in names.read().decode().splitlines()]
    return {name: total / ARM_REPETITIONS for name, total in zip(operations, totals, strict=True)}


def read_kept():
    """Returns the tools in the first line, and the counts of both platforms."""
    lines = KEPT.read_text().splitlines()
    return lines[0].removeprefix("# "), {name: (float(own), float(arm)) for name, own, arm in map(str.split, lines[1:])}


def is_within(name, value, before):
    """Reports a count that differs from the kept one; returns whether it is small enough."""
    if value > MOST * before:
        print(f"{name}: {value:.1f} instructions, {value / before - 1:.1%} more than the {before:.1f} kept")
        return False
    if value * MOST < before:
        print(f"{name}: {value:.1f} instructions, less than the {before:.1f} kept: use --update")
    return True


def main():
    program, arm_program = sys.argv[1:3]
    update = "--update" in sys.argv[3:]
    if not update:
        kept_tools, kept = read_kept()
        if tools() != kept_tools:
            print(f"skipped: instructions: the kept counts are for {kept_tools}, and this is {tools()}")
            return 0
    counts, arm_counts = count(program), count_arm(arm_program)
    if update:
        KEPT.write_text(f"# {tools()}\n" +
                        "".join(f"{name} {value:.1f} {arm_counts[name]:.1f}\n" for name, value in counts.items()))
        print(f"kept the counts of {len(counts)} operations")
        return 0

    failed = len(set(kept) ^ set(counts))
    for name in sorted(set(kept) ^ set(counts)):
        print(f"{name}: only kept or only counted: use --update")
    for name in (name for name in kept if name in counts):
        failed += not is_within(name, counts[name], kept[name][0])
        failed += not is_within(f"{name} on ARM", arm_counts[name], kept[name][1])
    print(f"{len(counts)} operations counted on both platforms, {failed} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
