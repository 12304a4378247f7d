#!/usr/bin/env python3
"""Prints how much of a program the static libraries contribute, and fails if that exceeds a limit.

    sizes.py MAP [LIMIT]

MAP is a map of GNU ld. The size is the sum, in bytes, of what the members of libVXut.a and libVXfw.a have in the
program's read-only segment: code (.text), constants (.rodata) and unwind tables (.ARM, .eh_frame, .gcc_except_table).
"""
import re
import sys

sections = ("text", "rodata", "ARM", "eh_frame", "gcc_except_table")
with open(sys.argv[1], encoding="utf-8") as file:
    text = file.read().split("\nLinker script and memory map\n", 1)[1]
# A long section name is on a line of its own.
text = re.sub(r"\n {2,}(?=0x)", " ", text)
sizes = dict.fromkeys(sections, 0)
for section, size in re.findall(
    r"^ \.(\w+)\S* +0x[0-9a-f]+ +0x([0-9a-f]+) \S*/libVX(?:ut|fw)\.a\(", text, re.MULTILINE
):
    if section in sizes:
        sizes[section] += int(size, 16)
total = sum(sizes.values())
print(total, *(f"{section}={size}" for section, size in sizes.items() if size))
if sizes["text"] == 0:
    sys.exit("the map names no code of the static libraries")
if len(sys.argv) > 2 and total > int(sys.argv[2]):
    sys.exit(f"{total} bytes are more than {sys.argv[2]}")
