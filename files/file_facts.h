// What the runtime says of one file, as errors and values of the component.
#ifndef ORVIX_FILES_FILE_FACTS_H
#define ORVIX_FILES_FILE_FACTS_H

#include <utility>

#include "frame/com_ptr.h"
#include "frame/error.h"

namespace Orvix::component {

// Attributes, length and time of a file or directory; the runtime's errors.
[[nodiscard]] inline OxFileFacts FactsOf(TextView name) {
  const BstrHandle text(name);
  OxFileFacts facts{};
  CheckRuntime(OxGetFileFacts(text.get(), &facts));
  return facts;
}

// One directory search, from its first entry on.
class DirectorySearch {
 public:
  DirectorySearch(TextView pattern, LONG mask) {
    const BstrHandle text(pattern);
    CheckRuntime(OxStartSearch(text.get(), mask, &search_));
  }
  DirectorySearch(const DirectorySearch&) = delete;
  DirectorySearch& operator=(const DirectorySearch&) = delete;
  ~DirectorySearch() { OxEndSearch(search_); }

  // The next entry; false at the end. Its name stays valid while the search lives.
  [[nodiscard]] bool Next(OxEntry& entry) {
    const HRESULT result = OxNextEntry(search_, &entry);
    CheckRuntime(result);
    return result == S_OK;
  }

 private:
  OxSearch* search_ = nullptr;
};

[[nodiscard]] inline TextView NameOf(const OxEntry& entry) {
  return {entry.name, static_cast<std::size_t>(entry.nameLength)};
}

}  // namespace Orvix::component

#endif
