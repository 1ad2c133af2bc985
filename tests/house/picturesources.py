#!/usr/bin/python3
"""Pictures in docs/ that nobody can draw within a test are those of their sources, and each picture is shown.

Usage: picturesources.py PROJECT
       picturesources.py --record FOLDER PROJECT

Beside such pictures, in FOLDER, stands a record: the checksum of each picture and of each file that gives it its looks. The tool that draws them writes
it with --record; without, it is compared. What the models of the window changed, tools/window-pictures --check tells, which takes longer. What a test does
draw is a line of a document, "qzaudio-bench ... -o pictures/NAME.svg".
"""

import hashlib
import pathlib
import re
import sys

RECORD = "sources.txt"

# By the folder of the pictures: what draws them, and from what.
DRAWN = {
    "docs/pictures/window": (
        "tools/window-pictures",
        ["window/*.js", "window/*.qml", "window/pictures.cpp", "window/qmldir", "window/rooms/*.qml", "window/window.qrc", "tools/window-pictures"],
    ),
    "docs/performance": (
        "benchmarks/report (--again: from what was measured last)",
        ["docs/performance.md", "benchmarks/reports/drawings.py", "benchmarks/reports/goals.py", "benchmarks/reports/plots.py"],
    ),
}
PICTURES = (".png", ".svg")
COMMAND = re.compile(r"^ *qzaudio-bench .* -o (pictures/[^ ]+\.svg)", re.MULTILINE)
SHOWN = re.compile(r"!\[[^]]*\]\(([^)#]+)\)")
LINKED = re.compile(r"\]\(([^)#]+\.(?:png|svg))\)")


def record_of(project, folder):
    """The checksum of each picture in the folder, and of each source, by its path."""
    patterns = DRAWN[folder][1]
    files = [file for file in (project / folder).iterdir() if file.suffix in PICTURES]
    for pattern in patterns:
        found = sorted(project.glob(pattern))
        if not found:
            sys.exit(f"there is no {pattern}")
        files += found
    return {str(file.relative_to(project)): hashlib.sha256(file.read_bytes()).hexdigest() for file in files}


def differences(project, folder):
    """A line for each file that is not what it was when the pictures were drawn."""
    record = project / folder / RECORD
    lines = record.read_text(encoding="utf-8").splitlines() if record.is_file() else []
    then = {name: checksum for checksum, name in (line.split("  ", 1) for line in lines)}
    now = record_of(project, folder)
    for name in sorted(then.keys() | now.keys()):
        if name not in now:
            yield f"{name} is gone"
        elif name not in then:
            yield f"{name} is new"
        elif then[name] != now[name]:
            yield f"{name} has changed"


def shown(documents):
    """Pictures that documents show, and those that they lead to, as a set each."""
    pictures, targets = set(), set()
    for document in documents:
        text = document.read_text(encoding="utf-8")
        pictures |= {(document.parent / target).resolve() for target in SHOWN.findall(text)}
        targets |= {(document.parent / target).resolve() for target in LINKED.findall(text)}
    return pictures, targets


def mistakes_in(project):
    for folder, (tool, _) in DRAWN.items():
        for difference in differences(project, folder):
            yield f"{difference} since the pictures in {folder} were drawn; {tool} renews them"
    documents = [*project.glob("*.md"), *project.glob("*/*.md"), *project.glob("docs/*/*.md")]
    documents = [document for document in documents if document.relative_to(project).parts[0] != "build"]
    pictures, targets = shown(documents)
    for picture in sorted(pictures):
        if not picture.is_file():
            yield f"{picture} is shown by a document, but is not there"
    drawn = set()
    for document in project.glob("docs/*.md"):
        drawn |= {(document.parent / name).resolve() for name in COMMAND.findall(document.read_text(encoding="utf-8"))}
    there = [file.resolve() for file in (project / "docs").rglob("*") if file.suffix in PICTURES]
    for picture in there:
        if picture not in targets:
            yield f"{picture} is shown by no document"
        if picture not in drawn and str(picture.parent.relative_to(project)) not in DRAWN:
            yield f"{picture} is drawn by nothing that a test knows"
    if len(there) < 20:
        yield f"only {len(there)} pictures were found"


def main():
    words = sys.argv[1:]
    if words[0] == "--record":
        folder, project = words[1], pathlib.Path(words[2]).resolve()
        lines = [f"{checksum}  {name}\n" for name, checksum in sorted(record_of(project, folder).items())]
        (project / folder / RECORD).write_text("".join(lines), encoding="utf-8")
        return 0
    mistakes = list(mistakes_in(pathlib.Path(words[0]).resolve()))
    print("\n".join([*mistakes, f"{len(mistakes)} mistakes"]))
    return 1 if mistakes else 0


if __name__ == "__main__":
    sys.exit(main())
