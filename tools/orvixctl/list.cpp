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

std::string JsonParameter(const Parameter& parameter) {
  std::string text = "{\"name\":" + JsonText(parameter.name) + ",\"type\":" + JsonText(TypeText(parameter.type)) +
                     ",\"byReference\":" + (parameter.type.by_reference ? "true" : "false") +
                     ",\"written\":" + (parameter.IsWritten() ? "true" : "false") +
                     ",\"optional\":" + (parameter.IsOptional() ? "true" : "false");
  if (parameter.HasDefault()) text += ",\"default\":" + JsonValue(parameter.default_value, nullptr);
  return text + "}";
}

std::string JsonMember(const Member& member) {
  std::string text = "{\"name\":" + JsonText(member.name) + ",\"kind\":" + JsonText(KindText(member.kind)) +
                     ",\"slot\":" + std::to_string(member.slot) + ",\"id\":" + std::to_string(member.id) +
                     ",\"help\":" + JsonText(member.help) + ",\"parameters\":[";
  for (std::size_t i = 0; i < member.parameters.size(); ++i) {
    text += (i > 0 ? "," : "") + JsonParameter(member.parameters[i]);
  }
  return text + "],\"result\":" + (member.result.vt == VT_VOID ? "null" : JsonText(TypeText(member.result))) + "}";
}

template <class T, class Write>
std::string JsonList(const std::vector<T>& all, Write&& write) {
  std::string text = "[";
  for (std::size_t i = 0; i < all.size(); ++i) text += (i > 0 ? "," : "") + write(all[i]);
  return text + "]";
}

std::string JsonClass(const Class& described, bool members) {
  std::string text = "{\"name\":" + JsonText(described.name) + ",\"help\":" + JsonText(described.help) +
                     ",\"clsid\":" + JsonText(GuidText(described.clsid)) +
                     ",\"interface\":" + JsonText(described.interface_name) +
                     ",\"iid\":" + JsonText(GuidText(described.iid));
  if (members) text += ",\"members\":" + JsonList(described.members, JsonMember);
  return text + "}";
}

std::string JsonEnumeration(const Enumeration& described) {
  return "{\"name\":" + JsonText(described.name) + ",\"guid\":" + JsonText(GuidText(described.guid)) +
         ",\"constants\":" +
         JsonList(described.constants,
                  [](const Constant& constant) {
                    return "{\"name\":" + JsonText(constant.name) + ",\"value\":" + std::to_string(constant.value) +
                           ",\"help\":" + JsonText(constant.help) + "}";
                  }) +
         "}";
}

std::string JsonRecord(const Record& described) {
  return "{\"name\":" + JsonText(described.name) + ",\"guid\":" + JsonText(GuidText(described.guid)) + ",\"fields\":" +
         JsonList(described.fields,
                  [](const Field& field) {
                    return "{\"name\":" + JsonText(field.name) + ",\"type\":" + JsonText(TypeText(field.type)) + "}";
                  }) +
         "}";
}

void DescribeMember(Console& out, const Class& described, const Member& member) {
  out << out.Strong(described.name + "." + member.name) << "  " << KindText(member.kind) << "\n";
  out << "  " << Signature(member) << "\n";
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
    if (parameter.HasDefault()) out << ", default " << DefaultText(parameter.default_value);
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
        << " " << Signature(member) << "\n";
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

}  // namespace

const Class& RequireClass(const Library& library, const std::string& name) {
  if (const Class* found = library.FindClass(name)) return *found;
  std::vector<std::string> names;
  for (const Class& one : library.classes) names.push_back(one.name);
  throw UsageError("there is no class \"" + name + "\"." + Suggestion(name, names) +
                   " \"orvixctl list\" shows the classes.");
}

void List(const Session& session) {
  Console& out = session.console;
  const Library& library = session.library;
  if (session.json) {
    out << "{\"name\":" << JsonText(library.name) << ",\"version\":\"" << std::to_string(library.major) << "."
        << std::to_string(library.minor) << "\",\"guid\":" << JsonText(GuidText(library.guid))
        << ",\"classes\":" << JsonList(library.classes, [](const Class& one) { return JsonClass(one, false); })
        << ",\"enumerations\":" << JsonList(library.enumerations, JsonEnumeration)
        << ",\"records\":" << JsonList(library.records, JsonRecord) << "}\n";
    return;
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
}

void Describe(const Session& session, const std::string& target) {
  Console& out = session.console;
  const Library& library = session.library;
  if (const Class* found = library.FindClass(target)) {
    if (session.json) {
      out << JsonClass(*found, true) << "\n";
    } else {
      DescribeClass(out, library, *found);
    }
    return;
  }
  if (const Enumeration* found = library.FindEnumeration(target)) {
    if (session.json) {
      out << JsonEnumeration(*found) << "\n";
    } else {
      DescribeEnumeration(out, *found);
    }
    return;
  }
  if (const Record* found = library.FindRecord(target)) {
    if (session.json) {
      out << JsonRecord(*found) << "\n";
    } else {
      DescribeRecord(out, *found);
    }
    return;
  }
  const std::size_t point = target.rfind('.');
  if (point == std::string::npos) {
    std::vector<std::string> names;
    for (const Class& one : library.classes) names.push_back(one.name);
    for (const Enumeration& one : library.enumerations) names.push_back(one.name);
    for (const Record& one : library.records) names.push_back(one.name);
    throw UsageError("there is no class, enumeration or record \"" + target + "\"." + Suggestion(target, names) +
                     " \"orvixctl list\" shows them all.");
  }
  const Class& owner = RequireClass(library, target.substr(0, point));
  const std::string wanted = target.substr(point + 1);
  std::vector<Member> accessors;
  std::vector<std::string> names;
  for (const Member& member : owner.members) {
    names.push_back(member.name);
    if (SameName(member.name, wanted)) accessors.push_back(member);
  }
  if (accessors.empty()) {
    throw UsageError(owner.name + " has no member \"" + wanted + "\"." + Suggestion(wanted, names) +
                     " \"orvixctl describe " + owner.name + "\" shows the members.");
  }
  if (session.json) {
    out << JsonList(accessors, JsonMember) << "\n";
    return;
  }
  for (std::size_t i = 0; i < accessors.size(); ++i) {
    if (i > 0) out << "\n";
    DescribeMember(out, owner, accessors[i]);
  }
}

}  // namespace Orvix::ctl
