#include "attack/scenarios.h"

#include <algorithm>
#include <cstring>

namespace Orvix::attack {

namespace {

const std::string kOld(3000, 'o');
const std::string kNew(5000, 'n');

Text WideNew() { return {kNew.begin(), kNew.end()}; }
Array<BYTE> ByteNew() { return Array<BYTE>(std::vector<BYTE>(kNew.begin(), kNew.end())); }

void WithOld(const Scratch& scratch) { scratch.Write("file", kOld); }
void WithNothing(const Scratch&) {}
void WithTree(const Scratch& scratch) {
  for (const char* name : {"from/a", "from/deep/b", "from/deep/deeper/c"}) scratch.Write(name, kOld);
  scratch.Write("to/there", "there");
}

// The old content, or the new one when nothing failed.
std::string OldOrNew(const Scratch& scratch, LONG number) {
  const std::string content = scratch.Read("file");
  if (number == 0) return content == kNew ? "" : "done, with " + std::to_string(content.size()) + " bytes";
  return content == kOld || content == kNew ? ""
                                            : "failed with " + std::to_string(number) +
                                                  ", old file lost: " + std::to_string(content.size()) + " bytes";
}
std::string NoneOrNew(const Scratch& scratch, LONG number) {
  const std::string content = scratch.Read("file");
  if (number == 0) return content == kNew ? "" : "done, with " + content.substr(0, 20);
  return content == "none" || content == kNew ? "" : "a part has the name";
}
std::string OldStays(const Scratch& scratch, LONG) { return scratch.Read("file") == kOld ? "" : "the file changed"; }
// Every file of the tree is whole in one of both places.
std::string TreeIsWhole(const Scratch& scratch, LONG) {
  for (const char* name : {"a", "deep/b", "deep/deeper/c"}) {
    const std::string from = scratch.Read(std::string("from/") + name);
    const std::string to = scratch.Read(std::string("to/from/") + name);
    if (from != kOld && to != kOld) return std::string(name) + " is lost";
    if (to != kOld && to != "none") return std::string(name) + " has a part of itself as a copy";
  }
  return scratch.Read("to/there") == "there" ? "" : "a bystander changed";
}
std::string Anything(const Scratch&, LONG) { return ""; }

void Operate(const Scratch& scratch, bool moves) {
  FileOperation operation;
  operation.SetSilentMode(true);
  operation.SetConfirmOperation(false);
  operation.SetConfirmMakeDir(false);
  operation.AddSourceFile(scratch.Name("from"));
  operation.AddDestFile(scratch.Name("to"));
  static_cast<void>(moves ? operation.MoveFiles() : operation.CopyFiles());
}

HKEY Key() {
  HKEY key = nullptr;
  RegCreateKeyExW(MakeRootKey(kCurrentUser), u"Software\\Attack", 0, nullptr, 0, 31, nullptr, &key, nullptr);
  return key;
}
void SetRegistry(const std::string& data) {
  const HKEY key = Key();
  RegSetValueExW(key, u"value", 0, 3, reinterpret_cast<const BYTE*>(data.data()), static_cast<DWORD>(data.size()));
  RegCloseKey(key);
}
std::string GetRegistry() {
  std::string data(10000, '\0');
  auto size = static_cast<DWORD>(data.size());
  const HKEY key = Key();
  const LONG result = RegQueryValueExW(key, u"value", nullptr, nullptr, reinterpret_cast<BYTE*>(data.data()), &size);
  RegCloseKey(key);
  return result == 0 ? data.substr(0, size) : "code " + std::to_string(result);
}

constexpr Scenario kScenarios[] = {
    {"StoreData over a file", WithOld,
     [](const Scratch& s) { Global().StoreData(Filename(s.Name("file")), WideNew()); }, OldOrNew, true},
    {"StoreBinaryData over a file", WithOld,
     [](const Scratch& s) { Global().StoreBinaryData(Filename(s.Name("file")), ByteNew()); }, OldOrNew, true},
    {"StoreData of a new file", WithNothing,
     [](const Scratch& s) { Global().StoreData(Filename(s.Name("file")), WideNew()); }, NoneOrNew, true},
    {"CreateFile", WithNothing, [](const Scratch& s) { Filename(s.Name("file")).CreateFile(WideNew()); }, NoneOrNew,
     true},
    {"CreateFile over a file", WithOld, [](const Scratch& s) { Filename(s.Name("file")).CreateFile(WideNew()); },
     OldStays, true},
    {"GetFile", WithOld,
     [](const Scratch& s) {
       if (Filename(s.Name("file")).GetFile().View().size() != kOld.size()) throw std::logic_error("a part was read");
     },
     OldStays, true},
    {"MakeDir", WithNothing, [](const Scratch& s) { Global().MakeDir(s.Name("a/b/c")); }, Anything},
    {"Directory.Init", WithTree, [](const Scratch& s) { Directory().Init(s.Name("from") + u"\\*.*"); }, TreeIsWhole},
    {"CopyFiles of a tree", WithTree, [](const Scratch& s) { Operate(s, false); }, TreeIsWhole},
    {"MoveFiles of a tree", WithTree, [](const Scratch& s) { Operate(s, true); }, TreeIsWhole},
    {"MyFileCopy", WithOld, [](const Scratch& s) { Global().MyFileCopy(s.Name("file"), s.Name("copy")); }, OldStays},
    {"texts", [](const Scratch&) {},
     [](const Scratch&) {
       static_cast<void>(Global().MyReplace(Text(9000, u'a'), u"a", u"bb"));
       static_cast<void>(Global().AddElement(Text(9000, u'a'), Text(9000, u'b'), u","));
       StringBuffer buffer;
       buffer.Append(Text(9000, u'x'));
       static_cast<void>(buffer.Text());
       Stack stack;
       for (LONG i = 0; i < 40; ++i) stack.Push(i);
     },
     Anything},
    {"registry", [](const Scratch&) { SetRegistry(kOld); }, [](const Scratch&) { SetRegistry(kNew); },
     [](const Scratch&, LONG) -> std::string {
       const std::string data = GetRegistry();
       return data == kOld || data == kNew ? "" : "the value is " + data.substr(0, 20);
     }},
    {"registration", WithNothing, [](const Scratch&) { DllRegisterServer(); }, Anything},
};

}  // namespace

std::span<const Scenario> Scenarios() { return kScenarios; }

std::string Leftovers(const Scratch& scratch) {
  std::string found;
  for (const std::string& entry : scratch.Entries()) {
    if (entry.find(".orvix") != std::string::npos) found += entry + " ";
  }
  return found;
}

}  // namespace Orvix::attack
