"""What the type library says, read once."""

from ctypes import POINTER, Structure, Union, byref, c_int16, c_int32, c_uint16, c_uint32, c_void_p
from dataclasses import dataclass, field
from functools import cached_property, lru_cache

from . import _platform as p


class _TypeDesc(Structure):
    pass


class _Target(Union):
    _fields_ = [("inner", POINTER(_TypeDesc)), ("reference", c_uint32)]


_TypeDesc._fields_ = [("target", _Target), ("vt", c_uint16)]


class _Element(Structure):
    _fields_ = [("type", _TypeDesc), ("default", c_void_p), ("flags", c_uint16)]


class _Function(Structure):
    _fields_ = [("id", c_int32), ("scodes", c_void_p), ("parameters", POINTER(_Element)), ("kind", c_int32),
                ("invoke", c_int32), ("convention", c_int32), ("count", c_int16), ("optional", c_int16),
                ("offset", c_int16), ("scode_count", c_int16), ("result", _Element), ("flags", c_uint16)]


class _Variable(Structure):
    _fields_ = [("id", c_int32), ("schema", c_void_p), ("value", POINTER(p.VARIANT)), ("element", _Element),
                ("flags", c_uint16), ("kind", c_int32)]


class _Attributes(Structure):
    _fields_ = [("guid", p.GUID), ("lcid", c_uint32), ("reserved", c_uint32), ("ids", c_int32 * 2), ("schema", c_void_p),
                ("size", c_uint32), ("kind", c_int32), ("functions", c_uint16), ("variables", c_uint16),
                ("implements", c_uint16), ("table", c_uint16), ("alignment", c_uint16), ("flags", c_uint16)]


ENUM, RECORD, MODULE, INTERFACE, DISPATCH, COCLASS = range(6)
METHOD, GET, PUT, PUTREF = 1, 2, 4, 8
OPTIONAL, HAS_DEFAULT, IN, OUT = 0x10, 0x20, 1, 2


@dataclass(frozen=True)
class Type:
    """`vt` as a VARIANT holds it; `user` names an enumeration, record or class."""

    vt: int
    by_reference: bool = False
    user: str = ""

    def __str__(self):
        words = {p.VT_I2: "int", p.VT_I4: "int", p.VT_UI1: "int", p.VT_R4: "float", p.VT_R8: "float",
                 p.VT_BSTR: "str", p.VT_BOOL: "bool", p.VT_DATE: "datetime", p.VT_VARIANT: "Any", p.VT_VOID: "None",
                 p.VT_CY: "Decimal", p.VT_DISPATCH: "Any"}
        if self.user:
            return self.user
        if self.vt & p.VT_ARRAY:
            return "bytes" if self.vt & 0xFFF == p.VT_UI1 else "list"
        return words.get(self.vt, "Any")


@dataclass(frozen=True)
class Parameter:
    name: str
    type: Type
    optional: bool
    written: bool
    default: object = None


@dataclass(frozen=True)
class Accessor:
    name: str
    kind: int  # METHOD, GET, PUT or PUTREF
    id: int
    slot: int  # in the table, from 0
    parameters: tuple
    result: Type
    help: str

    @cached_property
    def signature(self):
        shown = []
        for parameter in self.parameters:
            text = f"{parameter.name}: {parameter.type}"
            if parameter.optional:
                text += " = ..." if parameter.default is None else f" = {parameter.default!r}"
            shown.append(text)
        return f"{self.name}({', '.join(shown)}) -> {self.result}"


@dataclass
class Class:
    name: str
    clsid: object
    iid: object
    members: dict = field(default_factory=dict)  # by name, the accessors by kind


class Library:
    def __init__(self):
        self._pointer = p.type_library()
        self.classes, self.enumerations, self.records = {}, {}, {}
        self.class_of_interface, self.class_of_iid = {}, {}
        self._infos = {}
        interfaces = {}
        count = p.method(self._pointer, 3, result=c_uint32)(self._pointer)
        for index in range(count):
            found = c_void_p()
            p.method(self._pointer, 4, c_uint32, POINTER(c_void_p))(self._pointer, index, found)
            info = found.value
            name = self._name(info, -1)[0]
            attributes = self._attributes(info)
            self._infos[name] = info
            if attributes.kind == ENUM:
                self.enumerations[name] = {n: v for n, v in self._constants(info, attributes)}
            elif attributes.kind == RECORD:
                self.records[name] = (bytes(attributes.guid), [self._name(info, self._variable(info, i)[0])[0]
                                                              for i in range(attributes.variables)])
            elif attributes.kind == COCLASS:
                self.classes[name] = Class(name, p.GUID.from_buffer_copy(attributes.guid), None)
            else:
                interfaces[name] = p.GUID.from_buffer_copy(attributes.guid)
        for name, described in self.classes.items():
            described.iid = interfaces["_" + name]
            self.class_of_interface["_" + name] = name
            self.class_of_iid[bytes(described.iid)] = name

    @lru_cache(maxsize=None)
    def members(self, class_name):
        """The members of a class, by name, each with its accessors by kind."""
        info = self._infos["_" + class_name]
        members = {}
        for index in range(self._attributes(info).functions):
            accessor = self._accessor(info, index)
            if accessor is not None:
                members.setdefault(accessor.name, {})[accessor.kind] = accessor
        return members

    def _attributes(self, info):
        found = POINTER(_Attributes)()
        p.method(info, 3, POINTER(POINTER(_Attributes)))(info, found)
        copy = _Attributes.from_buffer_copy(found.contents)
        p.method(info, 19, c_void_p, result=None)(info, found)
        return copy

    def _name(self, info, member):
        name, words = c_void_p(), c_void_p()
        p.method(info, 12, c_int32, POINTER(c_void_p), POINTER(c_void_p), c_void_p, c_void_p)(
            info, member, name, words, None, None)
        return p.taken_text(name.value), p.taken_text(words.value)

    def _variable(self, info, index):
        from ._values import from_variant
        found = POINTER(_Variable)()
        p.method(info, 6, c_uint32, POINTER(POINTER(_Variable)))(info, index, found)
        variable = found.contents
        value = from_variant(variable.value.contents) if variable.kind == 2 else None
        member = variable.id
        p.method(info, 21, c_void_p, result=None)(info, found)
        return member, value

    def _constants(self, info, attributes):
        for index in range(attributes.variables):
            member, value = self._variable(info, index)
            yield self._name(info, member)[0], value

    def _type(self, info, described):
        pointers = 0
        while described.vt == p.VT_PTR:
            described = described.target.inner.contents
            pointers += 1
        if described.vt == p.VT_SAFEARRAY:
            return Type(p.VT_ARRAY | self._type(info, described.target.inner.contents).vt, pointers > 0)
        if described.vt != p.VT_USERDEFINED:
            return Type(described.vt, pointers > 0)
        found = c_void_p()
        p.method(info, 14, c_uint32, POINTER(c_void_p))(info, described.target.reference, found)
        kind, name = self._attributes(found.value).kind, self._name(found.value, -1)[0]
        p.release(found.value)
        if kind == ENUM:
            return Type(p.VT_I4, pointers > 0, name)
        if kind == RECORD:
            return Type(p.VT_RECORD, pointers > 0, name)
        return Type(p.VT_DISPATCH, pointers > 1, name.lstrip("_"))  # one pointer is the object's own

    def _accessor(self, info, index):
        from ._values import from_variant
        found = POINTER(_Function)()
        if p.method(info, 5, c_uint32, POINTER(POINTER(_Function)))(info, index, found) != 0:
            return None
        described = found.contents
        names = (c_void_p * (described.count + 1))()
        used = c_uint32()
        p.method(info, 7, c_int32, c_void_p, c_uint32, POINTER(c_uint32))(info, described.id, byref(names), len(names), used)
        words = [p.taken_text(pointer) for pointer in names[:used.value]]
        words += ["newValue"] * (described.count + 1 - len(words))
        parameters = []
        for i in range(described.count):
            element = described.parameters[i]
            default = None
            if element.flags & HAS_DEFAULT:
                default = from_variant(p.VARIANT.from_address(element.default + 8))
            parameters.append(Parameter(words[i + 1], self._type(info, element.type), bool(element.flags & OPTIONAL),
                                        bool(element.flags & OUT), default))
        accessor = Accessor(words[0], described.invoke, described.id, described.offset // 8, tuple(parameters),
                            self._type(info, described.result.type), self._name(info, described.id)[1])
        p.method(info, 20, c_void_p, result=None)(info, found)
        return accessor


@lru_cache(maxsize=None)
def library():
    return Library()

