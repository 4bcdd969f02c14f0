// idl: the type library as ODL text.
#include <algorithm>
#include <cstdio>

#include "commands.h"
#include "words.h"

namespace Orvix::ctl {

namespace {

std::string Hex(MEMBERID id) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08x", static_cast<unsigned>(id));
  return text;
}

// A parameter's type as it is declared, one pointer for each level.
std::string Declared(const Type& type) { return TypeText(type) + (type.by_reference ? "*" : ""); }

std::string Help(const std::string& help) {
  return help.empty() ? std::string() : ", helpstring(" + Quoted(help) + ")";
}

std::string Attributes(const Parameter& parameter) {
  std::string text = "[in";
  if (parameter.IsOutputOnly()) text = "[out";
  if (parameter.IsWritten() && !parameter.IsOutputOnly()) text += ", out";
  if (parameter.IsOptional()) text += ", optional";
  if (parameter.HasDefault()) text += ", defaultvalue(" + DefaultText(parameter, nullptr) + ")";
  return text + "] ";
}

std::string MemberText(const Member& member) {
  std::string text = "      [id(" + Hex(member.id) + ")";
  switch (member.kind) {
    case INVOKE_PROPERTYGET:
      text += ", propget";
      break;
    case INVOKE_PROPERTYPUT:
      text += ", propput";
      break;
    case INVOKE_PROPERTYPUTREF:
      text += ", propputref";
      break;
    default:
      break;
  }
  if ((member.flags & FUNCFLAG_FUIDEFAULT) != 0) text += ", uidefault";
  if ((member.flags & FUNCFLAG_FHIDDEN) != 0) text += ", hidden";
  text += Help(member.help) + "]\n      HRESULT " + member.name + "(";
  const bool returns = member.result.vt != VT_VOID;
  const std::size_t count = member.parameters.size() + (returns ? 1 : 0);
  for (std::size_t i = 0; i < count; ++i) {
    if (count > 1) text += "\n              ";
    if (i < member.parameters.size()) {
      const Parameter& parameter = member.parameters[i];
      text += Attributes(parameter) + Declared(parameter.type) + " " + parameter.name;
    } else {
      text += "[out, retval] " + TypeText(member.result) + "* result";
    }
    if (i + 1 < count) text += ",";
  }
  return text + ");\n";
}

std::string InterfaceText(const Class& its) {
  std::string text = "  [\n    odl,\n    uuid(" + GuidText(its.iid, false) + ")";
  if ((its.interface_flags & TYPEFLAG_FHIDDEN) != 0) text += ",\n    hidden";
  if ((its.interface_flags & TYPEFLAG_FDUAL) != 0) text += ",\n    dual";
  if ((its.interface_flags & TYPEFLAG_FNONEXTENSIBLE) != 0) text += ",\n    nonextensible";
  if ((its.interface_flags & TYPEFLAG_FOLEAUTOMATION) != 0) text += ",\n    oleautomation";
  text += "\n  ]\n  interface " + its.interface_name + " : IDispatch {\n";
  for (const Member& member : its.members) text += MemberText(member);
  return text + "  };\n\n";
}

std::string ClassText(const Class& its) {
  std::string text = "  [\n    uuid(" + GuidText(its.clsid, false) + ")";
  if (!its.help.empty()) text += ",\n    helpstring(" + Quoted(its.help) + ")";
  if ((its.flags & TYPEFLAG_FAPPOBJECT) != 0) text += ",\n    appobject";
  if ((its.flags & TYPEFLAG_FHIDDEN) != 0) text += ",\n    hidden";
  if ((its.flags & TYPEFLAG_FCANCREATE) == 0) text += ",\n    noncreatable";
  // The language has no word for it, yet readers of the text look for it.
  if ((its.flags & TYPEFLAG_FPREDECLID) != 0) text += "  // predeclared";
  return text + "\n  ]\n  coclass " + its.name + " {\n    [default] interface " + its.interface_name + ";\n  };\n\n";
}

std::string EnumerationText(const Enumeration& described) {
  std::string text =
      "  typedef [uuid(" + GuidText(described.guid, false) + ")" + Help(described.help) + "]\n  enum {\n";
  for (std::size_t i = 0; i < described.constants.size(); ++i) {
    const Constant& constant = described.constants[i];
    text += "    ";
    if (!constant.help.empty()) text += "[helpstring(" + Quoted(constant.help) + ")] ";
    text += constant.name + " = " + std::to_string(constant.value);
    text += i + 1 < described.constants.size() ? ",\n" : "\n";
  }
  return text + "  } " + described.name + ";\n\n";
}

std::string RecordText(const Record& described) {
  std::string text = "  typedef [uuid(" + GuidText(described.guid, false) + ")" + Help(described.help) +
                     "]\n  struct tag" + described.name + " {\n";
  for (const Field& field : described.fields) text += "    " + Declared(field.type) + " " + field.name + ";\n";
  return text + "  } " + described.name + ";\n\n";
}

}  // namespace

int PrintIdl(const Session& session) {
  Console& out = session.console;
  const Library& library = session.library;
  out << "// " << library.name << " " << std::to_string(library.major) << "." << std::to_string(library.minor)
      << ", as its type library describes it.\n\n[\n  uuid(" << GuidText(library.guid, false) << "),\n  version("
      << std::to_string(library.major) << "." << std::to_string(library.minor) << ")";
  if (!library.help.empty()) out << ",\n  helpstring(" << Quoted(library.help) << ")";
  out << "\n]\nlibrary " << library.name << "\n{\n  importlib(\"stdole2.tlb\");\n\n";
  for (const Class& its : library.classes) out << "  interface " << its.interface_name << ";\n";
  out << "\n";
  for (const Enumeration& described : library.enumerations) out << EnumerationText(described);
  for (const Record& described : library.records) out << RecordText(described);
  for (const Class& its : library.classes) out << InterfaceText(its);
  for (const Class& its : library.classes) out << ClassText(its);
  out << "}\n";
  return kExitDone;
}

}  // namespace Orvix::ctl
