// A text buffer and values as the tests of this folder hold them.
#ifndef ORVIX_TESTS_CONTAINERS_TEXT_BUFFER_H
#define ORVIX_TESTS_CONTAINERS_TEXT_BUFFER_H

#include <functional>
#include <ostream>
#include <utility>

#include "frame/classes.h"
#include "tests/support/component.h"
#include "tests/support/file_calls.h"

namespace Orvix::testing {

using component::NewObject;

inline VARIANT Null() {
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_NULL;
  return value;
}
// Borrowed.
inline VARIANT ObjectValue(IDispatch* object) {
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_DISPATCH;
  value.pdispVal = object;
  return value;
}

// Has a default member and nothing else. Lives on the stack of its test: the
// count of references is only looked at.
class ObjectWithDefault final : public IDispatch {
 public:
  explicit ObjectWithDefault(std::function<Variant()> value) : value_(std::move(value)) {}
  ULONG references = 1;

  HRESULT QueryInterface(REFIID iid, void** object) override {
    if (iid != IID_IUnknown && iid != IID_IDispatch) return E_NOINTERFACE;
    *object = static_cast<IDispatch*>(this);
    AddRef();
    return S_OK;
  }
  ULONG AddRef() override { return ++references; }
  ULONG Release() override { return --references; }
  HRESULT GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT GetIDsOfNames(REFIID, OLECHAR**, UINT, LCID, DISPID*) override { return DISP_E_UNKNOWNNAME; }
  HRESULT Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*, UINT*) override {
    if (member != DISPID_VALUE) return DISP_E_MEMBERNOTFOUND;
    *result = value_().Detach();
    return S_OK;
  }

 private:
  std::function<Variant()> value_;
};

// What a call failed with: number, source, description; 0 and nothing else for a
// success.
struct Outcome {
  LONG number = 0;
  Text source{};
  Text description{};
  bool operator==(const Outcome&) const = default;
};
inline std::ostream& operator<<(std::ostream& stream, const Outcome& outcome) {
  return stream << outcome.number << " / " << ToUtf8(outcome.source) << " / " << ToUtf8(outcome.description);
}
inline Outcome OutcomeOf(HRESULT result) {
  if (SUCCEEDED(result)) return {};
  const Failure failure = TakeFailure();
  return {OxErrorNumber(result), failure.source, failure.description};
}
inline const Outcome kDone{};
inline const Outcome kInvalidLength{5, u"classString", u"Invalid length"};
inline const Outcome kInvalidStart{5, u"classString", u"Invalid starting position"};
inline const Outcome kOutside{9, u"Orvix.classString", u"Subscript out of range"};
inline const Outcome kNoMemory{7, u"Orvix.classString", u"Out of memory"};

using Buffer = ComPtr<_classString>;

inline Text ValueOf(const Buffer& buffer) {
  return Returned([&](BSTR* result) { return buffer->get_Value(result); });
}
inline Outcome SetValue(const Buffer& buffer, TextView text) {
  BstrHandle held(text);
  BSTR value = held.Detach();
  const HRESULT result = buffer->put_Value(&value);
  SysFreeString(value);
  return OutcomeOf(result);
}
inline Buffer BufferOf(TextView text) {
  Buffer buffer = NewObject<_classString>();
  EXPECT_EQ(SetValue(buffer, text), kDone);
  return buffer;
}
inline LONG LengthOf(const Buffer& buffer) {
  LONG length = -1;
  EXPECT_EQ(buffer->get_Length(&length), S_OK);
  return length;
}
// The byte at a position, or the negative error number.
inline int ByteAt(const Buffer& buffer, LONG position) {
  BYTE byte = 0;
  const HRESULT result = buffer->get_Char(position, &byte);
  return SUCCEEDED(result) ? int{byte} : -OutcomeOf(result).number;
}
// The upper index of the buffer: the last position that can be read, less one.
inline LONG SizeOf(const Buffer& buffer) {
  LONG low = 0;  // position low + 1 can be read
  LONG high = 1 << 24;
  while (high - low > 1) {
    const LONG middle = low + (high - low) / 2;
    (ByteAt(buffer, middle + 1) >= 0 ? low : high) = middle;
  }
  return low;
}
inline char* BytesOf(const Buffer& buffer) {
  LONG address = 0;
  EXPECT_EQ(buffer->StrPtr(&address), S_OK);
  return reinterpret_cast<char*>(static_cast<std::uintptr_t>(static_cast<ULONG>(address)));
}
inline Outcome Append(const Buffer& buffer, VARIANT value) {
  Buffer same;
  const Outcome outcome = OutcomeOf(buffer->Append(&value, same.Receive()));
  EXPECT_EQ(same.get(), outcome == kDone ? buffer.get() : nullptr);
  return outcome;
}
inline Outcome Append(const Buffer& buffer, TextView text) { return Append(buffer, Variant(text).get()); }
inline Outcome SetBufferSize(const Buffer& buffer, LONG size, VARIANT_BOOL clear = VARIANT_FALSE) {
  return OutcomeOf(buffer->SetBufferSize(size, &clear));
}
inline Outcome SetLength(const Buffer& buffer, LONG length) { return OutcomeOf(buffer->put_Length(length)); }
inline LONG Instr(const Buffer& buffer, VARIANT search, LONG start = 1) {
  LONG position = -1;
  EXPECT_EQ(buffer->Instr(&search, &start, &position), S_OK);
  return position;
}
inline LONG Instr(const Buffer& buffer, TextView search, LONG start = 1) {
  return Instr(buffer, Variant(search).get(), start);
}
inline LONG Find(const Buffer& buffer, TextView search, LONG start = 1) {
  LONG position = -1;
  BSTR text = NewBstr(search);
  EXPECT_EQ(buffer->Find(&text, &start, &position), S_OK);
  SysFreeString(text);
  return position;
}

}  // namespace Orvix::testing

#endif
