#!/usr/bin/python3
"""Links of the documents lead to a file, and to a heading of it where they name one; each folder that a table of folders names is there.
The table of README.md names all; docs/README.md leads to all documents.

Usage: links.py PROJECT
"""

import pathlib
import re
import sys

BLOCK = re.compile(r"^( *)```.*?^\1```$", re.MULTILINE | re.DOTALL)
CODE = re.compile(r"`[^`\n]*`")
LINK = re.compile(r"\]\(([^)\s]+)\)")
HEADING = re.compile(r"^#{1,6} +(.*?) *$", re.MULTILINE)
FOLDER = re.compile(r"`([a-z]+)/[a-z/]*`")


def documents(project):
    found = [*project.glob("*.md"), *project.glob("*/*.md"), *project.glob("docs/*/*.md"), *project.glob("examples/**/*.md")]
    return sorted({document for document in found if document.relative_to(project).parts[0] != "build"})


def anchors(document):
    """As the pages that show Markdown make them of headings."""
    names = set()
    for heading in HEADING.findall(BLOCK.sub("", document.read_text(encoding="utf-8"))):
        text = re.sub(r"\[([^]]*)\]\([^)]*\)", r"\1", heading).replace("`", "").lower()
        name = re.sub(r"[^\w\- ]", "", text).replace(" ", "-")
        count = 0
        while (name if not count else f"{name}-{count}") in names:
            count += 1
        names.add(name if not count else f"{name}-{count}")
    return names


def links(document):
    return LINK.findall(CODE.sub("", BLOCK.sub("", document.read_text(encoding="utf-8"))))


def folders(document):
    """Those in the first column of its tables."""
    rows = re.findall(r"^\| (`[^|]*)\|", document.read_text(encoding="utf-8"), re.MULTILINE)
    return {folder for row in rows for folder in FOLDER.findall(row)}


def main():
    project = pathlib.Path(sys.argv[1]).resolve()
    count, mistakes = 0, []
    for document in documents(project):
        for link in links(document):
            if ":" in link:
                continue
            count += 1
            path, _, anchor = link.partition("#")
            target = document.parent / path if path else document
            if not target.exists():
                mistakes.append(f"{document.relative_to(project)} links to {link}, which is not there")
            elif anchor and anchor not in anchors(target):
                mistakes.append(f"{document.relative_to(project)} links to {link}: there is no such heading")
    there = {folder.name for folder in project.iterdir() if folder.is_dir() and folder.name != "build" and folder.name[0] != "."}
    named = {name: folders(project / name) for name in ("README.md", "CONTRIBUTING.md")}
    count += len(there)
    mistakes += [f"{name} names the folder {folder}/, which is not there" for name, found in named.items() for folder in sorted(found - there)]
    mistakes += [f"README.md does not name the folder {folder}/" for folder in sorted(there - named["README.md"])]
    entry = project / "docs/README.md"
    led_to = {(entry.parent / link.partition("#")[0]).resolve() for link in links(entry)}
    mistakes += [f"docs/README.md does not lead to {name.name}" for name in sorted(entry.parent.glob("*.md")) if name not in led_to | {entry}]
    mistakes += [] if count > 100 else [f"only {count} links and folders were found"]
    print("\n".join([*mistakes, f"{count} links and folders, {len(mistakes)} mistakes"]))
    return 1 if mistakes else 0


if __name__ == "__main__":
    sys.exit(main())
