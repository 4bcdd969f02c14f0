// orvixctl trash: what deletions that can be undone put there, by native names.
#include <vector>

#include "commands.h"
#include "orvix/runtime.h"
#include "show.h"

namespace Orvix::ctl {

namespace {

struct TrashedItem {
  std::string id;
  std::string name;
  std::string deleted;
};

std::string NativeOf(const String& name) {
  char* native = nullptr;
  Check(OxNativeName(name.get(), &native));
  const std::string text = native;
  CoTaskMemFree(native);
  return text;
}

// Of a native name, or of one with a drive.
String PlatformNameOf(const std::string& typed) {
  if (typed.size() > 2 && typed[1] == ':') return String(FromUtf8(typed));
  String name;
  Check(OxPlatformName(typed.c_str(), name.Receive()));
  return name;
}

std::vector<TrashedItem> Items() {
  SAFEARRAY* array = nullptr;
  Check(OxListTrash(&array));
  const std::vector<String> texts = Array<String>::Adopt(array).ToVector();
  std::vector<TrashedItem> items;
  for (std::size_t i = 0; i + 2 < texts.size(); i += 3) {
    items.push_back({NativeOf(texts[i]), NativeOf(texts[i + 1]), texts[i + 2].Utf8()});
  }
  return items;
}

void Need(HRESULT result, const std::string& what) {
  if (SUCCEEDED(result)) return;
  constexpr LONG kNotFound = 53;
  constexpr LONG kAlreadyExists = 58;
  const LONG number = OxErrorNumber(result);
  throw CommandError(what + (number == kNotFound        ? ": this is not in the trash."
                             : number == kAlreadyExists ? ": something has its place."
                                                        : ": error " + std::to_string(number) + "."));
}

}  // namespace

int ListTrash(Console& console, const TrashRequest& request) {
  Json list = Json::array();
  for (const TrashedItem& item : Items()) {
    if (request.json) {
      list.push_back({{"id", item.id}, {"name", item.name}, {"deleted", item.deleted}});
    } else {
      console << item.deleted << "  " << item.name << "  " << console.Faint(item.id) << "\n";
    }
  }
  if (request.json) console << Print(list) << "\n";
  return kExitDone;
}

int RestoreFromTrash(Console& console, const TrashRequest& request) {
  for (const std::string& name : request.names) {
    Need(OxRestoreFromTrash(PlatformNameOf(name).get()), name);
    console << name << " is back.\n";
  }
  return kExitDone;
}

int EmptyTrash(Console& console, const TrashRequest& request) {
  if (request.names.empty()) {
    Need(OxEraseFromTrash(nullptr), "The trash");
    console << "The trash is empty.\n";
  }
  for (const std::string& name : request.names) {
    Need(OxEraseFromTrash(PlatformNameOf(name).get()), name);
    console << name << " is erased.\n";
  }
  return kExitDone;
}

}  // namespace Orvix::ctl
