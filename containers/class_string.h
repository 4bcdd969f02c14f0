// The plain class behind `classString`: a growable buffer of 8-bit text.
#ifndef ORVIX_CONTAINERS_CLASS_STRING_H
#define ORVIX_CONTAINERS_CLASS_STRING_H

#include "frame/argument_types.h"

namespace Orvix::component {

class classString {
 public:
  static constexpr std::string_view kClassName = "classString";

  void SetBufferSize(LONG new_size, OptionalBool clear_it);
  [[nodiscard]] Text Value() const;
  void SetValue(TextReference new_value);
  LONG StrPtr();
  [[nodiscard]] LONG Length() const;
  void SetLength(LONG new_value);
  void Clear();
  ComPtr<_classString> Copy();
  ComPtr<_classString> Left(LONG count);
  void SetLeft(LONG count, const VARIANT& value);
  void SetLeftFrom(LONG count, _classString* value);
  ComPtr<_classString> Right(LONG count);
  void SetRight(LONG count, const VARIANT& value);
  void SetRightFrom(LONG count, _classString* value);
  ComPtr<_classString> Mid(LONG start, OptionalVariant count);
  void SetMid(LONG start, OptionalVariant count, const VARIANT& value);
  void SetMidFrom(LONG start, OptionalVariant count, _classString* value);
  [[nodiscard]] SHORT Asc() const;
  [[nodiscard]] BYTE Char(LONG index) const;
  void SetChar(LONG index, BYTE value);
  LONG Instr(const VARIANT& search, LongOr<1> start);
  Self UCase();
  Self LCase();
  Self ReverseStr();
  Self Append(const VARIANT& value);
  LONG Find(TextView search, LongOr<1> start);
  void WriteToFile(SHORT file_number, OptionalBool prefix_length);
  void ReadFromFile(SHORT file_number, OptionalBool prefix_length);
  LONG TrimToNull();
  Text GetElement(LONG index, TextView separator);
  LONG LengthList(TextView separator);
};

}  // namespace Orvix::component

#endif
