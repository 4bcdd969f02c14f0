// The members of `_classDirectory`, in slot order.
#include "files/directory_object.h"

namespace Orvix::component {

namespace {

constexpr MemberRow kRows[] = {
    PropertyGet<&classDirectory::pointer, &_classDirectory::get_lPointer>("lPointer"),
    PropertyPut<&classDirectory::set_pointer, &_classDirectory::put_lPointer>("lPointer", {"lPointer"}),
    PropertyGet<&classDirectory::number_of_files, &_classDirectory::get_lNumFiles>("lNumFiles"),
    PropertyPut<&classDirectory::set_number_of_files, &_classDirectory::put_lNumFiles>("lNumFiles", {"lNumFiles"}),
    Method<&classDirectory::Init, &_classDirectory::Init>("Init", {}, {"sMask", "lAttribute", "vFromDate", "vToDate"}),
    Method<&classDirectory::File, &_classDirectory::File>("File", {}, {"lIndex"}),
    Method<&classDirectory::SortFilesDate, &_classDirectory::SortFilesDate>("SortFilesDate"),
    Method<&classDirectory::SoftFilesDateEx, &_classDirectory::SoftFilesDateEx>("SoftFilesDateEx", {}, {"bAscending"}),
    Method<&classDirectory::SortFilesName, &_classDirectory::SortFilesName>("SortFilesName", {}, {"bAscending"}),
    Method<&classDirectory::GetFileName, &_classDirectory::GetFileName>("GetFileName", {}, {"lIndex"}),
};
static_assert(sizeof kRows / sizeof kRows[0] == 10);

constexpr InterfaceTable kTable = {"_classDirectory", &IID__classDirectory, kRows};

}  // namespace

template <>
const InterfaceTable& TableOf<_classDirectory>() {
  return kTable;
}

template <>
ComPtr<_classDirectory> NewObject<_classDirectory>() {
  return MakeObject<DirectoryObject, _classDirectory>();
}

}  // namespace Orvix::component
