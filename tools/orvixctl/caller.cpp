// Calling members late bound.
#include "caller.h"

#include <utility>

#include "words.h"

namespace Orvix::ctl {

// One argument on its way: the variable, and how it stood before the call.
struct Slot {
  std::string name;  // of a script's variable
  Value variable;
  Value before;
  bool given = false;
  bool asked_for = false;  // shown afterwards whatever it holds
};

namespace {

// The VARIANT that hands `variable` over by reference.
VARIANT ByReference(const Type& type, Value& variable) {
  VARIANT reference{};
  if (type.vt == VT_VARIANT) {
    reference.vt = VT_BYREF | VT_VARIANT;
    reference.pvarVal = variable.Reference();
  } else {
    reference.vt = static_cast<VARTYPE>(VT_BYREF | type.vt);
    reference.byref = &variable.Reference()->llVal;
  }
  return reference;
}

bool SameShown(const Value& left, const Value& right) {
  return left.Type() == right.Type() && JsonOf(left, nullptr) == JsonOf(right, nullptr);
}

// What to type for a member: "classOrvix.GetElement sList lIndex sSeparator".
std::string Usage(const Class& its, const Member& member, std::size_t count) {
  std::string usage = its.name + "." + member.name;
  for (std::size_t i = 0; i < count; ++i) {
    const Parameter& parameter = member.parameters[i];
    usage += parameter.IsOptional() ? " [" + parameter.name + "]" : " " + parameter.name;
  }
  return usage;
}

// A variable's value as the parameter takes it: by reference only its own type goes.
Value Fitting(const Parameter& parameter, const Value& value, const std::string& word) {
  const VARTYPE type = parameter.type.vt;
  if (!parameter.type.by_reference || type == VT_VARIANT || value.Type() == type) return value;
  Value fitting;
  if ((type & VT_ARRAY) != 0 || FAILED(VariantChangeType(fitting.Reference(), &value.get(), 0, type))) {
    throw UsageError(parameter.name + " takes " + TypeText(parameter.type) + ": " + word + " holds something else.");
  }
  return fitting;
}

// Tells of a file operation since `before` that failed inside a member which has no
// answer of its own.
bool OperationFailed(const OxFileOperationFacts& before) {
  OxFileOperationFacts now{};
  String item;
  String words;
  if (FAILED(OxLastFileOperation(&now, item.Receive(), words.Receive()))) return false;
  if (now.serial == before.serial || (now.code == 0 && now.aborted == 0)) return false;
  Console::Complain("the file operation failed: " + words.Utf8() + (item.View().empty() ? "" : ", at " + item.Utf8()));
  return true;
}

}  // namespace

Outcome Caller::Do(const Step& step) const {
  Member member = Choose(step);
  const bool puts = step.put.has_value();
  const std::size_t count = member.parameters.size() - (puts ? 1 : 0);
  std::vector<Slot> slots = Place(step, member, count);

  Value put_value;
  WORD flags = static_cast<WORD>(DISPATCH_METHOD | DISPATCH_PROPERTYGET);
  if (puts) {
    flags = DISPATCH_PROPERTYPUT;
    put_value = PutValue(step, member, flags);
  }
  OxFileOperationFacts before{};
  OxLastFileOperation(&before, nullptr, nullptr);
  Outcome outcome = Invoke(member, slots, puts ? &put_value : nullptr, flags);
  outcome.operation_failed = !outcome.has_result && OperationFailed(before);
  return outcome;
}

Member Caller::Choose(const Step& step) const {
  const int kinds = step.put ? INVOKE_PROPERTYPUT | INVOKE_PROPERTYPUTREF : INVOKE_FUNC | INVOKE_PROPERTYGET;
  if (const Member* found = its_.Find(step.member, kinds)) return *found;
  std::vector<std::string> names;
  for (const Member& member : its_.members) names.push_back(member.name);
  if (its_.Find(step.member, 0xF) == nullptr) {
    throw UsageError(its_.name + " has no member \"" + step.member + "\"." + Suggestion(step.member, names) +
                     " \"orvixctl describe " + its_.name +
                     "\" shows the members; an argument that begins with a point is written with a backslash in "
                     "front.");
  }
  throw UsageError(its_.name + "." + step.member + (step.put ? " cannot be put." : " can only be put."));
}

// The arguments in the order of the parameters.
std::vector<Slot> Caller::Place(const Step& step, const Member& member, std::size_t count) const {
  std::vector<Slot> slots(count);
  std::size_t next = 0;
  for (const Word& word : step.arguments) {
    std::size_t index = count;
    std::size_t start = 0;
    const std::size_t sign = word.text.find(":=");
    for (std::size_t i = 0; sign < word.literal_from && i < count; ++i) {
      if (SameName(word.text.substr(0, sign), member.parameters[i].name)) {
        index = i;
        start = sign + 2;
      }
    }
    if (index == count) index = next++;
    if (index >= count) {
      throw UsageError("too many arguments for " + its_.name + "." + member.name + ": \"" + word.text +
                       "\" has no place. Usage: " + Usage(its_, member, count));
    }
    const Parameter& parameter = member.parameters[index];
    Slot& slot = slots[index];
    if (slot.given) throw UsageError(parameter.name + " is given twice.");
    const bool has_meaning = start < word.literal_from;
    const std::string_view text = std::string_view(word.text).substr(start);
    if (has_meaning && text == kLeftOut) continue;
    slot.given = true;
    slot.name = word.variable;
    if (word.value) {
      slot.variable = Fitting(parameter, *word.value, word.text);
    } else {
      slot.asked_for = has_meaning && (text == kVariable || !word.variable.empty());
      slot.variable = slot.asked_for ? ArgumentReader::Blank(parameter.type)
                                     : reader_.Read(parameter.type, parameter.name, Unescaped(word, start));
    }
  }
  for (std::size_t i = 0; i < count; ++i) {
    const Parameter& parameter = member.parameters[i];
    if (slots[i].given || parameter.IsOptional()) continue;
    if (!parameter.IsOutputOnly()) {
      throw UsageError(its_.name + "." + member.name + ": the argument " + parameter.name + " (" +
                       TypeText(parameter.type) + ") is missing. Usage: " + Usage(its_, member, count));
    }
    slots[i].given = true;
    slots[i].asked_for = true;
    slots[i].variable = ArgumentReader::Blank(parameter.type);
  }
  return slots;
}

// The value of a put. An object goes to the accessor that takes objects, when
// there is one.
Value Caller::PutValue(const Step& step, Member& member, WORD& flags) const {
  const Parameter& parameter = member.parameters.back();
  Value value = step.put->value ? Fitting(parameter, *step.put->value, step.put->text)
                                : reader_.Read(parameter.type, parameter.name, Unescaped(*step.put));
  if (member.kind == INVOKE_PROPERTYPUTREF) flags = DISPATCH_PROPERTYPUTREF;
  if (value.IsObject() && member.kind == INVOKE_PROPERTYPUT) {
    if (const Member* set = its_.Find(step.member, INVOKE_PROPERTYPUTREF)) {
      member = *set;
      flags = DISPATCH_PROPERTYPUTREF;
    }
  }
  return value;
}

Outcome Caller::Invoke(const Member& member, std::vector<Slot>& slots, Value* put_value, WORD flags) const {
  std::size_t used = slots.size();
  while (used > 0 && !slots[used - 1].given) --used;
  // Last first, a put's value in front of them all.
  std::vector<VARIANT> arguments;
  if (put_value != nullptr) arguments.push_back(put_value->get());
  for (std::size_t i = used; i-- > 0;) {
    const Type& type = member.parameters[i].type;
    Slot& slot = slots[i];
    if (!slot.given) {
      arguments.push_back(Value::Missing().get());
    } else if (type.by_reference) {
      slot.before = slot.variable;
      arguments.push_back(ByReference(type, slot.variable));
    } else {
      arguments.push_back(slot.variable.get());
    }
  }
  DISPID named = DISPID_PROPERTYPUT;
  DISPPARAMS params{arguments.data(), put_value != nullptr ? &named : nullptr, static_cast<UINT>(arguments.size()),
                    put_value != nullptr ? 1U : 0U};
  Outcome outcome;
  EXCEPINFO exception{};
  const HRESULT result =
      object_->Invoke(member.id, IID_NULL, 0, flags, &params, outcome.result.Receive(), &exception, nullptr);
  const String source = String::Adopt(exception.bstrSource);
  const String description = String::Adopt(exception.bstrDescription);
  SysFreeString(exception.bstrHelpFile);
  if (result == DISP_E_EXCEPTION) {
    const LONG number = exception.wCode != 0 ? exception.wCode : OxErrorNumber(exception.scode);
    throw Error(exception.scode, number, Text(source.View()), Text(description.View()));
  }
  Check(result);
  outcome.has_result = member.result.vt != VT_VOID;
  for (std::size_t i = 0; i < used; ++i) {
    Slot& slot = slots[i];
    if (!slot.given || !member.parameters[i].type.by_reference) continue;
    const bool changed = !SameShown(slot.before, slot.variable);
    if (slot.asked_for || changed) {
      outcome.outputs.push_back({member.parameters[i].name, slot.name, std::move(slot.variable)});
    }
  }
  return outcome;
}

void Show(const Session& session, const Outcome& outcome) {
  Console& out = session.console;
  if (outcome.has_result) out << ShowValue(outcome.result, session.library) << "\n";
  for (const Output& output : outcome.outputs) {
    out << output.name << " = " << ShowValue(output.value, session.library) << "\n";
  }
  out.Flush();
}

void AddOutcome(const Outcome& outcome, const Library& library, Json* step) {
  if (outcome.has_result) (*step)["result"] = JsonOf(outcome.result, &library);
  for (const Output& output : outcome.outputs) (*step)["outputs"][output.name] = JsonOf(output.value, &library);
}

Json JsonOfError(const Error& error) {
  return {{"number", error.Number()}, {"source", JsonOf(error.Source())}, {"description", JsonOf(error.Description())}};
}

std::string Told(const Error& error) {
  return "error " + std::to_string(error.Number()) + " from " +
         (error.Source().empty() ? "the platform" : ToUtf8(error.Source())) + ": " + ToUtf8(error.Description());
}

}  // namespace Orvix::ctl
