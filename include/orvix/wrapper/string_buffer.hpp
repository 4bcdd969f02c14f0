// classString: a growable buffer of 8-bit text; positions count from 1.
#ifndef ORVIX_WRAPPER_STRING_BUFFER_HPP
#define ORVIX_WRAPPER_STRING_BUFFER_HPP

#include <optional>

#include "orvix/wrapper/call.hpp"

namespace Orvix {

class StringBuffer : public Object<_classString> {
  using I = _classString;

 public:
  StringBuffer() : StringBuffer(Component::Default()) {}
  explicit StringBuffer(const Component& component) : Object(component.Create<I>(CLSID_classString)) {}
  explicit StringBuffer(Pointer<I> object) noexcept : Object(std::move(object)) {}
  template <AnyText T>
  explicit StringBuffer(const T& text) : StringBuffer() {
    SetValue(text);
  }

  void SetBufferSize(LONG new_size, bool clear_it = false) { Call(&I::SetBufferSize, new_size, clear_it); }
  [[nodiscard]] String Text() const { return Get<String>(&I::get_Value); }  // the member Value
  void SetValue(TextArgument text) { Call(&I::put_Value, text); }
  // The address of the first byte; good until the buffer changes.
  [[nodiscard]] LONG StrPtr() const { return Get<LONG>(&I::StrPtr); }
  [[nodiscard]] LONG Length() const { return Get<LONG>(&I::get_Length); }
  void SetLength(LONG length) { Call(&I::put_Length, length); }
  void Clear() { Call(&I::Clear); }
  [[nodiscard]] StringBuffer Copy() const { return Buffer(&I::Copy); }
  [[nodiscard]] StringBuffer Left(LONG count) const { return Buffer(&I::get_Left, count); }
  void SetLeft(LONG count, const Value& value) { Call(&I::put_Left, count, value); }
  void SetLeft(LONG count, const StringBuffer& value) { Call(&I::putref_Left, count, value); }
  [[nodiscard]] StringBuffer Right(LONG count) const { return Buffer(&I::get_Right, count); }
  void SetRight(LONG count, const Value& value) { Call(&I::put_Right, count, value); }
  void SetRight(LONG count, const StringBuffer& value) { Call(&I::putref_Right, count, value); }
  // Without a count: to the end.
  [[nodiscard]] StringBuffer Mid(LONG start, const std::optional<Value>& count = {}) const {
    return Buffer(&I::get_Mid, start, count);
  }
  void SetMid(LONG start, const std::optional<Value>& count, const Value& value) {
    Call(&I::put_Mid, start, count, value);
  }
  void SetMid(LONG start, const std::optional<Value>& count, const StringBuffer& value) {
    Call(&I::putref_Mid, start, count, value);
  }
  [[nodiscard]] SHORT Asc() const { return Get<SHORT>(&I::Asc); }
  [[nodiscard]] BYTE Char(LONG index) const { return Get<BYTE>(&I::get_Char, index); }
  void SetChar(LONG index, BYTE value) { Call(&I::put_Char, index, value); }
  [[nodiscard]] LONG Instr(const Value& search, LONG start = 1) const { return Get<LONG>(&I::Instr, search, start); }
  // These four change this buffer and give it back.
  StringBuffer UCase() { return Buffer(&I::UCase); }
  StringBuffer LCase() { return Buffer(&I::LCase); }
  StringBuffer ReverseStr() { return Buffer(&I::ReverseStr); }
  StringBuffer Append(const Value& value) { return Buffer(&I::Append, value); }
  [[nodiscard]] LONG Find(TextArgument search, LONG start = 1) const { return Get<LONG>(&I::Find, search, start); }
  // The file number is one that OxOpenFile opened for binary access.
  void WriteToFile(SHORT file_number, bool prefix_length = false) { Call(&I::WriteToFile, file_number, prefix_length); }
  void ReadFromFile(SHORT file_number, bool prefix_length = false) {
    Call(&I::ReadFromFile, file_number, prefix_length);
  }
  LONG TrimToNull() { return Get<LONG>(&I::TrimToNull); }
  [[nodiscard]] String GetElement(LONG index, TextArgument separator) const {
    return Get<String>(&I::GetElement, index, separator);
  }
  [[nodiscard]] LONG LengthList(TextArgument separator) const { return Get<LONG>(&I::LengthList, separator); }

 private:
  template <class Member, class... Given>
  StringBuffer Buffer(Member member, Given&&... given) const {
    return StringBuffer(Get<Pointer<I>>(member, given...));
  }
};

}  // namespace Orvix

#endif
