#!/usr/bin/env python3
"""Sorts a folder of downloads by rules.

    tidy.py FOLDER [--rules "jpg,png=Pictures;pdf=Papers"] [--dry-run]

Each rule names extensions and the folder that takes them; what no rule names stays.
Nothing is replaced: a file whose name is taken gets another one.
"""

import argparse
import sys
from collections.abc import Iterator
from pathlib import Path

import orvix

RULES = "jpg,jpeg,png,gif,svg=Pictures;pdf,odt,txt,md=Papers;zip,gz,xz,tar=Archives;mp3,ogg,flac=Music"


def rules_of(text: str) -> dict[str, str]:
    """Folders by extension."""
    folders = {}
    for i in range(1, orvix.LengthList(text, ";") + 1):
        rule = orvix.GetElement(text, i, ";")
        names, folder = orvix.GetElement(rule, 1, "="), orvix.GetElement(rule, 2, "=")
        for k in range(1, orvix.LengthList(names, ",") + 1):
            folders[orvix.GetElement(names, k, ",").lower()] = folder
    return folders


def plan(folder: str, folders: dict[str, str]) -> Iterator[tuple[orvix.FileType, str]]:
    """What goes where: (FileType, folder) in the order of the names."""
    listing = orvix.classDirectory()
    listing.Init(folder + "*.*", 0)  # plain files
    if listing.lNumFiles > 1:
        listing.SortFilesName(True)
    for i in range(1, listing.lNumFiles + 1):
        file = listing.File(i)
        if file.sExtension in folders:
            yield file, folders[file.sExtension]


def move(files: list[orvix.FileType], target: str) -> bool:
    operation = orvix.CSHFileOp()
    operation.AllowUndo = True
    operation.RenameOnCollision = True
    operation.ConfirmMakeDir = False
    for file in files:
        operation.AddSourceFile(file.sCompleteFilename)
    operation.AddDestFile(target)
    return operation.MoveFiles()


def progress(name: str, items: int, items_total: int, done: int, total: int) -> int:
    if sys.stderr.isatty() and total:
        print(f"\r\033[K{100 * done // total:3} %  {name}", end="", file=sys.stderr)
    return 0


def main() -> int:
    words = argparse.ArgumentParser(description="Sorts a folder of downloads by rules.")
    words.add_argument("folder", type=Path)
    words.add_argument("--rules", default=RULES)
    words.add_argument("--dry-run", action="store_true", help="only show what would go where")
    wanted = words.parse_args()
    if not wanted.folder.is_dir():
        words.error(f"{wanted.folder} is no folder")
    folder = "Z:" + str(wanted.folder.resolve()).replace("/", "\\") + "\\"

    by_target: dict[str, list[orvix.FileType]] = {}
    for file, target in plan(folder, rules_of(wanted.rules)):
        by_target.setdefault(target, []).append(file)
    failed = False
    for target, files in sorted(by_target.items()):
        for file in files:
            print(f"{target:12} {file.lSize:>12,}  {file.dDate:%Y-%m-%d}  {file.sFile}")
        if not wanted.dry_run:
            orvix.MakeDir(folder + target)
            with orvix.host(FileProgress=progress):
                failed = not move(files, folder + target) or failed
    if sys.stderr.isatty() and by_target and not wanted.dry_run:
        print("\r\033[K", end="", file=sys.stderr)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
