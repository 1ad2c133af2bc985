#!/usr/bin/python3
"""Runs the examples of a document, in a folder of their own, and compares what they print.

Usage: examples.py FOLDER_OF_PROGRAMS DOCUMENT

An example is a code block whose first line begins with "$ ", the command; what it prints follows. Without that it has to succeed.
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile


def main():
    programs, document = sys.argv[1:]
    blocks = re.findall(r"^```\n\$ (.*)\n((?:(?!```).*\n)*)```$", pathlib.Path(document).read_text(encoding="utf-8"), re.MULTILINE)
    if not blocks:
        sys.exit(f"{document} has no examples")
    environment = {**os.environ, "PATH": programs + os.pathsep + os.environ["PATH"]}
    differing = 0
    with tempfile.TemporaryDirectory() as folder:
        for command, expected in blocks:
            run = subprocess.run(command, shell=True, cwd=folder, env=environment, capture_output=True, text=True, check=False)
            if run.returncode == 0 and expected in ("", run.stdout):
                continue
            differing += 1
            print(f"$ {command}\nends with {run.returncode} and prints\n{run.stdout}{run.stderr}in place of\n{expected}")
    print(f"{len(blocks)} examples, {differing} differ")
    return 1 if differing else 0


if __name__ == "__main__":
    sys.exit(main())
