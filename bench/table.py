#!/usr/bin/env python3
"""Runs the benchmark programs and prints one table: what was measured, against what,
the ratio, and the bar that it has to stay under.

    bench/table.py FOLDER [--quick] [--accept]

FOLDER holds the programs. Each row's two times are of the same run. The column "last"
is the ratio of the last accepted run, which --accept replaces (bench/accepted.json).
Exit code 1 when a ratio is above its bar by more than a tenth, which the noise of a
machine explains.
"""
import argparse
import json
import os
import statistics
import subprocess
import sys
import tempfile
from pathlib import Path

# What, program, measured, against, bar (None: nothing is promised). With "alone" each
# time is the first one of a process of its own.
ROWS = [
    ("call with a kept identifier / through the vtable", "frame", "CallWithKeptIdentifier", "CallThroughVtable", 2.4),
    ("count of 10^6 elements / reading the memory", "frame", "CountLargeList/1", "ReadSameMemory/1", None),
    ("last of 10^6 elements / reading the memory", "frame", "LastOfLargeList/1", "ReadSameMemory/1", None),
    ("list a directory / bare loop", "frame", "ListDirectory", "BareDirectoryLoop", None),
    ("AddElement / virtual call with one copy", "text", "AddElement", "JoinByVirtualCall", 1.3),
    ("MyReplace, 5 units / copying the result", "text", "ReplaceFive/no_case:0", "CopyLimit", 6),
    ("MyReplace without case / copying the result", "text", "ReplaceFive/no_case:1", "CopyLimit", 7),
    ("MyReplace, 5 units / copying, alone in a process", "text", "ReplaceFive/no_case:0", "CopyLimit", 9, "alone"),
    ("Min of longs / plain loop", "text", "Min", "PlainMin", None),
    ("Min of a mixture / std::variant", "text", "MixedMin", "VariantMin", 1.5),
    ("Append / narrowing loop, growing", "containers", "Append/presized:0", "NarrowLoop/presized:0", 1.2),
    ("Append / narrowing loop, presized", "containers", "Append/presized:1", "NarrowLoop/presized:1", 1.2),
    ("classString.Value of 1 MB / widening loop", "containers", "WholeValue", "WidenLoop", 1.5),
    ("push and pop of 10^6 / vector of variants", "containers", "PushPop/1000000", "VariantVector/1000000", None),
    ("Create / CreateInstance", "wrapper", "Create", "CreateInstance", 1.5),
    ("UTF-8 read, ASCII / widening loop", "wrapper", "ReadUtf8/accents:0", "WidenEveryByte", 1.5),
    ("UTF-8 written, ASCII / widening loop", "wrapper", "WriteUtf8/accents:0", "WidenEveryByte", 1.5),
    ("4000 files stored / plain program", "directories", "StoreFiles/member:1/real_time", "StoreFiles/member:0/real_time",
     1.3),
    ("missing name of 50000 / existing name", "directories", "FileExists/entries:50000/there:0",
     "FileExists/entries:50000/there:1", 1.5),
    ("100 files copied into 10^5 / plain program", "directories", "CopyInto/service:1/iterations:200/real_time",
     "CopyInto/service:0/iterations:200/real_time", 1.5),
    ("text of 64 MiB stored / plain program", "storing", "StoreData", "PlainConvertAndWrite", None),
    ("text of 64 MiB read / plain program", "storing", "GetFile", "PlainReadAndConvert", None),
    ("small files copied / cp", "shell", "CopySmallFiles/service/real_time", "CopySmallFiles/cp/real_time", None),
    ("many files deleted / rm", "shell", "DeleteManyFiles/service/real_time", "DeleteManyFiles/rm/real_time", None),
    ("registry value opened, read, closed / SELECT", "registry", "OpenReadClose", "PlainSelect", 1.5),
    ("registry value written / plain transaction", "registry", "SetOne", "PlainUpdate", 1.2),
]
# What, program, benchmark, counter, bar.
COUNTERS = [
    ("first read of 10^5 registry values, ms", "registry", "SecondProcess/100000/iterations:20", "most_ms", 20),
    ("memory for 10^5 registry values, kB", "registry", "SecondProcess/100000/iterations:20", "most_kB", 4096),
]
PROGRAMS = ["frame", "text", "containers", "wrapper", "directories", "storing", "shell", "desktop", "registry", "growth"]


def run(folder, program, *options):
    command = [str(folder / f"{program}_benchmark"), "--benchmark_format=json", *options]
    told = subprocess.run(command, check=True, capture_output=True, text=True)
    results = json.loads(told.stdout)["benchmarks"] if told.stdout.strip() else []
    for result in results:
        if result.get("error_occurred"):
            sys.exit(f"{program}: {result['name']}: {result['error_message']}")
    return results


def nanoseconds(result):
    unit = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}[result["time_unit"]]
    time = result["real_time"] if "real_time" in result["name"] else result["cpu_time"]
    return time * unit


def alone(folder, program, name):
    times = []
    for _ in range(9):
        [result] = run(folder, program, f"--benchmark_filter=^{name}$", "--benchmark_min_time=0")
        times.append(nanoseconds(result))
    return statistics.median(times)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("folder", type=Path)
    parser.add_argument("--quick", action="store_true", help="less precise, in about a minute")
    parser.add_argument("--accept", action="store_true", help="keep this run to compare with")
    options = parser.parse_args()
    accepted_file = Path(__file__).parent / "accepted.json"
    accepted = json.loads(accepted_file.read_text()) if accepted_file.exists() else {}
    with tempfile.TemporaryDirectory() as home:
        os.environ["ORVIX_REGISTRY"] = home
        results = {}
        for program in PROGRAMS:
            print(f"running {program} ...", file=sys.stderr)
            least = "--benchmark_min_time=" + ("0.05" if options.quick else "0.3")
            for result in run(options.folder, program, least):
                results[program, result["name"]] = result
    table = []
    for what, program, measured, against, bar, *kind in ROWS:
        if kind:
            ratio = alone(options.folder, program, measured) / alone(options.folder, program, against)
        else:
            ratio = nanoseconds(results[program, measured]) / nanoseconds(results[program, against])
        table.append((what, ratio, bar))
    for what, program, name, counter, bar in COUNTERS:
        table.append((what, results[program, name][counter], bar))
    for (program, _), result in results.items():
        if program == "growth":
            table.append(("growth of " + result["label"] + ", exponent", result["exponent"], result["allowed"]))
    width = max(len(what) for what, _, _ in table)
    print(f"{'':{width}}  ratio    bar   last")
    missed = 0
    for what, ratio, bar in table:
        last = accepted.get(what)
        verdict = ""
        if bar is not None and ratio > bar:
            verdict = "  above" if ratio > 1.1 * bar else "  near"
            missed += ratio > 1.1 * bar
        print(f"{what:{width}}  {ratio:5.2f}  {'-' if bar is None else format(bar, '5.2f'):>5}  "
              f"{'-' if last is None else format(last, '5.2f'):>5}{verdict}")
    if options.accept:
        accepted_file.write_text(json.dumps({what: round(ratio, 3) for what, ratio, _ in table}, indent=1) + "\n")
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())
