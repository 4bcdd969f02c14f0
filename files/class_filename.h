// The plain class behind `classFilename`: one file name, cleaned and split when
// it is assigned, and the operations on the file that it names.
#ifndef ORVIX_FILES_CLASS_FILENAME_H
#define ORVIX_FILES_CLASS_FILENAME_H

#include <memory>

#include "frame/class_orvix.h"

namespace Orvix::component {

struct Opening;

class classFilename {
 public:
  static constexpr std::string_view kClassName = "classFilename";

  // Names and parts (files/filename.cpp)

  // Cleans, checks and splits a name; the cleaned text is written back into the
  // caller's. Error 60000 for a name that ends in a separator; a failure changes
  // nothing of the object.
  void SetCompleteFilename(TextReference new_name);
  // The same for a text of the library's own.
  void Assign(TextView new_name);
  [[nodiscard]] Text CompleteFilename() const;
  [[nodiscard]] Text Filename() const { return name_; }
  [[nodiscard]] Text Path() const { return path_; }
  [[nodiscard]] Text Extension() const;
  void SetExtension(TextView new_value);
  [[nodiscard]] Text ExtensionlessFilename() const;
  [[nodiscard]] Text ExtensionlessWithPath() const;
  [[nodiscard]] Text Drive() const;
  void SetAllowWildCards(VariantBool allow) { allow_wild_cards_ = allow; }
  [[nodiscard]] VariantBool AllowWildCards() const { return allow_wild_cards_; }
  [[nodiscard]] bool HasWildCards() const;
  [[nodiscard]] bool IsFTP() const;
  [[nodiscard]] Text GetDrivelessPath() const;
  [[nodiscard]] Text GetDrivelessCompleteFilename() const;
  [[nodiscard]] Text GetDrivelessCompleteFilenameEx(TrueByDefault add_root) const;

  // The file behind the name (files/filename_on_disk.cpp)
  bool Exists();
  LONG FileSize();
  BstrHandle GetFile();
  [[nodiscard]] Text ShortenedFilename(LONG max_length) const;
  void CreateFile(OptionalText data);
  [[nodiscard]] bool IsReadOnly() const;
  [[nodiscard]] Variant DateTime() const;
  bool HasReadPermission();
  bool HasWritePersmission();
  void Delete();

 private:
  // The utility object, made on first use.
  classOrvix& Utility();

  Text FtpForm(Text text) const;
  [[nodiscard]] TextView RemoveDrive(TextView text) const;
  [[nodiscard]] Text ShortenPath(LONG count) const;
  bool CanOpen(const Opening& opening);
  bool CanOpenForRead();
  bool CanOpenForWrite();

  Text name_;
  Text path_;
  Text complete_;
  Text extension_;
  VariantBool allow_wild_cards_{VARIANT_FALSE};
  std::unique_ptr<classOrvix> utility_;
};

}  // namespace Orvix::component

#endif
