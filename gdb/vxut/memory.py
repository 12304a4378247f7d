"""Reads the memory of the program, which may be corrupt: every read and every count is bounded."""

import re

import gdb

_VTABLE = re.compile(r"vtable for (.*?)(?: \[clone [^]]*\])*(?: \+ \d+)? in section ")

# More elements, links or bytes are not followed, even with `set print elements unlimited`.
LARGEST_COUNT = 100000


class Corrupt(Exception):
    """The memory does not contain what the class keeps there."""


# What reading and converting corrupt memory can raise.
ERRORS = (gdb.error, Corrupt, OSError, OverflowError, ValueError)


def corrupt(reason):
    """Returns the text that is shown instead of a value."""
    return "<corrupt: %s>" % reason


def fetched(value):
    """Reads `value` now. Raises gdb.MemoryError here, where it is caught, and not while gdb prints the value."""
    value.fetch_lazy()
    return value


def read(address, length):
    """Returns `length` bytes from `address`."""
    if length == 0:
        return b""
    return bytes(gdb.selected_inferior().read_memory(address, length))


def bytes_of(value):
    """Returns the bytes of a plain array or object in memory."""
    return read(int(value.address), value.type.sizeof)


def count(value, least=0, most=0x7FFFFFFF):
    """Returns `value` as a number, which must be in the range."""
    number = int(value)
    if not least <= number <= most:
        raise Corrupt("a count of %d" % number)
    return number


def signed(word):
    """Returns an unsigned number of 32 bits as the signed one with the same bits."""
    return (int(word) ^ 0x80000000) - 0x80000000


def chain(first, following):
    """Iterates over the non-null pointers `first`, `following(first)` and so on."""
    seen = set()
    node = first
    while int(node) != 0:
        if int(node) in seen:
            raise Corrupt("a circular chain")
        if len(seen) == LARGEST_COUNT:
            raise Corrupt("a chain of more than %d links" % LARGEST_COUNT)
        seen.add(int(node))
        fetched(node.dereference())
        yield node
        node = following(node)


def slots(block, element, length, capacity):
    """Iterates over the first `length` of `capacity` elements of type `element` at the pointer `block`."""
    if length > capacity:
        raise Corrupt("%d elements in a block of %d" % (length, capacity))
    if length > 0 and int(block) == 0:
        raise Corrupt("%d elements without a block" % length)
    start = block.cast(element.pointer())
    for index in range(length):
        yield fetched((start + index).dereference())


def most_derived(pointer):
    """Returns `pointer` as a pointer to the most derived class of its object, as far as the symbol of the virtual table tells.

    Value.dynamic_type does not find the class where the compiler has made a local alias of the table, as on 32-bit ARM.
    """
    word = pointer.type.sizeof
    table = int.from_bytes(read(int(pointer), word), "little")
    match = _VTABLE.match(gdb.execute("info symbol %d" % table, to_string=True))
    if match is None:
        return pointer
    offset = int.from_bytes(read(table - 2 * word, word), "little", signed=True)
    try:
        return gdb.Value(int(pointer) + offset).cast(declared(match.group(1)).pointer())
    except gdb.error:
        return pointer


def declared(name):
    """Returns the type `name`."""
    return gdb.lookup_type(name)
