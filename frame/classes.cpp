#include "frame/classes.h"

namespace Orvix::component {

template <>
const InterfaceTable& TableOf<_classOrvix>();
template <>
const InterfaceTable& TableOf<_classFilename>();
template <>
const InterfaceTable& TableOf<_classDirectory>();
template <>
const InterfaceTable& TableOf<_classString>();
template <>
const InterfaceTable& TableOf<_classStack>();
template <>
const InterfaceTable& TableOf<_classStackObject>();
template <>
const InterfaceTable& TableOf<_CSHFileOp>();
template <>
ComPtr<_classOrvix> NewObject<_classOrvix>();
template <>
ComPtr<_classFilename> NewObject<_classFilename>();
template <>
ComPtr<_classDirectory> NewObject<_classDirectory>();
template <>
ComPtr<_classString> NewObject<_classString>();
template <>
ComPtr<_classStack> NewObject<_classStack>();
template <>
ComPtr<_classStackObject> NewObject<_classStackObject>();
template <>
ComPtr<_CSHFileOp> NewObject<_CSHFileOp>();

namespace {

template <class Interface>
ComPtr<IDispatch> Create() {
  return ComPtr<IDispatch>::Adopt(NewObject<Interface>().Detach());
}

template <class Interface>
constexpr ClassEntry Entry(std::string_view name, const CLSID& clsid, WORD flags) {
  return {name, &clsid, flags, &TableOf<Interface>, &Create<Interface>};
}

constexpr WORD kCreatable = TYPEFLAG_FCANCREATE;

constexpr ClassEntry kClasses[] = {
    Entry<_classOrvix>("classOrvix", CLSID_classOrvix, kCreatable | TYPEFLAG_FAPPOBJECT | TYPEFLAG_FPREDECLID),
    Entry<_classFilename>("classFilename", CLSID_classFilename, kCreatable),
    Entry<_classDirectory>("classDirectory", CLSID_classDirectory, kCreatable),
    Entry<_classString>("classString", CLSID_classString, kCreatable),
    Entry<_classStack>("classStack", CLSID_classStack, kCreatable),
    Entry<_classStackObject>("classStackObject", CLSID_classStackObject, kCreatable),
    Entry<_CSHFileOp>("CSHFileOp", CLSID_CSHFileOp, kCreatable),
};

}  // namespace

std::span<const ClassEntry> Classes() { return kClasses; }

}  // namespace Orvix::component
