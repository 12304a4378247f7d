"""Printers and commands for gdb: values of libVXut's classes, and who holds and waits for its locks."""

from . import locks, printers


def register():
    """Makes the printers and commands known to gdb. May be called again."""
    printers.register()
    locks.register()
