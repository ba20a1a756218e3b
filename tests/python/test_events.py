"""Events: connecting, the connection's lifetime, arguments and ByRef cells, and what happens
when a callback fails."""
import concurrent.futures
import gc
import textwrap
import weakref

import pytest

import tessel
from conftest import run_python


def test_callbacks_receive_events(rect):
    moved, resized = [], []
    c1 = rect.connect("MOVED", lambda: moved.append((rect.X, rect.Y)))
    c2 = rect.connect("resize", lambda: resized.append(rect.W))  # names in any case
    rect.X = 3
    rect.X = 3  # unchanged: no event
    rect.W = 20
    rect.MOVE(4, 5, 30)  # MOVED per changed coordinate, then RESIZE
    assert moved == [(3, 0), (4, 0), (4, 5)]
    assert resized == [20, 30]
    assert c1.connected and c2.connected


def test_disconnecting_stops_the_callback_and_dropping_the_connection_does_not(rect):
    calls = []
    conn = rect.connect("MOVED", lambda: calls.append(1))
    rect.X = 1
    conn.disconnect()
    conn.disconnect()
    rect.X = 2
    assert calls == [1] and not conn.connected

    rect.connect("MOVED", lambda: calls.append(2))  # the object keeps the connection
    gc.collect()
    rect.X = 3
    with rect.connect("MOVED", lambda: calls.append(3)):
        rect.X = 4
    rect.X = 5
    assert calls == [1, 2, 2, 3, 2]


def test_handlers_live_as_long_as_their_source_and_cycles_are_collected():
    class Listener:
        def __init__(self, source):
            self.calls = 0
            self.conn = source.connect("MOVED", self.on_moved)  # a cycle through the connection

        def on_moved(self):
            self.calls += 1

    rect = tessel.cls_DrawRect()
    listener = Listener(rect)
    gone = weakref.ref(listener)
    del listener
    gc.collect()
    rect.X = 1  # still connected: the source keeps its handlers
    assert gone().calls == 1

    # A handler closing over its source: the source, its connection and the handler are one
    # cycle, freed by the collector once nothing else holds the source.
    rect.connect("RESIZE", lambda: rect.W)
    conn = gone().conn
    source = weakref.ref(rect)
    del rect
    gc.collect()
    assert source() is None and gone() is None
    assert not conn.connected  # the source is gone; the kept connection does not keep it

    # Without a cycle the source goes as soon as Python lets go, its connections with it.
    rect = tessel.cls_DrawRect()
    conn = rect.connect("MOVED", print)
    del rect
    assert not conn.connected


def test_an_object_the_library_holds_keeps_its_handlers():
    calls = []
    flags, point = tessel.cls_DrawFlags(), tessel.cls_DrawPoint()
    flags.SETFLAG("p", point)
    held = weakref.ref(point)
    point.connect("MOVED", lambda: calls.append(held().X))
    del point
    gc.collect()
    flags("p").X = 5  # the library holds the point: its Python object and handler live on
    assert calls == [5] and flags("p") is held()
    flags.REMOVE("p")  # now only the cycle through the handler holds it
    gc.collect()
    assert held() is None

    # Disconnecting inside the handler, and after the source is gone, is harmless.
    rect = tessel.cls_DrawRect()
    conns = []
    conns.append(rect.connect("MOVED", lambda: conns[0].disconnect()))
    rect.X = 1
    rect.X = 2
    assert not conns[0].connected
    del rect
    gc.collect()
    conns[0].disconnect()


def test_event_arguments_and_byref_cells(probe):
    seen = []

    def first(key):
        seen.append(("first", key.value))
        key.value = 66  # a ByRef argument: the change goes back to the raiser

    def second(key):
        seen.append(("second", key.value))

    c1 = probe.connect("KEY", first)
    c2 = probe.connect("KEY", second)
    assert probe.PRESS(65) == 66
    assert seen == [("first", 65), ("second", 66)]
    del c1, c2

    changes = []
    c3 = probe.connect("CHANGED", lambda key, value: changes.append((key, value)))
    probe.ITEM["a"] = 1.5
    probe.ITEM["b"] = probe
    assert changes == [("a", 1.5), ("b", probe)]
    del c3


def test_a_value_the_raiser_cannot_take_leaves_the_argument(probe):
    def text(key):
        key.value = "abc"  # no Integer: ignored, as the library does

    with probe.connect("KEY", text):
        assert probe.PRESS(65) == 65

    def unconvertible(key):
        key.value = object()

    with probe.connect("KEY", unconvertible):
        with pytest.raises(TypeError):
            probe.PRESS(65)


def test_a_failing_callback_raises_from_the_call_that_raised_the_event(rect):
    calls = []

    def broken():
        raise ValueError("boom")

    c1 = rect.connect("MOVED", broken)
    c2 = rect.connect("MOVED", lambda: calls.append(rect.X))
    with pytest.raises(ValueError):
        rect.X = 7
    assert rect.X == 7 and calls == [7]  # the library finished its work; other listeners ran

    def nested():
        tessel.mdl_Global.UNHEX("80000000", 0)

    c1.disconnect()
    c1 = rect.connect("MOVED", nested)
    with pytest.raises(tessel.Error) as e:
        rect.X = 8
    assert e.value.source == "mdl_Global.UNHEX"
    del c1, c2


def test_ending_the_program_in_a_callback_unwinds_the_whole_call(rect, probe):
    seen = []

    def on_moved():
        seen.append(rect.X)
        probe.REQUESTTERMINATE(True)
        tessel.DRAW.ERRORSET("x")

    c1 = rect.connect("MOVED", on_moved)
    c2 = rect.connect("RESIZE", lambda: seen.append("resized"))
    with pytest.raises(SystemExit):
        rect.MOVE(5, 5, 20, 20)
    assert seen == [5]  # no second MOVED, no RESIZE
    assert (rect.X, rect.Y) == (5, 0)
    probe.REQUESTTERMINATE(False)

    def interrupt():
        raise KeyboardInterrupt

    c1.disconnect()
    c1 = rect.connect("MOVED", interrupt)
    with pytest.raises(KeyboardInterrupt):
        rect.MOVE(6, 6, 30, 30)
    assert seen == [5] and rect.Y == 0
    del c1, c2


def test_connect_errors(rect, probe):
    with pytest.raises(tessel.Error) as e:
        rect.connect("NOSUCH", print)
    assert e.value.number == 438
    with pytest.raises(TypeError):
        rect.connect("MOVED", 5)
    with pytest.raises(TypeError):
        rect.connect("MOVED")
    for name in ("MOVED\0junk", "\ud800", ""):
        with pytest.raises(tessel.NoSuchMemberError):
            rect.connect(name, print)
    # A member of the same name keeps everything but connect(event, callback).
    assert probe.connect(probe) == "cls_PyProbe"
    assert isinstance(probe.connect("KEY", print), tessel.Connection)
    assert probe.CONNECT("KEY") == "String"


def test_daemon_threads_in_callbacks_do_not_break_the_interpreters_exit():
    script = textwrap.dedent(
        """
        import threading, time, tessel, _tessel_testprobe
        tessel.set_message_box(lambda *args: sum(range(50)) and "Ignore")
        def worker(dialogs):
            r, probe = tessel.cls_DrawRect(), tessel.cls_PyProbe()
            r.connect("MOVED", lambda: sum(range(50)))
            while True:
                r.MOVEBY(1, 1)
                if dialogs:
                    probe.FAIL(53)  # the answerer runs while the library handles the error
        for i in range(4):
            threading.Thread(target=worker, args=(i % 2,), daemon=True).start()
        time.sleep(0.2)
        """
    )
    # The interpreter ends daemon threads wherever they are, often inside a callback.
    with concurrent.futures.ThreadPoolExecutor(6) as pool:
        runs = list(pool.map(lambda _: run_python(script), range(30)))
    assert [(r.returncode, r.stderr) for r in runs if r.returncode] == []


def test_callbacks_that_reenter_the_library_end_in_recursion_error():
    script = textwrap.dedent(
        """
        import sys, tessel, _tessel_testprobe
        sys.setrecursionlimit(100000)
        r = tessel.cls_DrawRect()
        conn = r.connect("MOVED", lambda: r.MOVEBY(1, 1))
        try:
            r.MOVEBY(1, 1)
        except RecursionError:
            print("handler", r.X > 50)
        probe = tessel.cls_PyProbe()
        tessel.set_message_box(lambda *args: probe.FAIL(53))
        try:
            probe.FAIL(53)
        except RecursionError:
            print("answerer", probe.ATTEMPTS > 50)
        conn.disconnect()
        tessel.set_message_box(None)
        r.MOVEBY(1, 1)  # usable again once the stack has unwound
        assert probe.SUM(1) == 11
        """
    )
    run = run_python(script)
    assert (run.returncode, run.stdout.split()) == (0, ["handler", "True", "answerer", "True"]), run.stderr
