// The members of `_classFilename`, in slot order.
#include "files/filename_object.h"

namespace Orvix::component {

namespace {

constexpr MemberRow kRows[] = {
    UiDefault(PropertyPut<&classFilename::SetCompleteFilename, &_classFilename::put_CompleteFilename>(
        "CompleteFilename", {"sNewName"})),
    UiDefault(PropertyGet<&classFilename::CompleteFilename, &_classFilename::get_CompleteFilename>("CompleteFilename")),
    Method<&classFilename::Exists, &_classFilename::Exists>("Exists"),
    PropertyGet<&classFilename::Filename, &_classFilename::get_Filename>("Filename"),
    PropertyGet<&classFilename::Extension, &_classFilename::get_Extension>("Extension"),
    PropertyPut<&classFilename::SetExtension, &_classFilename::put_Extension>("Extension", {"sNewValue"}),
    PropertyGet<&classFilename::Path, &_classFilename::get_Path>("Path"),
    PropertyGet<&classFilename::ExtensionlessFilename, &_classFilename::get_ExtensionlessFilename>(
        "ExtensionlessFilename"),
    PropertyGet<&classFilename::ExtensionlessWithPath, &_classFilename::get_ExtensionlessWithPath>(
        "ExtensionlessWithPath"),
    Method<&classFilename::FileSize, &_classFilename::FileSize>("FileSize"),
    Method<&classFilename::GetFile, &_classFilename::GetFile>("GetFile"),
    Method<&classFilename::ShortenedFilename, &_classFilename::ShortenedFilename>("ShortenedFilename", {},
                                                                                  {"lMaxLength"}),
    Method<&classFilename::Drive, &_classFilename::Drive>("Drive"),
    PropertyPut<&classFilename::SetAllowWildCards, &_classFilename::put_AllowWildCards>("AllowWildCards", {"bNew"}),
    PropertyGet<&classFilename::AllowWildCards, &_classFilename::get_AllowWildCards>("AllowWildCards"),
    Method<&classFilename::HasWildCards, &_classFilename::HasWildCards>("HasWildCards"),
    Method<&classFilename::CreateFile, &_classFilename::CreateFile>("CreateFile", {}, {"sData"}),
    Method<&classFilename::IsReadOnly, &_classFilename::IsReadOnly>("IsReadOnly"),
    Method<&classFilename::IsFTP, &_classFilename::IsFTP>("IsFTP"),
    Method<&classFilename::GetDrivelessPath, &_classFilename::GetDrivelessPath>("GetDrivelessPath"),
    Method<&classFilename::GetDrivelessCompleteFilename, &_classFilename::GetDrivelessCompleteFilename>(
        "GetDrivelessCompleteFilename"),
    Method<&classFilename::DateTime, &_classFilename::DateTime>("DateTime"),
    Method<&classFilename::GetDrivelessCompleteFilenameEx, &_classFilename::GetDrivelessCompleteFilenameEx>(
        "GetDrivelessCompleteFilenameEx", {}, {"bAddRoot"}),
    Method<&classFilename::HasReadPermission, &_classFilename::HasReadPermission>("HasReadPermission"),
    Method<&classFilename::HasWritePersmission, &_classFilename::HasWritePersmission>("HasWritePersmission"),
    Method<&classFilename::Delete, &_classFilename::Delete>("Delete"),
};
static_assert(sizeof kRows / sizeof kRows[0] == 26);

constexpr InterfaceTable kTable = {"_classFilename", &IID__classFilename, kRows};

}  // namespace

template <>
const InterfaceTable& TableOf<_classFilename>() {
  return kTable;
}

template <>
ComPtr<_classFilename> NewObject<_classFilename>() {
  return MakeObject<FilenameObject, _classFilename>();
}

}  // namespace Orvix::component
