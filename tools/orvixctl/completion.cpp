// Completing names out of the type library.
#include "completion.h"

#include <algorithm>

#include "call_words.h"
#include "words.h"

namespace Orvix::ctl {

namespace {

constexpr int kAnyKind = INVOKE_FUNC | INVOKE_PROPERTYGET | INVOKE_PROPERTYPUT | INVOKE_PROPERTYPUTREF;

class Candidates {
 public:
  explicit Candidates(std::string typed) : typed_(std::move(typed)) {}

  void Add(const std::string& candidate) {
    if (candidate.size() < typed_.size() || !SameName(candidate.substr(0, typed_.size()), typed_)) return;
    if (std::ranges::find(found_, candidate) == found_.end()) found_.push_back(candidate);
  }
  void AddMembers(const Class& its, const std::string& front) {
    for (const Member& member : its.members) Add(front + member.name);
  }
  // Parameters by name, and the constants of those that take them.
  void AddArguments(const Library& library, const Class* its, const std::string& member) {
    if (its == nullptr) return;
    const Member* const found = its->Find(member, kAnyKind);
    if (found == nullptr) return;
    for (const Parameter& parameter : found->parameters) {
      Add(parameter.name + ":=");
      const Enumeration* const constants = library.FindEnumeration(parameter.type.user_name);
      if (constants == nullptr) continue;
      for (const Constant& constant : constants->constants) Add(constant.name);
    }
  }
  std::vector<std::string> Take() { return std::move(found_); }

 private:
  std::string typed_;
  std::vector<std::string> found_;
};

void AddClasses(const Library& library, bool members, Candidates* candidates) {
  for (const Class& its : library.classes) {
    if (members) {
      candidates->AddMembers(its, its.name + ".");
    } else {
      candidates->Add(its.name);
    }
  }
}

}  // namespace

std::vector<std::string> CompletionsOfWords(const Library& library, const std::vector<std::string>& words) {
  if (words.size() < 2) return {};
  const std::string& typed = words.back();
  Candidates candidates(typed);
  const bool has_point = typed.find('.') != std::string::npos;
  if (words.front() == "describe") {
    AddClasses(library, has_point, &candidates);
    for (const Enumeration& enumeration : library.enumerations) candidates.Add(enumeration.name);
    for (const Record& record : library.records) candidates.Add(record.name);
    const Class* const global = library.FindClass("classOrvix");
    if (!has_point && !typed.empty() && global != nullptr) candidates.AddMembers(*global, "");
  } else if (words.size() == 2) {
    if (has_point) {
      AddClasses(library, true, &candidates);
    } else {
      for (const Class& its : library.classes) candidates.Add(its.name + ".");
    }
  } else {
    const std::size_t point = words[1].find('.');
    const Class* const its = library.FindClass(words[1].substr(0, point));
    // The member of the step that the word belongs to.
    std::string member = point == std::string::npos ? std::string() : words[1].substr(point + 1);
    for (std::size_t i = 2; i + 1 < words.size(); ++i) {
      if (words[i].starts_with('.')) member = words[i].substr(words[i].find_first_not_of('.'));
    }
    if (its != nullptr && typed.starts_with('.')) {
      candidates.AddMembers(*its, ".");
    } else {
      candidates.AddArguments(library, its, member.substr(0, member.find('=')));
    }
  }
  return candidates.Take();
}

std::vector<std::string> CompletionsOfLine(const Library& library, const Script& script, const std::string& line,
                                           const std::string& word) {
  Candidates candidates(word);
  const Class* const global = library.FindClass("classOrvix");
  std::vector<std::string> before;
  try {
    for (const Word& one : SplitLine(line)) before.push_back(one.text);
  } catch (const UsageError&) {
    return {};  // inside a quoted text
  }
  if (before.size() >= 2 && before[1] == "=") before.erase(before.begin(), before.begin() + 2);
  if (!before.empty() && before.front() == "!") before.erase(before.begin());
  if (before == std::vector<std::string>{"new"}) {
    AddClasses(library, false, &candidates);
  } else if (before.empty()) {
    const std::size_t point = word.find('.');
    if (point != std::string::npos) {
      if (const Class* const its = script.ClassOf(word.substr(0, point))) {
        candidates.AddMembers(*its, word.substr(0, point + 1));
      }
    } else {
      for (const char* keyword : {"new", "print"}) candidates.Add(keyword);
      for (const auto& [name, value] : script.variables())
        candidates.Add(script.ClassOf(name) != nullptr ? name + "." : name);
      if (global != nullptr) candidates.AddMembers(*global, "");
    }
  } else {
    for (const auto& [name, value] : script.variables()) candidates.Add("$" + name);
    const std::size_t point = before.front().find('.');
    candidates.AddArguments(library,
                            point == std::string::npos ? global : script.ClassOf(before.front().substr(0, point)),
                            point == std::string::npos ? before.front() : before.front().substr(point + 1));
  }
  return candidates.Take();
}

}  // namespace Orvix::ctl
