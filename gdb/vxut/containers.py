"""Arrays, directories, maps, lists and sets."""

from . import tokens
from .memory import Corrupt, chain, count, declared, fetched, most_derived, slots
from .shapes import Mapping, Record, Sequence
from .text import c_text, quoted, string_bytes

_LARGEST_BUCKET_COUNT = 65536


def _object(pointer):
    """Returns the object at `pointer`, or "0x0" for a null pointer."""
    return fetched(pointer.dereference()) if int(pointer) != 0 else "0x0"


def _derived_object(pointer):
    """Returns the object at `pointer` with its most derived type, or "0x0" for a null pointer."""
    return _object(most_derived(pointer)) if int(pointer) != 0 else "0x0"


class Array(Sequence):
    """An array: `element` is the type of its slots, `shown` what is shown for a slot."""

    def __init__(self, value, element, shown=lambda slot: slot):
        super().__init__(value)
        self.element = element
        self.shown = shown

    def text(self):
        return "%s of length %d, capacity %d" % (super().text(), int(self.value["m_length"]), int(self.value["m_size"]))

    def elements(self):
        return map(self.shown, array_slots(self.value, self.element))


def array_slots(array, element):
    """Iterates over the slots of an array. `element` is the name of their type, with "*" for pointers."""
    target = declared(element.rstrip("*"))
    slot = target.pointer() if element.endswith("*") else target
    return slots(array["m_block"], slot, int(array["m_length"]), int(array["m_size"]))


def strings_of(array):
    """Iterates over the texts of a StringArray, in quotes."""
    return map(c_text, array_slots(array, "char*"))


def texts(value):
    """A StringArray."""
    return Array(value, "char*", c_text)


def objects(element):
    """An array of pointers to objects, which are shown."""
    return lambda value: Array(value, element + "*", _object)


def derived_objects(element):
    """An array of pointers to objects of derived classes, which are shown with their own classes."""
    return lambda value: Array(value, element + "*", _derived_object)


def numbers(element):
    """An array of numbers."""
    return lambda value: Array(value, element)


def token_numbers(value):
    """An array or a set of tokens."""
    return Array(value, "strings::stringtoken", lambda token: tokens.described(int(token)))


class StringDirectory(Record):
    """Strings by number."""

    def parts(self):
        strings = self.value["m_strings"]
        for number, pointer in enumerate(array_slots(strings, "char*")):
            if self.is_used(int(pointer), int(strings["m_length"])):
                yield "[%d]" % number, c_text(pointer)

    def is_used(self, _pointer, _length):
        """Returns whether the slot with the value `pointer` has a string."""
        return True


class FastStringDirectory(StringDirectory):
    """A free slot contains the number of the next free slot, or -1."""

    def is_used(self, pointer, length):
        largest = (1 << (8 * declared("char").pointer().sizeof)) - 1
        return length <= pointer < largest


class ItemDirectory(Record):
    """Items by number."""

    def parts(self):
        for number, pointer in enumerate(array_slots(self.value["m_items"], "framework::Item*")):
            yield "[%d]" % number, _derived_object(pointer)


class HashMap(Mapping):
    """A map on hash chains: `shown` is what is shown for a key."""

    def __init__(self, value, shown=lambda key: key):
        super().__init__(value)
        self.shown = shown

    def text(self):
        return "%s with %d keys" % (super().text(), int(self.value["m_chains"]["count"]))

    def pairs(self):
        chains = self.value["m_chains"]
        left = int(chains["count"])
        for bucket in range(count(chains["numBuckets"], most=_LARGEST_BUCKET_COUNT)):
            for node in chain(fetched(chains["table"][bucket]), lambda node: node["next"]):
                if left == 0:
                    raise Corrupt("more keys than counted")
                left -= 1
                yield self.shown(node["key"]), node["value"]
        if left > 0:
            raise Corrupt("%d keys are missing" % left)


def string_map(value):
    """A StringMap."""
    return HashMap(value, c_text)


class _Linked(Sequence):
    """Objects in a chain: the derived class has `first()`, `following(node)`, `shown(node)` and `expected()`."""

    def text(self):
        expected = self.expected()
        return super().text() if expected is None else "%s of length %d" % (super().text(), expected)

    def elements(self):
        length = 0
        if (self.expected() or 0) < 0:
            raise Corrupt("a count of %d" % self.expected())
        for node in chain(self.first(), self.following):
            if length == self.expected():
                raise Corrupt("more elements than counted")
            length += 1
            yield self.shown(node)
        if self.expected() not in (None, length):
            raise Corrupt("%d elements are missing" % (self.expected() - length))

    def expected(self):
        """Returns the number of elements that the object counts, or None."""
        return None


class List(_Linked):
    """A List: each element with its most derived type."""

    def first(self):
        return self.value["m_first"]["_M_b"]["_M_p"]

    def following(self, node):
        return node["m_next"]

    def shown(self, node):
        return _derived_object(node["m_element"])

    def expected(self):
        return int(self.value["m_count"])


class StreamList(_Linked):
    """A BufferStreamList."""

    def first(self):
        return self.value["m_head"]

    def following(self, node):
        return node["m_next"]

    def shown(self, node):
        return node.dereference()


class StreamQueue(StreamList):
    """A BufferStreamQueue, which counts its elements."""

    def expected(self):
        return int(self.value["m_count"])


class Stack(_Linked):
    """A Stack: the names from the top on."""

    def first(self):
        return self.value["m_top"]

    def following(self, node):
        return node["m_next"]

    def shown(self, node):
        name = node["m_name"]
        return quoted(string_bytes(name.dereference())) if int(name) != 0 else "0x0"


class ListIterator(Record):
    """The element that is next."""

    def parts(self):
        current = self.value["m_current"]
        yield "next", _derived_object(current["m_element"]) if int(current) != 0 else "0x0"


class Arguments(Sequence):
    """The words."""

    def elements(self):
        return strings_of(self.value["m_words"].dereference())


class Environment(Mapping):
    """Names with values."""

    def pairs(self):
        variables = list(strings_of(self.value["m_variables"].dereference()))
        if len(variables) % 2 != 0:
            raise Corrupt("a name without a value")
        return zip(variables[::2], variables[1::2])


class Options(Mapping):
    """Keys with values. A key that has several values occurs several times."""

    def pairs(self):
        keys = self.value["m_keys"]
        first, last = keys.type.range()
        for index in range(count(self.value["m_count"], most=last - first + 1)):
            yield tokens.described(int(keys[index])), c_text(self.value["m_values"][index])
