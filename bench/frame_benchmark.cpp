// The frame: late-bound calls against the vtable, list walks against a plain
// read of the same memory, sorting, and listing a large directory against a bare
// loop. Answers are checked, so that a wrong fast path cannot win.
#include <benchmark/benchmark.h>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>

#include "frame/com_ptr.h"

extern "C" void* __libc_malloc(std::size_t bytes);  // NOLINT(bugprone-reserved-identifier): glibc's own entry

namespace {
thread_local long allocations = 0;
}
extern "C" void* malloc(std::size_t bytes) {
  ++allocations;
  return __libc_malloc(bytes);
}

namespace {

using namespace Orvix;             // NOLINT(google-build-using-namespace)
using namespace Orvix::component;  // NOLINT(google-build-using-namespace)

template <class Interface>
ComPtr<Interface> Make(const CLSID& clsid, const IID& iid) {
  ComPtr<IClassFactory> factory;
  DllGetClassObject(clsid, IID_IClassFactory, factory.ReceiveVoid());
  ComPtr<Interface> object;
  factory->CreateInstance(nullptr, iid, object.ReceiveVoid());
  return object;
}

struct ElementCall {
  ComPtr<_classOrvix> orvix = Make<_classOrvix>(CLSID_classOrvix, IID__classOrvix);
  BstrHandle list{u"red,green,blue"};
  BstrHandle separator{u","};

  void Check(benchmark::State& state, BSTR element) {
    if (ViewOf(element) != u"green") state.SkipWithError("wrong element");
    SysFreeString(element);
  }
  void ByName(benchmark::State& state, DISPID id) {
    VARIANT arguments[3];
    arguments[2].vt = VT_BSTR;
    arguments[2].bstrVal = list.get();
    arguments[1].vt = VT_I4;
    arguments[1].lVal = 2;
    arguments[0].vt = VT_BSTR;
    arguments[0].bstrVal = separator.get();
    DISPPARAMS params{arguments, nullptr, 3, 0};
    VARIANT result;
    VariantInit(&result);
    orvix->Invoke(id, IID_NULL, 0, DISPATCH_METHOD, &params, &result, nullptr, nullptr);
    Check(state, result.bstrVal);
  }
};

void CallThroughVtable(benchmark::State& state) {
  ElementCall call;
  const long before = allocations;
  for (auto _ : state) {
    BSTR element = nullptr;
    call.orvix->GetElement(call.list.get(), 2, call.separator.get(), &element);
    call.Check(state, element);
  }
  state.counters["allocations"] =
      benchmark::Counter(static_cast<double>(allocations - before) / static_cast<double>(state.iterations()));
}
BENCHMARK(CallThroughVtable);

void CallWithKeptIdentifier(benchmark::State& state) {
  ElementCall call;
  OLECHAR name[] = u"GetElement";
  OLECHAR* names[] = {name};
  DISPID id = 0;
  call.orvix->GetIDsOfNames(IID_NULL, names, 1, 0, &id);
  for (auto _ : state) call.ByName(state, id);
}
BENCHMARK(CallWithKeptIdentifier);

void CallWithNameLookedUp(benchmark::State& state) {
  ElementCall call;
  OLECHAR name[] = u"GetElement";
  OLECHAR* names[] = {name};
  for (auto _ : state) {
    DISPID id = 0;
    call.orvix->GetIDsOfNames(IID_NULL, names, 1, 0, &id);
    call.ByName(state, id);
  }
}
BENCHMARK(CallWithNameLookedUp);

// A list of 10^6 elements of 1 to 14 characters.
constexpr LONG kElements = 1'000'000;
Text LargeList(TextView separator) {
  std::mt19937 random(1);
  Text list;
  for (LONG i = 0; i < kElements; ++i) {
    if (i > 0) list += separator;
    list.append(1 + random() % 14, static_cast<char16_t>(u'a' + random() % 26));
  }
  return list;
}

void ReadSameMemory(benchmark::State& state) {
  const Text list = LargeList(state.range(0) == 1 ? u"," : u"||");
  for (auto _ : state) {
    std::uint64_t sum = 0;
    const auto* words = reinterpret_cast<const std::uint64_t*>(list.data());
    for (std::size_t i = 0; i < list.size() / 4; ++i) sum += words[i];
    benchmark::DoNotOptimize(sum);
  }
}
BENCHMARK(ReadSameMemory)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

void CountLargeList(benchmark::State& state) {
  const TextView separator = state.range(0) == 1 ? u"," : u"||";
  const auto orvix = Make<_classOrvix>(CLSID_classOrvix, IID__classOrvix);
  const BstrHandle list(LargeList(separator));
  const BstrHandle between(separator);
  for (auto _ : state) {
    LONG count = 0;
    orvix->LengthList(list.get(), between.get(), &count);
    if (count != kElements) state.SkipWithError("wrong count");
  }
}
BENCHMARK(CountLargeList)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

void LastOfLargeList(benchmark::State& state) {
  const TextView separator = state.range(0) == 1 ? u"," : u"||";
  const auto orvix = Make<_classOrvix>(CLSID_classOrvix, IID__classOrvix);
  const Text text = LargeList(separator) + Text(separator) + u"last";
  const BstrHandle list(text);
  const BstrHandle between(separator);
  for (auto _ : state) {
    BSTR element = nullptr;
    orvix->GetElement(list.get(), kElements + 1, between.get(), &element);
    if (ViewOf(element) != u"last") state.SkipWithError("wrong element");
    SysFreeString(element);
  }
}
BENCHMARK(LastOfLargeList)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

// A native directory with `count` empty files named N.txt, N in no order.
class ManyFiles {
 public:
  explicit ManyFiles(int count) {
    std::string pattern = (std::filesystem::temp_directory_path() / "orvix-bench-XXXXXX").string();
    path_ = mkdtemp(pattern.data());
    for (int i = 0; i < count; ++i) {
      std::ofstream(path_ + "/" + std::to_string((static_cast<long>(i) * 7919) % count) + ".txt");
    }
    BSTR name = nullptr;
    OxPlatformName(path_.c_str(), &name);
    mask_ = Text(ViewOf(name)) + u"\\*.txt";
    SysFreeString(name);
  }
  ManyFiles(const ManyFiles&) = delete;
  ManyFiles& operator=(const ManyFiles&) = delete;
  ~ManyFiles() { std::filesystem::remove_all(path_); }
  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] const Text& mask() const { return mask_; }

 private:
  std::string path_;
  Text mask_;
};

void SortByName(benchmark::State& state) {
  const ManyFiles files(2000);
  const auto directory = Make<_classDirectory>(CLSID_classDirectory, IID__classDirectory);
  BSTR mask = NewBstr(files.mask());
  for (auto _ : state) {
    state.PauseTiming();
    directory->Init(&mask, nullptr, nullptr, nullptr);
    state.ResumeTiming();
    VARIANT_BOOL down = VARIANT_FALSE;
    VARIANT nothing;
    directory->SortFilesName(&down, &nothing);
  }
  LONG one = 1;
  BSTR first = nullptr;
  directory->GetFileName(&one, &first);
  if (ViewOf(first) != u"999.txt") state.SkipWithError("wrong order");
  SysFreeString(first);
  SysFreeString(mask);
}
BENCHMARK(SortByName)->Unit(benchmark::kMillisecond);

constexpr int kEntries = 50'000;

void BareDirectoryLoop(benchmark::State& state) {
  const ManyFiles files(kEntries);
  for (auto _ : state) {
    DIR* directory = opendir(files.path().c_str());
    long long bytes = 0;
    int found = 0;
    while (const dirent* entry = readdir(directory)) {
      struct stat facts {};
      if (fstatat(dirfd(directory), entry->d_name, &facts, 0) == 0) bytes += facts.st_size;
      ++found;
    }
    closedir(directory);
    benchmark::DoNotOptimize(bytes);
    if (found != kEntries + 2) state.SkipWithError("wrong count");
  }
}
BENCHMARK(BareDirectoryLoop)->Unit(benchmark::kMillisecond);

void ListDirectory(benchmark::State& state) {
  const ManyFiles files(kEntries);
  const auto directory = Make<_classDirectory>(CLSID_classDirectory, IID__classDirectory);
  BSTR mask = NewBstr(files.mask());
  for (auto _ : state) {
    directory->Init(&mask, nullptr, nullptr, nullptr);
    LONG count = 0;
    directory->get_lNumFiles(&count);
    if (count != kEntries) state.SkipWithError("wrong count");
  }
  SysFreeString(mask);
}
BENCHMARK(ListDirectory)->Unit(benchmark::kMillisecond);

}  // namespace
