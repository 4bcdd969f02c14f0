// What the wrapper costs beside what it stands on: objects made from a kept class
// object, UTF-8 by blocks, lists in one pass.
#include <benchmark/benchmark.h>

#include <string>

#include "orvix/orvix.hpp"

namespace {

using namespace Orvix;  // NOLINT(google-build-using-namespace)

// The limit of Create: the class object's own CreateInstance.
void CreateInstance(benchmark::State& state) {
  IClassFactory* factory = nullptr;
  DllGetClassObject(CLSID_classStack, IID_IClassFactory, reinterpret_cast<void**>(&factory));
  for (auto _ : state) {
    IUnknown* made = nullptr;
    factory->CreateInstance(nullptr, IID__classStack, reinterpret_cast<void**>(&made));
    made->Release();
  }
  factory->Release();
}
BENCHMARK(CreateInstance);

void Create(benchmark::State& state) {
  const Component component = Component::Linked();
  for (auto _ : state) benchmark::DoNotOptimize(component.Create<_classStack>(CLSID_classStack));
}
BENCHMARK(Create);

// Argument: of ten characters, how many are no ASCII.
std::string Utf8Text(int accents) {
  std::string text;
  for (int i = 0; text.size() < 1'000'000; ++i) text += i % 10 < accents ? "\xC3\xA4" : "x";
  return text;
}

// The limit on ASCII: every byte widened, or narrowed, in a loop of vectors.
void WidenEveryByte(benchmark::State& state) {
  const std::string bytes = Utf8Text(0);
  for (auto _ : state) {
    Text text(bytes.size(), u'\0');
    for (std::size_t i = 0; i < bytes.size(); ++i) text[i] = static_cast<unsigned char>(bytes[i]);
    benchmark::DoNotOptimize(text.data());
  }
}
BENCHMARK(WidenEveryByte)->Unit(benchmark::kMicrosecond);

void ReadUtf8(benchmark::State& state) {
  const std::string bytes = Utf8Text(static_cast<int>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(FromUtf8(bytes));
}
BENCHMARK(ReadUtf8)->ArgName("accents")->Arg(0)->Arg(1)->Arg(10)->Unit(benchmark::kMicrosecond);

void WriteUtf8(benchmark::State& state) {
  const Text text = FromUtf8(Utf8Text(static_cast<int>(state.range(0))));
  for (auto _ : state) benchmark::DoNotOptimize(ToUtf8(text));
}
BENCHMARK(WriteUtf8)->ArgName("accents")->Arg(0)->Arg(1)->Arg(10)->Unit(benchmark::kMicrosecond);

}  // namespace
