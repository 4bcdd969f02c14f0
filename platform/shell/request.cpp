// The layout is that of the platform's 32-bit record, without padding: the flag
// word takes two bytes and the rest follows at once.
#include "platform/shell/request.h"

#include <cstring>

#include "platform/names/text_behind.h"
#include "platform/shell/results.h"

namespace Orvix::Shell {

namespace {

constexpr std::size_t kOperationAt = 4;
constexpr std::size_t kSourcesAt = 8;
constexpr std::size_t kTargetsAt = 12;
constexpr std::size_t kFlagsAt = 16;
constexpr std::size_t kAbortedAt = 18;
constexpr std::size_t kTitleAt = 26;

template <class Number>
Number NumberAt(const void* packed, std::size_t offset) {
  Number number;
  std::memcpy(&number, static_cast<const char*>(packed) + offset, sizeof number);
  return number;
}

const char* AddressAt(const void* packed, std::size_t offset) {
  return reinterpret_cast<const char*>(std::uintptr_t{NumberAt<std::uint32_t>(packed, offset)});
}

std::vector<Text> NamesAt(const char* list) {
  std::vector<Text> names;
  const char* at = list;
  while (*at != '\0') {
    const std::string_view name = at;
    names.push_back(TextBehind(name));
    at += name.size() + 1;
  }
  return names;
}

}  // namespace

Request Unpack(const void* packed) {
  Request request;
  request.operation = NumberAt<std::uint32_t>(packed, kOperationAt);
  request.flags = NumberAt<std::uint16_t>(packed, kFlagsAt);
  const char* const sources = AddressAt(packed, kSourcesAt);
  if (request.operation < kMove || request.operation > kRename || sources == nullptr) throw ShellError{kBadParameter};
  request.sources = NamesAt(sources);
  if (request.operation != kDelete) {
    const char* const targets = AddressAt(packed, kTargetsAt);
    if (targets == nullptr) throw ShellError{kDenied};
    request.targets = NamesAt(targets);
  }
  // Only this flag says that the title's address means anything.
  const char* const title = AddressAt(packed, kTitleAt);
  if (request.Has(kSimpleProgress) && title != nullptr) request.title = TextBehind(title);
  return request;
}

void StoreAborted(void* packed, bool aborted) noexcept {
  const std::int32_t flag = aborted ? 1 : 0;
  std::memcpy(static_cast<char*>(packed) + kAbortedAt, &flag, sizeof flag);
}

}  // namespace Orvix::Shell
