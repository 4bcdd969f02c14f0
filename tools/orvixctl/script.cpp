// Carrying out the lines of a script.
#include "script.h"

#include <cctype>
#include <utility>

#include "quoted.h"
#include "words.h"

namespace Orvix::ctl {

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

bool IsName(std::string_view text) {
  if (text.empty() || std::isdigit(static_cast<unsigned char>(text.front())) != 0) return false;
  for (const char c : text) {
    if (std::isalnum(static_cast<unsigned char>(c)) == 0 && c != '_') return false;
  }
  return true;
}

bool IsPlain(const Word& word, std::string_view text) {
  return word.literal_from == std::string::npos && word.text == text;
}

// Takes a quoted text off the front of `*rest`.
std::string TakeLiteral(std::string_view* rest) {
  if (rest->front() == '"') {
    if (const std::optional<Text> text = TakeQuoted(rest)) return ToUtf8(*text);
    throw UsageError("a text in \"...\" has no end, or an escape that JSON does not know.");
  }
  const std::size_t end = rest->find('\'', 1);
  if (end == std::string_view::npos) throw UsageError("a text in '...' has no end.");
  std::string text(rest->substr(1, end - 1));
  rest->remove_prefix(end + 1);
  return text;
}

}  // namespace

std::vector<Word> SplitLine(std::string_view line) {
  std::vector<Word> words;
  for (;;) {
    while (!line.empty() && IsBlank(line.front())) line.remove_prefix(1);
    if (line.empty() || (words.empty() && line.front() == '#')) return words;
    Word& word = words.emplace_back();
    while (!line.empty() && !IsBlank(line.front())) {
      if (line.front() == '"' || line.front() == '\'') {
        if (word.literal_from == std::string::npos) word.literal_from = word.text.size();
        word.text += TakeLiteral(&line);
      } else {
        word.text += line.front();
        line.remove_prefix(1);
      }
    }
  }
}

const Value& Script::Find(const std::string& name) const {
  const auto found = variables_.find(name);
  if (found != variables_.end()) return found->second;
  std::vector<std::string> names;
  for (const auto& [known, value] : variables_) names.push_back(known);
  throw UsageError("nothing is named \"" + name + "\"." + Suggestion(name, names));
}

const Class* Script::ClassOf(const std::string& name) const {
  const auto found = variables_.find(name);
  if (found == variables_.end() || found->second.Type() != VT_DISPATCH) return nullptr;
  return ClassOfObject(Pointer<IDispatch>::Share(found->second.get().pdispVal), session_.library);
}

// $NAME is what the variable holds, @NAME the place for a by-reference result.
void Script::Resolve(Word* word) const {
  std::size_t start = 0;
  const std::size_t sign = word->text.find(":=");
  if (sign < word->literal_from && IsName(word->text.substr(0, sign))) start = sign + 2;
  if (start >= word->literal_from || start >= word->text.size()) return;
  const std::string name = word->text.substr(start + 1);
  if (word->literal_from != std::string::npos || !IsName(name)) return;
  if (word->text[start] == '$') word->value = Find(name);
  if (word->text[start] == '$' || word->text[start] == '@') word->variable = name;
}

Outcome Script::Carry(std::vector<Word> words) {
  Word first = std::move(words.front());
  words.erase(words.begin());
  // A put may have blanks around its equals sign.
  if (!words.empty() && IsPlain(words.front(), "=")) {
    if (words.size() < 2) throw UsageError("a value is missing behind the equals sign.");
    const std::size_t front = first.text.size() + 1;
    first.text += "=" + words[1].text;
    first.literal_from = words[1].literal_from == std::string::npos ? std::string::npos : words[1].literal_from + front;
    words.erase(words.begin(), words.begin() + 2);
  }
  Step step = ParseStep(first);
  for (Word& word : words) Resolve(&word);
  step.arguments = std::move(words);
  if (step.put) Resolve(&*step.put);
  const std::size_t point = step.member.find('.');
  const std::string target = point == std::string::npos ? "classOrvix" : step.member.substr(0, point);
  if (point != std::string::npos) step.member.erase(0, point + 1);

  const Class* its = session_.library.FindClass(target);
  Pointer<IDispatch> object;
  if (variables_.contains(target)) {
    its = ClassOf(target);
    if (its == nullptr) throw UsageError("\"" + target + "\" is no object of this library.");
    object = Pointer<IDispatch>::Share(variables_.at(target).get().pdispVal);
  } else if (its != nullptr && (its->flags & TYPEFLAG_FAPPOBJECT) != 0) {
    if (!global_) global_ = session_.component.Create<IDispatch>(its->clsid);
    object = global_;
  } else if (its != nullptr) {
    throw UsageError("an object is needed: type \"x = new " + its->name + "\", then x." + step.member + ".");
  } else {
    Find(target);
  }
  Outcome outcome = Caller(session_, *its, object).Do(step);
  operation_failed_ = operation_failed_ || outcome.operation_failed;
  for (const Output& output : outcome.outputs) {
    if (!output.variable.empty()) variables_[output.variable] = output.value;
  }
  return outcome;
}

void Script::Print(const std::vector<Word>& words, Json* json) const {
  std::string line;
  for (Word word : words) {
    Resolve(&word);
    const std::string text = word.value ? ShowValue(*word.value, session_.library) : Unescaped(word);
    line += (line.empty() ? "" : " ") + text;
    (*json)["print"].push_back(word.value ? JsonOf(*word.value, &session_.library) : Json(text));
  }
  if (!session_.json) session_.console << line << "\n";
}

void Script::Do(std::string_view line, int number) {
  std::vector<Word> words = SplitLine(line);
  if (words.empty()) return;
  Json json{{"line", number}};
  const bool must_fail = IsPlain(words.front(), "!");
  if (must_fail) words.erase(words.begin());
  if (words.empty()) throw UsageError("a step is missing behind \"!\".");

  if (IsPlain(words.front(), "print")) {
    words.erase(words.begin());
    Print(words, &json);
  } else {
    std::string name;
    if (words.size() > 1 && IsPlain(words[1], "=") && IsName(words[0].text)) {
      name = words[0].text;
      words.erase(words.begin(), words.begin() + 2);
      if (words.empty()) throw UsageError("\"" + name + " =\" needs a call, new CLASS or $NAME.");
    }
    const bool makes = !name.empty() && words.size() == 2 && IsPlain(words[0], "new");
    if (makes) {
      const Class& its = RequireClass(session_.library, words[1].text);
      variables_[name] = Value(session_.component.Create<IDispatch>(its.clsid));
      return;
    }
    if (!name.empty() && words.size() == 1 && words[0].text.starts_with('$')) {
      Resolve(&words[0]);
      if (words[0].value) {
        variables_[name] = *words[0].value;
        return;
      }
    }
    json["step"] = words.front().text;
    try {
      Outcome outcome = Carry(std::move(words));
      if (must_fail) throw CommandError("the step was to fail, and did not.");
      if (!name.empty()) {
        if (!outcome.has_result) throw UsageError("the call gives nothing that \"" + name + "\" could hold.");
        variables_[name] = std::move(outcome.result);
        outcome.has_result = false;
      }
      AddOutcome(outcome, session_.library, &json);
      if (!session_.json) Show(session_, outcome);
    } catch (const Error& error) {
      if (!must_fail) throw;
      json["error"] = JsonOfError(error);
      if (!session_.json) {
        session_.console << "Error " << std::to_string(error.Number()) << " (" << ToUtf8(error.Source())
                         << "): " << ToUtf8(error.Description()) << "\n";
      }
    }
  }
  if (session_.json) session_.console << Orvix::ctl::Print(json) << "\n";
  session_.console.Flush();
}

}  // namespace Orvix::ctl
