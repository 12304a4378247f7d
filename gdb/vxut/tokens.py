"""String tokens: the texts of fixed numbers from the framework's table, those of run-time numbers from its blocks."""

import gdb

from .memory import Corrupt, declared
from .text import c_text

# As in fw_RunTimeStrings: block n has 256 << n texts.
_FIRST_RUN_TIME_TOKEN = 6945
_FIRST_BLOCK_BITS = 8

NAMES = ("strings::stringtoken", "stringtoken")


def _variable(name):
    """Returns the framework's variable, or None without debug information of the framework."""
    symbol = gdb.lookup_static_symbol("strings::(anonymous namespace)::" + name)
    return symbol.value() if symbol is not None else None


def _run_time_text(token):
    blocks = _variable("blocks")
    if blocks is None:
        return None
    number = token - _FIRST_RUN_TIME_TOKEN + (1 << _FIRST_BLOCK_BITS)
    bits = number.bit_length() - 1
    first, last = blocks.type.range()
    if bits - _FIRST_BLOCK_BITS > last - first:
        return None
    # An atomic pointer has the layout of the pointer.
    texts = declared("char").pointer().pointer()
    block = blocks[bits - _FIRST_BLOCK_BITS].address.cast(texts.pointer()).dereference()
    return block[number - (1 << bits)] if int(block) != 0 else None


def _known_text(token):
    table = _variable("knownStrings")
    if table is None:
        return None
    low, high = table.type.range()
    while low <= high:
        middle = (low + high) // 2
        row = table[middle]
        number = int(row["token"])
        if number == token:
            return row["text"]
        if number < token:
            low = middle + 1
        else:
            high = middle - 1
    return None


def text_of(token):
    """Returns the text with the number `token` in quotes, or None if there is none."""
    pointer = _run_time_text(token) if token >= _FIRST_RUN_TIME_TOKEN else _known_text(token)
    return c_text(pointer) if pointer is not None and int(pointer) != 0 else None


def described(token):
    """Returns the number and, if it has one, its text."""
    try:
        text = text_of(token)
    except (gdb.error, Corrupt) as error:
        text = "<%s>" % error
    return str(token) if text is None else "%d %s" % (token, text)
