"""Orvix from Python.

    import orvix
    orvix.GetElement("a,b,c", 2, ",")      # members of the global object are functions
    s = orvix.classString()                # objects have their members, by their exact names
    s.Value = "Hello"
    s.Mid[2, 3] = "ipp"
    removed = orvix.Ref()                  # an argument by reference
    orvix.SuperRTrim("text  ", removed)    # removed.value is 2

A member that fails raises orvix.Error; a wrong call TypeError, OverflowError or
AttributeError. `None` is Empty; Missing leaves an argument out, Null and Nothing are
themselves.
"""

import threading as _threading

from ._host import host
from ._values import FileType, Missing, Nothing, Null, Ref

__version__ = "1.0.0"
_state = _threading.local()


def _global():
    """The global object of this thread."""
    found = getattr(_state, "object", None)
    if found is None:
        from ._proxy import class_named
        found = _state.object = class_named("classOrvix")()
    return found


def _function(name, accessors):
    from . import _proxy, _typelib
    callers = {kind: _proxy.Caller("classOrvix", accessor) for kind, accessor in accessors.items()}
    caller = callers.get(_typelib.METHOD) or callers[_typelib.GET]

    def call(*arguments, **named):
        return caller(getattr(_state, "object", None) or _global(), arguments, named)
    call.__name__ = call.__qualname__ = name
    call.__doc__ = _proxy.documentation(callers)
    call.__signature__ = _proxy.signature_of(caller)
    return call


def __getattr__(name):
    if name.startswith("_"):
        raise AttributeError(name)
    if name == "Error":
        from ._proxy import Error as found
    elif name == "Collection":
        from ._objects import Collection as found
    else:
        from . import _proxy, _typelib, _values
        library = _typelib.library()
        if name in library.classes:
            found = _proxy.class_named(name)
        elif name in library.enumerations:
            found = _values.enumeration(name, library.enumerations[name])
        elif name in library.members("classOrvix"):
            found = _function(name, library.members("classOrvix")[name])
        else:
            constant = next((c for c in library.enumerations.values() if name in c), None)
            if constant is None:
                raise AttributeError(f"orvix has no member {name}")
            found = constant[name]
    globals()[name] = found
    return found


def __dir__():
    from . import _typelib
    library = _typelib.library()
    constants = [name for one in library.enumerations.values() for name in one]
    return sorted({*globals(), "Error", "Collection", *library.classes, *library.enumerations,
                   *library.members("classOrvix"), *constants})


__all__ = ["FileType", "Missing", "Nothing", "Null", "Ref", "host"]
