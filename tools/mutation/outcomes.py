"""What became of the mutants: kept line by line, so that a run that was broken off can go on; and told at the end."""

import collections
import difflib
import json
import os
import threading

UNCOMPILABLE = "does not compile"
EQUIVALENT = "equivalent"
NOTICED = "noticed"
TIMED_OUT = "timed out"
SURVIVED = "survived"
QUICK_ASKED = "not noticed by the quick tests"  # until the others are asked

Outcome = collections.namedtuple("Outcome", "identity outcome detail seconds")


class Record:
    """The sample, and the outcomes so far."""

    def __init__(self, path):
        self.path = path
        self.lock = threading.Lock()
        self.seed = None
        self.identities = []
        self.outcomes = {}

    def begin(self, seed, identities):
        self.seed, self.identities, self.outcomes = seed, identities, {}
        with open(self.path, "w", encoding="utf-8") as file:
            file.write(json.dumps({"seed": seed, "identities": identities}) + "\n")

    def load(self):
        """False where there is nothing to go on with."""
        if not os.path.exists(self.path):
            return False
        with open(self.path, encoding="utf-8") as file:
            lines = [json.loads(line) for line in file]
        self.seed, self.identities = lines[0]["seed"], lines[0]["identities"]
        self.outcomes = {line[0]: Outcome(*line) for line in lines[1:]}
        return True

    def add(self, outcome):
        with self.lock:
            self.outcomes[outcome.identity] = outcome
            with open(self.path, "a", encoding="utf-8") as file:
                file.write(json.dumps(outcome) + "\n")

    def waiting(self):
        return [identity for identity in self.identities if identity not in self.outcomes]

    def quick_asked(self):
        return [outcome.identity for outcome in self.outcomes.values() if outcome.outcome == QUICK_ASKED]


def counted(outcomes):
    return collections.Counter(outcome.outcome for outcome in outcomes)


def share(counts):
    """Percent that was noticed of what could have been; None where there was nothing."""
    noticed = counts[NOTICED] + counts[TIMED_OUT]
    possible = noticed + counts[SURVIVED] + counts[QUICK_ASKED]
    return 100 * noticed / possible if possible else None


def row(name, counts):
    percent = share(counts)
    numbers = "".join(f"{counts[outcome]:{width}}" for outcome, width in ((UNCOMPILABLE, 10), (EQUIVALENT, 12), (NOTICED, 9), (TIMED_OUT, 11), (SURVIVED, 10)))
    return f"{name:32}{sum(counts.values()):6}{numbers}{'' if percent is None else f'{percent:9.2f} %'}"


def diff(source, mutant):
    lines = [text.splitlines(keepends=True) for text in (source.text, source.mutated(mutant))]
    return "".join(difflib.unified_diff(*lines, fromfile=source.file, tofile=mutant.identity, n=2))


def summary(record, mutants, sources):
    """For the terminal: figures per file and kind, and the survivors."""
    outcomes = list(record.outcomes.values())
    lines = [f"{'':32}{'drawn':>6}{'no build':>10}{'equivalent':>12}{'noticed':>9}{'timed out':>11}{'survived':>10}{'share':>11}"]
    for position in (0, 3):
        groups = collections.defaultdict(list)
        for outcome in outcomes:
            groups[outcome.identity.split(":")[position]].append(outcome)
        lines += [row(name, counted(group)) for name, group in sorted(groups.items())] + [""]
    lines.append(row("all", counted(outcomes)))
    for outcome in outcomes:
        if outcome.outcome in (SURVIVED, QUICK_ASKED):
            mutant = mutants[outcome.identity]
            lines += ["", diff(sources[mutant.site.file], mutant).rstrip()]
    return "\n".join(lines)
