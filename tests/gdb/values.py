"""Runs in gdb, where the program has stopped in objectsExist() or a core file is loaded.

Compares what gdb prints with the file $VXUT_EXPECTED. With $VXUT_CORRUPT set, also prints each object with its memory
overwritten: whatever it contains, printing it ends, and no printer fails.
"""

import os
import re

import gdb

PATTERNS = (b"\x00", b"\xff", b"\x01\x00\x00\x00", b"\x10\x00\x00\x00\x00\x00\x00\x00", b"\xff\xff\xff\x7f")

# What cannot be right, and what is shown for it.
CORRUPTIONS = (
    ("ints.m_length = 5", "ints", "~.*<corrupt: 5 elements in a block of 4>}"),
    ("ints.m_block = 0", "ints", "~.*<corrupt: 2 elements without a block>}"),
    ("ints.m_block = (void*)1", "ints", "~.*<corrupt: Cannot access memory at address 0x1>}"),
    ("texts.m_block = (void*)texts.m_block + 1", "texts", "~.*<corrupt: .*"),
    ("((utility::Buffer*)&stream)->m_head = 17", "stream", "~.*<corrupt: a position outside the storage>}"),
    ("((utility::Buffer*)&stream)->m_tail = -1", "stream", "~.*<corrupt: a position outside the storage>}"),
    ("((utility::Buffer*)&stream)->m_storage = (char*)1", "stream", "~.*<corrupt: Cannot access memory at address 0x.*>}"),
    ("dynamic.m_outputCount = 4000000000", "dynamic", "~.*<corrupt: 4000000000 bytes in 2 pages>}"),
    ("map.m_chains.count = 1", "map", "~.*<corrupt: more keys than counted>}"),
    ("map.m_chains.count = 3", "map", "~.*<corrupt: 1 keys are missing>}"),
    ("map.m_chains.numBuckets = 65537", "map", "~.*<corrupt: a count of 65537>}"),
    ("map.m_chains.table[0].next = map.m_chains.table[0]", "map", "~.*<corrupt: a circular chain>}"),
    ("list.m_count = 1", "list", "~.*<corrupt: more elements than counted>}"),
    ("list.m_count = 2000000000", "list", "~.*<corrupt: 1999999998 elements are missing>}"),
    ("list.m_count = -1", "list", "~.*{<corrupt: a count of -1>}"),
    ("pool.m_head.m_next = pool.m_head", "pool", "~.*<corrupt: a circular chain>}"),
    ("options.m_count = 9", "options", "~.*<corrupt: a count of 9>}"),
    ("url.m_path = (char*)1", "url", "<corrupt: Cannot access memory at address 0x1>"),
    ("*(char*)&path.m_path = 1", "path", "~<corrupt: .*|\".*"),
    ("iscsi4.m_ipType = 7", "iscsi4", "~<corrupt: an address of type .*>"),
    ("words.m_words = 0", "words", "~.*<corrupt: .*>}"),
)


def matches(text, expected):
    return re.fullmatch(expected[1:] if expected[:1] == "~" else re.escape(expected), text) is not None


# gdb itself warns about local aliases of virtual tables on 32-bit ARM.
WARNING = re.compile("warning: RTTI symbol not found for class '[^']*localalias]'\n")


def shown(expression):
    try:
        return WARNING.sub("", gdb.execute("output " + expression, to_string=True))
    except gdb.error as error:
        return "error: %s" % error


class Result:
    def __init__(self):
        self.checked = 0
        self.failed = 0

    def compare(self, expression, expected):
        text = shown(expression)
        self.check(matches(text, expected), "%s\n  expected: %s\n  shown:    %s" % (expression, expected, text))

    def check(self, holds, message):
        self.checked += 1
        if not holds:
            self.failed += 1
            print("FAILED: " + message)


class Overwritten:
    """Restores the memory of an object at the end."""

    def __init__(self, address, length):
        self.address = address
        self.process = gdb.selected_inferior()
        self.content = bytes(self.process.read_memory(address, length))

    def __enter__(self):
        return self

    def fill(self, pattern):
        length = len(self.content)
        self.process.write_memory(self.address, (pattern * length)[:length])
        gdb.execute("maintenance flush dcache", to_string=True)

    def __exit__(self, *_):
        self.process.write_memory(self.address, self.content)


def overwrite(result, expression):
    value = gdb.parse_and_eval(expression)
    if value.type.strip_typedefs().code != gdb.TYPE_CODE_STRUCT:
        return
    with Overwritten(int(value.address), value.type.sizeof) as memory:
        for pattern in PATTERNS:
            memory.fill(pattern)
            text = shown(expression)
            result.check(text and "Python Exception" not in text and not text.startswith("error"),
                         "%s filled with %r: %s" % (expression, pattern, text))


def select_main():
    frame = gdb.newest_frame()
    while frame is not None and frame.name() != "main":
        frame = frame.older()
    if frame is None:
        raise gdb.GdbError("FAILED: main is not on the stack")
    frame.select()


def run():
    for setting in ("height 0", "width 0", "print elements 200", "print repeats unlimited"):
        gdb.execute("set " + setting)
    select_main()
    result = Result()
    with open(os.environ["VXUT_EXPECTED"], encoding="utf-8") as expectations:
        rows = [line.rstrip("\n").split("\t") for line in expectations]
    for expression, expected in rows:
        result.compare(expression, expected)
    if os.environ.get("VXUT_CORRUPT"):
        for change, expression, expected in CORRUPTIONS:
            target = change.split(" = ")[0]
            value = gdb.parse_and_eval(target)
            with Overwritten(int(value.address), value.type.sizeof):
                gdb.execute("set var " + change)
                result.compare(expression, expected)
        for expression, _ in rows:
            overwrite(result, expression)
        for expression, expected in rows:
            result.compare(expression, expected)
    print("%d values compared, %d failed" % (result.checked, result.failed))


run()
