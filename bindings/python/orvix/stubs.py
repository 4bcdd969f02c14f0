"""python3 -m orvix.stubs: the stub file, from the type library."""

from . import _platform as p
from . import _typelib
from ._typelib import GET, METHOD, PUT, PUTREF

_HEAD = '''"""Made by `python3 -m orvix.stubs`."""
from contextlib import AbstractContextManager
from datetime import datetime
from decimal import Decimal
from enum import IntEnum
from typing import Any, Callable, Generic, TypeVar

_T = TypeVar("_T")

class _Named:
    def __bool__(self) -> bool: ...

Missing: Any
Null: Any
Nothing: Any

class Ref(Generic[_T]):
    value: Any
    def __init__(self, value: Any = ...) -> None: ...

class Error(Exception):
    number: int
    source: str
    description: str

class Collection:
    def __init__(self, items: Any) -> None: ...

class _Object:
    def close(self) -> None: ...
    def __enter__(self) -> Any: ...
    def __exit__(self, *_: object) -> None: ...

class _Indexed(Generic[_T]):
    def __call__(self, *arguments: Any, **named: Any) -> _T: ...
    def __getitem__(self, index: Any) -> _T: ...
    def __setitem__(self, index: Any, value: Any) -> None: ...

class FileType:
    sCompleteFilename: str
    sFile: str
    sPath: str
    sExtension: str
    lSize: int
    dDate: datetime

def host(**functions: Callable[..., Any]) -> AbstractContextManager[None]: ...
'''


def _type(type_, given):
    if type_.vt & p.VT_ARRAY:
        return "Any"
    if type_.user and type_.vt == p.VT_I4:
        return "int"
    words = str(type_)
    return {"datetime": "datetime | float"}.get(words, words) if given else words


def _parameters(accessor):
    shown, needed = [], False
    for parameter in reversed(accessor.parameters):
        needed = needed or not parameter.optional
        words = _type(parameter.type, True)
        if parameter.type.by_reference and words != "Any":
            words += " | Ref[Any]"
        shown.append(f"{parameter.name}: {words}" + ("" if needed else " = ..."))
    return list(reversed(shown))


def _members(members):
    for name, accessors in members.items():
        some = accessors.get(METHOD) or accessors.get(GET)
        result = _type(some.result, False) if some else "Any"
        if METHOD in accessors:
            yield f"    def {name}({', '.join(['self', *_parameters(accessors[METHOD])])}) -> {result}: ..."
        elif some and some.parameters or any(len(a.parameters) > 1 for a in accessors.values()):
            yield f"    @property\n    def {name}(self) -> _Indexed[{result}]: ..."
        else:
            yield f"    @property\n    def {name}(self) -> {result}: ..."
            put = accessors.get(PUT) or accessors.get(PUTREF)
            if put:
                yield f"    @{name}.setter\n    def {name}(self, value: {_type(put.parameters[-1].type, True)}) -> None: ..."
        if some and some.id == 0:
            yield f"    def __call__(self) -> {result}: ..."


def text():
    library = _typelib.library()
    parts = [_HEAD]
    for name, constants in library.enumerations.items():
        parts.append("\n".join([f"class {name}(IntEnum):", *(f"    {n} = {v}" for n, v in constants.items())]) + "\n")
        parts.append("\n".join(f"{n}: int" for n in constants) + "\n")
    for name in library.classes:
        parts.append("\n".join([f"class {name}(_Object):", *_members(library.members(name))]) + "\n")
    for name, accessors in library.members("classOrvix").items():
        some = accessors.get(METHOD) or accessors[GET]
        parts.append(f"def {name}({', '.join(_parameters(some))}) -> {_type(some.result, False)}: ...")
    return "\n".join(parts) + "\n"


if __name__ == "__main__":
    print(text(), end="")
