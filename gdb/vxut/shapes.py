"""The shapes of a printed value. A printer derives from one of them, and may raise what `memory.ERRORS` lists."""

import itertools

from .memory import ERRORS, LARGEST_COUNT, corrupt


class Text:
    """A value shown as one text: the derived class has `text()`."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        try:
            return self.text()
        except ERRORS as error:
            return corrupt(error)


class Record(Text):
    """A value shown as named parts: the derived class has `parts()`, which iterates over names and values."""

    hint = None

    def display_hint(self):
        return self.hint

    def text(self):
        return str(self.value.type.unqualified().strip_typedefs())

    def children(self):
        parts = self.parts()
        try:
            yield from itertools.islice(parts, LARGEST_COUNT)
            if next(parts, None) is not None:
                yield "...", "..."
        except ERRORS as error:
            yield "corrupt", corrupt(error)


class Sequence(Record):
    """A value shown as its elements in order: the derived class has `elements()`."""

    hint = "array"

    def parts(self):
        for index, element in enumerate(self.elements()):
            yield "[%d]" % index, element


class Mapping(Record):
    """A value shown as keys with values: the derived class has `pairs()`. A key may occur twice."""

    hint = "map"

    def parts(self):
        try:
            for key, value in self.pairs():
                yield "key", key
                yield "value", value
        except ERRORS as error:
            yield "key", "corrupt"
            yield "value", corrupt(error)
