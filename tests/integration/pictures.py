#!/usr/bin/python3
"""Draws the pictures of the documents once more and compares: each has to be what its command draws now.

Usage: pictures.py [--write] BENCH DOCUMENTS

The command is a line of a document, "qzaudio-bench ... -o pictures/NAME.svg"; BENCH is called in its place, in the folder of the documents. A picture
without a command, or one that no document shows, is a mistake, too. With --write the pictures are renewed.
"""

import pathlib
import re
import shlex
import subprocess
import sys
import tempfile

COMMAND = re.compile(r"^ *qzaudio-bench (.* -o (pictures/[^ ]+\.svg))(?: +#.*)?$", re.MULTILINE)
SHOWN = re.compile(r"!\[[^]]*\]\((pictures/[^)]+\.svg)\)")


def drawn(bench, documents, arguments, name):
    """What the command writes into the picture."""
    with tempfile.TemporaryDirectory() as folder:
        file = pathlib.Path(folder) / pathlib.Path(name).name
        words = [str(file) if word == name else word for word in shlex.split(arguments)]
        run = subprocess.run([bench, *words], cwd=documents, capture_output=True, text=True, check=False)
        if run.returncode != 0:
            sys.exit(f"qzaudio-bench {arguments}\nends with {run.returncode}: {run.stdout}{run.stderr}")
        return file.read_bytes()


def main():
    is_renewed = "--write" in sys.argv[1:]
    program, folder = [word for word in sys.argv[1:] if word != "--write"]
    bench = pathlib.Path(program).absolute()
    documents = pathlib.Path(folder)
    text = "\n".join(document.read_text(encoding="utf-8") for document in sorted(documents.glob("*.md")))
    commands = {name: arguments for arguments, name in COMMAND.findall(text)}
    if not commands:
        sys.exit(f"no document in {documents} draws a picture")
    mistakes = 0
    for name, arguments in commands.items():
        picture = documents / name
        is_there = picture.is_file()
        now = drawn(bench, documents, arguments, name)
        if is_there and picture.read_bytes() == now:
            continue
        if is_renewed:
            picture.parent.mkdir(exist_ok=True)
            picture.write_bytes(now)
            print(f"{picture} is new")
        else:
            mistakes += 1
            print(f"{picture} {'is not what its command draws now' if is_there else 'is missing'}; tools/pictures renews it")
    shown = set(SHOWN.findall(text))
    there = {str(picture.relative_to(documents)) for picture in documents.glob("pictures/*.svg")}
    for names, matter in (
        (commands.keys() - shown, "is shown in no document"),
        ((shown | there) - commands.keys(), "is drawn by no command of a document"),
    ):
        for name in sorted(names):
            mistakes += 1
            print(f"{documents / name} {matter}")
    print(f"{len(commands)} pictures, {mistakes} mistakes")
    return 1 if mistakes else 0


if __name__ == "__main__":
    sys.exit(main())
