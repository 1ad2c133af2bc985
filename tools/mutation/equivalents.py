"""The mutants that were judged: nobody can tell them from the library."""

import collections
import os

FILE = os.path.join("tests", "equivalent-mutants.txt")

Entry = collections.namedtuple("Entry", "file below before after reason")


class Complaint(Exception):
    """Something in the list that is not as it has to be."""


def parse(text):
    """Entries have blank lines between them; each line is "NAME: VALUE", and lines of a change that are several come one by one."""
    entries = []
    for block in text.split("\n\n"):
        lines = [line for line in block.splitlines() if line and not line.startswith("#")]
        values = collections.defaultdict(list)
        for line in lines:
            name, _, value = line.partition(":")
            if name not in Entry._fields:
                raise Complaint(f'{FILE}: what is "{line}"?')
            values[name].append(value.strip())
        if lines:
            if any(not "".join(values[name]) for name in ("file", "before", "reason")) or not values["after"]:
                raise Complaint(f"{FILE}: an entry needs file, before, after and reason:\n{block}")
            entries.append(Entry(values["file"][0], values["below"], values["before"], values["after"], " ".join(values["reason"])))
    return entries


def stands_in(lines, wanted):
    return any(lines[index : index + len(wanted)] == wanted for index in range(len(lines)))


def read(project, all_sources):
    """The list, each entry of which is about lines that are there."""
    path = os.path.join(project, FILE)
    if not os.path.exists(path):
        return []
    with open(path, encoding="utf-8") as file:
        entries = parse(file.read())
    lines_of = {name: [line.strip() for line in source.text.split("\n")] for name, source in all_sources.items()}
    gone = [entry for entry in entries if not stands_in(lines_of.get(entry.file, []), entry.below + entry.before)]
    if gone:
        told = "\n".join(f"  {entry.file}: {' '.join(entry.before)}" for entry in gone)
        raise Complaint(f"{FILE} judges what is not there any more:\n{told}")
    return entries


def reason_for(entries, source, mutant):
    """None where the mutant was not judged."""
    before, after = source.lines_of(mutant)
    above = source.line_above(mutant)
    found = (
        entry.reason
        for entry in entries
        if entry.file == source.file and entry.below in ([], [above]) and entry.before == before and entry.after == after
    )
    return next(found, None)
