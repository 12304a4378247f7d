"""Buffers and streams: positions and readable bytes."""

from .memory import Corrupt, count, declared
from .shapes import Record
from .text import c_text, quoted_pieces


class _Extended(Record):
    """The parts of the class, then members that only the class has."""

    def __init__(self, value, **members):
        super().__init__(value)
        self.members = members

    def parts(self):
        yield from self.own_parts()
        for name, member in self.members.items():
            yield name, self.value[member]


class Buffer(_Extended):
    """A buffer or a stream that is one."""

    def own_parts(self):
        buffer = self.value.cast(declared("utility::Buffer"))
        capacity, written, position = (int(buffer[name]) for name in ("m_size", "m_head", "m_tail"))
        yield "capacity", capacity
        yield "written", written
        yield "read", position
        storage = int(buffer["m_storage"])
        if storage == 0:
            yield "readable", "0x0"
        elif capacity < 0 or not 0 <= position <= capacity or not 0 <= written <= capacity:
            raise Corrupt("a position outside the storage")
        else:
            yield "readable", quoted_pieces(self.readable(storage, capacity, written, position))

    def readable(self, storage, capacity, written, position):
        """Returns address and length of each piece of the readable bytes."""
        return [(storage + position, max(written - position, 0))]


class Circular(Buffer):
    """A ring: the readable bytes may continue at its start."""

    def readable(self, storage, capacity, written, position):
        if position <= written:
            return super().readable(storage, capacity, written, position)
        return [(storage + position, capacity - position), (storage, written)]


class Dynamic(_Extended):
    """A stream of pages."""

    page_size = 4096

    def own_parts(self):
        yield "limit", self.value["m_maxSize"]
        written, position = int(self.value["m_outputCount"]), int(self.value["m_inputCount"])
        yield "written", written
        yield "read", position
        yield "readable", quoted_pieces(self.pieces(position, written))

    def pieces(self, start, end):
        pages = count(self.value["m_pageCount"], most=int(self.value["m_maxPages"]))
        if end > pages * self.page_size:
            raise Corrupt("%d bytes in %d pages" % (end, pages))
        while start < end:
            page, offset = divmod(start, self.page_size)
            length = min(self.page_size - offset, end - start)
            yield int(self.value["m_pages"][page]) + offset, length
            start += length


class File(_Extended):
    """A stream on a file."""

    def own_parts(self):
        yield "path", c_text(self.value["m_path"])


class Plain(_Extended):
    """A stream without bytes of its own."""

    def own_parts(self):
        return iter(())
