"""Texts of the program, quoted, escaped and truncated as gdb does it."""

import gdb

from .memory import LARGEST_COUNT, Corrupt, count, read

_ESCAPES = {'"': '\\"', "\\": "\\\\", "\n": "\\n", "\t": "\\t", "\r": "\\r", "\a": "\\a", "\b": "\\b", "\f": "\\f", "\v": "\\v"}
_CHUNK = 256


def limit():
    """Returns how many bytes of a text are shown."""
    elements = gdb.parameter("print elements")
    return min(elements, LARGEST_COUNT) if elements else LARGEST_COUNT


def _is_shown(character):
    try:
        character.encode(gdb.host_charset() if hasattr(gdb, "host_charset") else "ascii")
    except (LookupError, UnicodeError):
        return False
    return character.isprintable()


def _escaped(character):
    if character in _ESCAPES:
        return _ESCAPES[character]
    if _is_shown(character):
        return character
    return "".join("\\%03o" % byte for byte in character.encode("utf-8", "surrogateescape"))


def escaped(data):
    """Returns `data` with NUL and what does not print as escapes."""
    return "".join(map(_escaped, data.decode("utf-8", "surrogateescape")))


def quoted(data, truncated=False):
    """Returns `data` in quotes, followed by "..." if it is longer than gdb's limit or `truncated` is true."""
    most = limit()
    return '"%s"%s' % (escaped(data[:most]), "..." if truncated or len(data) > most else "")


def quoted_pieces(pieces):
    """Returns the bytes of all `pieces`, pairs of an address and a length, in quotes. Reads only what is shown."""
    most = limit()
    data = b""
    for address, length in pieces:
        data += read(address, min(length, most + 1 - len(data)))
        if len(data) > most:
            break
    return quoted(data)


def _terminated(address):
    most = limit()
    data = b""
    while len(data) <= most:
        # Not past the end of a page: the next one may not exist.
        piece = read(address, _CHUNK - address % _CHUNK)
        end = piece.find(b"\0")
        if end >= 0:
            return data + piece[:end]
        data += piece
        address += len(piece)
    return data


def c_text(pointer):
    """Returns the NUL-terminated text at `pointer` in quotes, or "0x0" for a null pointer."""
    return quoted(_terminated(int(pointer))) if int(pointer) != 0 else "0x0"


def c_bytes(pointer):
    """Returns the bytes before the NUL at `pointer`, no more than are shown and one; none for a null pointer."""
    return _terminated(int(pointer)) if int(pointer) != 0 else b""


def array_bytes(array):
    """Returns the bytes before the first NUL of a character array, which must have one."""
    data = read(int(array.address), array.type.sizeof)
    if b"\0" not in data:
        raise Corrupt("a text without its NUL")
    return data.split(b"\0", 1)[0]


def string_bytes(string):
    """Returns the bytes of a std::string, no more than are shown and one."""
    length = count(string["_M_string_length"])
    return read(int(string["_M_dataplus"]["_M_p"]), min(length, limit() + 1))
