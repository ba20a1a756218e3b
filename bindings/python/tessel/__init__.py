"""Tessel, the 2-D drawing toolkit, scripted from Python.

Every class, enumeration and global object of Tessel's type library appears here by itself:

    import tessel
    r = tessel.DRAW.RECT("5", 6, 7, 8)   # the rectangle factory's default member
    r.MOVE(1, 2, pW=30)                  # members by name, any case, keyword arguments
    r.X = 10                             # properties get and let by name
    x, y, w, h = r                       # a rectangle's values
    r.connect("MOVED", print)            # events: connected until disconnect() or r is gone

Each class is a Python type (isinstance(r, tessel.cls_DrawRect)); tessel.DRAW is the calling
thread's root object. Errors of the library raise tessel.Error with number, source and
description, as subclasses that are also TypeError, ValueError or AttributeError where a Python
user would expect those. See docs/python.md; tessel/__init__.pyi types every class.
"""

from . import _tessel
from ._tessel import (  # noqa: F401  (the public names of the package)
    ArgumentError,
    ByRef,
    Class,
    Connection,
    Empty,
    Error,
    Member,
    Missing,
    NoSuchMemberError,
    Null,
    Object,
    ParameterError,
    Property,
    TypeMismatchError,
    invoke,
    native_handles,
    set_message_box,
    set_terminate,
)


class Enumeration:
    """An enumeration of the type library: its members as attributes with int values."""

    def __init__(self, name, members, description=""):
        self.__name__ = name
        self.__doc__ = description or f"The enumeration {name} of Tessel's type library."
        self.__members__ = dict(members)
        for member, value in self.__members__.items():
            setattr(self, member, value)

    def __iter__(self):
        return iter(self.__members__.items())

    def __len__(self):
        return len(self.__members__)

    def __contains__(self, name):
        return name in self.__members__

    def name_of(self, value):
        """The first member with this value, or None."""
        for member, v in self.__members__.items():
            if v == value:
                return member
        return None

    def __repr__(self):
        return f"<tessel enumeration {self.__name__} ({len(self)} members)>"


def _publish():
    """Puts every class and enumeration not yet published into the module."""
    names = globals()
    for name, cls in _tessel.classes().items():
        # Global objects exist once per thread; they are looked up on each access (__getattr__).
        if not cls.is_global:
            names.setdefault(name, cls)
    for name, members, description in _tessel.enums():
        if name in names:
            continue
        names[name] = Enumeration(name, members, description)
        for member, value in members:
            # Member names are unique across enumerations; the first one wins otherwise.
            if member.startswith("ID_"):
                names.setdefault(member, value)


_publish()

# Global objects whose members are usable without qualification (tessel.DRAW).
_UNQUALIFIED = ("sys_Global",)


def __getattr__(name):
    if name.startswith("__"):
        raise AttributeError(f"module 'tessel' has no attribute {name!r}")
    instance = _tessel.global_instance(name)
    if instance is not None:
        return instance
    for owner in _UNQUALIFIED:
        cls = _tessel.find_class(owner)
        if cls is not None and any(m.lower() == name.lower() for m in cls.members):
            return getattr(_tessel.global_instance(owner), name)
    # Classes and enumerations registered after import (a library loaded later) appear as well.
    _publish()
    if name in globals():
        return globals()[name]
    raise AttributeError(f"module 'tessel' has no attribute {name!r}")


def __dir__():
    names = set(globals())
    for name, cls in _tessel.classes().items():
        if cls.is_global:
            names.add(name)
            if name in _UNQUALIFIED:
                names.update(cls.members)
    return sorted(names)
