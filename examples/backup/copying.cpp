// The whole list is one request. When it fails, the service does not say on
// which file: those that are not there yet are then asked for one by one.
#include "copying.h"

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <span>
#include <stdexcept>

#include "../shared/names.h"
#include "../shared/table.h"
#include "watching.h"

namespace backup {

namespace {

using Orvix::Text;

constexpr LONG kPathFileAccessError = 75;

Text DatedName(const Text& destination, const std::string& day, int number) {
  const std::string suffix = number == 1 ? std::string() : " (" + std::to_string(number) + ")";
  return destination + Orvix::FromUtf8(day + suffix);
}

// Links that lead nowhere are there too.
bool IsThere(const std::string& native) {
  std::error_code error;
  return std::filesystem::exists(std::filesystem::symlink_status(native, error));
}

// Every file gets its target's whole name: the service makes the directories on
// the way, and a name that differs only in case from one there gets a number.
bool CopyTogether(std::span<const File> files, const Text& folder) {
  Orvix::FileOperation operation;
  operation.SetConfirmOperation(false);
  operation.SetConfirmMakeDir(false);
  operation.SetRenameOnCollision(true);
  for (const File& file : files) {
    operation.AddSourceFile(file.source);
    operation.AddDestFile(folder + u'\\' + file.relative);
  }
  return operation.CopyFiles();
}

}  // namespace

std::string Today() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  char text[32];
  std::strftime(text, sizeof text, "%Y-%m-%d", &local);
  return text;
}

Text FreeFolder(const std::string& destination, const std::string& day) {
  const Text parent = NameForService(destination);
  for (int number = 1;; ++number) {
    Text folder = DatedName(parent, day, number);
    if (!IsThere(examples::NativeName(folder))) return folder;
  }
}

Text MakeFolder(const std::string& destination, const std::string& day) {
  try {
    Orvix::Global().MakeDir(NameForService(destination));
    for (;;) {
      const Text folder = FreeFolder(destination, day);
      // MakeDir would take a folder that is there by now for its own.
      const HRESULT made = OxMakeDirectory(Orvix::String(folder).get());
      if (SUCCEEDED(made)) return folder;
      if (OxErrorNumber(made) != kPathFileAccessError || !IsThere(examples::NativeName(folder))) Orvix::Check(made);
    }
  } catch (const Orvix::Error& error) {
    throw std::runtime_error("cannot make a folder in " + destination + ": " + error.what());
  }
}

Outcome Copy(const std::vector<File>& files, const Text& folder, examples::Stages& stages) {
  Watch watch(stages, files.size());
  Outcome outcome;
  if (CopyTogether(files, folder)) {
    outcome.copied = files.size();
    return outcome;
  }
  const std::string native = examples::NativeName(folder) + "/";
  for (const File& file : files) {
    std::string below = Orvix::ToUtf8(file.relative);
    std::ranges::replace(below, '\\', '/');
    watch.Finished(outcome.copied);
    if (IsThere(native + below) || (!Interrupted() && CopyTogether({&file, 1}, folder))) {
      ++outcome.copied;
    } else if (!Interrupted()) {
      outcome.failed.push_back(examples::Printable(Orvix::FromUtf8(below)));
    }
  }
  outcome.cancelled = Interrupted();
  return outcome;
}

}  // namespace backup
