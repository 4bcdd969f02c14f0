"""The libraries, and the structures of the binary interface (64-bit)."""

import ctypes
import os
import sys
from ctypes import (CFUNCTYPE, POINTER, Structure, Union, c_char_p, c_double, c_float, c_int16, c_int32, c_int64,
                    c_uint8, c_uint16, c_uint32, c_uint64, c_void_p)
from pathlib import Path

# --- Finding the libraries -----------------------------------------------------------


def _candidates():
    """Files of the component, the likeliest first."""
    named = os.environ.get("ORVIX_LIBRARY")
    if named:
        place = Path(named)
        yield from ([place] if place.suffix == ".so" else [place / "liborvix.so", place / "orvix/liborvix.so"])
        return
    here = Path(__file__).resolve()
    for folder in here.parents:  # a prefix that holds this package, or a build tree
        for below in ("lib/orvix", *(f"lib/{p.name}" for p in (folder / "lib").glob("*-linux-gnu"))):
            yield folder / below / "liborvix.so"
            yield folder / below / "orvix/liborvix.so"
        for build in ("development", "release"):
            yield folder / "build" / build / "lib/liborvix.so"
    for folder in ("/usr/local/lib", *(str(p) for p in Path("/usr/lib").glob("*-linux-gnu")), "/usr/lib64", "/usr/lib"):
        yield Path(folder) / "orvix/liborvix.so"


def _load():
    tried = list(_candidates())
    component = next((file for file in tried if file.is_file()), None)
    if component is None:
        where = os.environ.get("ORVIX_LIBRARY")
        raise ImportError(f"liborvix.so is not in {where}, which ORVIX_LIBRARY names" if where else
                          "Orvix is not installed: liborvix.so was not found; ORVIX_LIBRARY may name its folder")
    for folder in (component.parent, component.parent.parent):
        for name in ("liborvixrt.so.1", "liborvixrt.so"):
            if (folder / name).is_file():
                return component, ctypes.CDLL(str(folder / name)), ctypes.CDLL(str(component))
    raise ImportError(f"liborvixrt.so.1 is not with {component}")


component_path, runtime, component = _load()
if not hasattr(runtime, "OxVersion"):
    raise ImportError("the installed Orvix is older than this binding: it has no OxVersion")
runtime.OxVersion.restype = c_uint32
if runtime.OxVersion() >> 16 != 1:
    raise ImportError(f"this binding is for Orvix 1, the installed one is {runtime.OxVersion() >> 16}")

# --- Structures ------------------------------------------------------------------------

HRESULT = c_int32
VT_EMPTY, VT_NULL, VT_I2, VT_I4, VT_R4, VT_R8, VT_CY, VT_DATE, VT_BSTR, VT_DISPATCH, VT_ERROR, VT_BOOL, VT_VARIANT, \
    VT_UNKNOWN, VT_DECIMAL = range(15)
VT_I1, VT_UI1, VT_UI2, VT_UI4, VT_I8, VT_UI8, VT_INT, VT_UINT, VT_VOID = range(16, 25)
VT_PTR, VT_SAFEARRAY, VT_USERDEFINED, VT_RECORD = 26, 27, 29, 36
VT_ARRAY, VT_BYREF = 0x2000, 0x4000
DISP_E_PARAMNOTFOUND = -2147352572
DISP_E_EXCEPTION = -2147352567
DISP_E_MEMBERNOTFOUND = -2147352573
DISP_E_UNKNOWNNAME = -2147352570
E_NOINTERFACE = -2147467262
E_FAIL = -2147467259


class GUID(Structure):
    _fields_ = [("words", c_uint64 * 2)]

    @classmethod
    def of(cls, text):
        import uuid
        return cls.from_buffer_copy(uuid.UUID(text).bytes_le)


IID_IUnknown = GUID.of("00000000-0000-0000-C000-000000000046")
IID_IClassFactory = GUID.of("00000001-0000-0000-C000-000000000046")
IID_IDispatch = GUID.of("00020400-0000-0000-C000-000000000046")
IID_ITypeLib = GUID.of("00020402-0000-0000-C000-000000000046")
IID_IEnumVARIANT = GUID.of("00020404-0000-0000-C000-000000000046")
IID_NULL = GUID()


class _Number(Union):
    _fields_ = [("i8", c_int64), ("u8", c_uint64), ("i4", c_int32), ("u4", c_uint32), ("i2", c_int16), ("u2", c_uint16),
                ("u1", c_uint8), ("i1", ctypes.c_int8), ("r4", c_float), ("r8", c_double), ("pointer", c_void_p),
                ("record", c_void_p * 2)]


class VARIANT(Structure):
    _fields_ = [("vt", c_uint16), ("r1", c_uint16), ("high", c_uint32), ("n", _Number)]


class DISPPARAMS(Structure):
    _fields_ = [("args", POINTER(VARIANT)), ("named", POINTER(c_int32)), ("count", c_uint32), ("named_count", c_uint32)]


class EXCEPINFO(Structure):
    _fields_ = [("code", c_uint16), ("reserved", c_uint16), ("source", c_void_p), ("description", c_void_p),
                ("file", c_void_p), ("context", c_uint32), ("more", c_void_p), ("fill", c_void_p), ("scode", c_int32)]


class BOUND(Structure):
    _fields_ = [("count", c_uint32), ("lowest", c_int32)]


class SAFEARRAY(Structure):
    _fields_ = [("dims", c_uint16), ("features", c_uint16), ("size", c_uint32), ("locks", c_uint32), ("data", c_void_p),
                ("bounds", BOUND * 1)]


assert ctypes.sizeof(VARIANT) == 24 and ctypes.sizeof(EXCEPINFO) == 64 and ctypes.sizeof(SAFEARRAY) == 32

# --- Functions ---------------------------------------------------------------------------


def function(name, result, *arguments):
    found = getattr(runtime, name)
    found.restype, found.argtypes = result, arguments
    return found


text_alloc = function("SysAllocStringByteLen", c_void_p, c_char_p, c_uint32)
text_free = function("SysFreeString", None, c_void_p)
text_bytes = function("SysStringByteLen", c_uint32, c_void_p)
variant_clear = function("VariantClear", HRESULT, POINTER(VARIANT))
variant_copy_ind = function("VariantCopyInd", HRESULT, POINTER(VARIANT), POINTER(VARIANT))
array_vector = function("SafeArrayCreateVector", c_void_p, c_uint16, c_int32, c_uint32)
array_destroy = function("SafeArrayDestroy", HRESULT, c_void_p)
array_copy = function("SafeArrayCopy", HRESULT, c_void_p, POINTER(c_void_p))
array_type = function("SafeArrayGetVartype", HRESULT, c_void_p, POINTER(c_uint16))
error_info = function("GetErrorInfo", HRESULT, c_uint32, POINTER(c_void_p))
error_number = function("OxErrorNumber", c_int32, HRESULT)
error_description = function("OxErrorDescription", HRESULT, c_int32, POINTER(c_void_p))
set_host = function("OxSetHost", HRESULT, c_void_p)

_prototypes = {}


def method(pointer, index, *types, result=HRESULT):
    """The function in slot `index` of the object's table."""
    prototype = _prototypes.get((result, types))
    if prototype is None:
        prototype = _prototypes[(result, types)] = CFUNCTYPE(result, c_void_p, *types)
    table = c_void_p.from_address(pointer).value
    return prototype(c_void_p.from_address(table + 8 * index).value)


def add_ref(pointer):
    method(pointer, 1, result=c_uint32)(pointer)


def release(pointer):
    method(pointer, 2, result=c_uint32)(pointer)


def query(pointer, iid):
    """The interface with a reference of its own, or None."""
    found = c_void_p()
    method(pointer, 0, POINTER(GUID), POINTER(c_void_p))(pointer, iid, found)
    return found.value


def text_of(pointer):
    """The text behind a BSTR, with lone halves of surrogate pairs."""
    if not pointer:
        return ""
    return ctypes.string_at(pointer, text_bytes(pointer)).decode("utf-16-le", "surrogatepass")


def taken_text(pointer):
    text = text_of(pointer)
    text_free(pointer)
    return text


def new_text(text):
    units = text.encode("utf-16-le", "surrogatepass")
    pointer = text_alloc(units, len(units))
    if not pointer:
        raise MemoryError
    return pointer


def class_object(clsid):
    factory = c_void_p()
    entry = component.DllGetClassObject
    entry.restype, entry.argtypes = HRESULT, (POINTER(GUID), POINTER(GUID), POINTER(c_void_p))
    if entry(clsid, IID_IClassFactory, factory) != 0:
        raise ImportError(f"{component_path} has no such class")
    return factory.value


def type_library():
    found = c_void_p()
    entry = component.DllGetClassObject
    entry.restype, entry.argtypes = HRESULT, (POINTER(GUID), POINTER(GUID), POINTER(c_void_p))
    if entry(GUID.of("BD495FF1-92A6-4A31-A1A1-A38A28B57C24"), IID_ITypeLib, found) != 0:
        raise ImportError(f"{component_path} is no Orvix component")
    return found.value


closing = False  # the interpreter ends: nothing is released any more


def _close():
    global closing
    closing = True


import atexit  # noqa: E402  (behind what it ends)

atexit.register(_close)
if sys.byteorder != "little" or ctypes.sizeof(c_void_p) != 8:
    raise ImportError("Orvix is for 64-bit little-endian machines")
