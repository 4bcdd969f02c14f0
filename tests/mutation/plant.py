#!/usr/bin/env python3
"""How strong are the tests? Plants faults in a copy of the sources and counts those that no test sees.

All faults are compiled in at once; the environment variable ORVIX_FAULT wakes one of them, so that each costs
test runs only. Faults: a condition turned round, a statement left out, a bound moved by one, a truth returned
wrong. The same seed plants the same faults in the same sources.

    tests/mutation/plant.py --copy DIR [--count 200] [--seed 1] [--jobs 2] [--report FILE]

Exit code 0 when the run is complete, 1 when the tests fail without any fault.
"""
import argparse
import collections
import concurrent.futures
import os
import pathlib
import random
import re
import shutil
import signal
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
FOLDERS = ["frame", "text", "files", "containers", "desktop", "platform", "tools", "examples", "include/orvix/wrapper"]
# The programs most likely to see a fault come first; all others follow.
FIRST = {"tools": ["tools"], "examples": ["examples"], "include": ["wrapper", "tools"], "desktop": ["desktop", "platform"]}
HEADER = """#pragma once
#if __cplusplus >= 202002L
#include <cstdlib>
#include <type_traits>
inline int OrvixFaultAwake() {
  static const int number = [] { const char* text = std::getenv("ORVIX_FAULT"); return text ? std::atoi(text) : 0; }();
  return number;
}
constexpr bool OrvixFault(int number) { return !std::is_constant_evaluated() && OrvixFaultAwake() == number; }
#endif
"""
KEYWORDS = re.compile(r"^(return|throw|if|else|for|while|do|case|default|using|namespace|template|static|const|constexpr|"
                      r"struct|class|enum|friend|virtual|explicit|auto|delete|goto|break|continue|public|private)\b")


def balanced(text, start):
    """The index behind the parenthesis that closes the one at `start`, or -1."""
    depth = 0
    for at in range(start, len(text)):
        depth += {"(": 1, ")": -1}.get(text[at], 0)
        if depth == 0:
            return at + 1
    return -1


def variants(line):
    """Every (description, maker of the planted line) that one source line allows."""
    body = line.strip()
    if not body or body.startswith(("//", "#", "*", "template", "static_assert")):
        return
    found = re.match(r"(\s*(?:\} else )?(?:if|while) )\(", line)
    if found:
        start = found.end() - 1
        end = balanced(line, start)
        condition = line[start:end]
        if end > 0 and ";" not in condition and not re.search(r"[^=!<>]=[^=]", condition):
            yield "turned", lambda n: f"{line[:start]}(OrvixFault({n}) != static_cast<bool>{condition}){line[end:]}"
    if body.count("(") == body.count(")") and not KEYWORDS.match(body) and re.fullmatch(r"(\+\+|--)?[A-Za-z_][\w.:>\-\[\]*]*(\(.*\)| [-+|&]?= .+)?;", body):
        indent = line[: len(line) - len(line.lstrip())]
        yield "left out", lambda n: f"{indent}if (!OrvixFault({n})) {body}\n"
    for found in re.finditer(r" (<|<=|>|>=) (?=[\w(])", line):
        at = found.end()
        yield "bound moved", lambda n, at=at: f"{line[:at]}(OrvixFault({n}) ? 1 : 0) + {line[at:]}"
    for found in re.finditer(r" [-+] 1(?=[;),\]])", line):
        at = found.end()
        yield "one off", lambda n, at=at: f"{line[:at - 1]}(OrvixFault({n}) ? 0 : 1){line[at:]}"
    if found := re.fullmatch(r"(.*\breturn )(true|false);\n", line):
        yield "truth", lambda n: f"{found[1]}OrvixFault({n}) != {found[2]};\n"


Fault = collections.namedtuple("Fault", "number file line kind make text")


def choose(tree, count, seed):
    places = collections.defaultdict(list)
    for folder in FOLDERS:
        for path in sorted((tree / folder).rglob("*")):
            if path.suffix not in (".cpp", ".h", ".hpp") or "x11" in path.parts:
                continue
            for number, line in enumerate(path.read_text().splitlines(keepends=True)):
                for kind, make in variants(line):
                    places[folder].append((path, number, kind, make, line.strip()))
    total = sum(map(len, places.values()))
    chance = random.Random(seed)
    chosen = []
    for folder, candidates in places.items():
        share = max(8, round(count * len(candidates) / total))
        taken = set()
        chance.shuffle(candidates)
        for candidate in candidates:
            if len(taken) < share and candidate[:2] not in taken:  # one fault a line
                taken.add(candidate[:2])
                chosen.append(candidate)
    return [Fault(i + 1, *each) for i, each in enumerate(chosen)]


def plant(faults, originals):
    for path, lines in originals.items():
        planted = list(lines)
        for fault in faults:
            if fault.file == path:
                planted[fault.line] = fault.make(fault.number)
        content = "".join(planted)
        if path.read_text() != content:
            path.write_text(content)


def build(tree, faults, jobs):
    """Builds, leaving out the faults that do not compile; returns those that do."""
    header = tree / "orvix_fault.h"
    header.write_text(HEADER)
    originals = {fault.file: fault.file.read_text().splitlines(keepends=True) for fault in faults}
    subprocess.run(["cmake", "--preset", "development", f"-DCMAKE_CXX_FLAGS=-include {header} -w -Wno-error"],
                   cwd=tree, check=True, stdout=subprocess.DEVNULL)
    while True:
        plant(faults, originals)
        done = subprocess.run(["cmake", "--build", "--preset", "development", "--", "-k", "0", "--quiet", f"-j{jobs}"],
                              cwd=tree, text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        if done.returncode == 0:
            return faults
        wrong = {(str((tree / "build/development" / m[1]).resolve()), int(m[2]) - 1) for m in
                 re.finditer(r"(?m)^(?:In file included from |\s+from )?([^\s:]+):(\d+)[:,]", done.stdout)}
        kept = [fault for fault in faults if (str(fault.file.resolve()), fault.line) not in wrong]
        if len(kept) == len(faults):
            sys.exit("the copy does not build:\n" + done.stdout[-4000:])
        faults = kept


def passes(program, number, seconds):
    environment = dict(os.environ, ORVIX_FAULT=str(number))
    with subprocess.Popen([program, "--gtest_brief=1", "--gtest_fail_fast"], env=environment, stdin=subprocess.DEVNULL,
                          stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True) as process:
        try:
            return process.wait(seconds) == 0
        except subprocess.TimeoutExpired:
            return False
        finally:
            try:
                os.killpg(process.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--copy", type=pathlib.Path, required=True, help="where the copy of the sources goes")
    parser.add_argument("--count", type=int, default=200)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=2)
    parser.add_argument("--report", type=pathlib.Path)
    given = parser.parse_args()
    tree = given.copy.resolve()
    shutil.rmtree(tree, ignore_errors=True)
    tree.mkdir(parents=True)
    listed = subprocess.run(["git", "ls-files", "-z"], cwd=ROOT, check=True, stdout=subprocess.PIPE, text=True).stdout
    for name in filter(None, listed.split("\0")):
        if (ROOT / name).is_file():
            (tree / name).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy2(ROOT / name, tree / name)
    faults = build(tree, choose(tree, given.count, given.seed), given.jobs)
    programs = sorted((tree / "build/development/bin").glob("orvix_*_tests"))
    seconds = {}
    for program in programs:
        if not passes(program, 0, 600):
            print(f"{program.name} fails without any fault", file=sys.stderr)
            return 1
        seconds[program] = 300

    def look(fault):
        top = fault.file.relative_to(tree).parts[0]
        first = FIRST.get(top, [top])
        order = sorted(programs, key=lambda p: (p.name[6:-6] not in first, p.name == "orvix_x11_tests"))
        return fault, next((p.name for p in order if not passes(p, fault.number, seconds[p])), None)

    unseen = collections.Counter()
    planted = collections.Counter()
    lines = []
    with concurrent.futures.ThreadPoolExecutor(given.jobs) as pool:
        for fault, seen_by in pool.map(look, faults):
            place = fault.file.relative_to(tree)
            folder = place.parts[0]
            planted[folder] += 1
            unseen[folder] += seen_by is None
            lines.append(f"{seen_by or 'UNSEEN':24} {place}:{fault.line + 1} {fault.kind}: {fault.text}")
            print(lines[-1], flush=True)
    lines.append("")
    lines += [f"{folder:12} {planted[folder]:4} planted {unseen[folder]:4} unseen" for folder in sorted(planted)]
    lines.append(f"{'all':12} {sum(planted.values()):4} planted {sum(unseen.values()):4} unseen")
    print("\n".join(lines[-len(planted) - 2:]))
    if given.report:
        given.report.write_text("\n".join(lines) + "\n")
    return 0


if __name__ == "__main__":
    sys.exit(main())
