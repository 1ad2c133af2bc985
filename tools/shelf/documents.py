"""The documents, as Doxygen is to read them: with labels at the headings, and links that lead to these."""

import os
import re

# What is left alone, or gets another form, in this order. Only what is none of it is text.
TOKEN = re.compile(
    r"(?P<fence>^(?P<indent> *)```.*?^(?P=indent)```$)"
    r"|(?P<block>(?:(?<=\n\n)|\A)(?: {4}[^\n]*\n?|\n(?= {4}))+)"
    r"|(?P<comment><!--.*?-->)"
    r"|(?P<code>(?P<ticks>`+)(?!`).+?(?<!`)(?P=ticks)(?!`))"
    r"|\*\*(?P<strong>(?:[^*`\n]|\n(?!\n)|`[^`]*`)+)\*\*"
    r"|(?P<image>!\[(?P<alternative>[^]]*)\]\((?P<picture>[^)\s]+)\))"
    r"|\[(?P<label>(?:[^]`[]|`[^`]*`)*)\]\((?P<target>[^)\s]+)\)"
    r"|(?P<address><https?:[^>]*>)",
    re.DOTALL | re.MULTILINE,
)
HEADING = re.compile(r"(#+) (.*)")
NAMES = {"docs/reference/README.md": "index", "docs/README.md": "documents"}
CALL = re.compile(r"(?:\w+::)+~?\w+\(\)")


def anchor_of(heading):
    """As the places where these documents are read otherwise make it."""
    plain = re.sub(r"\[([^]]*)\]\([^)]*\)", r"\1", heading.replace("`", "").replace("*", ""))
    return re.sub(r"[^\w\- ]", "", plain.strip().lower()).replace(" ", "-")


def anchors_of(text):
    """The anchors of all headings in their order; those that repeat are counted."""
    anchors = []
    counts = {}
    for line in re.sub(r"^( *)```.*?^\1```$", "", text, flags=re.DOTALL | re.MULTILINE).split("\n"):
        heading = HEADING.fullmatch(line)
        if heading:
            anchor = anchor_of(heading.group(2))
            count = counts.get(anchor, 0)
            counts[anchor] = count + 1
            anchors.append(f"{anchor}-{count}" if count else anchor)
    return anchors


def links_of(text):
    """The targets of all links and pictures."""
    for token in TOKEN.finditer(text):
        if token["strong"]:
            yield from links_of(token["strong"])
        elif token["target"] or token["picture"]:
            yield token["target"] or token["picture"]


def page_of(path):
    """The name of the page that a document becomes: docs/qml.md is "qml", examples/README.md is "examples-readme"."""
    if path in NAMES:
        return NAMES[path]
    name = os.path.splitext(path)[0].lower().removeprefix("docs/").removeprefix("reference/")
    return re.sub(r"[^a-z0-9]+", "-", name)


def picture_name(path):
    """A name of its own for each picture: all pages are in one folder."""
    return path.removeprefix("docs/").replace("/", "-")


class Shelf:
    """All documents, by their path below the project."""

    def __init__(self):
        self.texts = {}
        self.anchors = {}
        self.pictures = set()

    def add(self, path, text):
        self.texts[path] = text
        self.anchors[path] = anchors_of(text)

    def label(self, path, anchor):
        # Letters of other alphabets are none of Doxygen's labels.
        return re.sub(r"[^\w-]", "-", f"{page_of(path)}-{anchor}", flags=re.ASCII)

    def link(self, own, label, target):
        """A link to another document; what stands on no shelf stays as plain text."""
        if re.match(r"\w+:", target):
            return f"[{label}]({target})"
        if target.endswith(".html"):
            return f'<a href="{target}">{label}</a>'
        path, _, anchor = target.partition("#")
        path = os.path.normpath(os.path.join(os.path.dirname(own), path)) if path else own
        if path not in self.texts:
            return label
        if anchor in self.anchors[path][1:]:
            return f"[{label}](@ref {self.label(path, anchor)})"
        return f"[{label}](@ref {page_of(path)})"

    def text(self, plain):
        # What stands in quotation marks Doxygen takes as it is.
        return re.sub(r'"[^"\n]*"|[@\\<#]|%(?=\w)|(?<!-)--(?=\w)', lambda part: part.group() if part.group()[0] == '"' else "\\" + part.group(), plain)

    def converted(self, own, text):
        """The document at the path, or a part of it."""
        result, end = [], 0
        for token in TOKEN.finditer(text):
            result.append(self.text(text[end : token.start()]))
            end = token.end()
            if token["image"]:
                picture = os.path.normpath(os.path.join(os.path.dirname(own), token["picture"]))
                self.pictures.add(picture)
                result.append(f"![{token['alternative']}]({picture_name(picture)})")
            elif token["strong"]:
                # Of stars beside backticks Doxygen makes nothing.
                result.append(f"<b>{self.converted(own, token['strong'])}</b>")
            elif token["target"]:
                result.append(self.link(own, self.converted(own, token["label"]), token["target"]))
            elif token["code"] and CALL.fullmatch(token["code"].strip("`")) and own == "docs/reference/tasks.md":
                call = token["code"].strip("`")
                result.append(f'@ref {call} "{call}"')
            elif token["code"] and "\\|" in token["code"]:
                # The way to write a bar in a table, which Doxygen knows outside of backticks.
                parts = token["code"].strip("`").split("\\|")
                result.append("<code>" + "\\|".join(map(self.text, parts)) + "</code>")
            elif token["comment"]:
                continue
            else:
                result.append(token.group())
        result.append(self.text(text[end:]))
        return "".join(result)

    def page(self, path):
        """The whole document."""
        name = page_of(path)
        # Doxygen calls the first page "index" and wants another label for it.
        labels = [name if name != "index" else "mainpage"] + [self.label(path, anchor) for anchor in self.anchors[path][1:]]
        lines = self.converted(path, self.texts[path]).split("\n")
        in_code = False
        for number, line in enumerate(lines):
            in_code ^= line.lstrip().startswith("```")
            heading = None if in_code else re.fullmatch(r"((?:\\#)+) (.*)", line)
            if heading:
                level = heading.group(1).replace("\\", "")
                lines[number] = f"{level} {heading.group(2).replace('`', '')} {{#{labels.pop(0)}}}"
        if len(self.anchors[path]) > 3:
            lines.insert(1, "\n[TOC]")
        return "\n".join(lines)
