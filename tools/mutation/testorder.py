"""Which tests are asked first: those that are likely to notice, and those that are quick."""

import collections
import json
import os
import threading

# Beginnings of the names of tests that are about a source whose name begins so; a guess, until there is experience.
SUBJECTS = {
    "audiocontrol": ["tst_audiocontrol"],
    "audiodatabase": ["tst_audiodatabase_tables", "tst_audiodatabase"],
    "audiofocuscontrol": ["tst_audiofocus"],
    "audiomanager": ["tst_audiomanager"],
    "audioservice": ["tst_audioservice"],
    "filedescriptor": ["tst_audiodatabase"],
    "flashfile": ["tst_audiodatabase"],
    "focusloss": ["tst_focusrequester", "tst_audiofocus"],
    "focusrequester": ["tst_focusrequester", "tst_audiofocus"],
    "logging": ["tst_logging", "tst_audiocontrol"],
    "platformobject": ["tst_platformobject", "tst_audiocontrol"],
    "settings": ["tst_settingstext", "tst_audiodatabase"],
    "situationtables": ["tst_audiodatabase_tables", "tst_zelaudiomanager", "policy_tables"],
    "taviaudioserviceinterface": ["tst_taviaudioserviceinterface"],
    "zelaudiomanager": ["tst_zelaudiomanager"],
}
UNKNOWN_DURATION = 1.0  # seconds
# What nobody noticed in this time is asked of all other tests in the end, when survivors can be read about already.
LONGEST_OF_ANY = 0.5
LONGEST_OF_ITS_SUBJECT = 4.0
# A machine that does something else meanwhile is slower than it was.
SLOWEST_FACTOR = 5
LEAST_PATIENCE = 20  # seconds


class TestOrder:
    """The tests with how long each takes, and for each source how many mutants each has noticed. Kept in a file."""

    def __init__(self, path):
        self.path = path
        self.lock = threading.Lock()
        self.durations = {}
        self.noticed = collections.defaultdict(collections.Counter)
        if os.path.exists(path):
            with open(path, encoding="utf-8") as file:
                kept = json.load(file)
            self.durations = kept["durations"]
            self.noticed.update({source: collections.Counter(counts) for source, counts in kept["noticed"].items()})

    def save(self):
        with self.lock, open(self.path, "w", encoding="utf-8") as file:
            json.dump({"durations": self.durations, "noticed": self.noticed}, file, indent=1)

    def add(self, source, test):
        with self.lock:
            self.noticed[source][test] += 1

    def duration(self, test):
        return self.durations.get(test, UNKNOWN_DURATION)

    def patience(self, test):
        return LEAST_PATIENCE + SLOWEST_FACTOR * self.duration(test)

    def beginnings(self, source):
        name = os.path.basename(source)
        return next((beginnings for subject, beginnings in SUBJECTS.items() if name.startswith(subject)), [])

    def is_quick(self, source, test):
        longest = LONGEST_OF_ITS_SUBJECT if test.startswith(tuple(self.beginnings(source))) else LONGEST_OF_ANY
        return self.duration(test) <= longest

    def order(self, source, tests):
        beginnings = self.beginnings(source)
        with self.lock:
            counts = self.noticed[source].copy()
        return sorted(
            tests,
            key=lambda test: (
                -counts[test] / self.duration(test),
                next((index for index, beginning in enumerate(beginnings) if test.startswith(beginning)), len(beginnings)),
                self.duration(test),
            ),
        )
