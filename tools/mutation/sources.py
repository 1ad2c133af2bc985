"""What can be changed in a source: its sites, and the changes of each."""

import collections
import glob
import os
import re

# A place in a file, and what may stand there instead: (begin, end, text) each, of which one is made at a time.
Site = collections.namedtuple("Site", "file begin kind changes")
Mutant = collections.namedtuple("Mutant", "identity site change")

KINDS = ["operator", "condition", "number", "truth", "return", "call", "row", "text"]

# Comments and preprocessor lines stay as they are.
TOKEN = re.compile(
    r"""(?P<comment>//[^\n]*|/\*.*?\*/)
      | (?P<preprocessor>^[ \t]*\#(?:\\\n|[^\n])*)
      | (?P<text>"(?:\\.|[^"\\])*"|'(?:\\.|[^'\\])')
      | (?P<number>(?:0[xX][0-9a-fA-F]+|\d+\.\d*|\d+)[uUlLfF]*)
      | (?P<word>[A-Za-z_]\w*)
      | (?P<operator><<=?|>>=?|->|::|\+\+|--|&&|\|\||[-+*/%|&^!=<>]=|[-+*/%|&^!~<>])""",
    re.VERBOSE | re.DOTALL | re.MULTILINE,
)
LETTER = re.compile(r"\\.|[^\\]", re.DOTALL)

# With blanks on both sides, which sets a product apart from a pointer and a comparison from a template.
BINARY = {
    "==": ["!="],
    "!=": ["=="],
    "<": ["<=", ">="],
    "<=": ["<", ">"],
    ">": [">=", "<="],
    ">=": [">", "<"],
    "&&": ["||"],
    "||": ["&&"],
    "+": ["-"],
    "-": ["+"],
    "*": ["/"],
    "/": ["*"],
    "%": ["/"],
    "|": ["&"],
    "&": ["|"],
    "+=": ["-="],
    "-=": ["+="],
    "|=": ["&="],
    "&=": ["|="],
}
UNARY = {"!": [""], "-": [""], "~": [""], "++": ["--"], "--": ["++"]}

# A statement that is one call, with what may stand before it.
CALL = re.compile(r"[;{})]\s*(?:else\s+)?(?P<call>(?:Q_EMIT )?(?P<name>(?:::)?[A-Za-z_]\w*)(?:(?:::|\.|->)[A-Za-z_]\w*|\[[^\]\n]*\]|\(\))*(?:<[^;<>()]*>)?\()")
NO_CALLS = {"if", "for", "while", "switch", "return", "catch", "sizeof", "static_assert", "decltype"}
CONDITION = re.compile(r"\b(?:if|while) (?P<open>\()")
RETURN = re.compile(r"\breturn (?P<value>[^;{}]+);")
# Which "return {}" does not change, or another kind of change does already
PLAIN = re.compile(r"true|false|nullptr|[\d.]+\w*|QString\(\)")
ROW = re.compile(r"^[ \t]*(?:\{.*\}|\"S*\"),[ \t]*$", re.MULTILINE)
STATIC_ASSERT = re.compile(r"\bstatic_assert\(")


def end_of_brackets(masked, begin):
    """Behind the bracket that closes the one at begin."""
    depth = 0
    for index in range(begin, len(masked)):
        depth += (masked[index] in "([{") - (masked[index] in ")]}")
        if depth == 0:
            return index + 1
    return len(masked)


def other_letter(letter):
    return "y" if letter == "x" else "x"


def mask(text):
    """The text with nothing in it that only looks like code, each character in its place."""

    def blank(match):
        if match.lastgroup in ("comment", "preprocessor"):
            return re.sub(r"[^\n]", " ", match[0])
        if match.lastgroup == "text":
            return match[0][0] + "S" * (len(match[0]) - 2) + match[0][-1]
        return match[0]

    return TOKEN.sub(blank, text)


class Source:
    """One file of the library."""

    def __init__(self, project, file):
        self.file = file
        with open(os.path.join(project, file), encoding="utf-8") as opened:
            self.text = opened.read()
        self.masked = mask(self.text)
        # What the compiler asserts, it asserts of the rest: a weaker assertion changes no behaviour.
        self.asserted = [(match.start(), end_of_brackets(self.masked, match.end() - 1)) for match in STATIC_ASSERT.finditer(self.masked)]

    def sites(self):
        found = self.token_sites() + self.condition_sites() + self.return_sites() + self.call_sites() + self.row_sites()
        outside = (site for site in found if not any(begin <= site.begin < end for begin, end in self.asserted))
        return sorted((site for site in outside if site.changes), key=lambda site: (site.begin, KINDS.index(site.kind)))

    def site(self, begin, kind, changes):
        return Site(self.file, begin, kind, changes)

    def token_sites(self):
        sites = []
        for token in TOKEN.finditer(self.text):
            begin, end, text = token.start(), token.end(), token[0]
            if token.lastgroup == "text":
                letters = [match for match in LETTER.finditer(text[1:-1])]
                changes = [(begin + 1 + match.start(), begin + 1 + match.end(), other_letter(match[0])) for match in letters]
                sites.append(self.site(begin, "text", changes))
            elif token.lastgroup == "number":
                sites.append(self.site(begin, "number", [(begin, end, other) for other in self.other_numbers(text)]))
            elif text in ("true", "false"):
                sites.append(self.site(begin, "truth", [(begin, end, "false" if text == "true" else "true")]))
            elif token.lastgroup == "operator":
                sites.append(self.site(begin, "operator", [(begin, end, other) for other in self.other_operators(begin, end)]))
        return sites

    def other_operators(self, begin, end):
        text, before, behind = self.text[begin:end], self.text[begin - 1], self.text[end]
        if before.isspace() and behind.isspace():
            return BINARY.get(text, [])
        is_prefix = text in ("++", "--") or (not behind.isspace() and before in " (,[{!")
        return UNARY.get(text, []) if is_prefix else []

    @staticmethod
    def other_numbers(text):
        digits, suffix = re.fullmatch(r"(0[xX][0-9a-fA-F]+|[\d.]+)(\w*)", text).groups()
        if digits.lower().startswith("0x"):
            return [hex(int(digits, 16) + step) + suffix for step in (1, -1)]
        if "." in digits:
            return [repr(float(digits) + step) + suffix for step in (1, -1)]
        if len(digits) > 1 and digits[0] == "0":  # octal
            return ["0" + oct(int(digits, 8) + step)[2:] + suffix for step in (1, -1)]
        return [str(int(digits) + step) + suffix for step in (1, -1) if int(digits) + step >= 0]

    def condition_sites(self):
        sites = []
        for match in CONDITION.finditer(self.masked):
            begin = match.start("open")
            end = end_of_brackets(self.masked, begin)
            sites.append(self.site(begin, "condition", [(begin, end, "(!" + self.text[begin:end] + ")")]))
        return sites

    def return_sites(self):
        found = (match for match in RETURN.finditer(self.masked) if not PLAIN.fullmatch(match["value"].strip()))
        return [self.site(match.start("value"), "return", [(match.start("value"), match.end("value"), "{}")]) for match in found]

    def call_sites(self):
        sites = []
        at = 0
        while match := CALL.search(self.masked, at):
            at = match.start() + 1
            if match["name"] in NO_CALLS:
                continue
            begin = end = match.start("call")
            while end < len(self.masked) and self.masked[end] not in ";)]}":
                end = end_of_brackets(self.masked, end) if self.masked[end] in "([{" else end + 1
            # Lines keep their numbers, which are written to the log.
            if self.masked[end : end + 1] == ";" and " = " not in re.sub(r"[(\[{].*[)\]}]", "", self.masked[begin:end], flags=re.DOTALL):
                sites.append(self.site(begin, "call", [(begin, end, "\n" * self.text.count("\n", begin, end))]))
        return sites

    def row_sites(self):
        rows = list(ROW.finditer(self.masked))
        sites = []
        for index, row in enumerate(rows):
            begin, end = row.span()
            following = rows[index + 1] if index + 1 < len(rows) and rows[index + 1].start() == end + 1 else None
            preceding = index > 0 and rows[index - 1].end() + 1 == begin
            if not following and not preceding:
                continue
            changes = [(begin, end, "")]
            if following and self.text[begin:end] != self.text[following.start() : following.end()]:
                changes.append((begin, following.end(), self.text[following.start() : following.end()] + "\n" + self.text[begin:end]))
            sites.append(self.site(begin, "row", changes))
        return sites

    def mutants_of(self, site):
        line = self.text.count("\n", 0, site.begin) + 1
        column = site.begin - self.text.rfind("\n", 0, site.begin)
        for number, change in enumerate(site.changes, 1):
            yield Mutant(f"{self.file}:{line}:{column}:{site.kind}:{number}", site, change)

    def mutated(self, mutant):
        begin, end, text = mutant.change
        return self.text[:begin] + text + self.text[end:]

    def lines_of(self, mutant):
        """The lines that the mutant changes, without their indentation: before and after."""
        begin, end, _ = mutant.change
        first = self.text.rfind("\n", 0, begin) + 1
        last = self.text.find("\n", end)
        before = self.text[first:last]
        after = self.text[first:begin] + mutant.change[2] + self.text[end:last]
        return [line.strip() for line in before.split("\n")], [line.strip() for line in after.split("\n")]

    def line_above(self, mutant):
        """The one before those that the mutant changes, without its indentation."""
        lines = self.text[: mutant.change[0]].split("\n")
        return lines[-2].strip() if len(lines) > 1 else ""


def read(project, pattern="*"):
    """The sources of the library by their names, "src/logging.cpp", that match the pattern."""
    names = sorted(
        os.path.relpath(path, project)
        for folder in ("src", os.path.join("src", "settingsfile"))
        for suffix in ("cpp", "h")
        for path in glob.glob(os.path.join(glob.escape(project), folder, f"*.{suffix}"))
    )
    return {name: Source(project, name) for name in names if pattern in ("*", name, os.path.basename(name))}
