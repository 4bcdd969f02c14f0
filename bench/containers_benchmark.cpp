// The text buffer against memmem and std::string, the stack of values against a
// vector of variants, on the same data. Each benchmark checks its answer first.
#include <benchmark/benchmark.h>

#include <cstring>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "orvix/orvix.h"

namespace {

template <class Interface>
Interface* Make(REFCLSID clsid, REFIID iid) {
  IClassFactory* factory = nullptr;
  Interface* made = nullptr;
  DllGetClassObject(clsid, IID_IClassFactory, reinterpret_cast<void**>(&factory));
  factory->CreateInstance(nullptr, iid, reinterpret_cast<void**>(&made));
  factory->Release();
  return made;
}
Orvix::_classString* MakeString() {
  return Make<Orvix::_classString>(Orvix::CLSID_classString, Orvix::IID__classString);
}

BSTR NewText(std::u16string_view text) { return SysAllocStringLen(text.data(), static_cast<UINT>(text.size())); }
std::u16string Wide(std::string_view text) { return {text.begin(), text.end()}; }

// 16 MiB of words, and what is looked for in them.
const std::string& Words() {
  static const std::string words = [] {
    constexpr std::string_view kWords[] = {"the ",   "Quick ", "brown ", "fox ",   "jumps, ",
                                           "over ",  "a ",     "lazy ",  "dog; ",  "nobody ",
                                           "Knows ", "where ", "it ",    "went. ", "dangling "};
    std::string text;
    std::uint32_t state = 1;
    while (text.size() < std::size_t{1} << 24) {
      state = state * 1664525 + 1013904223;
      text += kWords[(state >> 16) % std::size(kWords)];
    }
    text.resize((std::size_t{1} << 24) - 20);
    return text + "nobody found a place";
  }();
  return words;
}
constexpr std::string_view kSearches[] = {
    "nobody found a place", "the fox went danglin", "nobody Knew", "q", "dg", "zzy"};

Orvix::_classString* WordsAsString() {
  static Orvix::_classString* const string = [] {
    Orvix::_classString* made = MakeString();
    BSTR text = NewText(Wide(Words()));
    made->put_Value(&text);
    SysFreeString(text);
    return made;
  }();
  return string;
}

LONG MemmemPosition(std::string_view search) {
  const void* const found = memmem(Words().data(), Words().size(), search.data(), search.size());
  return found == nullptr ? 0 : static_cast<LONG>(static_cast<const char*>(found) - Words().data()) + 1;
}

void Memmem(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(MemmemPosition(kSearches[state.range(0)]));
}
BENCHMARK(Memmem)->DenseRange(0, 5);

void Find(benchmark::State& state) {
  const std::string_view search = kSearches[state.range(0)];
  BSTR text = NewText(Wide(search));
  LONG position = -1;
  WordsAsString()->Find(&text, nullptr, &position);
  if (position != MemmemPosition(search)) state.SkipWithError("wrong position");
  for (auto _ : state) {
    WordsAsString()->Find(&text, nullptr, &position);
    benchmark::DoNotOptimize(position);
  }
  SysFreeString(text);
}
BENCHMARK(Find)->DenseRange(0, 5);

void Instr(benchmark::State& state) {
  const std::string_view search = kSearches[state.range(0)];
  VARIANT value{};
  value.vt = VT_BSTR;
  value.bstrVal = NewText(Wide(search));
  LONG position = -1;
  WordsAsString()->Instr(&value, nullptr, &position);
  if (position != MemmemPosition(search)) state.SkipWithError("wrong position");
  for (auto _ : state) {
    WordsAsString()->Instr(&value, nullptr, &position);
    benchmark::DoNotOptimize(position);
  }
  SysFreeString(value.bstrVal);
}
BENCHMARK(Instr)->DenseRange(0, 5);

constexpr int kPieces = 1'000'000;
constexpr std::u16string_view kPiece = u"0123456789";

// Grown as it goes, or presized: a plain loop over the units of each piece.
std::string NarrowAndAppend(std::u16string_view piece, bool presized) {
  std::string text;
  if (presized) text.reserve(kPieces * piece.size());
  for (int i = 0; i < kPieces; ++i) {
    for (const char16_t unit : piece) text.push_back(unit < 0x80 ? static_cast<char>(unit) : '?');
  }
  return text;
}

void NarrowLoop(benchmark::State& state) {
  std::u16string piece(kPiece);
  for (auto _ : state) {
    benchmark::DoNotOptimize(piece.data());
    benchmark::DoNotOptimize(NarrowAndAppend(piece, state.range(0) != 0));
  }
}
BENCHMARK(NarrowLoop)->ArgName("presized")->Arg(0)->Arg(1);

void Append(benchmark::State& state) {
  VARIANT value{};
  value.vt = VT_BSTR;
  value.bstrVal = NewText(kPiece);
  const auto build = [&] {
    Orvix::_classString* string = MakeString();
    if (state.range(0) != 0) string->SetBufferSize(kPieces * static_cast<LONG>(kPiece.size()), nullptr);
    for (int i = 0; i < kPieces; ++i) {
      Orvix::_classString* same = nullptr;
      string->Append(&value, &same);
      same->Release();
    }
    return string;
  };
  Orvix::_classString* string = build();
  BSTR text = nullptr;
  string->get_Value(&text);
  if (Wide(NarrowAndAppend(kPiece, false)) != std::u16string_view(text, SysStringLen(text)))
    state.SkipWithError("wrong text");
  SysFreeString(text);
  string->Release();
  for (auto _ : state) build()->Release();
  SysFreeString(value.bstrVal);
}
BENCHMARK(Append)->ArgName("presized")->Arg(0)->Arg(1);

// A text of 1 MB read as a whole, and the loop that widens its bytes into one.
void WidenLoop(benchmark::State& state) {
  const std::string bytes(1'000'000, 'x');
  for (auto _ : state) {
    BSTR text = SysAllocStringLen(nullptr, static_cast<UINT>(bytes.size()));
    for (std::size_t i = 0; i < bytes.size(); ++i) text[i] = static_cast<unsigned char>(bytes[i]);
    benchmark::DoNotOptimize(text);
    SysFreeString(text);
  }
}
BENCHMARK(WidenLoop);

void WholeValue(benchmark::State& state) {
  Orvix::_classString* string = MakeString();
  string->put_Length(1'000'000);
  for (auto _ : state) {
    BSTR text = nullptr;
    string->get_Value(&text);
    benchmark::DoNotOptimize(text);
    SysFreeString(text);
  }
  string->Release();
}
BENCHMARK(WholeValue);

// Numbers and texts of 16 characters, in turn.
using Value = std::variant<std::monostate, LONG, double, std::u16string>;
std::vector<Value> Values() {
  std::vector<Value> values;
  for (int i = 0; i < 1000; ++i) {
    if (i % 2 == 0) {
      values.emplace_back(LONG{i});
    } else {
      values.emplace_back(std::u16string(u"some words, here"));
    }
  }
  return values;
}
VARIANT VariantOf(const Value& value) {
  VARIANT made{};
  if (const LONG* number = std::get_if<LONG>(&value)) {
    made.vt = VT_I4;
    made.lVal = *number;
  } else {
    made.vt = VT_BSTR;
    made.bstrVal = NewText(std::get<std::u16string>(value));
  }
  return made;
}

void VariantVector(benchmark::State& state) {
  const std::vector<Value> values = Values();
  const auto count = static_cast<std::size_t>(state.range(0));
  for (auto _ : state) {
    std::vector<Value> stack;
    for (std::size_t i = 0; i < count; ++i) stack.push_back(values[i % values.size()]);
    for (std::size_t i = 0; i < count; ++i) {
      const Value value = std::move(stack.back());
      stack.pop_back();
      benchmark::DoNotOptimize(&value);
    }
  }
}
BENCHMARK(VariantVector)->Range(1 << 12, 1'000'000);

void PushPop(benchmark::State& state) {
  std::vector<VARIANT> values;
  for (const Value& value : Values()) values.push_back(VariantOf(value));
  const auto count = static_cast<std::size_t>(state.range(0));
  auto* const stack = Make<Orvix::_classStack>(Orvix::CLSID_classStack, Orvix::IID__classStack);
  for (auto _ : state) {
    for (std::size_t i = 0; i < count; ++i) stack->Push(&values[i % values.size()]);
    for (std::size_t i = 0; i < count; ++i) {
      VARIANT value;
      stack->Pop(&value);
      const VARIANT& expected = values[(count - 1 - i) % values.size()];
      if (value.vt != expected.vt || (value.vt == VT_I4 && value.lVal != expected.lVal)) {
        state.SkipWithError("wrong value");
      }
      VariantClear(&value);
    }
  }
  stack->Release();
  for (VARIANT& value : values) VariantClear(&value);
}
BENCHMARK(PushPop)->Range(1 << 12, 1'000'000);

}  // namespace
