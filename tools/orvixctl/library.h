// The type library as plain data, read once: every class with its members in
// slot order, the enumerations and the records.
#ifndef ORVIX_TOOLS_ORVIXCTL_LIBRARY_H
#define ORVIX_TOOLS_ORVIXCTL_LIBRARY_H

#include <string>
#include <string_view>
#include <vector>

#include "orvix/orvix.hpp"

namespace Orvix::ctl {

// The type of a parameter, result or field.
struct Type {
  enum class User { kNone, kEnumeration, kRecord, kInterface };
  // As a VARIANT holds it, VT_ARRAY included: VT_I4 for an enumeration, VT_RECORD
  // for a record, VT_DISPATCH for an object; VT_VOID for no result.
  VARTYPE vt = VT_VOID;
  bool by_reference = false;
  User user = User::kNone;
  std::string user_name;  // of the enumeration, record or interface
};

struct Parameter {
  std::string name;
  Type type;
  USHORT flags = 0;  // PARAMFLAG_
  Value default_value;

  [[nodiscard]] bool IsOptional() const { return (flags & PARAMFLAG_FOPT) != 0; }
  [[nodiscard]] bool HasDefault() const { return (flags & PARAMFLAG_FHASDEFAULT) != 0; }
  [[nodiscard]] bool IsWritten() const { return (flags & PARAMFLAG_FOUT) != 0; }
  // Written only: what the caller hands in does not matter.
  [[nodiscard]] bool IsOutputOnly() const { return IsWritten() && (flags & PARAMFLAG_FIN) == 0; }
};

struct Member {
  std::string name;
  std::string help;
  MEMBERID id = 0;
  INVOKEKIND kind = INVOKE_FUNC;
  WORD flags = 0;  // FUNCFLAG_
  int slot = 0;    // 1 is the first after the slots of IDispatch
  std::vector<Parameter> parameters;
  Type result;
};

struct Class {
  std::string name;
  std::string help;
  GUID clsid{};
  WORD flags = 0;  // TYPEFLAG_
  std::string interface_name;
  GUID iid{};
  WORD interface_flags = 0;
  std::vector<Member> members;

  // The accessor of that name and one of the kinds (INVOKE_ flags together);
  // null when there is none. Names ignore case.
  [[nodiscard]] const Member* Find(std::string_view member, int kinds) const;
  // The accessor that stands for the object: dispatch identifier 0, else the one
  // that a browser shows first; null when the class has neither.
  [[nodiscard]] const Member* Default(int kinds) const;
};

struct Constant {
  std::string name;
  std::string help;
  LONG value = 0;
};
struct Enumeration {
  std::string name;
  std::string help;
  GUID guid{};
  std::vector<Constant> constants;
};

struct Field {
  std::string name;
  Type type;
};
struct Record {
  std::string name;
  std::string help;
  GUID guid{};
  std::vector<Field> fields;
};

struct Library {
  std::string name;
  std::string help;
  GUID guid{};
  WORD major = 0;
  WORD minor = 0;
  std::vector<Class> classes;
  std::vector<Enumeration> enumerations;
  std::vector<Record> records;

  // By name without regard to case, "Orvix." in front allowed; null when unknown.
  [[nodiscard]] const Class* FindClass(std::string_view class_name) const;
  // The class behind an interface name ("_classString").
  [[nodiscard]] const Class* ClassOfInterface(std::string_view interface_name) const;
  [[nodiscard]] const Enumeration* FindEnumeration(std::string_view enumeration) const;
  [[nodiscard]] const Record* FindRecord(std::string_view record) const;
};

// Error as the type library reports it.
[[nodiscard]] Library ReadLibrary(ITypeLib& types);

}  // namespace Orvix::ctl

#endif
