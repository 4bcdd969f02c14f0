// list and describe: what the type library says, for people and programs.
#include <algorithm>

#include "commands.h"
#include "show.h"
#include "words.h"

namespace Orvix::ctl {

namespace {

std::string Padded(std::string text, std::size_t width) {
  if (text.size() < width) text.append(width - text.size(), ' ');
  return text;
}

std::string Counted(std::size_t count, std::string_view one, std::string_view many) {
  return std::to_string(count) + " " + std::string(count == 1 ? one : many);
}

// Members by name: the accessors of a property count once.
std::size_t NamesOf(const Class& described, bool methods) {
  std::vector<std::string> names;
  for (const Member& member : described.members) {
    if ((member.kind == INVOKE_FUNC) == methods && std::ranges::find(names, member.name) == names.end()) {
      names.push_back(member.name);
    }
  }
  return names.size();
}

std::string FlagWords(const Class& described) {
  std::string words;
  if ((described.flags & TYPEFLAG_FAPPOBJECT) != 0) words += ", global object";
  if ((described.flags & TYPEFLAG_FCANCREATE) != 0) words += ", creatable";
  return words;
}

Json JsonParameter(const Parameter& parameter) {
  Json json{{"name", parameter.name},
            {"type", TypeText(parameter.type)},
            {"byReference", parameter.type.by_reference},
            {"written", parameter.IsWritten()},
            {"optional", parameter.IsOptional()}};
  if (parameter.HasDefault()) json["default"] = JsonOf(parameter.default_value, nullptr);
  return json;
}

template <class T>
Json JsonList(const std::vector<T>& all, Json (*write)(const T&)) {
  Json json = Json::array();
  for (const T& one : all) json.push_back(write(one));
  return json;
}

Json JsonMember(const Member& member) {
  return {{"name", member.name},
          {"kind", KindText(member.kind)},
          {"slot", member.slot},
          {"id", member.id},
          {"help", member.help},
          {"parameters", JsonList(member.parameters, JsonParameter)},
          {"result", member.result.vt == VT_VOID ? Json() : Json(TypeText(member.result))}};
}

Json JsonClass(const Class& described) {
  return {{"name", described.name},
          {"help", described.help},
          {"clsid", GuidText(described.clsid)},
          {"interface", described.interface_name},
          {"iid", GuidText(described.iid)},
          {"creatable", (described.flags & TYPEFLAG_FCANCREATE) != 0},
          {"global", (described.flags & TYPEFLAG_FAPPOBJECT) != 0}};
}

Json JsonConstant(const Constant& constant) {
  return {{"name", constant.name}, {"value", constant.value}, {"help", constant.help}};
}

Json JsonEnumeration(const Enumeration& described) {
  return {{"name", described.name},
          {"guid", GuidText(described.guid)},
          {"constants", JsonList(described.constants, JsonConstant)}};
}

Json JsonField(const Field& field) { return {{"name", field.name}, {"type", TypeText(field.type)}}; }

Json JsonRecord(const Record& described) {
  return {
      {"name", described.name}, {"guid", GuidText(described.guid)}, {"fields", JsonList(described.fields, JsonField)}};
}

void DescribeMember(Console& out, const Library& library, const Class& described, const Member& member) {
  out << out.Strong(described.name + "." + member.name) << "  " << KindText(member.kind) << "\n";
  out << "  " << Signature(member, &library) << "\n";
  if (!member.help.empty()) out << "  " << member.help << "\n";
  std::size_t width = 0;
  for (const Parameter& parameter : member.parameters) width = std::max(width, parameter.name.size());
  for (const Parameter& parameter : member.parameters) {
    out << "    " << Padded(parameter.name, width) << "  " << TypeText(parameter.type)
        << (parameter.type.by_reference ? ", by reference" : ", by value");
    if (parameter.IsOutputOnly()) {
      out << ", written";
    } else if (parameter.IsWritten()) {
      out << ", read and written";
    }
    if (parameter.IsOptional()) out << ", optional";
    if (parameter.HasDefault()) out << ", default " << DefaultText(parameter, &library);
    out << "\n";
  }
  out << "  slot " << std::to_string(member.slot) << ", dispatch identifier " << std::to_string(member.id);
  if (member.id == DISPID_VALUE) out << ", default member";
  if ((member.flags & FUNCFLAG_FUIDEFAULT) != 0) out << ", shown first by browsers";
  out << "\n";
}

void DescribeClass(Console& out, const Library& library, const Class& described) {
  out << out.Strong(library.name + "." + described.name) << FlagWords(described) << "\n";
  if (!described.help.empty()) out << "  " << described.help << "\n";
  out << "  class      " << GuidText(described.clsid) << "\n";
  out << "  interface  " << GuidText(described.iid) << " " << described.interface_name << "\n\n";
  for (const Member& member : described.members) {
    out << "  " << Padded(std::to_string(member.slot), 3) << " " << Padded(std::string(KindText(member.kind)), 13)
        << " " << Signature(member, &library) << "\n";
    if (!member.help.empty()) out << std::string(20, ' ') << out.Faint(member.help) << "\n";
  }
}

void DescribeEnumeration(Console& out, const Enumeration& described) {
  out << out.Strong(described.name) << "  enumeration " << GuidText(described.guid) << "\n";
  if (!described.help.empty()) out << "  " << described.help << "\n";
  std::size_t width = 0;
  for (const Constant& constant : described.constants) width = std::max(width, constant.name.size());
  for (const Constant& constant : described.constants) {
    out << "  " << Padded(constant.name, width) << " = " << std::to_string(constant.value);
    if (!constant.help.empty() && constant.help != constant.name) out << "  " << constant.help;
    out << "\n";
  }
}

void DescribeRecord(Console& out, const Record& described) {
  out << out.Strong(described.name) << "  record " << GuidText(described.guid) << "\n";
  for (const Field& field : described.fields) {
    out << "  " << Padded(field.name, 18) << " " << TypeText(field.type) << "\n";
  }
}

struct Found {
  const Class* owner;
  const Member* member;
};

// All accessors of CLASS.MEMBER, or of every class's MEMBER; UsageError for none.
std::vector<Found> FindMembers(const Library& library, const std::string& target) {
  const std::size_t point = target.rfind('.');
  const bool anywhere = point == std::string::npos;
  const Class* const only = anywhere ? nullptr : &RequireClass(library, target.substr(0, point));
  const std::string wanted = anywhere ? target : target.substr(point + 1);
  std::vector<Found> accessors;
  std::vector<std::string> names;
  for (const Class& owner : library.classes) {
    if (only != nullptr && only != &owner) continue;
    if (anywhere) names.push_back(owner.name);
    for (const Member& member : owner.members) {
      names.push_back(member.name);
      if (SameName(member.name, wanted)) accessors.push_back({&owner, &member});
    }
  }
  if (!accessors.empty()) return accessors;
  if (only != nullptr) {
    throw UsageError(only->name + " has no member \"" + wanted + "\"." + Suggestion(wanted, names) +
                     " \"orvixctl describe " + only->name + "\" shows the members.");
  }
  for (const Enumeration& one : library.enumerations) names.push_back(one.name);
  for (const Record& one : library.records) names.push_back(one.name);
  throw UsageError("there is no class, member, enumeration or record \"" + target + "\"." + Suggestion(target, names) +
                   " \"orvixctl list\" shows them all.");
}

}  // namespace

const Class& RequireClass(const Library& library, const std::string& name) {
  if (const Class* found = library.FindClass(name)) return *found;
  std::vector<std::string> names;
  for (const Class& one : library.classes) names.push_back(one.name);
  throw UsageError("there is no class \"" + name + "\"." + Suggestion(name, names) +
                   " \"orvixctl list\" shows the classes.");
}

int List(const Session& session) {
  Console& out = session.console;
  const Library& library = session.library;
  if (session.json) {
    const Json document{{"name", library.name},
                        {"version", std::to_string(library.major) + "." + std::to_string(library.minor)},
                        {"guid", GuidText(library.guid)},
                        {"classes", JsonList(library.classes, JsonClass)},
                        {"enumerations", JsonList(library.enumerations, JsonEnumeration)},
                        {"records", JsonList(library.records, JsonRecord)}};
    out << Print(document) << "\n";
    return kExitDone;
  }
  constexpr std::size_t kWidth = 22;
  out << out.Strong("Classes") << "\n";
  for (const Class& one : library.classes) {
    out << "  " << Padded(one.name, kWidth) << Counted(NamesOf(one, true), "method", "methods") << ", "
        << Counted(NamesOf(one, false), "property", "properties") << FlagWords(one) << "\n";
    if (!one.help.empty()) out << "    " << out.Faint(one.help) << "\n";
  }
  out << out.Strong("Enumerations") << "\n";
  for (const Enumeration& one : library.enumerations) {
    out << "  " << Padded(one.name, kWidth) << Counted(one.constants.size(), "constant", "constants") << "\n";
  }
  out << out.Strong("Records") << "\n";
  for (const Record& one : library.records) {
    out << "  " << Padded(one.name, kWidth) << Counted(one.fields.size(), "field", "fields") << "\n";
  }
  return kExitDone;
}

int Describe(const Session& session, const std::string& target) {
  Console& out = session.console;
  const Library& library = session.library;
  if (const Class* found = library.FindClass(target)) {
    if (session.json) {
      Json json = JsonClass(*found);
      json["members"] = JsonList(found->members, JsonMember);
      out << Print(json) << "\n";
    } else {
      DescribeClass(out, library, *found);
    }
    return kExitDone;
  }
  if (const Enumeration* found = library.FindEnumeration(target)) {
    if (session.json) {
      out << Print(JsonEnumeration(*found)) << "\n";
    } else {
      DescribeEnumeration(out, *found);
    }
    return kExitDone;
  }
  if (const Record* found = library.FindRecord(target)) {
    if (session.json) {
      out << Print(JsonRecord(*found)) << "\n";
    } else {
      DescribeRecord(out, *found);
    }
    return kExitDone;
  }
  const std::vector<Found> accessors = FindMembers(library, target);
  if (session.json) {
    Json members = Json::array();
    for (const Found& found : accessors) members.push_back(JsonMember(*found.member));
    out << Print(members) << "\n";
    return kExitDone;
  }
  for (const Found& found : accessors) {
    if (&found != &accessors.front()) out << "\n";
    DescribeMember(out, library, *found.owner, *found.member);
  }
  return kExitDone;
}

}  // namespace Orvix::ctl
