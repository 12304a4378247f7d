"""gdb runs this file when a program loads libVXut. Runs share/vxut/gdb/load.py, which it finds from its own place."""

import os
import runpy


def _load():
    folder = os.path.dirname(os.path.abspath(__file__))
    while folder != os.path.dirname(folder):
        script = os.path.join(folder, "vxut", "gdb", "load.py")
        if os.path.exists(script):
            runpy.run_path(script)
            return
        folder = os.path.dirname(folder)


_load()
