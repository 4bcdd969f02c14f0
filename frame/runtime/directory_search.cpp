// Directory search: a snapshot of the entries that match a pattern and a mask,
// sorted by name.
#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "frame/runtime/file_service.h"
#include "frame/runtime/name_pattern.h"
#include "frame/runtime/runtime_error.h"

using namespace Orvix;

namespace {

struct FoundEntry {
  std::size_t name;    // where it starts in `names`; a NUL stands behind it
  std::size_t folded;  // where its folded form starts in `folded`
  std::size_t length;
  OxFileFacts facts;
};

}  // namespace

// All names lie in one text, so that a large directory costs few allocations.
struct OxSearch {
  Text names;
  std::vector<FoundEntry> entries;
  std::vector<std::uint32_t> order;  // of the entries
  std::size_t next = 0;
};

namespace {

constexpr LONG kDeciding = kOxAttributeHidden | kOxAttributeSystem | kOxAttributeDirectory;

bool IsDots(TextView name) { return name == u"." || name == u".."; }

// Takes those entries of a directory that match.
class Collector : public EntrySink {
 public:
  Collector(OxSearch& search, TextView folded_pattern, LONG mask)
      : search_(search), pattern_(folded_pattern), mask_(mask) {}

  bool Wants(TextView name, EntryKind kind) override {
    if (kind == EntryKind::kDirectory && (mask_ & kOxAttributeDirectory) == 0) return false;
    if (name.front() == u'.' && (mask_ & kOxAttributeHidden) == 0 && !IsDots(name)) return false;
    folded_.resize(folded_start_);
    NativeFiles().AppendFolded(name, folded_);
    name_ = name;
    return pattern_.Matches(TextView(folded_).substr(folded_start_));
  }

  void Take(const OxFileFacts& facts) override {
    if ((facts.attributes & kDeciding & ~mask_) != 0) return;
    search_.entries.push_back({search_.names.size(), folded_start_, name_.size(), facts});
    search_.names.append(name_).push_back(u'\0');
    folded_start_ = folded_.size();
  }

  // Sorts what was taken, "." and ".." first, the others by folded name and,
  // where that is equal, as they are spelled.
  void Sort();

 private:
  [[nodiscard]] TextView FoldedOf(const FoundEntry& entry) const {
    return TextView(folded_).substr(entry.folded, entry.length);
  }
  [[nodiscard]] TextView NameOf(const FoundEntry& entry) const {
    return TextView(search_.names).substr(entry.name, entry.length);
  }

  OxSearch& search_;
  NamePattern pattern_;
  LONG mask_;
  Text folded_;                   // the folded names of the entries, then that of the name in question
  std::size_t folded_start_ = 0;  // where the latter starts
  TextView name_;
};

std::size_t CommonLength(TextView a, TextView b) {
  return static_cast<std::size_t>(std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin());
}

// The units of `name` from `from` on as a number that sorts as they do: eight of
// them when all are ASCII, else four. Names that end sooner sort before.
std::uint64_t SortKey(TextView name, std::size_t from, bool ascii) {
  const std::size_t count = ascii ? 8 : 4;
  const unsigned bits = ascii ? 8 : 16;
  std::uint64_t key = 0;
  for (std::size_t i = from; i < from + count; ++i) key = key << bits | (i < name.size() ? name[i] : 0U);
  return key;
}

void Collector::Sort() {
  const std::vector<FoundEntry>& entries = search_.entries;
  std::size_t dots = 0;  // they were offered first
  while (dots < entries.size() && dots < 2 && IsDots(NameOf(entries[dots]))) ++dots;
  const bool ascii = std::all_of(folded_.begin(), folded_.end(), [](char16_t unit) { return unit < 0x80; });
  // Names often begin alike: the keys begin where they first differ.
  std::size_t common = entries.size() > dots ? entries[dots].length : 0;
  for (std::size_t i = dots; i < entries.size(); ++i) {
    common = CommonLength(FoldedOf(entries[dots]).substr(0, common), FoldedOf(entries[i]));
  }
  struct Place {
    std::uint64_t key;
    std::uint32_t entry;
  };
  std::vector<Place> places;
  places.reserve(entries.size());
  for (std::size_t i = dots; i < entries.size(); ++i) {
    places.push_back({SortKey(FoldedOf(entries[i]), common, ascii), static_cast<std::uint32_t>(i)});
  }
  std::sort(places.begin(), places.end(), [&](const Place& a, const Place& b) {
    if (a.key != b.key) return a.key < b.key;
    const FoundEntry& first = entries[a.entry];
    const FoundEntry& second = entries[b.entry];
    const int by_fold = FoldedOf(first).compare(FoldedOf(second));
    return by_fold != 0 ? by_fold < 0 : NameOf(first) < NameOf(second);
  });
  search_.order.reserve(entries.size());
  for (std::uint32_t i = 0; i < dots; ++i) search_.order.push_back(i);
  for (const Place& place : places) search_.order.push_back(place.entry);
}

bool HasWildcards(TextView text) { return text.find_first_of(u"*?") != TextView::npos; }

// Where the name part of a pattern begins: after the last separator or the drive
// colon; at the end of a server's own name, which holds nothing.
std::size_t StartOfName(TextView pattern) {
  const auto is_separator = [](char16_t unit) { return unit == u'\\' || unit == u'/'; };
  if (pattern.size() >= 2 && is_separator(pattern[0]) && is_separator(pattern[1])) {
    const std::size_t server = pattern.find_first_not_of(u"\\/");
    const std::size_t share = pattern.find_first_not_of(u"\\/", pattern.find_first_of(u"\\/", server));
    if (share == TextView::npos) return pattern.size();
  }
  if (const std::size_t last = pattern.find_last_of(u"\\/"); last != TextView::npos) return last + 1;
  const bool drive = pattern.size() >= 2 && pattern[1] == u':' && pattern[0] < 0x80 &&
                     static_cast<char16_t>((pattern[0] | 0x20) - u'a') < 26;
  return drive ? 2 : 0;
}

// A name without wildcards is looked up, not searched for.
void FindOne(TextView name, TextView directory, TextView last, LONG mask, OxSearch& search) {
  Text spelling;
  OxFileFacts facts{};
  if (IsDots(last)) {
    // Every directory has them; what is no directory has nothing.
    const LONG parent = NativeFiles().Facts(directory.empty() ? u".\\" : directory).attributes;
    if ((parent & kOxAttributeDirectory) == 0) return;
    facts = NativeFiles().Facts(name);
    facts.attributes &= ~kOxAttributeHidden;
    spelling = last;
  } else if (!NativeFiles().Find(name, spelling, facts)) {
    return;
  }
  if ((facts.attributes & kDeciding & ~mask) != 0) return;
  search.entries.push_back({0, 0, spelling.size(), facts});
  search.names = spelling;
  search.names.push_back(u'\0');
  search.order.push_back(0);
}

void RunSearch(TextView pattern, LONG mask, OxSearch& search) {
  const std::size_t start = StartOfName(pattern);
  const TextView directory = pattern.substr(0, start);
  const TextView last = start < pattern.size() ? pattern.substr(start) : u"*.*";
  if (HasWildcards(directory)) throw RuntimeError{52};
  if (mask == kOxAttributeVolume) return;  // no volume has a label
  try {
    if (!HasWildcards(last)) return FindOne(pattern, directory, last, mask, search);
    Text folded;
    NativeFiles().AppendFolded(last, folded);
    Collector collector(search, folded, mask);
    NativeFiles().List(directory, collector);
    collector.Sort();
  } catch (const RuntimeError& error) {
    // Names that cannot be, and directories that are not, hold nothing.
    if (error.number != 52 && error.number != 53 && error.number != 76) throw;
    search = OxSearch{};
  }
}

// Whether a pattern stands for all entries of a directory, its "." included.
bool FindsItsOwnDirectory(TextView last, LONG mask) {
  return (mask & kOxAttributeDirectory) != 0 && (last.empty() || last == u"*" || last == u"*.*");
}

bool AnyMatches(TextView pattern, LONG mask) {
  const std::size_t start = StartOfName(pattern);
  const TextView directory = pattern.substr(0, start);
  if (!HasWildcards(directory) && FindsItsOwnDirectory(pattern.substr(start), mask)) {
    const LONG attributes = NativeFiles().Facts(directory.empty() ? u".\\" : directory).attributes;
    return (attributes & kOxAttributeDirectory) != 0;
  }
  OxSearch search;
  RunSearch(pattern, mask, search);
  return !search.order.empty();
}

}  // namespace

HRESULT ORVIX_CALL OxEntryExists(BSTR pattern, LONG mask, VARIANT_BOOL* exists) {
  if (exists == nullptr) return E_POINTER;
  *exists = VARIANT_FALSE;
  return AtRuntimeEdge([&] { *exists = AnyMatches(ViewOf(pattern), mask) ? VARIANT_TRUE : VARIANT_FALSE; });
}

HRESULT ORVIX_CALL OxStartSearch(BSTR pattern, LONG mask, OxSearch** search) {
  if (search == nullptr) return E_POINTER;
  *search = nullptr;
  return AtRuntimeEdge([&] {
    auto started = std::make_unique<OxSearch>();
    RunSearch(ViewOf(pattern), mask, *started);
    *search = started.release();
  });
}

HRESULT ORVIX_CALL OxNextEntry(OxSearch* search, OxEntry* entry) {
  if (search == nullptr || entry == nullptr) return E_POINTER;
  if (search->next == search->order.size()) return S_FALSE;
  const FoundEntry& found = search->entries[search->order[search->next++]];
  *entry = {search->names.data() + found.name, static_cast<LONG>(found.length), found.facts.attributes,
            found.facts.size, found.facts.modified};
  return S_OK;
}

void ORVIX_CALL OxEndSearch(OxSearch* search) { const std::unique_ptr<OxSearch> ended(search); }
