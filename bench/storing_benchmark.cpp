// Storing and reading 64 MiB of text against a plain write and read of the same
// bytes, and the code-page conversion by itself.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "frame/com_ptr.h"

namespace {

using namespace Orvix;             // NOLINT(google-build-using-namespace)
using namespace Orvix::component;  // NOLINT(google-build-using-namespace)

constexpr std::size_t kSize = std::size_t{64} << 20;

class StoredFile {
 public:
  StoredFile() {
    std::string pattern = std::string(std::filesystem::exists("/dev/shm") ? "/dev/shm" : "/tmp") + "/orvix-XXXXXX";
    directory_ = mkdtemp(pattern.data());
    ComPtr<IClassFactory> factory;
    DllGetClassObject(CLSID_classOrvix, IID_IClassFactory, factory.ReceiveVoid());
    factory->CreateInstance(nullptr, IID__classOrvix, orvix.ReceiveVoid());
    DllGetClassObject(CLSID_classFilename, IID_IClassFactory, factory.ReceiveVoid());
    factory->CreateInstance(nullptr, IID__classFilename, filename.ReceiveVoid());
    BSTR name = nullptr;
    OxPlatformName(Native().c_str(), &name);
    filename->put_CompleteFilename(&name);
    SysFreeString(name);
  }
  StoredFile(const StoredFile&) = delete;
  StoredFile& operator=(const StoredFile&) = delete;
  ~StoredFile() { std::filesystem::remove_all(directory_); }
  [[nodiscard]] std::string Native() const { return directory_ + "/text"; }

  void Store(BSTR text) {
    _classFilename* object = filename.get();
    orvix->StoreData(&object, &text);
  }

  ComPtr<_classOrvix> orvix;
  ComPtr<_classFilename> filename;

 private:
  std::string directory_;
};

Text English() {
  constexpr TextView kSentence = u"The quick brown fox jumps over the lazy dog, and the dog sleeps on.\r\n";
  Text text;
  text.reserve(kSize + kSentence.size());
  while (text.size() < kSize) text += kSentence;
  text.resize(kSize);
  return text;
}

void ConvertPlainly(const Text& text, std::string& bytes) {
  WideCharToMultiByte(CP_ACP, 0, text.data(), static_cast<INT>(text.size()), bytes.data(),
                      static_cast<INT>(bytes.size()), nullptr, nullptr);
}

void ConversionAlone(benchmark::State& state) {
  const Text text = English();
  std::string bytes(kSize, '\0');
  for (auto _ : state) {
    ConvertPlainly(text, bytes);
    benchmark::DoNotOptimize(bytes.data());
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(kSize) * state.iterations());
}
BENCHMARK(ConversionAlone)->Unit(benchmark::kMillisecond);

void PlainConvertAndWrite(benchmark::State& state) {
  const Text text = English();
  const StoredFile file;
  std::string bytes(kSize, '\0');
  for (auto _ : state) {
    ConvertPlainly(text, bytes);
    const int descriptor = open(file.Native().c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (write(descriptor, bytes.data(), bytes.size()) != static_cast<ssize_t>(kSize)) state.SkipWithError("short");
    close(descriptor);
  }
}
BENCHMARK(PlainConvertAndWrite)->Unit(benchmark::kMillisecond);

void StoreData(benchmark::State& state) {
  const BstrHandle text(English());
  StoredFile file;
  for (auto _ : state) file.Store(text.get());
  if (std::filesystem::file_size(file.Native()) != kSize) state.SkipWithError("wrong size");
}
BENCHMARK(StoreData)->Unit(benchmark::kMillisecond);

void PlainReadAndConvert(benchmark::State& state) {
  StoredFile file;
  file.Store(BstrHandle(English()).get());
  for (auto _ : state) {
    std::string bytes(kSize, '\0');
    const int descriptor = open(file.Native().c_str(), O_RDONLY);
    if (read(descriptor, bytes.data(), bytes.size()) != static_cast<ssize_t>(kSize)) state.SkipWithError("short");
    close(descriptor);
    BSTR text = SysAllocStringLen(nullptr, static_cast<UINT>(kSize));
    MultiByteToWideChar(CP_ACP, 0, bytes.data(), static_cast<INT>(kSize), text, static_cast<INT>(kSize));
    benchmark::DoNotOptimize(text);
    SysFreeString(text);
  }
}
BENCHMARK(PlainReadAndConvert)->Unit(benchmark::kMillisecond);

void GetFile(benchmark::State& state) {
  StoredFile file;
  file.Store(BstrHandle(English()).get());
  for (auto _ : state) {
    BSTR text = nullptr;
    file.filename->GetFile(&text);
    if (SysStringLen(text) != kSize || text[kSize - 1] == 0) state.SkipWithError("wrong text");
    SysFreeString(text);
  }
}
BENCHMARK(GetFile)->Unit(benchmark::kMillisecond);

}  // namespace
