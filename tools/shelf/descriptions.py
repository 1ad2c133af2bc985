"""What describes itself: the bus interface and the commands."""

import os
import re
import subprocess
import xml.etree.ElementTree

TYPES = {"b": "boolean", "i": "32-bit integer", "s": "text"}


class Bus:
    """The bus interface, from its XML file."""

    def __init__(self, path):
        with open(path, encoding="utf-8") as file:
            text = file.read()
        self.introduction = re.search(r"<!--\n(.*?)\n\n    This file .*?-->", text, re.DOTALL).group(1)
        parser = xml.etree.ElementTree.XMLParser(target=xml.etree.ElementTree.TreeBuilder(insert_comments=True))
        interface = xml.etree.ElementTree.fromstring(text, parser=parser).find("interface")
        self.name = interface.get("name")
        self.members = []  # with the comment in front of each, empty where there is none
        comment = ""
        for entry in interface:
            if entry.tag is xml.etree.ElementTree.Comment:
                comment = " ".join(entry.text.split())
            else:
                self.members.append((entry, comment))
                comment = ""

    def page(self):
        lines = [f"# Bus interface {self.name}", ""]
        lines += [f"Service `{self.name}`, object `/{self.name.replace('.', '/')}`. What its codes and errors mean:", ""]
        lines += ["```text", re.sub(r"^ {4}", "", self.introduction, flags=re.MULTILINE), "```", ""]
        for member, comment in self.members:
            lines += [f"## {member.tag.capitalize()} {member.get('name')}", "", comment, ""]
            arguments = member.findall("arg")
            if arguments:
                lines += ["| Argument | Type |", "|---|---|"]
            for argument in arguments:
                name, kind = argument.get("name"), argument.get("type")
                lines.append(f"| {f'`{name}`' if name else 'result'} | `{kind}`, {TYPES[kind]} |")
            lines.append("")
        return "\n".join(lines)

    def undescribed(self):
        return [f"dbus: {member.tag} {member.get('name')}" for member, comment in self.members if not comment]


def said(program, *arguments):
    """What a program prints, in lines of a hundred columns."""
    environment = {**os.environ, "COLUMNS": "100"}
    return subprocess.run([*program, *arguments], stdout=subprocess.PIPE, env=environment, text=True, check=True).stdout


def commands_page(bench):
    """The commands of the desk bench as a document, from its own help."""
    lines = ["# Bench commands", "", "What `qzaudio-bench help` says, and `qzaudio-bench help COMMAND` of each."]
    lines += ["", "```text", said(bench, "help").rstrip("\n"), "```", ""]
    for command in said(bench, "help", "--commands").split():
        lines += [f"## qzaudio-bench {command}", "", "```text", said(bench, "help", command).rstrip("\n"), "```", ""]
    return "\n".join(lines)
