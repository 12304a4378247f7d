"""Loads the printers and commands for programs that use libVXut: `source load.py`, or through the library's auto-load script.

Debug information of the program or of the library is needed; values of types without it are printed as gdb does.
"""

import os
import sys

_folder = os.path.dirname(os.path.abspath(__file__))
if _folder not in sys.path:
    sys.path.insert(0, _folder)

# The folder may belong to a package: write no compiled modules into it.
_written = sys.dont_write_bytecode
sys.dont_write_bytecode = True
try:
    import vxut
finally:
    sys.dont_write_bytecode = _written

vxut.register()
