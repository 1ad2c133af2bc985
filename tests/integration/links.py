#!/usr/bin/python3
"""Follows the links of the documents, of the folders' READMEs and of the reference, which it makes: what they name is there, and so is the place in it.

Links to other hosts are counted and not followed.

Usage: links.py PROJECT WORK BENCH
"""

import html.parser
import pathlib
import re
import shutil
import subprocess
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(sys.argv[1]) / "tools"))

from shelf import documents

ELSEWHERE = re.compile(r"[a-z]+:")


class Page(html.parser.HTMLParser):
    """The places in a page, and the links from it."""

    def __init__(self, path):
        super().__init__()
        self.places = set()
        self.links = []
        self.feed(path.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attrs):
        attributes = dict(attrs)
        self.places.update(attributes[name] for name in ("id", "name") if attributes.get(name))
        self.links += [attributes[name] for name in ("href", "src", "data") if attributes.get(name)]


class Document:
    """The same of a Markdown document."""

    def __init__(self, path):
        text = path.read_text(encoding="utf-8")
        self.places = set(documents.anchors_of(text))
        self.links = list(documents.links_of(text))


class Walk:
    """What was found so far."""

    def __init__(self):
        self.read = {}
        self.followed = 0
        self.elsewhere = set()
        self.broken = []

    def reading(self, path, kind):
        if path not in self.read:
            self.read[path] = kind(path)
        return self.read[path]

    def follow(self, paths, kind, suffix):
        for path in paths:
            for link in self.reading(path, kind).links:
                if link.startswith("javascript:"):
                    continue
                if ELSEWHERE.match(link):
                    self.elsewhere.add(link)
                    continue
                self.followed += 1
                name, _, place = link.partition("#")
                target = (path.parent / name).resolve() if name else path
                if not target.exists():
                    self.broken.append(f"{path}: {link} is not there")
                elif place and target.suffix == suffix and place not in self.reading(target, kind).places:
                    self.broken.append(f"{path}: {link} has no such place")


def main():
    project, work = (pathlib.Path(word).resolve() for word in sys.argv[1:3])
    shutil.rmtree(work, ignore_errors=True)
    subprocess.run([project / "tools" / "reference", "--output", work, sys.argv[3]], stdout=subprocess.DEVNULL, check=True)
    walk = Walk()
    folders = [folder for folder in project.iterdir() if folder.is_dir() and folder.name != "build" and not folder.name.startswith(".")]
    texts = sorted([*project.glob("*.md"), *(path for folder in folders for path in folder.rglob("*.md"))])
    walk.follow(texts, Document, ".md")
    of_documents = walk.followed
    pages = sorted((work / "html").glob("*.html"))
    walk.follow(pages, Page, ".html")
    print(f"{of_documents} links in {len(texts)} documents, {walk.followed - of_documents} in {len(pages)} pages; {len(walk.elsewhere)} lead to other hosts")
    print("\n".join(walk.broken) or "all lead somewhere")
    # Less would mean that they were not found.
    if walk.broken or of_documents < 100 or walk.followed - of_documents < 5000:
        sys.exit(1)


main()
