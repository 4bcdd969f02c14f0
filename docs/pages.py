#!/usr/bin/env python3
"""The pages that are made: the reference from docs/members and the type library,
the manual page of the run-time from its header.

    docs/pages.py write    writes docs/reference/*.md and docs/man/orvix.3
    docs/pages.py check    says what is missing, stale or pointing nowhere
    docs/pages.py run      runs every example and compares what it prints

ORVIX_BIN names the folder of orvixctl, else build/development/bin.
"""

import json
import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

DOCS = Path(__file__).resolve().parent
ORVIXCTL = Path(os.environ.get("ORVIX_BIN", DOCS.parent / "build/development/bin")) / "orvixctl"
CLASSES = ["classOrvix", "classFilename", "classDirectory", "classString", "classStack", "classStackObject",
           "CSHFileOp"]
NOTE = "<!-- Made by docs/pages.py from docs/members and the type library: change those. -->\n"


def orvixctl(*words, **options):
    return subprocess.run([ORVIXCTL, *words], capture_output=True, text=True, **options)


def described(name):
    return json.loads(orvixctl("describe", name, "--json", check=True).stdout)


def sections(page):
    """The introduction, and the words below each "## NAME", in their order."""
    parts = re.split(r"^## (\w+)[ \t]*$", page, flags=re.M)
    return parts[0], dict(zip(parts[1::2], parts[2::2]))


# --- The reference -----------------------------------------------------------------


def type_words(parameter, kind):
    words = [parameter["type"]]
    if parameter["byReference"]:
        words.append("read and written" if parameter["written"] else "by reference")
    if parameter["optional"]:
        default = parameter.get("default")
        words.append("optional" if default is None else f"optional, else {default_words(parameter)}")
    if kind != "method" and parameter["name"] == "newValue":
        words.append("the value that is put")
    return ", ".join(words)


def default_words(parameter):
    default = parameter["default"]
    if isinstance(default, bool):
        return "True" if default else "False"
    return '"' + default + '"' if isinstance(default, str) else str(default)


def signature(accessor):
    shown = []
    for parameter in accessor["parameters"]:
        star = "*" if parameter["byReference"] else ""
        text = f"{parameter['type']}{star} {parameter['name']}"
        if "default" in parameter:
            text += f" = {default_words(parameter)}"
        shown.append(f"[{text}]" if parameter["optional"] else text)
    result = accessor["result"] or "void"
    kind = "" if accessor["kind"] == "method" else "   // " + accessor["kind"].removeprefix("property ")
    return f"{result} {accessor['name']}({', '.join(shown)}){kind}"


def member_section(name, accessors, words):
    parameters = {p["name"]: type_words(p, a["kind"]) for a in accessors for p in a["parameters"]}

    def with_type(match):
        return f"- `{match[1]}` ({parameters[match[1]]}):" if match[1] in parameters else match[0]

    words = re.sub(r"^- `(\w+)`:", with_type, words.strip(), flags=re.M)
    slots = ", ".join(str(a["slot"]) for a in accessors)
    lines = [f"## {name}", "", "```idl", *[signature(a) for a in accessors], "```", "", words, "",
             f"Slot {slots}, dispatch identifier {accessors[0]['id']}."]
    if accessors[0]["help"]:
        lines[-1] += f" Help string: \"{accessors[0]['help']}\""
    return "\n".join(lines) + "\n"


def grouped(members):
    groups = {}
    for accessor in members:
        groups.setdefault(accessor["name"], []).append(accessor)
    return groups


def class_page(name):
    library = described(name)
    introduction, words = sections((DOCS / "members" / f"{name}.md").read_text())
    groups = grouped(library["members"])
    index = " · ".join(f"[{member}](#{member.lower()})" for member in groups)
    facts = f"Class `{library['clsid']}`, interface `{library['interface']}` `{library['iid']}`."
    page = [NOTE, introduction.strip(), "", facts, "", index, ""]
    page += [member_section(member, accessors, words.get(member, "")) for member, accessors in groups.items()]
    return "\n".join(page)


def reference_pages():
    pages = {DOCS / "reference" / f"{name}.md": class_page(name) for name in CLASSES}
    types = (DOCS / "members/types.md").read_text()
    pages[DOCS / "reference/types.md"] = NOTE + "\n" + types
    links = "\n".join(f"- [{name}]({name}.md)" for name in CLASSES)
    pages[DOCS / "reference/index.md"] = (
        NOTE + "\n# Reference\n\nOne page a class, one section a member. Examples are scripts for `orvixctl run`; "
        "what they print stands behind `#>`.\n\n" + links + "\n- [Enumerations and records](types.md)\n")
    return pages


# --- The manual page of the run-time -------------------------------------------------


def roff(text):
    text = text.replace("\\", "\\e").replace("'", "\\(aq").replace('"', "\\(dq")
    return "\\&" + text if text.startswith(".") else text


def manual_page():
    page = [r""".Dd November 23, 2026
.Dt ORVIX 3
.Os
.Sh NAME
.Nm orvix
.Nd functions of the run-time
.Sh LIBRARY
.Pa liborvixrt.so
.Pq Fl lorvixrt
.Sh SYNOPSIS
.In orvix/runtime.h
.Sh DESCRIPTION
A function that gives an HRESULT returns 0 when all went well; a failure is 0x800A0000 plus
the error number, with its description as the error info of the thread.
Texts are UTF-16.
.Sh FUNCTIONS"""]
    comment = []
    lines = iter((DOCS.parent / "include/orvix/runtime.h").read_text().splitlines())
    for line in lines:
        if match := re.match(r"// --- (.*?) -+$", line):
            page.append(".Ss " + roff(match[1]))
            comment = []
        elif line.startswith("//"):
            comment.append(roff(line[2:].strip()))
        elif line.startswith("ORVIX_API"):
            while ";" not in line:
                line += " " + next(lines).strip()
            declaration = re.sub(r"ORVIX_API |ORVIX_CALL ", "", line)
            page += [".Bl -tag -width Ds", ".It Li \\&" + roff(declaration), *comment, ".El"]
            comment = []
        elif not line.strip():
            comment = []
    page.append(".Sh SEE ALSO\n.Xr orvixctl 1 ,\n.Xr orvix 7")
    return "\n".join(page) + "\n"


# --- Checks --------------------------------------------------------------------------


def all_pages():
    return {**reference_pages(), DOCS / "man/orvix.3": manual_page()}


def missing_words():
    for name in CLASSES:
        _, words = sections((DOCS / "members" / f"{name}.md").read_text())
        groups = grouped(described(name)["members"])
        for member, accessors in groups.items():
            text = words.pop(member, "")
            if not text.strip():
                yield f"{name}.{member} has no words"
            told = re.findall(r"^- `(\w+)`:", text, flags=re.M)
            wanted = {p["name"] for a in accessors for p in a["parameters"]} - {"newValue"}
            yield from (f"{name}.{member}: {p} has no words" for p in wanted - set(told))
            yield from (f"{name}.{member}: there is no parameter {p}" for p in set(told) - wanted - {"newValue"})
        yield from (f"{name} has no member {member}" for member in words)


def broken_links():
    for page in [DOCS.parent / "README.md", *DOCS.rglob("*.md")]:
        text = re.sub(r"```.*?```", "", page.read_text(), flags=re.S)
        for target in re.findall(r"\]\(([^)#:]+)(?:#[^)]*)?\)", text):
            if not (page.parent / target).exists():
                yield f"{page.relative_to(DOCS.parent)}: {target} is not there"


def stale_pages():
    for path, text in all_pages().items():
        if not path.exists() or path.read_text() != text:
            yield f"{path.relative_to(DOCS.parent)} is not what `./dev docs` writes"


def examples(page):
    """The name and lines of each example, the name being that of its section."""
    name = page.stem
    for match in re.finditer(r"^## (\w+)|^```orvix\n(.*?)^```", page.read_text(), flags=re.M | re.S):
        if match[1]:
            name = f"{page.stem}.{match[1]}"
        else:
            yield name, match[2]


def failing_examples():
    count = 0
    for page in sorted(DOCS.rglob("*.md")):
        if page.parent.name == "reference":
            continue
        for name, script in examples(page):
            count += 1
            wanted = [line[3:] for line in script.splitlines() if line.startswith("#>")]
            with tempfile.TemporaryDirectory() as folder:
                (Path(folder) / "t").mkdir()
                place = {**os.environ, "ORVIX_DRIVES": f"T={folder}/t", "ORVIX_REGISTRY": f"{folder}/registry",
                         "XDG_DATA_HOME": folder, "ORVIX_MESSAGES": "off"}
                ran = orvixctl("run", "-", input=script, env=place, timeout=60)
            if ran.stdout.splitlines() != wanted or ran.returncode != 0:
                yield f"{name}:\n{script}printed\n{ran.stdout}{ran.stderr}"
    if count == 0:
        yield "there are no examples"


def main():
    command = sys.argv[1] if len(sys.argv) == 2 else ""
    if command == "write":
        for path, text in all_pages().items():
            path.parent.mkdir(exist_ok=True)
            path.write_text(text)
        return 0
    if command == "check":
        wrong = [*missing_words(), *stale_pages(), *broken_links()]
    elif command == "run":
        wrong = list(failing_examples())
    else:
        print(__doc__, file=sys.stderr)
        return 2
    print("\n".join(wrong))
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
