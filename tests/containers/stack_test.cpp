// The stacks of values and of objects.
#include <malloc.h>

#include "tests/containers/text_buffer.h"

namespace Orvix::testing {
namespace {

using Stack = ComPtr<_classStack>;
using ObjectStack = ComPtr<_classStackObject>;

const Outcome kEmpty{66000, u"classStack.Pop", u"Stack is empty"};
const Outcome kTooFar{66001, u"classStack.Peek", u"Offset too far"};
const Outcome kOutOfBounds{66003, u"Orvix.classStack", u"Index out of bounds"};

template <class AnyStack>
LONG SizeOfStack(const AnyStack& stack) {
  LONG size = -1;
  VARIANT_BOOL empty = 7;
  EXPECT_EQ(stack->get_Size(&size), S_OK);
  EXPECT_EQ(stack->IsEmpty(&empty), S_OK);
  EXPECT_EQ(empty, size == 0 ? VARIANT_TRUE : VARIANT_FALSE);
  return size;
}
Outcome Push(const Stack& stack, VARIANT value) { return OutcomeOf(stack->Push(&value)); }
Stack StackOf(std::initializer_list<TextView> texts) {
  Stack stack = NewObject<_classStack>();
  for (const TextView text : texts) EXPECT_EQ(Push(stack, Variant(text).get()), kDone);
  return stack;
}
// A number, or the negative error number.
LONG NumberFrom(HRESULT result, const Variant& value) {
  if (FAILED(result)) return -OutcomeOf(result).number;
  EXPECT_EQ(value.get().vt, VT_I4);
  return value.get().lVal;
}
LONG Pop(const Stack& stack) {
  Variant value;
  return NumberFrom(stack->Pop(value.Receive()), value);
}
LONG Peek(const Stack& stack, LONG offset) {
  Variant value;
  return NumberFrom(stack->Peek(&offset, value.Receive()), value);
}
LONG Item(const Stack& stack, LONG index) {
  Variant value;
  return NumberFrom(stack->GetStackItem(&index, value.Receive()), value);
}
struct Place {
  bool found;
  LONG index;
  bool operator==(const Place&) const = default;
};
Place IsOn(const Stack& stack, VARIANT value, LONG direction) {
  LONG index = -5;
  VARIANT_BOOL found = 7;
  EXPECT_EQ(stack->IsOnStack(&value, &direction, &index, &found), S_OK);
  return {found != VARIANT_FALSE, index};
}
Place IsOn(const Stack& stack, TextView text, LONG direction) { return IsOn(stack, Variant(text).get(), direction); }

TEST(Stack, GivesBackLastFirst) {
  const Stack stack = NewObject<_classStack>();
  EXPECT_EQ(SizeOfStack(stack), 0);
  for (LONG number = 1; number <= 3; ++number) ASSERT_EQ(Push(stack, Variant(number).get()), kDone);
  EXPECT_EQ(SizeOfStack(stack), 3);
  EXPECT_EQ(Peek(stack, 0), 3);
  EXPECT_EQ(Peek(stack, 1), 2);
  EXPECT_EQ(Peek(stack, 2), 1);
  Variant value;
  EXPECT_EQ(stack->Peek(nullptr, value.Receive()), S_OK);
  EXPECT_EQ(value.get().lVal, 3);
  EXPECT_EQ(Item(stack, 1), 1);
  EXPECT_EQ(Item(stack, 3), 3);
  for (LONG number = 3; number >= 1; --number) EXPECT_EQ(Pop(stack), number);
  EXPECT_EQ(SizeOfStack(stack), 0);
  EXPECT_EQ(OutcomeOf(stack->Pop(value.Receive())), kEmpty);
  EXPECT_EQ(SizeOfStack(stack), 0);
}

TEST(Stack, PlacesOutsideAreErrors) {
  const Stack stack = StackOf({u"a", u"b", u"c"});
  Variant value;
  for (LONG offset : {3, 4, 2147483647}) {
    EXPECT_EQ(OutcomeOf(stack->Peek(&offset, value.Receive())), kTooFar) << offset;
    ASSERT_EQ(stack->Peek2(&offset, value.Receive()), S_OK);
    EXPECT_EQ(value.get().vt, VT_BSTR);
    EXPECT_EQ(ViewOf(value.get().bstrVal), u"");
  }
  for (LONG offset : {-1, -2147483647 - 1}) {
    EXPECT_EQ(OutcomeOf(stack->Peek(&offset, value.Receive())).number, 9) << offset;
    EXPECT_EQ(OutcomeOf(stack->Peek2(&offset, value.Receive())).number, 9) << offset;
  }
  for (LONG index : {0, 4, -1, 2147483647, -2147483647 - 1}) {
    EXPECT_EQ(OutcomeOf(stack->GetStackItem(&index, value.Receive())), kOutOfBounds) << index;
  }
  LONG last = 2;
  ASSERT_EQ(stack->Peek2(&last, value.Receive()), S_OK);
  EXPECT_EQ(ViewOf(value.get().bstrVal), u"a");
  LONG none = 0;
  EXPECT_EQ(OutcomeOf(NewObject<_classStack>()->Peek(&none, value.Receive())), kTooFar);
  EXPECT_EQ(SizeOfStack(stack), 3);
}

TEST(Stack, ResetEmpties) {
  const Stack stack = StackOf({u"a", u"b"});
  EXPECT_EQ(stack->Reset(), S_OK);
  EXPECT_EQ(SizeOfStack(stack), 0);
  EXPECT_EQ(stack->Reset(), S_OK);
  EXPECT_EQ(Push(stack, Variant(5).get()), kDone);
  EXPECT_EQ(Pop(stack), 5);
}

TEST(Stack, StoresAndGivesCopies) {
  const Stack stack = NewObject<_classStack>();
  BSTR text = NewBstr(u"first");
  ASSERT_EQ(Push(stack, ByReference(VT_BSTR, &text)), kDone);
  text[0] = u'F';
  SysFreeString(text);
  SAFEARRAY* array = SafeArrayCreateVector(VT_I4, 0, 1);
  VARIANT value = ByReference(static_cast<VARTYPE>(VT_ARRAY | VT_I4), &array);
  ASSERT_EQ(Push(stack, ByReference(VT_VARIANT, &value)), kDone);
  LONG index = 0;
  LONG number = 42;
  SafeArrayPutElement(array, &index, &number);
  SafeArrayDestroy(array);

  Variant item;
  ASSERT_EQ(stack->Pop(item.Receive()), S_OK);
  EXPECT_EQ(item.get().vt, VT_ARRAY | VT_I4);
  SafeArrayGetElement(item.get().parray, &index, &number);
  EXPECT_EQ(number, 0);
  for (int i = 0; i < 2; ++i) {
    LONG first = 1;
    ASSERT_EQ(stack->GetStackItem(&first, item.Receive()), S_OK);
    ASSERT_EQ(item.get().vt, VT_BSTR);
    EXPECT_EQ(ViewOf(item.get().bstrVal), u"first");
    item.get().bstrVal[0] = u'X';
  }
  VARIANT broken{};
  broken.vt = 999;
  EXPECT_NE(Push(stack, broken), kDone);
  EXPECT_EQ(SizeOfStack(stack), 1);
}

TEST(Stack, SharesObjectsAndLetsThemGo) {
  const Buffer object = BufferOf(u"apple pie");
  const auto references = [&] {
    object->AddRef();
    return object->Release();
  };
  Stack stack = NewObject<_classStack>();
  for (int i = 0; i < 3; ++i) ASSERT_EQ(Push(stack, ObjectValue(object.get())), kDone);
  EXPECT_EQ(references(), 4u);
  Variant item;
  ASSERT_EQ(stack->Pop(item.Receive()), S_OK);
  EXPECT_EQ(item.get().pdispVal, object.get());
  item = Variant();
  EXPECT_EQ(references(), 3u);
  EXPECT_EQ(IsOn(stack, u"apple", sdStartToEnd), (Place{true, 1}));
  EXPECT_EQ(references(), 3u);
  stack = nullptr;
  EXPECT_EQ(references(), 1u);
}

TEST(Stack, IsOnStackMatchesBeginnings) {
  const Stack stack = StackOf({u"apple", u"banana", u"apricot"});
  const struct {
    TextView text;
    LONG direction;
    Place expected;
  } cases[] = {
      {u"ap", sdStartToEnd, {true, 1}},
      {u"ap", sdEndToStart, {true, 3}},
      {u"ap", 7, {true, 3}},
      {u"ap", -1, {true, 3}},
      {u"x", sdStartToEnd, {false, 0}},
      {u"pp", sdEndToStart, {false, 0}},
      {u"App", sdStartToEnd, {false, 0}},
      {u"apple", sdEndToStart, {true, 1}},
      {u"apples", sdEndToStart, {false, 0}},
      {u"banana", sdStartToEnd, {true, 2}},
      {u"", sdEndToStart, {true, 3}},
      {u"", sdStartToEnd, {true, 1}},
  };
  for (const auto& c : cases) EXPECT_EQ(IsOn(stack, c.text, c.direction), c.expected) << ToUtf8(c.text);
}

TEST(Stack, IsOnStackComparesTextForms) {
  const Stack stack = NewObject<_classStack>();
  EXPECT_EQ(IsOn(stack, u"", sdStartToEnd), (Place{false, 0}));
  EXPECT_EQ(IsOn(stack, Null(), sdStartToEnd), (Place{false, 0}));
  for (const VARIANT& value : {VARIANT{}, Null(), Variant(LONG{10}).get(), Variant::Boolean(VARIANT_TRUE).get()}) {
    ASSERT_EQ(Push(stack, value), kDone);
  }
  EXPECT_EQ(IsOn(stack, Variant(LONG{1}).get(), sdStartToEnd), (Place{true, 3}));
  EXPECT_EQ(IsOn(stack, u"Tr", sdStartToEnd), (Place{true, 4}));
  EXPECT_EQ(IsOn(stack, u"", sdStartToEnd), (Place{true, 3}));  // Empty and Null are passed over
  EXPECT_EQ(IsOn(stack, VARIANT{}, sdEndToStart), (Place{true, 4}));
  VARIANT null = Null();
  EXPECT_EQ(IsOn(stack, ByReference(VT_VARIANT, &null), sdStartToEnd), (Place{false, 0}));
  VARIANT none = ObjectValue(nullptr);
  LONG direction = sdStartToEnd;
  LONG index = 5;
  VARIANT_BOOL found = 0;
  EXPECT_EQ(OutcomeOf(stack->IsOnStack(&none, &direction, &index, &found)).number, 13);
  EXPECT_EQ(index, 5);
}

TEST(Stack, GrowsAndShrinksAcrossPieces) {
  const Stack stack = NewObject<_classStack>();
  constexpr LONG kMany = 5000;
  for (int round = 0; round < 2; ++round) {
    for (LONG number = 1; number <= kMany; ++number) {
      ASSERT_EQ(Push(stack, Variant(number).get()), kDone);
      ASSERT_EQ(Peek(stack, 0), number);
    }
    for (LONG index = 1; index <= kMany; ++index) ASSERT_EQ(Item(stack, index), index);
    for (LONG number = kMany; number >= 1; --number) ASSERT_EQ(Pop(stack), number);
  }
}

TEST(Stack, KeepsEveryTypeAsItIs) {
  const Stack stack = NewObject<_classStack>();
  VARIANT currency{};
  currency.vt = VT_CY;
  currency.cyVal.int64 = 12345678901;
  VARIANT error{};
  error.vt = VT_ERROR;
  error.scode = 2042;
  const VARIANT values[] = {VARIANT{},
                            Null(),
                            currency,
                            error,
                            Variant(0.1).get(),
                            Variant::Short(-3).get(),
                            Variant::Date(2.5).get(),
                            ObjectValue(nullptr)};
  for (const VARIANT& value : values) {
    ASSERT_EQ(Push(stack, value), kDone) << value.vt;
    Variant got;
    ASSERT_EQ(stack->Pop(got.Receive()), S_OK);
    EXPECT_EQ(got.get().vt, value.vt);
    EXPECT_EQ(got.get().llVal, value.llVal) << value.vt;
  }
  // A text with an odd number of bytes, and a null one.
  BSTR odd = SysAllocStringByteLen("abc", 3);
  for (BSTR text : {odd, BSTR{nullptr}}) {
    VARIANT value{};
    value.vt = VT_BSTR;
    value.bstrVal = text;
    ASSERT_EQ(Push(stack, value), kDone);
    Variant got;
    ASSERT_EQ(stack->Pop(got.Receive()), S_OK);
    EXPECT_EQ(got.get().vt, VT_BSTR);
    EXPECT_NE(got.get().bstrVal, text);
    EXPECT_EQ(SysStringByteLen(got.get().bstrVal), SysStringByteLen(text));
  }
  SysFreeString(odd);
  VARIANT missing = Missing();
  EXPECT_EQ(stack->Push(&missing), DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(stack->Push(nullptr), E_POINTER);
  Variant got;
  EXPECT_EQ(stack->GetStackItem(nullptr, got.Receive()), E_POINTER);
  EXPECT_EQ(SizeOfStack(stack), 0);
}

// One item more is 24 bytes more, and no doubling leaves half of them unused.
TEST(Stack, CostsWhatItsItemsCost) {
  const Stack stack = NewObject<_classStack>();
  for (const LONG many : {10, 1025, 100000}) {
    const auto before = mallinfo2().uordblks;
    for (LONG number = 0; number < many; ++number) ASSERT_EQ(Push(stack, Variant(number).get()), kDone);
    const auto cost = mallinfo2().uordblks - before;
    EXPECT_LE(cost, static_cast<std::size_t>(many) * 24 + 50000) << many;
    EXPECT_EQ(stack->Reset(), S_OK);
    EXPECT_LE(mallinfo2().uordblks, before + 4096);  // what the allocator keeps for itself
  }
}

// An item that, asked for its text, takes the items from the stack.
TEST(Stack, ItemsMayChangeTheStackThatSearchesThem) {
  const Stack stack = NewObject<_classStack>();
  ObjectWithDefault object([&] {
    EXPECT_EQ(stack->Reset(), S_OK);
    return Variant(TextView(u"text"));
  });
  ASSERT_EQ(Push(stack, Variant(TextView(u"below")).get()), kDone);
  ASSERT_EQ(Push(stack, ObjectValue(&object)), kDone);
  EXPECT_EQ(object.references, 2u);
  EXPECT_EQ(IsOn(stack, u"below", sdEndToStart), (Place{false, 0}));
  EXPECT_EQ(SizeOfStack(stack), 0);
  EXPECT_EQ(object.references, 1u);
}

TEST(ObjectStack, KeepsTheObjectsThemselves) {
  const ObjectStack stack = NewObject<_classStackObject>();
  const Buffer first = BufferOf(u"1");
  const Buffer second = BufferOf(u"2");
  IDispatch* pushed[] = {first.get(), second.get(), nullptr};
  for (IDispatch*& object : pushed) ASSERT_EQ(stack->Push(&object), S_OK);
  EXPECT_EQ(SizeOfStack(stack), 3);
  ComPtr<IDispatch> got;
  LONG index = 1;
  ASSERT_EQ(stack->GetStackItem(&index, got.Receive()), S_OK);
  EXPECT_EQ(got.get(), first.get());
  ASSERT_EQ(stack->Pop(got.Receive()), S_OK);
  EXPECT_EQ(got.get(), nullptr);
  ASSERT_EQ(stack->Pop(got.Receive()), S_OK);
  EXPECT_EQ(got.get(), second.get());
  EXPECT_EQ(stack->Reset(), S_OK);
  EXPECT_EQ(SizeOfStack(stack), 0);
  EXPECT_EQ(first->AddRef(), 2u);
  first->Release();
}

TEST(ObjectStack, FailsUnderTheNamesOfTheOtherStack) {
  const ObjectStack stack = NewObject<_classStackObject>();
  ComPtr<IDispatch> got;
  EXPECT_EQ(OutcomeOf(stack->Pop(got.Receive())), kEmpty);
  LONG offset = 0;
  EXPECT_EQ(OutcomeOf(stack->Peek(&offset, got.Receive())), kTooFar);
  IDispatch* nothing = nullptr;
  ASSERT_EQ(stack->Push(&nothing), S_OK);
  const Buffer object = BufferOf(u"x");
  IDispatch* pushed = object.get();
  ASSERT_EQ(stack->Push(&pushed), S_OK);
  const Outcome not_set{91, u"Orvix.classStackObject", u"Object variable or With block variable not set"};
  EXPECT_EQ(OutcomeOf(stack->Peek(nullptr, got.Receive())), not_set);
  offset = 1;
  EXPECT_EQ(OutcomeOf(stack->Peek(&offset, got.Receive())), not_set);
  offset = 2;
  EXPECT_EQ(OutcomeOf(stack->Peek(&offset, got.Receive())), kTooFar);
  offset = -1;
  EXPECT_EQ(OutcomeOf(stack->Peek(&offset, got.Receive())).number, 9);
  for (LONG index : {0, 3}) {
    EXPECT_EQ(OutcomeOf(stack->GetStackItem(&index, got.Receive())),
              (Outcome{66003, u"Orvix.classStackObject", u"Index out of bounds"}));
  }
  EXPECT_EQ(SizeOfStack(stack), 2);
}

}  // namespace
}  // namespace Orvix::testing
