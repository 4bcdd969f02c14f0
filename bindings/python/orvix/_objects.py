"""Python objects as objects for the library, and objects that are not the library's."""

import ctypes
import threading
from ctypes import CFUNCTYPE, POINTER, Structure, byref, c_int32, c_uint16, c_uint32, c_void_p

from . import _platform as p
from ._values import from_variant, to_variant

NONE = object()
_state = threading.local()
_living = {}  # by address: the Python object, its reference count and what keeps its memory
_lock = threading.RLock()


def take_pending():
    """The exception that a Python object raised inside the call under way."""
    pending, _state.pending = getattr(_state, "pending", None), None
    return pending


class Collection:
    """A list, or the values of a dict, as a collection: Count, Item, and enumeration."""

    def __init__(self, items):
        self._items = items

    @property
    def Count(self):
        return len(self._items)

    def Item(self, index):
        if isinstance(self._items, dict):
            return self._items[index] if index in self._items else list(self._items.values())[index - 1]
        if not 1 <= index <= len(self._items):
            raise IndexError(f"no item {index} in a collection of {len(self._items)}")
        return self._items[index - 1]

    def __iter__(self):
        return iter(self._items.values() if isinstance(self._items, dict) else self._items)


class _Living:
    __slots__ = ("python", "count", "memory", "ids", "names")

    def __init__(self, python, memory):
        self.python, self.count, self.memory, self.ids, self.names = python, 1, memory, {}, {}


class _Instance(Structure):
    _fields_ = [("table", c_void_p)]


def wrapped(python):
    """The address of an IDispatch for the object, with a reference for the caller."""
    instance = _Instance(ctypes.addressof(_enumerator if isinstance(python, _Enumeration) else _dispatch))
    address = ctypes.addressof(instance)
    with _lock:
        _living[address] = _Living(python, instance)
    return address


def behind(pointer):
    """The Python object at the address; NONE for others."""
    living = _living.get(pointer)
    return NONE if living is None else living.python


# --- The table of functions: nothing may leave it as an exception -------------------------


def _query(this, iid, found):
    wanted = bytes(iid.contents)
    enumerates = isinstance(_living[this].python, _Enumeration)
    own = p.IID_IEnumVARIANT if enumerates else p.IID_IDispatch
    if wanted in (bytes(p.IID_IUnknown), bytes(own)):
        _add_ref(this)
        found[0] = this
        return 0
    found[0] = None
    return p.E_NOINTERFACE


def _add_ref(this):
    with _lock:
        living = _living[this]
        living.count += 1
        return living.count


def _release(this):
    with _lock:
        living = _living[this]
        living.count -= 1
        if living.count:
            return living.count
        del _living[this]
    return 0


def _type_count(this, count):
    count[0] = 0
    return 0


def _no_type(this, index, lcid, info):
    return p.E_FAIL


def _attribute(python, name):
    """The attribute's own spelling; names ignore case."""
    if hasattr(python, name):
        return name
    lower = name.lower()
    return next((one for one in dir(python) if one.lower() == lower), None)


def _ids(this, iid, names, count, lcid, ids):
    living = _living[this]
    result = 0
    for i in range(count):
        text = _wide(names[i])
        # A name may be put before it is there to be read.
        spelling = _attribute(living.python, text) or text
        if i > 0:
            ids[i], result = -1, p.DISP_E_UNKNOWNNAME
            continue
        if not _known(living.python, spelling):
            ids[0], result = -1, p.DISP_E_UNKNOWNNAME
            continue
        number = living.ids.setdefault(spelling.lower(), len(living.ids) + 1)
        living.names[number] = spelling
        ids[0] = number
    return result


def _known(python, name):
    return hasattr(python, name) or _attribute(python, name) is not None


def _wide(address):
    units = bytearray()
    while True:
        unit = ctypes.string_at(address + len(units), 2)
        if unit == b"\0\0":
            return units.decode("utf-16-le", "surrogatepass")
        units += unit


def _invoke(this, member, iid, lcid, flags, params, result, exception, argument):
    living = _living.get(this)
    try:
        given = params.contents
        values = [from_variant(given.args[i]) for i in range(given.count)]  # last first
        if member == -4:
            answer = _Enumeration(living.python)
            pointer = wrapped(answer)
            if result:
                result.contents.n.pointer, result.contents.vt = pointer, p.VT_UNKNOWN
            return 0
        name = living.names.get(member)
        if name is None:
            if member != 0:
                return p.DISP_E_MEMBERNOTFOUND
            answer = living.python
            name = "__str__" if not callable(answer) else "__call__"
        if flags & 12:  # put
            setattr(living.python, name, values[0])
            return 0
        answer = getattr(living.python, name)
        if callable(answer):
            answer = answer(*reversed(values))
        elif values:
            answer = answer[values[0] if len(values) == 1 else tuple(reversed(values))]
        if result:
            to_variant(answer, result.contents)
        return 0
    except BaseException as error:  # noqa: BLE001  it goes on as itself behind the member
        _state.pending = error
        if exception:
            told = exception.contents
            told.code, told.scode = 0, 0x800A0000 + 440 - 2**32
            told.source = p.new_text(type(error).__name__)
            told.description = p.new_text(str(error))
            told.file, told.fill = None, None
        return p.DISP_E_EXCEPTION


class _Enumeration:
    def __init__(self, items):
        self.items = list(items)
        self.next = 0


def _next(this, count, values, fetched):
    living = _living[this].python
    number = 0
    try:
        while number < count and living.next < len(living.items):
            to_variant(living.items[living.next], values[number])
            living.next += 1
            number += 1
    except BaseException as error:  # noqa: BLE001
        _state.pending = error
        return p.E_FAIL
    if fetched:
        fetched[0] = number
    return 0 if number == count else 1


def _skip(this, count):
    living = _living[this].python
    living.next = min(living.next + count, len(living.items))
    return 0


def _reset(this):
    _living[this].python.next = 0
    return 0


def _clone(this, copy):
    living = _living[this].python
    other = _Enumeration(living.items)
    other.next = living.next
    copy[0] = wrapped(other)
    return 0


def _table(*rows):
    functions = [CFUNCTYPE(result, c_void_p, *arguments)(function) for function, result, arguments in rows]
    table = (c_void_p * len(functions))(*(ctypes.cast(f, c_void_p).value for f in functions))
    table.functions = functions  # as long as the table
    return table


_UNKNOWN = ((_query, c_int32, (POINTER(p.GUID), POINTER(c_void_p))), (_add_ref, c_uint32, ()),
            (_release, c_uint32, ()))
_dispatch = _table(
    *_UNKNOWN, (_type_count, c_int32, (POINTER(c_uint32),)),
    (_no_type, c_int32, (c_uint32, c_uint32, c_void_p)),
    (_ids, c_int32, (c_void_p, POINTER(c_void_p), c_uint32, c_uint32, POINTER(c_int32))),
    (_invoke, c_int32, (c_int32, c_void_p, c_uint32, c_uint16, POINTER(p.DISPPARAMS), POINTER(p.VARIANT),
                        POINTER(p.EXCEPINFO), c_void_p)))
_enumerator = _table(*_UNKNOWN, (_next, c_int32, (c_uint32, POINTER(p.VARIANT), POINTER(c_uint32))),
                     (_skip, c_int32, (c_uint32,)), (_reset, c_int32, ()), (_clone, c_int32, (POINTER(c_void_p),)))


# --- Objects that are neither Python's nor the library's ------------------------------------


class Late:
    """Somebody else's object: its members are found by name when they are used."""

    def __init__(self, pointer):
        p.add_ref(pointer)
        object.__setattr__(self, "_pointer", pointer)

    def __del__(self):
        if p is not None and not p.closing:
            p.release(self._pointer)

    def _id(self, name):
        units = ctypes.create_string_buffer(name.encode("utf-16-le") + b"\0\0")
        names, found = c_void_p(ctypes.addressof(units)), c_int32()
        result = p.method(self._pointer, 5, POINTER(p.GUID), POINTER(c_void_p), c_uint32, c_uint32, POINTER(c_int32))(
            self._pointer, p.IID_NULL, byref(names), 1, 0, byref(found))
        if result < 0:
            raise AttributeError(f"the object has no member {name}")
        return found.value

    def _invoke(self, name, flags, arguments):
        from ._proxy import raise_error
        member = self._id(name)
        put = flags == 4
        values = (p.VARIANT * len(arguments))()
        for place, value in zip(values, reversed(arguments)):
            to_variant(value, place)
        named = c_int32(-3)
        params = p.DISPPARAMS(values, ctypes.pointer(named) if put else None, len(arguments), 1 if put else 0)
        answer, told = p.VARIANT(), p.EXCEPINFO()
        try:
            result = p.method(self._pointer, 6, c_int32, POINTER(p.GUID), c_uint32, c_uint16, POINTER(p.DISPPARAMS),
                              POINTER(p.VARIANT), POINTER(p.EXCEPINFO), c_void_p)(
                self._pointer, member, p.IID_NULL, 0, flags, byref(params), byref(answer), byref(told), None)
            if result == p.DISP_E_EXCEPTION:
                number = told.code or p.error_number(told.scode)
                words = number, p.taken_text(told.source), p.taken_text(told.description)
                raise_error(told.scode, words)
            if result < 0:
                raise_error(result)
            return from_variant(answer)
        finally:
            p.variant_clear(answer)
            for value in values:
                p.variant_clear(value)

    def __getattr__(self, name):
        if name.startswith("__"):
            raise AttributeError(name)
        self._id(name)
        return LateMember(self, name)

    def __setattr__(self, name, value):
        self._invoke(name, 4, (value,))


class LateMember:
    """A member of somebody else's object: `member()` reads it or calls it."""

    def __init__(self, owner, name):
        self._owner, self._name = owner, name

    def __call__(self, *arguments):
        return self._owner._invoke(self._name, 3, arguments)

