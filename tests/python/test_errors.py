"""Errors reach the script as tessel.Error; the dialog and termination seams."""
import pickle
import textwrap

import pytest

import tessel
from conftest import run_python


def signed(number):
    return number - 2**32 if number >= 2**31 else number


def test_errors_carry_number_source_and_description(rect, probe):
    with pytest.raises(tessel.Error) as info:
        rect.MOVECENTER("abc")
    e = info.value
    assert isinstance(e, Exception)
    assert e.number == signed(0x8004000D) == -2147221491
    assert e.source == "cls_DrawRect.MOVECENTER"
    assert e.description == "Ungültiger Parameter (13)"
    assert "cls_DrawRect.MOVECENTER" in str(e) and "0x8004000D" in str(e)

    with pytest.raises(tessel.Error) as info:
        probe.FAIL(5)
    assert (info.value.number, info.value.source) == (-2147221499, "cls_PyProbe.FAIL")
    with pytest.raises(tessel.Error) as info:
        tessel.mdl_Global.UNHEX("80000000", 0)
    assert (info.value.number, info.value.source) == (signed(0x80040006), "mdl_Global.UNHEX")
    # Automation's own errors keep their plain numbers, and name the member and what is wrong,
    # however the lookup was made.
    with pytest.raises(tessel.Error) as info:
        tessel.invoke(rect, "NOSUCH", "method")
    assert info.value.number == 438
    calls = [(lambda: tessel.invoke(rect, "NOSUCH", "method"), "cls_DrawRect.NOSUCH", ": NOSUCH"),
             (lambda: rect.NOSUCH, "cls_DrawRect.NOSUCH", ": NOSUCH"),
             (lambda: rect.connect("MOVED\x00junk", print), "cls_DrawRect", ": kein gültiger Name"),
             (lambda: rect(), "cls_DrawRect", ": kein Standardmember"),
             (lambda: tessel.DRAW.RECT(pX=10), "cls_DrawToolRect.AUTO", "nicht gefunden: pX"),
             (lambda: rect.MOVE(1), "cls_DrawRect.MOVE", "nicht optional: pY")]
    for call, source, text in calls:
        with pytest.raises(tessel.Error) as info:
            call()
        assert info.value.source == source and info.value.description.endswith(text), info.value

    copy = pickle.loads(pickle.dumps(e))
    assert (copy.number, copy.source, copy.description) == (e.number, e.source, e.description)


def test_a_failed_operation_leaves_the_object_usable(rect):
    rect.MOVE(1, 2, 3, 4)
    with pytest.raises(tessel.Error):
        rect.MOVE("x", 0)
    assert rect.INFO() == "(1,2)-(3,5)"
    assert rect.MOVE(5, 5).X == 5


def test_the_message_box_answers_the_error_dialogs(probe):
    asked = []
    answers = iter(["Retry", "Ignore"])

    def answer(prompt, title, buttons, icon, default):
        asked.append((title, buttons, icon, default))
        assert prompt.startswith("Es ist ein Fehler beim Zugriff auf eine Datei aufgetreten")
        return next(answers)

    tessel.set_message_box(answer)
    probe.FAIL(53)  # a file error: Retry runs the body again, Ignore goes on
    assert probe.ATTEMPTS == 2
    assert asked == [("Datei-Fehler!", "AbortRetryIgnore", "Critical", 2)] * 2

    tessel.set_message_box(lambda *args: "Abort")
    with pytest.raises(tessel.Error) as e:
        probe.FAIL(53)
    assert e.value.description == "Dateizugriff fehlgeschlagen (53)"


def test_a_failing_answerer_reaches_the_script(probe):
    def broken(*args):
        raise RuntimeError("no answer")

    tessel.set_message_box(broken)
    with pytest.raises(RuntimeError) as e:
        probe.FAIL(53)
    assert isinstance(e.value.__context__, tessel.Error)  # the dialog was aborted
    for wrong in ("Maybe", "Yes", 3, "Ignore\0junk", "\ud800"):
        tessel.set_message_box(lambda *args, w=wrong: w)
        with pytest.raises(ValueError):
            probe.FAIL(53)
    with pytest.raises(TypeError):
        tessel.set_message_box("OK")


def test_without_answerer_and_display_the_text_goes_to_stderr(probe, capfd):
    tessel.set_message_box(lambda *args: "Ignore")
    tessel.set_message_box(None)  # the built-in service again
    with pytest.raises(tessel.Error):
        probe.FAIL(53)  # nobody can answer: the dialog is aborted
    assert "Datei-Fehler!" in capfd.readouterr().err


def test_termination_ends_the_call_with_system_exit(probe):
    calls = []
    tessel.set_terminate(lambda: calls.append("ended"))
    probe.REQUESTTERMINATE(True)
    with pytest.raises(SystemExit) as e:
        tessel.DRAW.ERRORSET("x")
    assert e.value.code == 1 and calls == ["ended"]
    with pytest.raises(SystemExit):
        probe.FAIL(5)  # while the request stands, any error ends the program
    assert calls == ["ended"] * 2

    class Stop(Exception):
        pass

    def stop():
        raise Stop

    tessel.set_terminate(stop)  # the handler's own exception takes SystemExit's place
    with pytest.raises(Stop):
        tessel.DRAW.ERRORSET("x")


def test_termination_ends_the_interpreter_without_losing_output():
    script = textwrap.dedent(
        """
        import tessel, _tessel_testprobe
        print("before", flush=False)
        try:
            tessel.cls_PyProbe().REQUESTTERMINATE(True)
            tessel.DRAW.ERRORSET("x")
        finally:
            print("finally")
        print("after")
        """
    )
    run = run_python(script)
    assert run.returncode == 1
    assert run.stdout.split() == ["before", "finally"]


def test_error_classes_are_the_built_in_exceptions_a_python_user_catches(rect, probe):
    with pytest.raises(TypeError) as info:
        rect.MOVECENTER("abc")  # 13, folded into the object-error range
    assert isinstance(info.value, tessel.TypeMismatchError) and isinstance(info.value, tessel.Error)
    for number in (5, 6, 9, 11, 380):
        with pytest.raises(ValueError) as info:
            probe.FAIL(number)
        assert type(info.value) is tessel.ParameterError and info.value.number == signed(0x80040000 | number)
    with pytest.raises(ValueError):
        tessel.DRAW.COLOR("#102030").R = 300  # overflow (6) from a property let

    # A missing member is an AttributeError, from attribute access and from the raw call alike.
    with pytest.raises(AttributeError) as info:
        rect.NOSUCH
    e = info.value
    assert isinstance(e, tessel.NoSuchMemberError) and e.number == 438 and e.name == "NOSUCH" and e.obj is rect
    assert "'cls_DrawRect' object has no member 'NOSUCH'" in str(e)
    with pytest.raises(AttributeError):
        rect.NOSUCH = 1
    with pytest.raises(AttributeError):
        tessel.invoke(rect, "NOSUCH", "get")
    with pytest.raises(AttributeError):
        rect.connect("NOSUCH", print)

    # Arguments that do not fit the call are TypeErrors, as Python's own are.
    for call in (lambda: rect.MOVE(1, 2, pZ=3), lambda: rect.MOVE(pY=1), lambda: rect.MOVE(1, 2, 3, 4, 5)):
        with pytest.raises(TypeError) as info:
            call()
        assert type(info.value) is tessel.ArgumentError

    # Everything else is a plain tessel.Error; except tessel.Error catches every one of them.
    with pytest.raises(tessel.Error) as info:
        probe.FAIL(1000)
    assert type(info.value) is tessel.Error
    with pytest.raises(tessel.Error):
        probe.FAIL(13)
    copy = pickle.loads(pickle.dumps(info.value))
    assert type(copy) is tessel.Error and copy.number == info.value.number
