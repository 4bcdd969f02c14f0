// classDirectory: a snapshot of the entries of one directory.
#ifndef ORVIX_WRAPPER_DIRECTORY_HPP
#define ORVIX_WRAPPER_DIRECTORY_HPP

#include "orvix/wrapper/call.hpp"

namespace Orvix {

// One entry of a listing.
struct DirectoryEntry {
  String complete_filename;
  String file;
  String path;
  String extension;  // lower case; empty for a directory
  LONG size = 0;     // bytes, wrapped to 32 bits; 0 for a directory
  Date date;         // last modification, local time
};

namespace wrapper_detail {
template <>
struct Returned<DirectoryEntry> {
  FileType record{};
  FileType* Receive() { return &record; }
  DirectoryEntry Take() const {
    return {String::Adopt(record.sCompleteFilename),
            String::Adopt(record.sFile),
            String::Adopt(record.sPath),
            String::Adopt(record.sExtension),
            record.lSize,
            Date(record.dDate)};
  }
};
}  // namespace wrapper_detail

class Directory : public Object<_classDirectory> {
  using I = _classDirectory;

 public:
  Directory() : Directory(Component::Default()) {}
  explicit Directory(const Component& component) : Object(component.Create<I>(CLSID_classDirectory)) {}
  explicit Directory(Pointer<I> object) noexcept : Object(std::move(object)) {}

  [[nodiscard]] LONG Cursor() const { return Get<LONG>(&I::get_lPointer); }  // the member lPointer
  void SetCursor(LONG position) { Call(&I::put_lPointer, position); }
  [[nodiscard]] LONG NumFiles() const { return Get<LONG>(&I::get_lNumFiles); }  // the member lNumFiles
  void SetNumFiles(LONG count) { Call(&I::put_lNumFiles, count); }
  // Files: attributes below 16 and a mask such as `C:\Data\*.txt`. Directories:
  // 16 and `C:\Data\`. A bound left out, or the empty text, does not limit.
  void Init(TextArgument mask, LONG attributes = 0, const Value& from = u"", const Value& to = u"") {
    Call(&I::Init, mask, attributes, from, to);
  }
  // Positions from 1 to NumFiles: error 61206 outside.
  [[nodiscard]] DirectoryEntry File(LONG index) const { return Get<DirectoryEntry>(&I::File, index); }
  // Sorting an empty list by the members themselves never returns; here it does.
  void SortFilesDate() {
    if (NumFiles() != 0) Call(&I::SortFilesDate);
  }
  void SoftFilesDateEx(bool ascending) {
    if (NumFiles() != 0) Call(&I::SoftFilesDateEx, ascending);
  }
  void SortFilesName(bool ascending) {
    if (NumFiles() != 0) (void)Get<Value>(&I::SortFilesName, ascending);
  }
  [[nodiscard]] String GetFileName(LONG index) const { return Get<String>(&I::GetFileName, index); }
};

}  // namespace Orvix

#endif
