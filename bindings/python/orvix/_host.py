"""Python functions in place of the services of this machine."""

import contextlib
import ctypes
import sys
from ctypes import CFUNCTYPE, Structure, byref, c_char_p, c_int32, c_int64, c_uint32, c_void_p

from . import _platform as p

_wide = c_void_p  # NUL-terminated UTF-16
# In the order of the host table: the arguments behind the context, and what is answered
# when the function raises.
_ROWS = {
    "MessageBox": (c_int32, (_wide, c_int32, _wide), 1),
    "SHFileOperationA": (c_int32, (c_void_p,), 2),
    "ShellExecuteA": (c_int32, (c_int32, c_char_p, c_char_p, c_char_p, c_char_p, c_int32), 0),
    "WinHelpA": (c_int32, (c_int32, c_char_p, c_int32, c_int32), 0),
    "HtmlHelpA": (c_int32, (c_int32, c_char_p, c_int32, c_int32), 0),
    "GetOpenFileNameA": (c_int32, (c_void_p,), 0),
    "sndPlaySoundA": (c_int32, (c_char_p, c_int32), 0),
    "SetWindowPos": (c_int32, (c_int32,) * 7, 0),
    "GetInputState": (c_int32, (), 0),
    "DoEvents": (None, (), None),
    "GlobalObject": (c_void_p, (), None),
    "GetVersionExA": (c_int32, (c_void_p,), 0),
    "CoCreateGuid": (c_int32, (c_void_p,), p.E_FAIL),
    "Sleep": (None, (c_uint32,), None),
    "GetTickCount": (c_uint32, (), 0),
    "FileProgress": (c_int32, (_wide, c_int64, c_int64, c_int64, c_int64), 1),
    "FileQuestion": (c_int32, (c_int32, _wide), 3),
}
_PROTOTYPES = {name: CFUNCTYPE(result, c_void_p, *arguments) for name, (result, arguments, _) in _ROWS.items()}


class _Table(Structure):
    _fields_ = [("size", c_uint32), ("context", c_void_p), *((name, kind) for name, kind in _PROTOTYPES.items())]


_installed = []


def _text(address):
    if not address:
        return ""
    length = 0
    while ctypes.string_at(address + length, 2) != b"\0\0":
        length += 2
    return ctypes.string_at(address, length).decode("utf-16-le", "surrogatepass")


def _callback(name, function):
    result, arguments, safe = _ROWS[name]

    def called(_, *values):
        try:
            values = [_text(v) if kind is _wide and name in ("MessageBox", "FileProgress", "FileQuestion") else v
                      for v, kind in zip(values, arguments)]
            answer = function(*values)
            if name == "GlobalObject":
                from ._values import to_variant
                return to_variant(answer).n.pointer
            return 0 if answer is None and result is not None else answer
        except BaseException:  # noqa: BLE001  the caller is no Python
            sys.unraisablehook(type("Unraisable", (), dict(zip(
                ("exc_type", "exc_value", "exc_traceback"), sys.exc_info()),
                err_msg=f"Exception ignored in the host's {name}", object=function))())
            return safe
    return _PROTOTYPES[name](called)


@contextlib.contextmanager
def host(**functions):
    """Installs functions in the host table while the block runs: MessageBox(text, style,
    title), FileProgress(name, items_done, items_total, bytes_done, bytes_total),
    FileQuestion(kind, name) and the others of the table. One that raises is reported, and
    the answer that loses nothing is given."""
    unknown = set(functions) - set(_ROWS)
    if unknown:
        raise TypeError(f"the host has no {', '.join(sorted(unknown))}")
    table = _Table(ctypes.sizeof(_Table))
    if _installed:  # what an outer block installed stays
        ctypes.memmove(byref(table), byref(_installed[-1]), ctypes.sizeof(_Table))
    table.kept = [_callback(name, function) for name, function in functions.items()]
    for name, callback in zip(functions, table.kept):
        setattr(table, name, callback)
    p.set_host(byref(table))
    _installed.append(table)
    try:
        yield
    finally:
        _installed.remove(table)
        p.set_host(byref(_installed[-1]) if _installed else None)
