// Buffers of another implementation as arguments: what they say is taken through
// their interface, and what they get wrong harms nobody.
#include <functional>

#include "tests/containers/text_buffer.h"

namespace Orvix::testing {
namespace {

constexpr HRESULT kTheirFailure = static_cast<HRESULT>(0x800A0000U + 321);

// Knows its length and its address, nothing else. Lives on the stack of its
// test: the count of references is only looked at.
class ForeignBuffer final : public _classString {
 public:
  std::function<HRESULT(LONG*)> length = [](LONG* result) {
    *result = 3;
    return S_OK;
  };
  std::function<HRESULT(LONG*)> address = [](LONG* result) {
    *result = 0;
    return S_OK;
  };
  ULONG references = 1;

  VARIANT Value() { return ObjectValue(this); }
  void Has(LONG count, const void* bytes) {
    length = [count](LONG* result) {
      *result = count;
      return S_OK;
    };
    address = [bytes](LONG* result) {
      *result = static_cast<LONG>(reinterpret_cast<std::uintptr_t>(bytes));
      return S_OK;
    };
  }

  HRESULT QueryInterface(REFIID iid, void** object) noexcept override {
    if (iid != IID_IUnknown && iid != IID_IDispatch && iid != IID__classString) return E_NOINTERFACE;
    *object = static_cast<_classString*>(this);
    AddRef();
    return S_OK;
  }
  ULONG AddRef() noexcept override { return ++references; }
  ULONG Release() noexcept override { return --references; }
  HRESULT GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT GetIDsOfNames(REFIID, OLECHAR** names, UINT, LCID, DISPID* ids) override {
    *ids = TextView(names[0]) == u"Length" ? 1 : TextView(names[0]) == u"StrPtr" ? 2 : DISPID_UNKNOWN;
    return *ids == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK;
  }
  HRESULT Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*, UINT*) override {
    VariantInit(result);
    result->vt = VT_I4;
    return member == 1 ? length(&result->lVal) : address(&result->lVal);
  }
  HRESULT get_Length(LONG* result) override { return length(result); }
  HRESULT StrPtr(LONG* result) override { return address(result); }

  HRESULT SetBufferSize(LONG, VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT get_Value(BSTR*) override { return E_NOTIMPL; }
  HRESULT put_Value(BSTR*) override { return E_NOTIMPL; }
  HRESULT put_Length(LONG) override { return E_NOTIMPL; }
  HRESULT Clear() override { return E_NOTIMPL; }
  HRESULT Copy(_classString**) override { return E_NOTIMPL; }
  HRESULT get_Left(LONG, _classString**) override { return E_NOTIMPL; }
  HRESULT put_Left(LONG, VARIANT*) override { return E_NOTIMPL; }
  HRESULT putref_Left(LONG, _classString**) override { return E_NOTIMPL; }
  HRESULT get_Right(LONG, _classString**) override { return E_NOTIMPL; }
  HRESULT put_Right(LONG, VARIANT*) override { return E_NOTIMPL; }
  HRESULT putref_Right(LONG, _classString**) override { return E_NOTIMPL; }
  HRESULT get_Mid(LONG, VARIANT*, _classString**) override { return E_NOTIMPL; }
  HRESULT put_Mid(LONG, VARIANT*, VARIANT*) override { return E_NOTIMPL; }
  HRESULT putref_Mid(LONG, VARIANT*, _classString**) override { return E_NOTIMPL; }
  HRESULT Asc(SHORT*) override { return E_NOTIMPL; }
  HRESULT get_Char(LONG, BYTE*) override { return E_NOTIMPL; }
  HRESULT put_Char(LONG, BYTE) override { return E_NOTIMPL; }
  HRESULT Instr(VARIANT*, LONG*, LONG*) override { return E_NOTIMPL; }
  HRESULT UCase(_classString**) override { return E_NOTIMPL; }
  HRESULT LCase(_classString**) override { return E_NOTIMPL; }
  HRESULT ReverseStr(_classString**) override { return E_NOTIMPL; }
  HRESULT Append(VARIANT*, _classString**) override { return E_NOTIMPL; }
  HRESULT Find(BSTR*, LONG*, LONG*) override { return E_NOTIMPL; }
  HRESULT WriteToFile(SHORT, VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT ReadFromFile(SHORT, VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT TrimToNull(LONG*) override { return E_NOTIMPL; }
  HRESULT GetElement(LONG, BSTR, BSTR*) override { return E_NOTIMPL; }
  HRESULT LengthList(BSTR, LONG*) override { return E_NOTIMPL; }
};

LONG InstrNumber(const Buffer& buffer, VARIANT search) {
  LONG position = -1;
  const HRESULT result = buffer->Instr(&search, nullptr, &position);
  return SUCCEEDED(result) ? position : -OutcomeOf(result).number;
}
Outcome SetLeft(const Buffer& buffer, LONG count, _classString* value) {
  return OutcomeOf(buffer->putref_Left(count, &value));
}

TEST(ForeignBufferArgument, IsReadThroughItsInterface) {
  const Buffer bytes = BufferOf(u"xyz!");
  ForeignBuffer foreign;
  foreign.Has(3, BytesOf(bytes));
  const Buffer buffer = BufferOf(u"0123");
  EXPECT_EQ(Append(buffer, foreign.Value()), kDone);
  EXPECT_EQ(ValueOf(buffer), u"0123xyz");
  EXPECT_EQ(InstrNumber(buffer, foreign.Value()), 5);
  EXPECT_EQ(SetLeft(buffer, 2, &foreign), kDone);
  EXPECT_EQ(ValueOf(buffer), u"xy23xyz");
  EXPECT_EQ(foreign.references, 1u);
}

TEST(ForeignBufferArgument, ItsErrorsPassAndItsNonsenseIsRefused) {
  const Buffer buffer = BufferOf(Text(250, u'a'));
  ForeignBuffer foreign;  // 3 bytes at no address
  EXPECT_EQ(Append(buffer, foreign.Value()).number, 5);
  EXPECT_EQ(InstrNumber(buffer, foreign.Value()), -5);
  EXPECT_EQ(SetLeft(buffer, 2, &foreign).number, 5);
  EXPECT_EQ(SetLeft(buffer, 0, &foreign), kDone);  // nobody asks where it is

  foreign.Has(100, nullptr);
  foreign.address = [](LONG*) { return kTheirFailure; };
  EXPECT_EQ(Append(buffer, foreign.Value()).number, 321);
  EXPECT_EQ(SetLeft(buffer, 2, &foreign).number, 321);
  foreign.length = foreign.address;
  EXPECT_EQ(Append(buffer, foreign.Value()).number, 321);
  EXPECT_EQ(SetLeft(buffer, 2, &foreign).number, 321);

  foreign.Has(-1, "x");
  EXPECT_EQ(Append(buffer, foreign.Value()).number, 5);
  EXPECT_EQ(InstrNumber(buffer, foreign.Value()), -5);
  EXPECT_EQ(SetLeft(buffer, 2, &foreign), kDone);
  foreign.Has(2147483647, "x");
  EXPECT_EQ(Append(buffer, foreign.Value()), kNoMemory);

  EXPECT_EQ(ValueOf(buffer), Text(250, u'a'));
  EXPECT_EQ(SizeOf(buffer), 256);  // the room made for it is gone again
  EXPECT_EQ(foreign.references, 1u);
}

// The bytes of the buffer that it is an argument of, whatever moved meanwhile.
TEST(ForeignBufferArgument, MayChangeTheBufferThatAsksIt) {
  for (const LONG size : {3, 100, 1000}) {
    const Buffer buffer = BufferOf(u"abcdef");
    const Buffer other = BufferOf(u"wxyz");
    ForeignBuffer foreign;
    foreign.Has(4, nullptr);
    foreign.address = [&](LONG* result) {
      EXPECT_EQ(SetBufferSize(buffer, size), kDone);
      return size < 6 ? other->StrPtr(result) : buffer->StrPtr(result);
    };
    if (size == 3) {  // no room any more for what was to be added
      EXPECT_EQ(Append(buffer, foreign.Value()), kOutside);
      EXPECT_EQ(SizeOf(buffer), 3);
      EXPECT_EQ(LengthOf(buffer), 6);
    } else {
      EXPECT_EQ(Append(buffer, foreign.Value()), kDone);
      EXPECT_EQ(ValueOf(buffer), u"abcdefabcd");
    }
    EXPECT_EQ(ByteAt(buffer, 3), 'c');
  }
}

TEST(ForeignBufferArgument, MayShrinkTheBufferThatItIsLaidOver) {
  const Buffer buffer = BufferOf(u"abcdef");
  const Buffer other = BufferOf(u"XYZ");
  ForeignBuffer foreign;
  foreign.Has(3, nullptr);
  foreign.address = [&](LONG* result) {
    EXPECT_EQ(SetBufferSize(buffer, 1), kDone);
    return other->StrPtr(result);
  };
  EXPECT_EQ(SetLeft(buffer, 3, &foreign), kOutside);
  EXPECT_EQ(ByteAt(buffer, 1), 'a');
  EXPECT_EQ(ByteAt(buffer, 2), 'b');
}

}  // namespace
}  // namespace Orvix::testing
