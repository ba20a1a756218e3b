"""Every member of every class of the type library, called with bad values of every kind: wrong
types, huge and non-finite numbers, long and malformed texts, the special values, too many and
too few arguments, keywords the member does not have. Each call returns or raises a clear error,
and the object stays usable. The sweep walks the type library, so it grows with it."""
import math
import threading

import pytest

import tessel
from conftest import clear_terminate_request


class Ended(Exception):
    """The terminate hook's own exception: the library asked to end the program."""


def _end():
    raise Ended


CLEAR = (tessel.Error, TypeError, ValueError, OverflowError, RecursionError, Ended)

# None is Nothing; objects of the other classes are added per class.
BAD = [[1], {"a": 1}, b"x", None, tessel.Empty, tessel.Null, tessel.Missing,
       1e39, -1e39, 2**63, float("nan"), float("inf"), float("-inf"),
       "x" * 100_000, "\x00", "\ud800", "((((", "#ZZ"]

# A plain value of each type the type library names, to fill the parameters a bad value is not
# given to (an object parameter takes an object of its class).
PLAIN = {"String": "1", "Boolean": False}


def _instances():
    """One object per class: the root object, the global objects, a new one of each creatable
    class, and the objects their properties without parameters give (for classes that clients
    cannot create)."""
    found = {"cls_DrawTool": tessel.DRAW}
    for name, cls in tessel._tessel.classes().items():
        if cls.is_global:
            found[name] = tessel._tessel.global_instance(name)
        elif cls.creatable:
            found.setdefault(name, cls())
    for obj in list(found.values()):
        for member in tessel._tessel.describe(type(obj))["members"]:
            get = member["get"]
            if get and not get["params"]:
                try:
                    value = getattr(obj, member["name"])
                except CLEAR:
                    continue
                if isinstance(value, tessel.Object):
                    found.setdefault(value.__tessel_class__, value)
    return found


def _plain(param, objects):
    if param.get("default", tessel.Missing) is not tessel.Missing:
        return param["default"]
    if param["type"] in objects:
        return objects[param["type"]]
    return PLAIN.get(param["type"], 1)


def _calls(accessor, others, objects):
    """Argument lists for an accessor: each bad value in each place, the others plain; then
    none at all, two too many, and a keyword it does not have."""
    params = accessor["params"]
    plain = [_plain(p, objects) for p in params]
    for i in range(len(params)):
        for bad in BAD + others:
            yield plain[:i] + [bad] + plain[i + 1:], {}
    yield [], {}
    yield plain + [1, "x"], {}
    yield plain, {"pNoSuchParameter": 1}


def _usable(obj, described):
    repr(obj)
    if described["values"]:
        values = tuple(obj)
        assert all(isinstance(v, (int, float)) and math.isfinite(v) for v in values), (obj, values)


def _sweep(failures):
    objects = _instances()
    missing = set(tessel._tessel.classes()) - set(objects)
    assert not missing, f"no object of {missing} to sweep"
    calls = 0
    for name, obj in sorted(objects.items()):
        described = tessel._tessel.describe(type(obj))
        others = [o for n, o in objects.items() if n != name]
        for member in described["members"]:
            for kind in ("method", "get", "let", "set"):
                if not member[kind]:
                    continue
                for args, named in _calls(member[kind], others, objects):
                    calls += 1
                    try:
                        tessel.invoke(obj, member["name"], kind, *args, **named)
                    except Ended:
                        clear_terminate_request()
                    except CLEAR:
                        pass
                    except BaseException as e:  # noqa: B902  (a SystemExit would end the run)
                        failures.append(f"{name}.{member['name']} {kind} {args!r:.80}: {e!r:.200}")
            if member["let"] and not member["let"]["params"][:-1]:
                for bad in BAD:  # the attribute path, which picks let or set by the value
                    try:
                        setattr(obj, member["name"], bad)
                    except Ended:
                        clear_terminate_request()
                    except CLEAR:
                        pass
            try:
                _usable(obj, described)
            except AssertionError as e:
                failures.append(f"{name} after {member['name']}: {e}")
    return calls


def test_every_member_survives_bad_arguments(monkeypatch, tmp_path, capfd):
    monkeypatch.chdir(tmp_path)  # whatever a member writes lands here
    buttons = {"AbortRetryIgnore": "Ignore", "YesNo": "No", "OK": "OK"}
    tessel.set_message_box(lambda prompt, title, kind, icon, default: buttons[kind])
    tessel.set_terminate(_end)
    failures, result = [], {}

    # On a thread of its own: its root object and global objects are its own, so what the sweep
    # assigns to them stays there.
    def run():
        try:
            result["calls"] = _sweep(failures)
        except BaseException as e:  # noqa: B902
            failures.append(repr(e))

    worker = threading.Thread(target=run)
    worker.start()
    worker.join()
    capfd.readouterr()
    assert failures == []
    assert result["calls"] > 4000
