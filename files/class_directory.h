// The plain class behind `classDirectory`: a snapshot of the entries of one
// directory, kept as records at positions 1 to lNumFiles.
#ifndef ORVIX_FILES_CLASS_DIRECTORY_H
#define ORVIX_FILES_CLASS_DIRECTORY_H

#include <vector>

#include "frame/argument_types.h"

namespace Orvix::component {

class classDirectory {
 public:
  static constexpr std::string_view kClassName = "classDirectory";

  // The caller's own value; no member reads or writes it.
  [[nodiscard]] LONG pointer() const { return pointer_; }
  void set_pointer(LONG value) { pointer_ = value; }
  // The number of records, which every member trusts; callers may write it.
  [[nodiscard]] LONG number_of_files() const { return number_of_files_; }
  void set_number_of_files(LONG value) { number_of_files_ = value; }

  // Takes a new snapshot. Error 61205, with the list empty, for any failure.
  void Init(TextView mask, LongOr<0> attribute, VariantOrEmptyText from_date, VariantOrEmptyText to_date);

  // A copy of the record at a position; error 61206 outside 1 to lNumFiles.
  FileRecord File(LONG index);
  Text GetFileName(LONG index);

  // Sorting an empty list does not return; callers test lNumFiles first.
  void SortFilesDate();
  void SoftFilesDateEx(VariantBool ascending);
  Variant SortFilesName(VariantBool ascending);

 private:
  void ReadDirectory(TextView mask, LONG attribute, const VARIANT& from_date, const VARIANT& to_date);
  void Scan(TextView mask, LONG attribute, const VARIANT& from_date, const VARIANT& to_date);
  [[nodiscard]] const FileType& RecordAt(LONG index) const;
  template <class Before>
  void Sort(Before before);

  LONG pointer_ = 0;
  LONG number_of_files_ = 0;
  std::vector<FileRecord> records_;
};

}  // namespace Orvix::component

#endif
