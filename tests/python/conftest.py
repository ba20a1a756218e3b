"""Shared set-up of the Python tests: no display (dialogs would wait for a person), the fixture
class cls_PyProbe registered after tessel is imported (as a library loaded later would be), and
the seams restored after every test."""
import os

# The built-in message box shows a GTK dialog when a display is there; the tests answer
# dialogs themselves or expect the display-less behaviour.
os.environ.pop("DISPLAY", None)
os.environ.pop("WAYLAND_DISPLAY", None)

import pytest  # noqa: E402

import tessel  # noqa: E402
import _tessel_testprobe  # noqa: E402,F401  (registers cls_PyProbe)


@pytest.fixture
def probe():
    p = tessel.cls_PyProbe()
    yield p
    p.REQUESTTERMINATE(False)


@pytest.fixture(autouse=True)
def restore_seams():
    yield
    tessel.set_message_box(None)
    tessel.set_terminate(None)


@pytest.fixture
def rect():
    return tessel.DRAW.RECT(0, 0, 10, 10)
