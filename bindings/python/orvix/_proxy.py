"""Objects of the library as Python objects."""

import ctypes
import functools
import re
import threading
from ctypes import POINTER, byref, c_double, c_float, c_int16, c_int32, c_uint8, c_void_p
from pathlib import Path

from . import _platform as p
from . import _typelib, _values
from ._typelib import GET, METHOD, PUT, PUTREF
from ._values import Missing, Nothing, Ref, from_variant, to_variant


class Error(Exception):
    """A member that failed: `number`, `source` and `description` are those that it raised."""

    def __init__(self, number, source, description):
        super().__init__(f"error {number} from {source or 'the platform'}: {description}")
        self.number, self.source, self.description = number, source, description


def raise_error(result, told=None):
    """The failure behind a result code; an exception of a Python object that was called
    goes on as itself."""
    from . import _objects
    pending = _objects.take_pending()
    number, source, description = p.error_number(result), "", ""
    if told is not None:
        number, source, description = told
    else:
        found = c_void_p()
        if p.error_info(0, byref(found)) == 0 and found.value:
            words = [c_void_p(), c_void_p()]
            for index, word in zip((4, 5), words):
                p.method(found.value, index, POINTER(c_void_p))(found.value, byref(word))
            source, description = (p.taken_text(word.value) for word in words)
            p.release(found.value)
    if pending is not None:
        raise pending
    if not description:
        words = c_void_p()
        p.error_description(number, byref(words))
        description = p.taken_text(words.value)
    raise Error(number, source, description)


# --- Arguments -----------------------------------------------------------------------------
# A converter makes what the table's function takes; what it has made is given back by the
# function that it appends to `done`.

_SCALARS = {p.VT_I4: c_int32, p.VT_I2: c_int16, p.VT_UI1: c_uint8, p.VT_R4: c_float, p.VT_R8: c_double,
            p.VT_DATE: c_double, p.VT_BOOL: c_int16, p.VT_CY: ctypes.c_int64}


def _scalar(vt, name):
    if vt in _values.PLAIN:
        return lambda value: _values.checked(value, vt, name)
    if vt == p.VT_BOOL:
        def boolean(value):
            if not isinstance(value, (bool, int)):
                raise TypeError(f"{name} takes True or False, not {type(value).__name__}")
            return -1 if value else 0
        return boolean
    if vt == p.VT_DATE:
        def date(value):
            return _values.date_number(value) if not isinstance(value, (int, float)) else value
        return date
    if vt == p.VT_CY:
        return lambda value: round(value * 10000)

    def number(value):
        if not isinstance(value, (int, float)):
            raise TypeError(f"{name} takes a number, not {type(value).__name__}")
        return value
    return number


def _check_text(value, name):
    if not isinstance(value, str):
        raise TypeError(f"{name} takes a text, not {type(value).__name__}")
    return value


def _pointer_of(value, type_, name):
    """The object's address with a reference of its own; None for Nothing."""
    from . import _objects
    if value is None or value is Nothing:
        return None
    if isinstance(value, Object):
        if type_.user and type_.user != type(value).__name__:
            raise TypeError(f"{name} takes a {type_.user}, not a {type(value).__name__}")
        return value._own_reference()
    if type_.user:
        raise TypeError(f"{name} takes a {type_.user}, not {type(value).__name__}")
    return _objects.wrapped(value)


def _by_value(parameter):
    """The C type, and value -> (argument, function that gives it back or None)."""
    type_, name = parameter.type, parameter.name
    if type_.vt == p.VT_BSTR:
        def text(value):
            units = _check_text(value, name).encode("utf-16-le", "surrogatepass")
            return p.text_alloc(units, len(units)), p.text_free
        return c_void_p, text
    if type_.vt in _SCALARS:
        convert = _scalar(type_.vt, name)
        return _SCALARS[type_.vt], lambda value: (convert(value), None)
    if type_.vt == p.VT_DISPATCH:
        def an_object(value):
            pointer = _pointer_of(value, type_, name)
            return pointer, p.release if pointer else None
        return c_void_p, an_object
    raise TypeError(f"{name} has a type that is not known: {type_.vt}")


def _by_reference(parameter):
    """value -> (variable, function that reads it, function that gives it back)."""
    type_, name = parameter.type, parameter.name
    vt = type_.vt
    if vt == p.VT_VARIANT:
        return to_variant, from_variant, p.variant_clear
    if vt == p.VT_BSTR:
        return (lambda value: c_void_p(p.new_text(_check_text("" if value is Missing else value, name))),
                lambda variable: p.text_of(variable.value), lambda variable: p.text_free(variable.value))
    if vt in _SCALARS:
        convert, kind = _scalar(vt, name), _SCALARS[vt]
        read = {p.VT_BOOL: lambda variable: variable.value != 0,
                p.VT_DATE: lambda variable: _values.date_of(variable.value)}.get(vt, lambda variable: variable.value)
        return lambda value: kind(0 if value is Missing else convert(value)), read, None
    if vt & p.VT_ARRAY:
        def give_back(variable):
            if variable.value:
                p.array_destroy(variable.value)
        return (lambda value: c_void_p(None if value is Missing else _values.new_array(value, vt & 0xFFF, name)),
                lambda variable: _values.from_array(variable.value), give_back)
    if vt == p.VT_DISPATCH:
        def release(variable):
            if variable.value:
                p.release(variable.value)
        return (lambda value: c_void_p(None if value is Missing else _pointer_of(value, type_, name)),
                lambda variable: object_of(variable.value), release)
    raise TypeError(f"{name} has a type that is not known: {vt}")


def _result(type_):
    """The variable's type, and what reads it and gives it back."""
    vt = type_.vt
    if vt == p.VT_VOID:
        return None, None
    if vt == p.VT_BSTR:
        return c_void_p, lambda variable: p.taken_text(variable.value)
    if vt == p.VT_VARIANT:
        def take(variable):
            try:
                return from_variant(variable)
            finally:
                p.variant_clear(variable)
        return p.VARIANT, take
    if vt == p.VT_BOOL:
        return c_int16, lambda variable: variable.value != 0
    if vt == p.VT_DATE:
        return c_double, lambda variable: _values.date_of(variable.value)
    if vt in _SCALARS:
        return _SCALARS[vt], lambda variable: variable.value
    if vt == p.VT_DISPATCH:
        return c_void_p, lambda variable: object_of(variable.value, owned=True)
    if vt == p.VT_RECORD:
        return _values.Record, lambda variable: _values.from_record(ctypes.addressof(variable), take=True)
    if vt & p.VT_ARRAY:
        def take_array(variable):
            try:
                return _values.from_array(variable.value)
            finally:
                p.array_destroy(variable.value)
        return c_void_p, take_array
    raise TypeError(f"a result of type {vt}")


class Caller:
    """One accessor, ready to be called: the conversions are chosen once."""

    def __init__(self, owner, accessor):
        self.name, self.accessor = f"{owner}.{accessor.name}", accessor
        self.parameters = accessor.parameters
        self._index = {parameter.name.lower(): i for i, parameter in enumerate(self.parameters)}
        types, self._converters = [], []
        for parameter in self.parameters:
            if parameter.type.by_reference or parameter.type.vt == p.VT_VARIANT:
                types.append(c_void_p)
                self._converters.append((True, *_by_reference(parameter)))
            else:
                kind, convert = _by_value(parameter)
                types.append(kind)
                self._converters.append((False, convert, None, None))
        self._result_type, self._take = _result(accessor.result)
        if self._result_type is not None:
            types.append(c_void_p)
        self._types, self._function = tuple(types), None
        self._simple = not any(c[0] for c in self._converters)

    def _places(self, arguments, named):
        values = list(arguments)
        if len(values) > len(self.parameters):
            raise TypeError(f"{self.name} takes {len(self.parameters)} arguments, not {len(values)}: {self.accessor.signature}")
        values += [Missing] * (len(self.parameters) - len(values))
        for name, value in named.items():
            index = self._index.get(name.lower())
            if index is None:
                raise TypeError(f"{self.name} has no argument {name}: {self.accessor.signature}")
            if index < len(arguments):
                raise TypeError(f"{self.name} is given {self.parameters[index].name} twice")
            values[index] = value
        for value, parameter in zip(values, self.parameters):
            if value is Missing and not parameter.optional:
                raise TypeError(f"{self.name} needs {parameter.name}: {self.accessor.signature}")
        return values

    def __call__(self, owner, arguments, named=None):
        if named or len(arguments) != len(self.parameters) or Missing in arguments:
            arguments = self._places(arguments, named or {})
        pointer = owner._checked()
        if self._function is None:
            self._function = p.method(pointer, self.accessor.slot, *self._types)
        natives, done, written = [], [], []
        try:
            for value, (by_reference, convert, read, give_back) in zip(arguments, self._converters):
                if not by_reference:
                    native, give_back = convert(value.value if isinstance(value, Ref) else value)
                    natives.append(native)
                    if give_back is not None:
                        done.append((give_back, native))
                elif value is Missing:
                    natives.append(None)
                else:
                    variable = convert(value.value if isinstance(value, Ref) else value)
                    natives.append(byref(variable))
                    if give_back is not None:
                        done.append((give_back, variable))
                    if isinstance(value, Ref):
                        written.append((value, read, variable))
            if self._take is None:
                result = self._function(pointer, *natives)
            else:
                variable = self._result_type()
                result = self._function(pointer, *natives, byref(variable))
            for reference, read, place in written:
                reference.value = read(place)
            if result < 0:
                raise_error(result)
            return self._take(variable) if self._take is not None else None
        finally:
            for give_back, native in done:
                give_back(native)


# --- Objects -------------------------------------------------------------------------------


class Object:
    """An object of the library. It belongs to the thread that made it."""

    __slots__ = ("_pointer", "_thread", "__weakref__")
    _class = None

    def __init__(self):
        factory = p.class_object(self._class.clsid)
        found = c_void_p()
        result = p.method(factory, 3, c_void_p, POINTER(p.GUID), POINTER(c_void_p))(
            factory, None, self._class.iid, byref(found))
        p.release(factory)
        if result < 0:
            raise_error(result)
        self._adopt(found.value)

    def _adopt(self, pointer):
        self._pointer, self._thread = pointer, threading.get_ident()

    def _checked(self):
        if self._pointer is None:
            raise RuntimeError(f"this {type(self).__name__} is closed")
        if self._thread != threading.get_ident():
            raise RuntimeError(f"this {type(self).__name__} belongs to another thread")
        return self._pointer

    def _own_reference(self):
        pointer = self._checked()
        p.add_ref(pointer)
        return pointer

    def close(self):
        """Gives the object back now rather than when nothing refers to it."""
        pointer, self._pointer = self._pointer, None
        if pointer is not None and not p.closing:
            p.release(pointer)

    def __del__(self):
        # At the interpreter's end this module's names may be gone already.
        if p is not None and getattr(self, "_pointer", None) is not None:
            self.close()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def __repr__(self):
        return f"<orvix.{type(self).__name__}>"


class Bound:
    """A property with arguments: `s.Mid(2, 3)`, `s.Mid[2, 3]`, `s.Mid[2, 3] = "xy"`."""

    __slots__ = ("_owner", "_callers")

    def __init__(self, owner, callers):
        self._owner, self._callers = owner, callers

    def __call__(self, *arguments, **named):
        return self._callers[GET](self._owner, arguments, named)

    def __getitem__(self, index):
        return self(*(index if isinstance(index, tuple) else (index,)))

    def __setitem__(self, index, value):
        index = index if isinstance(index, tuple) else (index,)
        kind = PUTREF if isinstance(value, Object) and PUTREF in self._callers else PUT
        caller = self._callers[kind]
        left_out = (Missing,) * (len(caller.parameters) - 1 - len(index))
        caller(self._owner, (*index, *left_out, value))


class Property:
    """A property of a class of the library."""

    def __init__(self, callers):
        self._callers = callers
        self.__doc__ = documentation(callers)
        some = next(iter(callers.values()))
        self.__name__, self.__qualname__ = some.accessor.name, some.name
        self._indexed = any(len(c.parameters) > (0 if kind == GET else 1) for kind, c in callers.items())

    def __get__(self, owner, _=None):
        if owner is None:
            return self
        if self._indexed:
            return Bound(owner, self._callers)
        if GET not in self._callers:
            raise AttributeError(f"{self.__qualname__} can only be put")
        return self._callers[GET](owner, ())

    def __set__(self, owner, value):
        kind = PUTREF if isinstance(value, Object) and PUTREF in self._callers else PUT
        if kind not in self._callers:
            raise AttributeError(f"{self.__qualname__} cannot be put")
        self._callers[kind](owner, (value,))


def signature_of(caller, bound=False):
    """For help and completion; None where optional arguments stand before needed ones."""
    import inspect
    kind = inspect.Parameter
    parameters = [kind("self", kind.POSITIONAL_ONLY)] if bound else []
    parameters += [kind(q.name, kind.POSITIONAL_OR_KEYWORD, default=Missing if q.optional else kind.empty)
                   for q in caller.parameters]
    try:
        return inspect.Signature(parameters)
    except ValueError:
        return None


def _method(caller):
    def call(self, *arguments, **named):
        return caller(self, arguments, named)
    call.__name__, call.__qualname__ = caller.accessor.name, caller.name
    call.__doc__ = documentation({METHOD: caller})
    call.__signature__ = signature_of(caller, bound=True)
    return call


@functools.lru_cache(maxsize=None)
def _page(class_name):
    """The sections of the class's reference page."""
    page = Path(__file__).parent / "reference" / f"{class_name}.md"
    if not page.is_file():
        return {}
    parts = re.split(r"^## (\w+)[ \t]*$", page.read_text(encoding="utf-8"), flags=re.M)
    return dict(zip(parts[1::2], parts[2::2]))


def documentation(callers):
    some = next(iter(callers.values())).accessor
    signatures = "\n".join(caller.accessor.signature for caller in callers.values())
    owner = next(iter(callers.values())).name.split(".")[0]
    words = re.sub(r"```idl\n.*?```\n", "", _page(owner).get(some.name, ""), flags=re.S).strip()
    return "\n\n".join(part for part in (signatures, some.help, words) if part)


class Class(type(Object)):
    """A class of the library; its members are made when the first one is asked for."""

    def __getattr__(cls, name):
        if cls._class is not None and "_made" not in cls.__dict__ and not name.startswith("__"):
            cls._make()
            return getattr(cls, name)
        raise AttributeError(f"{cls.__name__} has no member {name}")

    def __dir__(cls):
        cls._make()
        return super().__dir__()

    def _make(cls):
        if "_made" in cls.__dict__ or cls._class is None:
            return
        cls._made = True
        for name, accessors in _typelib.library().members(cls.__name__).items():
            callers = {kind: Caller(cls.__name__, accessor) for kind, accessor in accessors.items()}
            setattr(cls, name, _method(callers[METHOD]) if METHOD in callers else Property(callers))
            default = next(iter(accessors.values())).id == 0 or name == "CompleteFilename"
            if default and GET in callers and not callers[GET].parameters:
                read = callers[GET]
                cls.__call__ = lambda self, read=read: read(self, ())
                cls.__str__ = lambda self, read=read: str(read(self, ()))


@functools.lru_cache(maxsize=None)
def class_named(name):
    described = _typelib.library().classes[name]
    made = Class(name, (Object,), {"_class": described, "__module__": "orvix", "__slots__": ()})
    made._make()
    return made


def object_of(pointer, owned=False):
    """The Python object for an object's address: the one that was handed in, a class of
    the library, or a late-bound one."""
    from . import _objects
    if not pointer:
        return Nothing
    try:
        python = _objects.behind(pointer)
        if python is not _objects.NONE:
            return python
        for iid, name in _typelib.library().class_of_iid.items():
            found = p.query(pointer, p.GUID.from_buffer_copy(iid))
            if found:
                kind = class_named(name)
                made = kind.__new__(kind)
                made._adopt(found)
                return made
        return _objects.Late(pointer)
    finally:
        if owned:
            p.release(pointer)

