"""Values on their way in and out: VARIANT, arrays and the record."""

import ctypes
import enum
from ctypes import byref, c_uint16, c_void_p
from datetime import datetime, timedelta
from decimal import Decimal

from . import _platform as p

_EPOCH = datetime(1899, 12, 30)


class _Named:
    def __init__(self, name):
        self._name = name

    def __repr__(self):
        return f"orvix.{self._name}"

    def __bool__(self):
        return False


Missing = _Named("Missing")  # an argument that is left out
Null = _Named("Null")
Nothing = _Named("Nothing")  # no object


class Ref:
    """An argument by reference: `value` goes in, and holds afterwards what the member wrote."""

    __slots__ = ("value",)

    def __init__(self, value=Missing):
        self.value = value

    def __repr__(self):
        return f"orvix.Ref({self.value!r})"


def date_number(when):
    """Days since 30 December 1899; before it the fraction of a day still counts forward."""
    seconds = (when.replace(tzinfo=None) - _EPOCH) / timedelta(days=1)
    days = seconds // 1
    return days - (seconds - days) if seconds < 0 else seconds


def date_of(number):
    days = int(number)
    return _EPOCH + timedelta(days=days, microseconds=round(abs(number - days) * 86_400_000_000))


# --- Arrays ----------------------------------------------------------------------------


PLAIN = {p.VT_I2: (ctypes.c_int16, -32768, 32767), p.VT_I4: (ctypes.c_int32, -2**31, 2**31 - 1),
         p.VT_UI1: (ctypes.c_uint8, 0, 255), p.VT_I1: (ctypes.c_int8, -128, 127),
         p.VT_UI2: (ctypes.c_uint16, 0, 65535), p.VT_UI4: (ctypes.c_uint32, 0, 2**32 - 1),
         p.VT_I8: (ctypes.c_int64, -2**63, 2**63 - 1), p.VT_UI8: (ctypes.c_uint64, 0, 2**64 - 1),
         p.VT_INT: (ctypes.c_int32, -2**31, 2**31 - 1), p.VT_UINT: (ctypes.c_uint32, 0, 2**32 - 1)}


def checked(number, vt, name="a value"):
    kind, lowest, highest = PLAIN[vt]
    if isinstance(number, float) and number.is_integer():
        number = int(number)
    if not isinstance(number, int):
        raise TypeError(f"{name} takes a whole number, not {type(number).__name__}")
    if not lowest <= number <= highest:
        raise OverflowError(f"{name} takes a number from {lowest} to {highest}, not {number}")
    return number


def new_array(values, element=p.VT_VARIANT, name="an array"):
    """The address of a new SAFEARRAY with first index 0; bytes cross by one copy."""
    if values is None or values is Nothing:
        return None
    if isinstance(values, (bytes, bytearray, memoryview)):
        if element not in (p.VT_UI1, p.VT_VARIANT):
            raise TypeError(f"{name} takes no bytes")
        if element == p.VT_UI1 or isinstance(values, (bytes, bytearray, memoryview)) and element != p.VT_VARIANT:
            data = bytes(values)
            array = _vector(p.VT_UI1, len(data))
            ctypes.memmove(p.SAFEARRAY.from_address(array).data, data, len(data))
            return array
    values = list(values)
    array = _vector(element, len(values))
    data = p.SAFEARRAY.from_address(array).data
    try:
        if element == p.VT_VARIANT:
            for place, value in zip((p.VARIANT * len(values)).from_address(data or 0) if values else (), values):
                to_variant(value, place)
        elif element == p.VT_BSTR:
            for i, value in enumerate(values):
                if not isinstance(value, str):
                    raise TypeError(f"{name} takes texts, not {type(value).__name__}")
                c_void_p.from_address(data + 8 * i).value = p.new_text(value)
        elif element in PLAIN:
            kind = PLAIN[element][0]
            numbers = [checked(value, element, name) for value in values]
            ctypes.memmove(data, (kind * len(values))(*numbers), ctypes.sizeof(kind) * len(values))
        elif element in (p.VT_R4, p.VT_R8):
            kind = ctypes.c_float if element == p.VT_R4 else ctypes.c_double
            ctypes.memmove(data, (kind * len(values))(*values), ctypes.sizeof(kind) * len(values))
        else:
            raise TypeError(f"{name} cannot be made from Python values")
    except BaseException:
        p.array_destroy(array)
        raise
    return array


def _vector(element, count):
    array = p.array_vector(element, 0, count)
    if not array:
        raise MemoryError
    return array


def from_array(array):
    """bytes, or a list; nested for more than one dimension. None for an array without bounds."""
    if not array:
        return None
    described = p.SAFEARRAY.from_address(array)
    kind = c_uint16()
    if p.array_type(array, byref(kind)) != 0:
        raise TypeError("an array of an unknown type")
    bounds = (p.BOUND * described.dims).from_address(ctypes.addressof(described.bounds))
    counts = [bound.count for bound in bounds]  # the last dimension comes first
    total = 1
    for count in counts:
        total *= count
    vt, data = kind.value, described.data
    if vt == p.VT_UI1 and len(counts) == 1:
        return ctypes.string_at(data, total) if total else b""
    if vt in PLAIN:
        flat = list((PLAIN[vt][0] * total).from_address(data)) if total else []
    elif vt in (p.VT_R4, p.VT_R8):
        flat = list(((ctypes.c_float if vt == p.VT_R4 else ctypes.c_double) * total).from_address(data)) if total else []
    else:
        size = described.size
        flat = [from_address(data + size * i, vt) for i in range(total)]
    for count in reversed(counts[1:]):  # the first dimension varies fastest
        step = total // count if count else 0
        flat = [flat[i::step] for i in range(step)] if step else []
        total = step
    return flat


# --- VARIANT -----------------------------------------------------------------------------


def to_variant(value, variant=None):
    """Fills a VARIANT that is Empty; whoever has it clears it."""
    from . import _proxy, _objects
    v = p.VARIANT() if variant is None else variant
    if isinstance(value, Ref):
        value = value.value
    if value is None:
        return v
    if isinstance(value, str):
        v.n.pointer, v.vt = p.new_text(value), p.VT_BSTR
    elif isinstance(value, bool):
        v.n.i2, v.vt = -1 if value else 0, p.VT_BOOL
    elif isinstance(value, int):
        if -2**31 <= value < 2**31:
            v.n.i4, v.vt = value, p.VT_I4
        elif abs(value) < 2**96:
            _to_decimal(Decimal(value), v)
        else:
            raise OverflowError(f"{value} is too large")
    elif isinstance(value, float):
        v.n.r8, v.vt = value, p.VT_R8
    elif isinstance(value, datetime):
        v.n.r8, v.vt = date_number(value), p.VT_DATE
    elif isinstance(value, Decimal):
        _to_decimal(value, v)
    elif value is Missing:
        v.n.i4, v.vt = p.DISP_E_PARAMNOTFOUND, p.VT_ERROR
    elif value is Null:
        v.vt = p.VT_NULL
    elif value is Nothing:
        v.vt = p.VT_DISPATCH
    elif isinstance(value, _proxy.Object):
        v.n.pointer, v.vt = value._own_reference(), p.VT_DISPATCH
    elif isinstance(value, (bytes, bytearray, memoryview)):
        v.n.pointer, v.vt = new_array(value, p.VT_UI1), p.VT_ARRAY | p.VT_UI1
    elif isinstance(value, (list, tuple)):
        v.n.pointer, v.vt = new_array(value), p.VT_ARRAY | p.VT_VARIANT
    else:
        v.n.pointer, v.vt = _objects.wrapped(value), p.VT_DISPATCH
    return v


def _to_decimal(value, v):
    sign, digits, exponent = value.as_tuple()
    if not isinstance(exponent, int):
        raise OverflowError(f"{value} is no number")
    whole = int("".join(map(str, digits)) or "0")
    if exponent > 0:
        whole, exponent = whole * 10**exponent, 0
    if exponent < -28:
        whole, exponent = whole // 10**(-28 - exponent), -28
    if whole >= 2**96:
        raise OverflowError(f"{value} has too many digits")
    v.n.u8 = whole & (2**64 - 1)
    v.high = whole >> 64
    v.r1 = -exponent | (0x8000 if sign else 0)
    v.vt = p.VT_DECIMAL


def _decimal(whole, scale, negative):
    """All digits, whatever the precision of the decimal context."""
    return Decimal((int(negative), tuple(map(int, str(whole))), -scale))


def from_variant(v):
    """The value; objects get a reference of their own."""
    vt = v.vt
    if vt == p.VT_BSTR:
        return p.text_of(v.n.pointer)
    if vt == p.VT_I4 or vt == p.VT_INT:
        return v.n.i4
    if vt == p.VT_EMPTY:
        return None
    if vt == p.VT_NULL:
        return Null
    if vt == p.VT_ERROR:
        return Missing if v.n.i4 == p.DISP_E_PARAMNOTFOUND else v.n.i4
    if vt & p.VT_BYREF:
        return _from_reference(v)
    if vt & p.VT_ARRAY:
        return from_array(v.n.pointer)
    if vt == p.VT_DECIMAL:
        return _decimal(v.high << 64 | v.n.u8, v.r1 & 0xFF, v.r1 & 0x8000 != 0)
    if vt == p.VT_RECORD:
        return from_record(v.n.record[0])
    return from_address(ctypes.addressof(v) + 8, vt)


def _from_reference(v):
    copy = p.VARIANT()
    if p.variant_copy_ind(copy, v) != 0:
        raise TypeError(f"a value of type {v.vt}")
    try:
        return from_variant(copy)
    finally:
        p.variant_clear(copy)


def from_address(place, vt):
    """What lies at an address, of a type that a variable can have."""
    from . import _proxy
    number = p._Number.from_address(place) if vt != p.VT_VARIANT else None
    if vt in PLAIN:
        return PLAIN[vt][0].from_address(place).value
    if vt == p.VT_VARIANT:
        return from_variant(p.VARIANT.from_address(place))
    if vt == p.VT_BSTR:
        return p.text_of(c_void_p.from_address(place).value)
    if vt == p.VT_BOOL:
        return number.i2 != 0
    if vt == p.VT_R8:
        return number.r8
    if vt == p.VT_R4:
        return number.r4
    if vt == p.VT_DATE:
        return date_of(number.r8)
    if vt == p.VT_CY:
        return _decimal(abs(number.i8), 4, number.i8 < 0)
    if vt in (p.VT_DISPATCH, p.VT_UNKNOWN):
        return _proxy.object_of(number.pointer)
    if vt & p.VT_ARRAY:
        return from_array(c_void_p.from_address(place).value)
    raise TypeError(f"a value of type {vt} has no form in Python")


# --- The record and the enumerations -----------------------------------------------------


class FileType:
    """An entry of a listing."""

    __slots__ = ("sCompleteFilename", "sFile", "sPath", "sExtension", "lSize", "dDate")

    def __init__(self, *values):
        for name, value in zip(self.__slots__, values):
            setattr(self, name, value)

    def __repr__(self):
        return "FileType(" + ", ".join(f"{n}={getattr(self, n)!r}" for n in self.__slots__) + ")"

    def __eq__(self, other):
        return isinstance(other, FileType) and all(getattr(self, n) == getattr(other, n) for n in self.__slots__)


class Record(ctypes.Structure):
    _fields_ = [("texts", c_void_p * 4), ("size", ctypes.c_int32), ("date", ctypes.c_double)]


def from_record(address, take=False):
    record = Record.from_address(address)
    texts = [(p.taken_text if take else p.text_of)(pointer) for pointer in record.texts]
    return FileType(*texts, record.size, date_of(record.date))


def enumeration(name, constants):
    return enum.IntEnum(name, constants, module="orvix")
