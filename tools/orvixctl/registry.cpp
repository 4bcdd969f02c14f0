// orvixctl registry: the store through the platform's functions.
#include <algorithm>
#include <fstream>
#include <iostream>
#include <vector>

#include "commands.h"
#include "orvix/runtime.h"
#include "registry_text.h"
#include "words.h"

namespace Orvix::ctl {

namespace {

constexpr LONG kDone = 0;
constexpr LONG kNotFound = 2;
constexpr LONG kNoMoreItems = 259;

struct Root {
  LONG value;
  const char* name;
  const char* short_name;
};
constexpr Root kRoots[] = {
    {kClassesRoot, "HKEY_CLASSES_ROOT", "HKCR"},
    {kCurrentUser, "HKEY_CURRENT_USER", "HKCU"},
    {kLocalMachine, "HKEY_LOCAL_MACHINE", "HKLM"},
    {kUsers, "HKEY_USERS", "HKU"},
};

std::string Reason(LONG code) {
  struct Row {
    LONG code;
    const char* words;
  };
  constexpr Row kRows[] = {
      {kNotFound, "it is not there"},
      {5, "it may not be changed (or has keys below it: --recursive)"},
      {14, "out of memory"},
      {87, "a name is too long, or too many keys are below each other"},
      {112, "the disk is full"},
      {161, "a key begins with a backslash"},
      {170, "the store is kept busy by another program"},
      {1009, "the store is damaged, of a later version, or none; see \"orvixctl registry check\""},
      {1016, "the store cannot be read or written"},
  };
  const auto* const row = std::ranges::find(kRows, code, &Row::code);
  return row == std::end(kRows) ? "error " + std::to_string(code) : row->words;
}

void Need(LONG code, const std::string& what) {
  if (code != kDone) throw CommandError(what + ": " + Reason(code) + ".");
}

// An open key, or a root.
class Key {
 public:
  Key() = default;
  explicit Key(HKEY key) : key_(key) {}
  Key(Key&& other) noexcept : key_(std::exchange(other.key_, nullptr)) {}
  Key& operator=(Key&& other) noexcept {
    std::swap(key_, other.key_);
    return *this;
  }
  ~Key() {
    if (key_ != nullptr) RegCloseKey(key_);
  }
  [[nodiscard]] HKEY get() const { return key_; }
  [[nodiscard]] LONG Open(const Key& above, const Text& path) {
    return RegOpenKeyExW(above.get(), path.c_str(), 0, 0, &key_);
  }
  [[nodiscard]] LONG Make(const Key& above, const Text& path) {
    return RegCreateKeyExW(above.get(), path.c_str(), 0, nullptr, 0, 0, nullptr, &key_, nullptr);
  }

 private:
  HKEY key_ = nullptr;
};

// A key by the name that a person types: its root, and the path below that.
struct Place {
  Key root;
  Text path;
  Text name;  // in full
};

Place PlaceOf(TextView typed) {
  const TextView first = typed.substr(0, typed.find(u'\\'));
  for (const Root& root : kRoots) {
    if (!SameName(ToUtf8(first), root.name) && !SameName(ToUtf8(first), root.short_name)) continue;
    Place place{Key(MakeRootKey(root.value)), Text(typed.substr(std::min(first.size() + 1, typed.size()))),
                FromUtf8(root.name)};
    while (place.path.ends_with(u'\\')) place.path.pop_back();
    if (!place.path.empty()) place.name += u"\\" + place.path;
    return place;
  }
  throw UsageError("\"" + ToUtf8(typed) + "\" does not begin with a root, such as HKEY_CURRENT_USER or HKCU.");
}
Place PlaceOf(const std::string& typed) { return PlaceOf(TextView(FromUtf8(typed))); }

Key Opened(const Place& place) {
  Key key;
  Need(key.Open(place.root, place.path), ToUtf8(place.name));
  return key;
}

// Makes the keys one after the other: one call makes 32 at most.
Key Made(const Place& place) {
  Key key;
  for (std::size_t end = 0; end != Text::npos;) {
    end = place.path.find(u'\\', end + 1);
    Need(key.Make(place.root, place.path.substr(0, end)), ToUtf8(place.name));
  }
  return key;
}

LONG ReadValue(const Key& key, const Text& name, RegistryValue* value) {
  for (;;) {
    auto size = static_cast<DWORD>(value->data.size());
    const LONG code = RegQueryValueExW(key.get(), name.c_str(), nullptr, &value->type,
                                       reinterpret_cast<BYTE*>(value->data.data()), &size);
    const bool fits = size <= value->data.size();
    value->data.resize(size);
    if (code != 234 || fits) return code;
  }
}

void WriteValue(const Key& key, const Text& name, const RegistryValue& value, const std::string& what) {
  Need(RegSetValueExW(key.get(), name.c_str(), 0, value.type, reinterpret_cast<const BYTE*>(value.data.data()),
                      static_cast<DWORD>(value.data.size())),
       what);
}

// The names of what is in a key. Gives the code of what ended them, 0 at their end.
LONG NamesIn(const Key& key, bool values, std::vector<Text>* names) {
  std::vector<OLECHAR> buffer(16384);
  for (DWORD index = 0;; ++index) {
    auto size = static_cast<DWORD>(buffer.size());
    const LONG code = values
                          ? RegEnumValueW(key.get(), index, buffer.data(), &size, nullptr, nullptr, nullptr, nullptr)
                          : RegEnumKeyExW(key.get(), index, buffer.data(), &size, nullptr, nullptr, nullptr, nullptr);
    if (code != kDone) return code == kNoMoreItems ? kDone : code;
    names->emplace_back(buffer.data(), size);
  }
}

// Goes through keys and values, and on behind what cannot be read.
class Walk {
 public:
  explicit Walk(std::string* out) : out_(out) {}

  // Keys in the order that import wants, those above first.
  void Export(const Place& top) {
    struct Waiting {
      Text path;
      Text name;
    };
    std::vector<Waiting> waiting{{top.path, top.name}};
    while (!waiting.empty()) {
      const Waiting now = std::move(waiting.back());
      waiting.pop_back();
      Key key;
      if (!Judge(key.Open(top.root, now.path), now.name)) continue;
      ++keys_;
      Print("\n" + KeyText(now.name) + "\n");
      PrintValues(key, now.name);
      std::vector<Text> below;
      Judge(NamesIn(key, /*values=*/false, &below), now.name);
      for (auto name = below.rbegin(); name != below.rend(); ++name) {
        waiting.push_back({now.path.empty() ? *name : now.path + u"\\" + *name, now.name + u"\\" + *name});
      }
    }
  }
  void PrintValues(const Key& key, const Text& key_name) {
    std::vector<Text> names;
    Judge(NamesIn(key, /*values=*/true, &names), key_name);
    for (const Text& name : names) {
      RegistryValue value;
      if (!Judge(ReadValue(key, name, &value), key_name + u", value " + name)) continue;
      ++values_;
      Print(QuotedText(name) + " = " + ValueText(value) + "\n");
    }
  }
  bool Judge(LONG code, const Text& what) {
    if (code == kDone) return true;
    Console::Complain(ToUtf8(what) + ": " + Reason(code) + ".");
    status_ = kExitFailed;
    return false;
  }
  [[nodiscard]] int status() const { return status_; }
  [[nodiscard]] std::string Count() const {
    return std::to_string(keys_) + (keys_ == 1 ? " key and " : " keys and ") + std::to_string(values_) +
           (values_ == 1 ? " value" : " values");
  }

 private:
  void Print(const std::string& text) {
    if (out_ != nullptr) *out_ += text;
  }

  std::string* out_;  // null only counts
  std::size_t keys_ = 0;
  std::size_t values_ = 0;
  int status_ = kExitDone;
};

std::vector<Place> PlacesOf(const std::string& key) {
  std::vector<Place> places;
  if (!key.empty()) {
    places.push_back(PlaceOf(key));
  } else {
    for (const Root& root : kRoots) places.push_back(PlaceOf(std::string(root.name)));
  }
  return places;
}

}  // namespace

int ListRegistry(Console& console, const RegistryRequest& request) {
  std::string text;
  Walk walk(&text);
  for (const Place& place : PlacesOf(request.key)) {
    const Key key = Opened(place);
    if (request.recursive) {
      walk.Export(place);
    } else if (request.key.empty()) {
      text += KeyText(place.name) + "\n";
    } else {
      std::vector<Text> below;
      walk.Judge(NamesIn(key, /*values=*/false, &below), place.name);
      for (const Text& name : below) text += KeyText(name) + "\n";
      walk.PrintValues(key, place.name);
    }
  }
  console << std::string_view(text).substr(text.starts_with('\n') ? 1 : 0);
  return walk.status();
}

int GetRegistryValue(Console& console, const RegistryRequest& request) {
  const Place place = PlaceOf(request.key);
  RegistryValue value;
  Need(ReadValue(Opened(place), FromUtf8(request.name), &value), ToUtf8(place.name) + ", value " + request.name);
  console << ValueText(value) << "\n";
  return kExitDone;
}

int SetRegistryValue(Console&, const RegistryRequest& request) {
  const Place place = PlaceOf(request.key);
  const auto typed = ReadValueText(request.value);
  if (!typed && request.value.starts_with('"')) throw UsageError(request.value + " is no quoted text.");
  WriteValue(Made(place), FromUtf8(request.name), typed ? *typed : TextValue(FromUtf8(request.value)),
             ToUtf8(place.name) + ", value " + request.name);
  return kExitDone;
}

int DeleteFromRegistry(Console&, const RegistryRequest& request) {
  const Place place = PlaceOf(request.key);
  if (request.deleted) {
    Need(RegDeleteValueW(Opened(place).get(), FromUtf8(*request.deleted).c_str()),
         ToUtf8(place.name) + ", value " + *request.deleted);
    return kExitDone;
  }
  if (place.path.empty()) throw UsageError("a root stays.");
  // Each key is met twice: those below it first.
  std::vector<Text> waiting{place.path};
  while (!waiting.empty()) {
    std::vector<Text> below;
    if (request.recursive) {
      Key key;
      Need(key.Open(place.root, waiting.back()), ToUtf8(place.name));
      Need(NamesIn(key, /*values=*/false, &below), ToUtf8(place.name));
    }
    if (below.empty()) {
      Need(RegDeleteKeyW(place.root.get(), waiting.back().c_str()), ToUtf8(place.name));
      waiting.pop_back();
    } else {
      const Text above = waiting.back();
      for (const Text& name : below) waiting.push_back(above + u"\\" + name);
    }
  }
  return kExitDone;
}

int ExportRegistry(Console& console, const RegistryRequest& request) {
  const std::vector<Place> places = PlacesOf(request.key);
  if (!request.key.empty()) static_cast<void>(Opened(places.front()));
  std::string text = std::string(kRegistryTextHeader) + "\n";
  Walk walk(&text);
  for (const Place& place : places) walk.Export(place);
  if (request.file.empty()) {
    console << text;
  } else {
    std::ofstream file(request.file, std::ios::binary);
    if (!(file << text).flush()) throw CommandError("cannot write " + request.file + ".");
    console << walk.Count() << " written.\n";
  }
  return walk.status();
}

int ImportRegistry(Console& console, const RegistryRequest& request) {
  std::ifstream file;
  if (request.file != "-") {
    file.open(request.file, std::ios::binary);
    if (!file) throw CommandError("cannot read " + request.file + ".");
  }
  std::istream& in = request.file == "-" ? std::cin : file;
  Key key;
  std::string key_name;
  std::size_t values = 0;
  std::size_t number = 0;
  for (std::string line; std::getline(in, line);) {
    ++number;
    if (line.ends_with('\r')) line.pop_back();
    const std::string where = request.file + ", line " + std::to_string(number);
    if (number == 1) {
      if (line != kRegistryTextHeader) {
        throw CommandError(where + ": this is no registry text; its first line is \"" +
                           std::string(kRegistryTextHeader) + "\".");
      }
    } else if (line.starts_with('[')) {
      const auto name = ReadKeyText(line);
      if (!name) throw CommandError(where + ": this is no key: " + line);
      key = Made(PlaceOf(TextView(*name)));
      key_name = ToUtf8(*name);
    } else if (!line.empty() && !line.starts_with(';')) {
      std::string_view rest = line;
      const auto name = TakeQuoted(&rest);
      const auto value =
          name && rest.starts_with(" = ") ? ReadValueText(rest.substr(3)) : std::optional<RegistryValue>();
      if (!value || key.get() == nullptr) throw CommandError(where + ": this is no value of a key: " + line);
      WriteValue(key, *name, *value, where);
      ++values;
    }
  }
  if (number == 0 || in.bad()) throw CommandError("nothing can be read of " + request.file + ".");
  console << std::to_string(values) << (values == 1 ? " value was" : " values were") << " written.\n";
  return kExitDone;
}

int CheckRegistry(Console& console, const RegistryRequest&) {
  String faults;
  const LONG code = OxCheckRegistry(faults.Receive());
  Walk walk(nullptr);
  if (code == kDone) {
    for (const Place& place : PlacesOf({})) walk.Export(place);
    if (faults.View().empty() && walk.status() == kExitDone) {
      console << "The registry is sound: " << walk.Count() << ".\n";
      return kExitDone;
    }
  }
  console << (code == kDone ? faults.Utf8() : Reason(code) + "\n") << "What can be read: " << walk.Count() << ".\n"
          << "\"orvixctl registry export -o FILE\" writes that; put the store's files away and import it then.\n";
  return kExitFailed;
}

}  // namespace Orvix::ctl
