"""What Doxygen makes of its pages otherwise than is meant."""

import glob
import re

# A variable of an example may be called like the namespace, and an argument like an operation.
WRONG_LINK = re.compile(
    r'<a class="code[^"]*" href="namespaceaudio.html"[^>]*>(?P<variable>audio)</a>(?!::)'
    r'|(?P<type>(?:bool|int) )<a class="el" href="[^"]*"[^>]*>(?P<argument>[a-z]\w*)</a>(?=[,)])'
)
EXAMPLE = re.compile(r'<div class="fragment">(.*?)</div><!-- fragment -->', re.DOTALL)
LINE = re.compile(r'<div class="line">(.*?)</div>\n?', re.DOTALL)


def preformatted(example):
    """A help viewer that knows few styles would take the lines of an example for paragraphs, without their indentation."""
    return '<pre class="fragment">' + LINE.sub(lambda line: line.group(1) + "\n", example.group(1)) + "</pre>"


def mended(text):
    text = WRONG_LINK.sub(lambda link: link["variable"] or link["type"] + link["argument"], text)
    return EXAMPLE.sub(preformatted, text)


def mend(folder):
    for path in glob.glob(f"{folder}/*.html"):
        with open(path, encoding="utf-8") as file:
            text = file.read()
        with open(path, "w", encoding="utf-8") as file:
            file.write(mended(text))
