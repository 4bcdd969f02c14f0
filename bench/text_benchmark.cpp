// MyReplace against a search-and-append loop, and Min against a plain loop over
// the same array. Each benchmark checks its answer first.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "orvix/orvix.h"

namespace {

using Orvix::_classOrvix;

_classOrvix* Component() {
  static _classOrvix* const orvix = [] {
    IClassFactory* factory = nullptr;
    _classOrvix* made = nullptr;
    DllGetClassObject(Orvix::CLSID_classOrvix, IID_IClassFactory, reinterpret_cast<void**>(&factory));
    factory->CreateInstance(nullptr, Orvix::IID__classOrvix, reinterpret_cast<void**>(&made));
    factory->Release();
    return made;
  }();
  return orvix;
}

BSTR NewText(std::u16string_view text) { return SysAllocStringLen(text.data(), static_cast<UINT>(text.size())); }

// 1 MiB of words.
std::u16string Words() {
  constexpr std::u16string_view kWords[] = {u"the ",   u"Quick ", u"brown ", u"fox ",  u"jumps, ",
                                            u"over ",  u"a ",     u"lazy ",  u"dog; ", u"nobody ",
                                            u"Knows ", u"where ", u"it ",    u"went. "};
  constexpr std::size_t kUnits = (std::size_t{1} << 20) / sizeof(char16_t);
  std::u16string text;
  std::uint32_t state = 1;
  while (text.size() < kUnits) {
    state = state * 1664525 + 1013904223;
    text += kWords[(state >> 16) % std::size(kWords)];
  }
  text.resize(kUnits - 2);
  return text += u"..";
}

std::u16string UpperAscii(std::u16string text) {
  for (char16_t& unit : text) {
    if (unit >= u'a' && unit <= u'z') unit = static_cast<char16_t>(unit - 0x20);
  }
  return text;
}

std::u16string FindAndAppend(const std::u16string& text, const std::u16string& searched, const std::u16string& target,
                             const std::u16string& replacement) {
  std::u16string replaced;
  std::size_t from = 0;
  for (std::size_t at; (at = searched.find(target, from)) != std::u16string::npos; from = at + target.size()) {
    replaced.append(text, from, at - from).append(replacement);
  }
  return replaced.append(text, from);
}

struct Replacement {
  std::u16string target;
  std::u16string replacement;
  bool no_case;
};
const Replacement kReplacements[] = {
    {u"o", u"0", false}, {u"o", u"00", true}, {u"Quick", u"slow", false}, {u"QUICK", u"sluggish", true}};

void Loop(benchmark::State& state) {
  const Replacement& r = kReplacements[state.range(0)];
  const std::u16string text = Words();
  const std::u16string target = r.no_case ? UpperAscii(r.target) : r.target;
  for (auto _ : state) {
    if (r.no_case) {
      benchmark::DoNotOptimize(FindAndAppend(text, UpperAscii(text), target, r.replacement));
    } else {
      benchmark::DoNotOptimize(FindAndAppend(text, text, target, r.replacement));
    }
  }
}
BENCHMARK(Loop)->DenseRange(0, 3);

void MyReplace(benchmark::State& state) {
  const Replacement& r = kReplacements[state.range(0)];
  const std::u16string words = Words();
  BSTR text = NewText(words);
  BSTR target = NewText(r.target);
  BSTR replacement = NewText(r.replacement);
  VARIANT_BOOL no_case = r.no_case ? VARIANT_TRUE : VARIANT_FALSE;
  const std::u16string expected = FindAndAppend(words, r.no_case ? UpperAscii(words) : words,
                                                r.no_case ? UpperAscii(r.target) : r.target, r.replacement);
  BSTR replaced = nullptr;
  Component()->MyReplace(text, target, replacement, &no_case, nullptr, &replaced);
  if (std::u16string_view(replaced, SysStringLen(replaced)) != expected) state.SkipWithError("wrong text");
  SysFreeString(replaced);
  for (auto _ : state) {
    Component()->MyReplace(text, target, replacement, &no_case, nullptr, &replaced);
    benchmark::DoNotOptimize(replaced);
    SysFreeString(replaced);
  }
  for (BSTR used : {text, target, replacement}) SysFreeString(used);
}
BENCHMARK(MyReplace)->DenseRange(0, 3);

constexpr ULONG kElements = 1'000'000;

SAFEARRAY* Longs() {
  SAFEARRAY* array = SafeArrayCreateVector(VT_VARIANT, 0, kElements);
  VARIANT* elements = nullptr;
  SafeArrayAccessData(array, reinterpret_cast<void**>(&elements));
  std::uint32_t state = 1;
  for (ULONG i = 0; i < kElements; ++i) {
    state = state * 1664525 + 1013904223;
    elements[i].vt = VT_I4;
    elements[i].lVal = static_cast<LONG>(state >> 1);
  }
  elements[kElements / 2].lVal = -5;
  SafeArrayUnaccessData(array);
  return array;
}

LONG SmallestOf(const SAFEARRAY* array) {
  const auto* elements = static_cast<const VARIANT*>(array->pvData);
  LONG smallest = elements[0].lVal;
  for (ULONG i = 0; i < array->rgsabound[0].cElements; ++i) {
    if (elements[i].vt != VT_I4) return 0;
    if (elements[i].lVal < smallest) smallest = elements[i].lVal;
  }
  return smallest;
}

void PlainMin(benchmark::State& state) {
  SAFEARRAY* array = Longs();
  for (auto _ : state) benchmark::DoNotOptimize(SmallestOf(array));
  SafeArrayDestroy(array);
}
BENCHMARK(PlainMin);

void Min(benchmark::State& state) {
  SAFEARRAY* array = Longs();
  VARIANT result;
  Component()->Min(&array, &result);
  if (result.vt != VT_I4 || result.lVal != -5) state.SkipWithError("wrong value");
  for (auto _ : state) {
    Component()->Min(&array, &result);
    benchmark::DoNotOptimize(result);
  }
  SafeArrayDestroy(array);
}
BENCHMARK(Min);

// One text of the size of the result, made and filled.
void CopyLimit(benchmark::State& state) {
  const std::u16string words = Words();
  for (auto _ : state) {
    BSTR copy = NewText(words);
    benchmark::DoNotOptimize(copy);
    SysFreeString(copy);
  }
}
BENCHMARK(CopyLimit);

// A target of five units, replaced by as many.
void ReplaceFive(benchmark::State& state) {
  BSTR words = NewText(Words());
  BSTR target = NewText(state.range(0) != 0 ? u"LAZY " : u"lazy ");
  BSTR replacement = NewText(u"busy ");
  VARIANT_BOOL no_case = state.range(0) != 0 ? -1 : 0;
  for (auto _ : state) {
    BSTR replaced = nullptr;
    Component()->MyReplace(words, target, replacement, &no_case, nullptr, &replaced);
    benchmark::DoNotOptimize(replaced);
    SysFreeString(replaced);
  }
  for (BSTR text : {words, target, replacement}) SysFreeString(text);
}
BENCHMARK(ReplaceFive)->ArgName("no_case")->Arg(0)->Arg(1);

// The limit of AddElement: a virtual call that makes the same text in one copy.
struct Joiner {
  virtual ~Joiner() = default;
  virtual HRESULT Join(BSTR list, BSTR element, BSTR separator, BSTR* result) noexcept {
    const UINT sizes[] = {SysStringLen(list), SysStringLen(separator), SysStringLen(element)};
    *result = SysAllocStringLen(nullptr, sizes[0] + sizes[1] + sizes[2]);
    std::memcpy(*result, list, sizes[0] * sizeof(OLECHAR));
    std::memcpy(*result + sizes[0], separator, sizes[1] * sizeof(OLECHAR));
    std::memcpy(*result + sizes[0] + sizes[1], element, sizes[2] * sizeof(OLECHAR));
    return S_OK;
  }
};

template <class Object, class Member>
void AddElements(benchmark::State& state, Object* object, Member member) {
  benchmark::DoNotOptimize(object);
  BSTR list = NewText(u"one,two,three");
  BSTR element = NewText(u"four");
  BSTR comma = NewText(u",");
  for (auto _ : state) {
    BSTR joined = nullptr;
    (object->*member)(list, element, comma, &joined);
    SysFreeString(joined);
  }
  for (BSTR text : {list, element, comma}) SysFreeString(text);
}
void JoinByVirtualCall(benchmark::State& state) {
  Joiner joiner;
  AddElements(state, &joiner, &Joiner::Join);
}
BENCHMARK(JoinByVirtualCall);
void AddElement(benchmark::State& state) { AddElements(state, Component(), &_classOrvix::AddElement); }
BENCHMARK(AddElement);

// The same values as numbers of several types, as a script's array has them.
using Number = std::variant<LONG, SHORT, BYTE, float, double>;
std::vector<Number> MixedNumbers() {
  std::mt19937 random(3);
  std::vector<Number> numbers;
  for (int i = 0; i < 1'000'000; ++i) {
    const auto value = static_cast<LONG>(random() % 30000) + 6;
    switch (random() % 5) {
      case 0:
        numbers.emplace_back(value);
        break;
      case 1:
        numbers.emplace_back(static_cast<SHORT>(value));
        break;
      case 2:
        numbers.emplace_back(static_cast<BYTE>(value | 7));
        break;
      case 3:
        numbers.emplace_back(static_cast<float>(value));
        break;
      default:
        numbers.emplace_back(static_cast<double>(value) + 0.25);
    }
  }
  numbers.back() = LONG{-5};
  return numbers;
}

void VariantMin(benchmark::State& state) {
  const std::vector<Number> numbers = MixedNumbers();
  for (auto _ : state) {
    double smallest = 1e9;
    for (const Number& number : numbers) {
      std::visit([&](auto value) { smallest = std::min(smallest, static_cast<double>(value)); }, number);
    }
    benchmark::DoNotOptimize(smallest);
  }
}
BENCHMARK(VariantMin)->Unit(benchmark::kMicrosecond);

void MixedMin(benchmark::State& state) {
  const std::vector<Number> numbers = MixedNumbers();
  SAFEARRAY* array = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(numbers.size()));
  auto* place = static_cast<VARIANT*>(array->pvData);
  for (const Number& number : numbers) {
    constexpr VARTYPE kTypes[] = {VT_I4, VT_I2, VT_UI1, VT_R4, VT_R8};
    place->vt = kTypes[number.index()];
    std::visit([&](auto value) { std::memcpy(&place->llVal, &value, sizeof value); }, number);
    ++place;
  }
  VARIANT result;
  Component()->Min(&array, &result);
  if (result.vt != VT_I4 || result.lVal != -5) state.SkipWithError("wrong value");
  for (auto _ : state) {
    Component()->Min(&array, &result);
    benchmark::DoNotOptimize(result);
  }
  SafeArrayDestroy(array);
}
BENCHMARK(MixedMin)->Unit(benchmark::kMicrosecond);

}  // namespace
