"""The public headers, as Doxygen is to read them, and what it does not ask of them."""

import glob
import re
import xml.etree.ElementTree

SECTION = re.compile(r" +// (.+?) -{5,}")
CLASS = re.compile(r"^class (?:QZAUDIO_EXPORT )?(\w+)$|^class QZAUDIO_EXPORT (\w+)", re.MULTILINE)
END = re.compile(r"(?:Q_SIGNALS|public Q_SLOTS|private|protected|public):|};")


def with_sections(text):
    """Lines such as "// Mute ------" become headings of the members behind them. No line is added: warnings name the header's."""
    lines, is_open = [], False
    for line in text.split("\n"):
        section = SECTION.fullmatch(line)
        close = "/** @} */ " if is_open and (section or END.fullmatch(line)) else ""
        is_open = is_open and not close
        if section:
            line = f"/** @name {section.group(1)} */ /** @{{ */"
            is_open = True
        lines.append(close + line)
    return "\n".join(lines)


def with_file(text):
    """A header that says nothing of itself is that of its classes; else Doxygen would leave it out of its list."""
    if "@file" in text:
        return text
    scope = "audio::" if "} // namespace audio" in text else ""
    classes = ", ".join(scope + (one or other) for one, other in CLASS.findall(text))
    return f"{text}/** @file\n * {f'Class {classes}' if classes else 'What marks the library for its clients'} */\n"


def prepared(text):
    text = re.sub(r"\bdocs/(\w+)\.md\b", r"[docs/\1.md](@ref \1)", text)
    return with_file(with_sections(text))


def undescribed_values(folder):
    """The enumerators without a description, from Doxygen's XML: it warns of everything else that has none."""
    names = []
    for path in sorted(glob.glob(f"{folder}/*.xml")):
        for member in xml.etree.ElementTree.parse(path).iter("memberdef"):
            for value in member.findall("enumvalue"):
                if not "".join(value.find("briefdescription").itertext()).strip():
                    names.append(f"{member.find('location').get('file')}: {value.findtext('name')}")
    return sorted(set(names))
