"""Addresses, identifiers, times, paths, URLs, tokens and failures."""

import socket
import time

import gdb

from . import tokens
from .memory import Corrupt, bytes_of, declared, signed
from .shapes import Record, Text
from .text import array_bytes, c_bytes, c_text, escaped, quoted, string_bytes


class Hexadecimal(Text):
    """A WWN or a serial number."""

    def text(self):
        return bytes_of(self.value["m_bytes"]).hex()


class IPV4Address(Text):
    def text(self):
        return socket.inet_ntop(socket.AF_INET, bytes_of(self.value["m_bytes"]))


class IPV6Address(Text):
    def text(self):
        return socket.inet_ntop(socket.AF_INET6, bytes_of(self.value["m_groups"]))


class FCPortAddress(Text):
    def text(self):
        return Hexadecimal(self.value["m_wwn"]).text()


class ISCSIPortAddress(Text):
    def text(self):
        kind = str(self.value["m_ipType"]).rsplit("::", 1)[-1]
        if kind == "IP_V4":
            address = IPV4Address(self.value["m_ipv4"])
        elif kind == "IP_V6":
            address = IPV6Address(self.value["m_ipv6"])
        else:
            raise Corrupt("an address of type %s" % kind)
        # The library writes the port as a signed number.
        port = signed(self.value["m_port"])
        name = escaped(array_bytes(self.value["m_name"]))
        return address.text() + (":%d" % port if port else "") + ("[%s]" % name if name else "")


class DateTime(Text):
    """Local time, of the time zone in which gdb runs."""

    def text(self):
        seconds = int(self.value["m_time"])
        if seconds == -1:
            return "invalid"
        try:
            return time.strftime("%Y-%m-%d %H:%M:%S", time.localtime(seconds))
        except (OSError, OverflowError, ValueError):
            return "%d s after 1970" % seconds


class Token(Text):
    def text(self):
        return tokens.described(int(self.value))


def _path(value):
    folder, name, extension = (string_bytes(value[member]) for member in ("m_path", "m_file", "m_extension"))
    return quoted(folder + name + (b"." + extension if extension else b""))


class Path(Text):
    def text(self):
        return _path(self.value)


class DirIterator(Record):
    """The current entry of a directory, and the pattern of the names."""

    def parts(self):
        yield "path", _path(self.value)
        yield "pattern", c_text(self.value["m_pattern"])
        yield "index", self.value["m_index"]


class URL(Text):
    def text(self):
        scheme, authority, path, query = (
            c_bytes(self.value[member]) if int(self.value[member]) != 0 else None
            for member in ("m_scheme", "m_authority", "m_path", "m_query"))
        parts = (b"%s:" % scheme if scheme is not None else b"", b"//" + authority if authority is not None else b"",
                 path or b"", b"?" + query if query is not None else b"")
        return quoted(b"".join(parts))


class ParameterList(Record):
    """What is left of the text."""

    def parts(self):
        yield "separator", self.value["m_separator"]
        yield "rest", c_text(self.value["m_position"])


class Failure(Record):
    """A framework::Exception."""

    def parts(self):
        words = self.value["m_words"]
        code, file, line, flag = (int(words[index]) for index in range(4))
        yield "code", " ".join([str(code)] + self.names(code))
        yield "file", (tokens.text_of(file) or str(file)) if file else '""'
        yield "line", signed(line)
        yield "function", quoted(array_bytes(self.value["m_function"]))
        yield "message", quoted(array_bytes(self.value["m_message"]))
        yield "flag", "true" if flag else "false"

    def names(self, code):
        """Returns the name of the code, if it has one."""
        try:
            fields = declared("framework::Exception::FailureCode").fields()
        except gdb.error:
            return []
        return [field.name.rsplit("::", 1)[-1] for field in fields if field.enumval == code]
