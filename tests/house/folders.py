#!/usr/bin/python3
"""Each folder that the tables of README.md and CONTRIBUTING.md name is there, README.md names all, and docs/README.md leads to all documents.

Usage: folders.py PROJECT
"""

import pathlib
import re
import sys

ROW = re.compile(r"^\| (`[^|]*)\|", re.MULTILINE)
FOLDER = re.compile(r"`([a-z]+)/[a-z/]*`")
LINK = re.compile(r"\]\(([^)#\s]+)")


def mistakes_in(project):
    there = {folder.name for folder in project.iterdir() if folder.is_dir() and folder.name != "build" and folder.name[0] != "."}
    for name in ("README.md", "CONTRIBUTING.md"):
        rows = ROW.findall((project / name).read_text(encoding="utf-8"))
        named = {folder for row in rows for folder in FOLDER.findall(row)}
        if len(named) < 8:
            yield f"{name}: only {len(named)} folders were found in its tables"
        for folder in sorted(named - there):
            yield f"{name} names the folder {folder}/, which is not there"
        for folder in sorted(there - named if name == "README.md" else ()):
            yield f"{name} does not name the folder {folder}/"
    entry = project / "docs/README.md"
    led_to = {(entry.parent / link).resolve() for link in LINK.findall(entry.read_text(encoding="utf-8"))}
    for document in sorted({*entry.parent.glob("*.md")} - led_to - {entry}):
        yield f"docs/README.md does not lead to {document.name}"


def main():
    mistakes = list(mistakes_in(pathlib.Path(sys.argv[1]).resolve()))
    print("\n".join([*mistakes, f"{len(mistakes)} mistakes"]))
    return 1 if mistakes else 0


if __name__ == "__main__":
    sys.exit(main())
