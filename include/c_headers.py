#!/usr/bin/env python3
"""The headers for C: the same types, constants and functions, and each interface as a
struct that points at its table of functions.

    include/c_headers.py write    writes include/orvix/c/*.h from the headers beside it
    include/c_headers.py check    says which of them are not what it writes
"""

import re
import sys
from pathlib import Path

PUBLIC = Path(__file__).resolve().parent / "orvix"
HEADERS = {  # the header for C, and what it is made from
    "automation": ["automation/types.h", "automation/type_description.h", "automation/interfaces.h", "automation.h"],
    "orvix": ["orvix.h"],
    "runtime": ["runtime.h"],
    "host": ["host.h"],
    "platform": ["platform.h"],
}
PRELUDE = """#include <stddef.h>
#include <stdint.h>
#include <uchar.h>

#define ORVIX_CALL
#define ORVIX_API extern __attribute__((visibility("default")))
#define SUCCEEDED(result) ((HRESULT)(result) >= 0)
#define FAILED(result) ((HRESULT)(result) < 0)
"""
ROOT_KEY = """static inline HKEY MakeRootKey(LONG value) {
  return (HKEY)(intptr_t)value;
}
"""
methods = {}  # of each interface, its bases' first


def guid(match):
    digits = match[3].replace("-", "")
    rest = ", ".join(f"0x{digits[i:i + 2]}" for i in range(16, 32, 2))
    return f"static const {match[1]} {match[2]} = {{0x{digits[:8]}, 0x{digits[8:12]}, 0x{digits[12:16]}, {{{rest}}}}};"


def constant(match):
    value = re.sub(r"MakeResult\((\w+)\)", r"\1", match[3])
    return f"#define {match[2]} (({match[1]})({value})){match[4]}"


def interface(match):
    name, base, body = match[1], match[2], match[3]
    own = []
    for line in re.findall(r"virtual (.*?) = 0;", body, flags=re.S):
        result, member, parameters = re.match(r"(.*?) ORVIX_CALL (\w+)\((.*)\)", re.sub(r"\s+", " ", line)).groups()
        own.append((result, member, parameters))
    methods[name] = methods.get(base, []) + own
    rows = "\n".join(f"  {result} (ORVIX_CALL *{member})({name}* self{', ' if parameters else ''}{parameters});"
                     for result, member, parameters in methods[name])
    return (f"typedef struct {name} {name};\ntypedef struct {name}Vtbl {{\n{rows}\n}} {name}Vtbl;\n"
            f"struct {name} {{\n  const {name}Vtbl* lpVtbl;\n}};")


def in_c(text):
    text = re.sub(r"#if defined\(__GNUC__\)\n(#pragma[^\n]*\n)+#endif\n", "", text)
    text = re.sub(r"#ifndef (ORVIX_\w+_H)\n#define \1\n", "", text)
    text = re.sub(r"\n#ifndef __cplusplus\n.*?\n#else\n", "\n", text, flags=re.S)
    text = re.sub(r"\n#endif[^\n]*\n*$", "\n", text)
    text = re.sub(r"\n#endif  // __cplusplus\n*$", "\n", text)
    text = re.sub(r"#if defined\(_WIN32\).*?#endif\n", "", text, flags=re.S)
    text = re.sub(r"namespace Orvix \{\n\n// A GUID from.*?\}  // namespace Orvix\n", "", text, flags=re.S)
    text = re.sub(r"#include [^\n]*\n|^namespace Orvix \{\n|^\}  // namespace Orvix\n", "", text, flags=re.M)
    text = re.sub(r"^inline HKEY MakeRootKey.*?^}\n", ROOT_KEY, text, flags=re.M | re.S)
    text = re.sub(r"^constexpr [^\n]*\n|^  friend [^\n]*\n", "", text, flags=re.M)
    text = re.sub(r"static_cast<(\w+)>\((\w+)\)", r"(\1)\2", text.replace("std::", ""))
    text = re.sub(r"^struct (\w+)__;\nusing \w+ = \w+\*;", r"typedef struct \1__* \1;", text, flags=re.M)
    text = re.sub(r"^using (\w+) = const (\w+)&;", r"typedef const \2* \1;", text, flags=re.M)
    text = re.sub(r"^using (\w+) = ([^;]+);", r"typedef \2 \1;", text, flags=re.M)
    text = re.sub(r'^inline constexpr (\w+) (\w+) =\s+(?:Orvix::operator""_guid\()?"([0-9A-F-]+)"(?:_guid|, 36\));', guid,
                  text, flags=re.M)
    text = text.replace("inline constexpr IID IID_NULL = {};", "static const IID IID_NULL = {0};")
    text = re.sub(r"^inline constexpr (\w+) (\w+) =\s+([^;]+);([^\n]*)", constant, text, flags=re.M)
    text = re.sub(r"^enum (\w+) : (\w+) \{(.*?)\};", r"typedef \2 \1;\nenum {\3};", text, flags=re.M | re.S)
    text = re.sub(r"^struct (\w+)(?: : (\w+))? \{\n((?:  virtual .*?= 0;\n)+)\};", interface, text, flags=re.M | re.S)
    text = re.sub(r"^(struct|union) (\w+);", r"typedef \1 \2 \2;", text, flags=re.M)
    text = re.sub(r"^(struct|union) (\w+) \{(?!\n  const \2Vtbl)", r"typedef \1 \2 \2;\n\1 \2 {", text, flags=re.M)
    text = re.sub(r"^static_assert\((.*)\);", r'_Static_assert(\1, "layout");', text, flags=re.M)
    text = re.sub(r"(ORVIX_CALL \w+)\(\);", r"\1(void);", text)
    text = re.sub(r"^// ?-{20,}\n", "", text, flags=re.M)
    text = re.sub(r"^((?:.*[^:])?)//(?!/) ?(.*)$", r"\1/* \2 */", text, flags=re.M)
    return re.sub(r"\n{3,}", "\n\n", text).strip()


def written():
    for name, sources in HEADERS.items():
        parts = [in_c((PUBLIC / source).read_text()) for source in sources]
        guard = f"ORVIX_C_{name.upper()}_H"
        needs = PRELUDE if name == "automation" else '#include "orvix/c/automation.h"\n'
        if name == "runtime":
            needs += '#include "orvix/version.h"\n'
        yield PUBLIC / "c" / f"{name}.h", (
            f"/* clang-format off */\n/* Made by c_headers.py from {', '.join('orvix/' + s for s in sources)}. */\n"
            f"#ifndef {guard}\n#define {guard}\n\n{needs}\n" + "\n\n".join(parts) + "\n\n#endif\n")


def main():
    command = sys.argv[1] if len(sys.argv) == 2 else ""
    if command == "write":
        (PUBLIC / "c").mkdir(exist_ok=True)
        for path, text in written():
            path.write_text(text)
        return 0
    if command == "check":
        stale = [str(path) for path, text in written() if not path.exists() or path.read_text() != text]
        print("\n".join(stale))
        return 1 if stale else 0
    print(__doc__, file=sys.stderr)
    return 2


if __name__ == "__main__":
    sys.exit(main())
