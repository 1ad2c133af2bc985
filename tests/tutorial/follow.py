#!/usr/bin/python3
"""Follows docs/tutorial.md literally: writes its files, runs its commands, and compares what they print with what it shows.

Usage: follow.py [--from HEADING] DOCUMENT

Commands run one after the other in one shell, in the current folder. A block of commands behind "<!-- by hand -->" is for people, since it opens a
window. A block of text shows what the commands before it print. --from begins at a heading: what stands before has been done already."""

import argparse
import os
import re
import subprocess
import sys

LINE_OF_END = "the commands have ended with"


class Shell:
    """One bash for all commands, so that folders and variables last."""

    def __init__(self):
        self.process = subprocess.Popen(["bash"], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)

    def run(self, commands):
        """What they print on the standard output; stops at the first that fails."""
        # In the shell itself, with its errors off the output; the last line tells the status.
        self.process.stdin.write(f"{{ {commands.replace(chr(10), ' && ' + chr(10))}\n}} </dev/null; echo; echo '{LINE_OF_END}' $?\n")
        self.process.stdin.flush()
        printed = []
        for line in self.process.stdout:
            if line.startswith(LINE_OF_END):
                status = int(line[len(LINE_OF_END) :])
                output = "".join(printed)[:-1]
                return status, output
            printed.append(line)
        raise SystemExit("the shell has ended")

    def folder(self):
        return self.run("pwd")[1].strip()


def steps(text):
    """What a reader does, in order: ("file", name, content), ("run", commands) or ("see", output)."""
    pattern = re.compile(r"<!-- file: (?P<name>\S+) from \S+ -->\n```\w+\n(?P<content>.*?)```\n|(?P<hand><!-- by hand -->\n)?```(?P<kind>sh|text)\n(?P<code>.*?)```\n", re.DOTALL)
    for match in pattern.finditer(text):
        if match["name"]:
            yield "file", match["name"], match["content"]
        elif match["hand"]:
            continue
        elif match["kind"] == "sh":
            yield "run", match["code"].rstrip("\n"), ""
        else:
            yield "see", match["code"], ""


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--from", dest="heading", metavar="HEADING", help="begin at this heading")
    parser.add_argument("document")
    given = parser.parse_args()
    with open(given.document, encoding="utf-8") as file:
        text = file.read()
    if given.heading:
        text = text[text.index(f"\n## {given.heading}\n") :]

    shell = Shell()
    printed, done, shown = "", 0, 0
    for kind, what, content in steps(text):
        if kind == "file":
            with open(os.path.join(shell.folder(), what), "w", encoding="utf-8") as file:
                file.write(content)
            print(f"== {what}", flush=True)
        elif kind == "run":
            print("\n".join(f"$ {line}" for line in what.split("\n")), flush=True)
            status, printed = shell.run(what)
            print(printed, end="", flush=True)
            if status != 0:
                sys.exit(f"exit status {status}")
            done += 1
        else:
            if what not in printed:
                sys.exit(f"the document shows\n{what}and what is printed is\n{printed}")
            shown += 1
    if not done or not shown:
        sys.exit(f"{given.document} has nothing to follow")
    print(f"followed to the end: {done} blocks of commands, {shown} outputs as shown")


main()
