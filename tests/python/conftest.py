"""Shared set-up of the Python tests: no display (dialogs would wait for a person), the fixture
class cls_PyProbe registered after tessel is imported (as a library loaded later would be), and
the seams restored after every test."""
import os
import subprocess
import sys
from pathlib import Path

# The built-in message box shows a GTK dialog when a display is there; the tests answer
# dialogs themselves or expect the display-less behaviour.
os.environ.pop("DISPLAY", None)
os.environ.pop("WAYLAND_DISPLAY", None)

import pytest  # noqa: E402

import tessel  # noqa: E402
import _tessel_testprobe  # noqa: E402,F401  (registers cls_PyProbe)


def clear_terminate_request():
    """Withdraws the calling thread's terminate request (cls_PyProbe.REQUESTTERMINATE)."""
    tessel.cls_PyProbe().REQUESTTERMINATE(False)


def run_python(script, timeout=60):
    """Runs a script in a child interpreter that imports tessel as this one does. The child gets
    this process's environment (a sanitizer's LD_PRELOAD and options included)."""
    env = dict(os.environ, PYTHONPATH=str(Path(tessel.__file__).resolve().parent.parent))
    return subprocess.run([sys.executable, "-c", script], capture_output=True, text=True, env=env,
                          timeout=timeout)


@pytest.fixture
def probe():
    p = tessel.cls_PyProbe()
    yield p
    clear_terminate_request()


@pytest.fixture(autouse=True)
def restore_seams():
    yield
    tessel.set_message_box(None)
    tessel.set_terminate(None)


@pytest.fixture
def rect():
    return tessel.DRAW.RECT(0, 0, 10, 10)
