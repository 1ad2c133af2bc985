#!/usr/bin/python3
"""Follows a document literally: writes its files, runs its commands, and compares what they print with what it shows.

Commands run one after the other in one shell, from the current folder on; the first that fails ends it. Of a document these count:

    <!-- file: NAME from PATH -->    the block behind it becomes the file NAME in the shell's folder
    ```sh                            commands
    ```text                          how the output of the commands before it ends
    <!-- by hand: STEPS -->          the commands behind it open a window, where the plugin of tests/tutorial/hand does the steps

At the end of a chapter the reader has the files of the folder of PATH, all of them, and as they are there."""

import argparse
import filecmp
import os
import re
import shlex
import subprocess
import sys

END = "==== the commands have ended ===="
CHAPTER = re.compile(r"^##+ (.*)\n", re.MULTILINE)
BLOCK = re.compile(
    r"<!-- file: (?P<name>\S+) from (?P<path>\S+) -->\n```\w+\n(?P<content>.*?)```\n"
    r"|(<!-- by hand: (?P<hand>[^>]*) -->\n)?```(?P<kind>sh|text)\n(?P<code>.*?)```\n",
    re.DOTALL,
)


class Shell:
    """One bash for all commands, so that folders and variables last."""

    def __init__(self):
        self.process = subprocess.Popen(["bash", "-e"], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)

    def run(self, commands):
        """What they print on the standard output. Ends the program where one of them fails."""
        # Read as a whole, so that a command that reads its input does not read the next ones.
        self.process.stdin.write(f"eval {shlex.quote(commands)} </dev/null\nprintf '\\n%s\\n' '{END}'\n")
        self.process.stdin.flush()
        printed = []
        for line in self.process.stdout:
            if line == f"{END}\n":
                return "".join(printed)[:-1]
            printed.append(line)
        sys.stdout.writelines(printed)
        sys.exit(f"exit status {self.process.wait()}")

    def end(self):
        self.process.stdin.close()
        self.process.wait()

    def folder(self):
        return self.run("pwd").rstrip("\n")


class Reader:
    def __init__(self, project, hand):
        self.project = project
        self.hand = hand
        self.shell = Shell()
        self.printed = ""
        self.counts = {"files": 0, "blocks of commands": 0, "outputs as shown": 0, "windows worked": 0}

    def write(self, name, content):
        print(f"== {name}", flush=True)
        with open(os.path.join(self.shell.folder(), name), "w", encoding="utf-8") as file:
            file.write(content)
        self.counts["files"] += 1

    def run(self, commands):
        print("".join(f"$ {line}\n" for line in commands.splitlines()), end="", flush=True)
        self.printed = self.shell.run(commands)
        print(self.printed, end="", flush=True)
        self.counts["blocks of commands"] += 1

    def work(self, commands, steps):
        print(f"by hand: {steps}", flush=True)
        if not os.path.exists(self.hand):
            # Not before a reader has what it is compiled with.
            for command in (["-G", "Ninja", "-S", os.path.join(self.project, "tests", "tutorial", "hand"), "-B", self.hand], ["--build", self.hand]):
                subprocess.run(["cmake", *command], stdout=subprocess.DEVNULL, check=True)
        variables = {"QT_QPA_GENERIC_PLUGINS": "hand", "QT_PLUGIN_PATH": self.hand, "HAND_STEPS": steps}
        given = "".join(f"export {name}={shlex.quote(value)}\n" for name, value in variables.items())
        self.run(f"(\n{given}{commands})")
        self.counts["windows worked"] += 1

    def see(self, shown):
        if self.printed != shown and not self.printed.endswith("\n" + shown):
            sys.exit(f"the document shows\n{shown}and what is printed is\n{self.printed}")
        self.counts["outputs as shown"] += 1

    def compare(self, folder):
        """With the folder that the chapter's files came from; what is built does not count."""
        mine = self.shell.folder()
        for name in sorted((set(os.listdir(mine)) | set(os.listdir(os.path.join(self.project, folder)))) - {"build"}):
            pair = os.path.join(mine, name), os.path.join(self.project, folder, name)
            if not all(map(os.path.exists, pair)) or not filecmp.cmp(*pair, shallow=False):
                sys.exit(f"{name} is not the same for who read the document and in {folder}")

    def read(self, text):
        folder = None
        for block in BLOCK.finditer(text):
            if block["name"]:
                folder = os.path.dirname(block["path"])
                self.write(block["name"], block["content"])
            elif block["kind"] == "text":
                self.see(block["code"])
            elif block["hand"]:
                self.work(block["code"], block["hand"])
            else:
                self.run(block["code"])
        if folder:
            self.compare(folder)


def chapters(text):
    """Heading and text of each."""
    parts = CHAPTER.split(text)
    return zip([""] + parts[1::2], parts[::2])


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--without", metavar="HEADING", action="append", default=[], help="leave this chapter out")
    parser.add_argument("--instead", metavar=("NAME", "OTHER"), nargs=2, action="append", default=[], help="call OTHER what the commands call NAME")
    parser.add_argument("--hand", metavar="DIR", required=True, help="where the plugin that works windows is built, or was")
    parser.add_argument("document")
    given = parser.parse_args()
    document = os.path.abspath(given.document)
    with open(document, encoding="utf-8") as file:
        text = file.read()
    for name, other in given.instead:
        if name not in text:
            sys.exit(f"{given.document} names no {name}")
        text = text.replace(name, other)

    reader = Reader(os.path.dirname(os.path.dirname(document)), os.path.abspath(given.hand))
    unknown = set(given.without)
    for heading, chapter in chapters(text):
        unknown.discard(heading)
        if heading not in given.without:
            reader.read(chapter)
    reader.shell.end()
    if unknown:
        sys.exit(f"{given.document} has no {', '.join(sorted(unknown))}")
    if not all(reader.counts.values()):
        sys.exit(f"{given.document} has less to follow than expected: {reader.counts}")
    print("followed to the end: " + ", ".join(f"{count} {what}" for what, count in reader.counts.items()))


main()
