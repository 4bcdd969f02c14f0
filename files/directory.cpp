// Listing a directory: the scan, the date filter, the sorts.
#include <optional>
#include <thread>

#include "files/class_directory.h"
#include "files/class_filename.h"
#include "files/file_facts.h"
#include "frame/error_styles.h"
#include "frame/modErrorCodes.h"

namespace Orvix::component {

namespace {

constexpr LONG kDirectoryMode = 16;  // compared as a number: 32 selects it as well

// A bound counts as absent when it equals the empty text.
bool IsAbsent(const VARIANT& bound) {
  Variant followed;
  CheckRuntime(VariantCopyInd(followed.Receive(), &bound));
  if ((followed.get().vt & VT_ARRAY) != 0) RaiseRuntimeError(kTypeMismatch);
  Variant empty{TextView{}};
  const HRESULT compared = VarCmp(followed.Address(), empty.Address(), 0, 0);
  if (FAILED(compared)) {
    CheckRuntime(compared);
  }
  return compared == VARCMP_EQ;
}

bool IsNull(const VARIANT& bound) {
  Variant followed;
  CheckRuntime(VariantCopyInd(followed.Receive(), &bound));
  return followed.get().vt == VT_NULL;
}

DATE DateOf(const VARIANT& bound) {
  DATE date = 0;
  CheckConversion(OxDateOf(&bound, &date));
  return date;
}

// The date filter. Bounds are converted for each entry.
class DateFilter {
 public:
  DateFilter(const VARIANT& from, const VARIANT& to)
      : from_(from), to_(to), has_from_(!IsAbsent(from)), has_to_(!IsAbsent(to)) {}

  [[nodiscard]] bool ReadsTime() const { return has_from_ || has_to_; }
  [[nodiscard]] bool Passes(DATE time) const {
    // A Null bound lets nothing pass, whatever the other one is. Else both are
    // converted, whatever the first test says.
    if ((has_from_ && IsNull(from_)) || (has_to_ && IsNull(to_))) return false;
    const bool late_enough = !has_from_ || DateOf(from_) <= time;
    const bool early_enough = !has_to_ || time <= DateOf(to_);
    return late_enough && early_enough;
  }

 private:
  const VARIANT& from_;
  const VARIANT& to_;
  bool has_from_;
  bool has_to_;
};

// Any failure while a record is handed out is the index error.
template <std::invocable Body>
auto AsIndexError(Body&& body) -> std::invoke_result_t<Body> {
  try {
    return body();
  } catch (const Error&) {
  } catch (const std::bad_alloc&) {
  }
  RaiseLibraryError(errIndexOutOfRange, {}, u"Index out of range");
}

BSTR TextOf(TextView text) { return BstrHandle(text).Detach(); }

// Whether the search, which looked in the pattern's own directory, and the
// prefix name the same place, so that the search's facts are the entry's.
bool SearchedIn(TextView pattern, TextView prefix) {
  constexpr TextView kSeparators = u"\\/";
  if (pattern.size() > 2 && pattern.substr(0, 2).find_first_not_of(kSeparators) == TextView::npos) {
    // A share by itself is a directory that was looked into.
    const std::size_t server = pattern.find_first_not_of(kSeparators);
    const std::size_t share = pattern.find_first_not_of(kSeparators, pattern.find_first_of(kSeparators, server));
    if (pattern.find_first_of(kSeparators, share) == TextView::npos) return false;
  }
  const std::size_t last = pattern.find_last_of(kSeparators);
  const std::size_t drive = pattern.size() >= 2 && pattern[1] == u':' ? 2 : 0;
  return Equal(pattern.substr(0, last == TextView::npos ? drive : last + 1), prefix);
}

}  // namespace

void classDirectory::Init(TextView mask, LongOr<0> attribute, VariantOrEmptyText from_date,
                          VariantOrEmptyText to_date) {
  ReadDirectory(mask, attribute, *from_date.value, *to_date.value);
}

void classDirectory::ReadDirectory(TextView mask, LONG attribute, const VARIANT& from_date, const VARIANT& to_date) {
  const auto discard = [this] {
    records_.clear();
    number_of_files_ = 0;
  };
  try {
    discard();
    Scan(mask, attribute, from_date, to_date);
  } catch (const Error& error) {
    discard();
    RaiseLibraryError(errDirectoryScan, {}, error.description());
  } catch (const std::bad_alloc&) {
    discard();
    RaiseLibraryError(errDirectoryScan, {}, kOutOfMemoryText);
  }
}

void classDirectory::Scan(TextView mask, LONG attribute, const VARIANT& from_date, const VARIANT& to_date) {
  DirectorySearch search(mask, attribute);
  const bool directories = attribute >= kDirectoryMode;
  classFilename name;
  Text prefix(mask);
  if (!directories) {
    name.SetAllowWildCards({VARIANT_TRUE});
    name.Assign(mask);
    prefix = name.Path();
  }
  const bool facts_known = SearchedIn(mask, prefix);
  std::optional<DateFilter> filter;
  OxEntry entry{};
  while (search.Next(entry)) {
    const TextView found = NameOf(entry);
    if (found == u"." || found == u"..") continue;
    const Text complete = prefix + Text(found);
    OxFileFacts facts{entry.attributes, entry.size, entry.modified};
    // An entry by another name than the search's is asked for by that name.
    auto ask = [&, asked = facts_known]() mutable {
      if (!asked) facts = FactsOf(complete);
      asked = true;
    };
    if (!filter) filter.emplace(from_date, to_date);
    if (filter->ReadsTime()) {
      ask();
      if (!filter->Passes(facts.modified)) continue;
    }
    ask();
    if (directories && (facts.attributes & kOxAttributeDirectory) == 0) continue;
    FileRecord record;
    FileType& fields = record.get();
    fields.sFile = TextOf(found);
    fields.sCompleteFilename = TextOf(complete);
    fields.sPath = TextOf(prefix);
    fields.dDate = facts.modified;
    if (directories) {
      fields.sExtension = TextOf({});
    } else {
      fields.lSize = facts.size;
      name.Assign(complete);
      fields.sExtension = TextOf(name.Extension());
    }
    records_.push_back(std::move(record));
    ++number_of_files_;
  }
}

const FileType& classDirectory::RecordAt(LONG index) const {
  // Callers may claim more records than there are.
  if (index < 1 || static_cast<std::size_t>(index) > records_.size()) RaiseRuntimeError(kSubscriptOutOfRange);
  return records_[static_cast<std::size_t>(index) - 1].get();
}

FileRecord classDirectory::File(LONG index) {
  return AsIndexError([&] {
    if (number_of_files_ <= 0 || index < 1 || index > number_of_files_) RaiseRuntimeError(kSubscriptOutOfRange);
    const FileType& kept = RecordAt(index);
    FileRecord copy;
    FileType& fields = copy.get();
    fields.sCompleteFilename = TextOf(ViewOf(kept.sCompleteFilename));
    fields.sFile = TextOf(ViewOf(kept.sFile));
    fields.sPath = TextOf(ViewOf(kept.sPath));
    fields.sExtension = TextOf(ViewOf(kept.sExtension));
    fields.lSize = kept.lSize;
    fields.dDate = kept.dDate;
    return copy;
  });
}

Text classDirectory::GetFileName(LONG index) {
  return AsIndexError([&] {
    if (number_of_files_ <= 0 || index < 1 || index > number_of_files_) RaiseRuntimeError(kSubscriptOutOfRange);
    return Text(ViewOf(RecordAt(index).sFile));
  });
}

// An exchange sort that in principle starts over after every exchange. Nothing
// before the pair just exchanged can then be out of order, so going on with the
// next pair gives the same exchanges, ties included.
template <class Before>
void classDirectory::Sort(Before before) {
  const LONG count = number_of_files_;
  if (count < 1) {
    // The exchange flag of an empty list is never cleared: this does not return,
    // and callers test lNumFiles first.
    for (;;) std::this_thread::yield();
  }
  for (LONG i = 1; i <= count - 1; ++i) {
    for (LONG j = i + 1; j <= count; ++j) {
      if (before(RecordAt(j), RecordAt(i))) {
        std::swap(records_[static_cast<std::size_t>(i) - 1], records_[static_cast<std::size_t>(j) - 1]);
      }
    }
  }
}

void classDirectory::SortFilesDate() { SoftFilesDateEx({VARIANT_TRUE}); }

void classDirectory::SoftFilesDateEx(VariantBool ascending) {
  if (static_cast<bool>(ascending)) {
    Sort([](const FileType& a, const FileType& b) { return a.dDate < b.dDate; });
  } else {
    Sort([](const FileType& a, const FileType& b) { return a.dDate > b.dDate; });
  }
}

Variant classDirectory::SortFilesName(VariantBool ascending) {
  if (static_cast<bool>(ascending)) {
    Sort([](const FileType& a, const FileType& b) { return ViewOf(a.sFile) < ViewOf(b.sFile); });
  } else {
    Sort([](const FileType& a, const FileType& b) { return ViewOf(a.sFile) > ViewOf(b.sFile); });
  }
  return {};
}

}  // namespace Orvix::component
