// What things cost as they grow: each line's last row is the exponent of the size
// that fits its times best. Nothing is above 1.1 but what its contract makes so.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "orvix/orvix.hpp"

namespace {

using namespace Orvix;  // NOLINT(google-build-using-namespace)

Text ListOf(LONG elements) {
  Text list = u"0";
  for (LONG i = 1; i < elements; ++i) list += u",12345";
  return list;
}

struct Thing {
  const char* name;
  LONG smallest;
  LONG largest;
  double most;  // the exponent that is allowed
  // Makes something of this size, and gives what is timed.
  std::function<std::function<void()>(LONG)> make;
};

std::filesystem::path Fresh() {
  std::string pattern = (std::filesystem::temp_directory_path() / "orvix-growth-XXXXXX").string();
  return mkdtemp(pattern.data());
}
Text PlatformNameOf(const std::filesystem::path& native) {
  BSTR name = nullptr;
  OxPlatformName(native.c_str(), &name);
  Text text(ViewOf(name));
  SysFreeString(name);
  return text;
}
struct Files {
  explicit Files(LONG count) : path(Fresh()) {
    for (LONG i = 0; i < count; ++i) std::ofstream(path / ("file " + std::to_string(i)));
  }
  Files(const Files&) = delete;
  Files& operator=(const Files&) = delete;
  ~Files() { std::filesystem::remove_all(path); }
  std::filesystem::path path;
};

const Thing kThings[] = {
    {"LengthList", 1000, 1'000'000, 1.1,
     [](LONG n) { return [list = String(ListOf(n))] { static_cast<void>(Global().LengthList(list, u",")); }; }},
    {"GetElement of the last", 1000, 1'000'000, 1.1,
     [](LONG n) { return [list = String(ListOf(n)), n] { static_cast<void>(Global().GetElement(list, n, u",")); }; }},
    {"Elements of a list", 1000, 1'000'000, 1.1,
     [](LONG n) {
       return [list = String(ListOf(n))] {
         std::size_t units = 0;
         for (const TextView element : Elements(list, u",")) units += element.size();
         benchmark::DoNotOptimize(units);
       };
     }},
    {"GetElement of each (a loop over the member)", 1000, 16'000, 2.2,
     [](LONG n) {
       return [list = String(ListOf(n)), n] {
         for (LONG i = 1; i <= n; ++i) static_cast<void>(Global().GetElement(list, i, u","));
       };
     }},
    {"MyReplace", 1000, 10'000'000, 1.1,
     [](LONG n) {
       return [text = String(Text(static_cast<std::size_t>(n), u'a'))] {
         static_cast<void>(Global().MyReplace(text, u"a", u"bb"));
       };
     }},
    {"Append to a buffer", 1000, 1'000'000, 1.1,
     [](LONG n) {
       return [n] {
         StringBuffer buffer;
         for (LONG i = 0; i < n; ++i) buffer.Append(u"0123456789");
       };
     }},
    {"Push and Pop", 1000, 1'000'000, 1.1,
     [](LONG n) {
       return [n] {
         Stack stack;
         for (LONG i = 0; i < n; ++i) stack.Push(i);
         for (LONG i = 0; i < n; ++i) static_cast<void>(stack.Pop());
       };
     }},
    {"StoreData and GetFile of one text", 1000, 10'000'000, 1.1,
     [](LONG n) {
       auto files = std::make_shared<Files>(0);
       const Filename name(PlatformNameOf(files->path) + u"\\text");
       return [files, name, text = String(Text(static_cast<std::size_t>(n), u'x'))] {
         Global().StoreData(name, text);
         static_cast<void>(name.GetFile());
       };
     }},
    {"files of one directory stored", 250, 16'000, 1.1,
     [](LONG n) {
       return [n] {
         const Files files(0);
         for (LONG i = 0; i < n; ++i) {
           Global().StoreData(Filename(PlatformNameOf(files.path) + u"\\" + FromUtf8(std::to_string(i))), u"x");
         }
       };
     }},
    {"names of one directory looked for and missed", 250, 64'000, 1.1,
     [](LONG n) {
       auto files = std::make_shared<Files>(n);
       return [files, n] {
         const Text directory = PlatformNameOf(files->path) + u"\\Missing ";
         for (LONG i = 0; i < n; ++i) static_cast<void>(Global().FileExists(directory + FromUtf8(std::to_string(i))));
       };
     }},
    {"Directory.Init", 250, 64'000, 1.1,
     [](LONG n) {
       auto files = std::make_shared<Files>(n);
       return [files] { Directory().Init(PlatformNameOf(files->path) + u"\\*.*"); };
     }},
    {"registry values written", 250, 16'000, 1.1,
     [](LONG n) {
       return [n] {
         static int keys = 0;
         HKEY key = nullptr;
         RegCreateKeyExW(MakeRootKey(kCurrentUser), FromUtf8("Growth " + std::to_string(++keys)).c_str(), 0, nullptr, 0,
                         31, nullptr, &key, nullptr);
         for (LONG i = 0; i < n; ++i) {
           RegSetValueExW(key, FromUtf8(std::to_string(i)).c_str(), 0, 4, reinterpret_cast<const BYTE*>(&i), 4);
         }
         RegCloseKey(key);
       };
     }},
};

double SecondsOf(const std::function<void()>& run) {
  const auto start = std::chrono::steady_clock::now();
  run();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// One thing at all its sizes, four times as large each. The exponent is the slope
// of the times in a double logarithmic picture, by least squares, small times aside.
void Growth(benchmark::State& state) {
  const Thing& thing = kThings[state.range(0)];
  double sum_x = 0, sum_y = 0, sum_xx = 0, sum_xy = 0;
  int points = 0;
  for (auto _ : state) {
    for (LONG size = thing.smallest; size <= thing.largest; size *= 4) {
      const std::function<void()> run = thing.make(size);
      double best = SecondsOf(run);
      for (int again = 0; again < (best < 1e-3 ? 50 : 2) && best < 1; ++again) best = std::min(best, SecondsOf(run));
      if (best < 1e-6) continue;
      const double x = std::log(size), y = std::log(best);
      sum_x += x, sum_y += y, sum_xx += x * x, sum_xy += x * y;
      ++points;
    }
  }
  const double exponent = (points * sum_xy - sum_x * sum_y) / (points * sum_xx - sum_x * sum_x);
  state.SetLabel(thing.name);
  state.counters["exponent"] = exponent;
  state.counters["allowed"] = thing.most;
}
BENCHMARK(Growth)->DenseRange(0, static_cast<int>(std::size(kThings)) - 1)->Iterations(1)->Unit(benchmark::kSecond);

}  // namespace
