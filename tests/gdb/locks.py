"""Runs in gdb, where the program has stopped in locksAreHeld() or a core file is loaded.

Compares what `info vxut-locks` prints with the file $VXUT_EXPECTED. With $VXUT_CORRUPT set, also overwrites a lock.
"""

import os
import re

import gdb

THREAD = re.compile(r'thread \d+ \((LWP \d+)\)( "[^"]*")?')


# On 32-bit ARM, gdb may not find the callers of libc's functions, which tell reading from writing.
PURPOSE = re.compile(", to (read|write)$")


def blocks_of(text):
    """Returns the lines about waiting threads by the line about their lock."""
    blocks = {}
    lock = None
    for line in text.splitlines():
        line = THREAD.sub(r"\1", line)
        if gdb.selected_frame().architecture().name().startswith("arm"):
            line = PURPOSE.sub("", line)
        if line.startswith(" "):
            blocks[lock].append(line)
        else:
            lock = line
            blocks[lock] = []
    return {lock: sorted(waiters) for lock, waiters in blocks.items()}


def shown(argument=""):
    return blocks_of(gdb.execute("info vxut-locks " + argument, to_string=True))


def compare(expected, blocks, lock):
    if blocks.get(lock) == expected:
        return 0
    print("FAILED: %s\n  expected: %s\n  shown:    %s" % (lock, expected, blocks.get(lock, sorted(blocks))))
    return 1


def first_line(argument):
    return list(shown(argument))[0]


def run():
    for setting in ("height 0", "width 0"):
        gdb.execute("set " + setting)
    before = gdb.selected_thread(), gdb.selected_frame()
    with open(os.environ["VXUT_EXPECTED"], encoding="utf-8") as file:
        expected = blocks_of(file.read())
    blocks = shown()
    failed = sum(compare(waiters, blocks, lock) for lock, waiters in expected.items())
    checked = len(expected)

    results = [("the selection stays", before == (gdb.selected_thread(), gdb.selected_frame()))]
    held = [lock for lock in expected if "(heldLocker)" in lock]
    results.append(("one lock", shown("heldLocker") == {lock: expected[lock] for lock in held} != {}))
    results.append(("a pointer", list(shown("&lockers").values()) == [[], []]))
    for wrong in ("1", "nothing", "(int*)1"):
        try:
            shown(wrong)
            results.append((wrong, False))
        except gdb.error:
            results.append((wrong, True))
    results.append(("no memory", "<corrupt: Cannot access memory" in first_line("(utility::Locker*)1")))
    if os.environ.get("VXUT_CORRUPT"):
        gdb.execute("set var heldLocker.m_mutex.__data.__owner = 999999")
        results.append(("owner", first_line("heldLocker").endswith("LWP 999999, which is not a thread of this process")))
        gdb.execute("set var heldLocker.m_mutex.__data.__kind = 0x7fffffff")
        results.append(("mutex", first_line("heldLocker").endswith(": <corrupt: not a mutex>")))
        gdb.execute("set var heldLocker.m_mutex.__data.__kind = -1")
        results.append(("destroyed", first_line("heldLocker").endswith(": destroyed")))
    for name, holds in results:
        checked += 1
        if not holds:
            failed += 1
            print("FAILED: %s" % name)
    print("%d locks compared, %d failed" % (checked, failed))
    if failed:
        print(gdb.execute("info vxut-locks", to_string=True))


run()
