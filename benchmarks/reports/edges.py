"""Measures what no ratio tells: slow handlers, large files, memory, loading, and how long a save waits."""

import os
import statistics

REPEATS = 5


class Edges:
    """All of it, in plain lists and dictionaries."""

    def __init__(self, programs):
        self.programs = programs

    def handler(self):
        """Operation, lines and ms of a call while each line takes 1 ms."""
        output = self.programs.run([self.programs.path("qzaudio-edges"), "handler"])
        return [line.split() for line in output.splitlines()]

    def memory(self):
        """Of each kind of use the resident and the own memory in kB and the page faults."""
        found = {}
        for use in ("nothing", "facade", "all"):
            runs = [self.programs.run([self.programs.path("qzaudio-edges"), use]).split() for _ in range(REPEATS)]
            found[use] = medians(runs)
        return found

    def load(self):
        """Page faults, resident and own kB of loading the library, where Qt and the platform are there already."""
        folder = os.path.join(self.programs.build, "lib")
        command = [self.programs.path("qzaudio-load-cost")]
        command += [os.path.join(folder, name) for name in ("libqzaudio.so.1", "libqzaudio_simulator.so.1")]
        return medians([self.programs.run(command).split() for _ in range(REPEATS)])

    def waits(self):
        """Rows of scenario, caller, first, median and longest time in ms, saves that were in the file, saves."""
        output = self.programs.run([self.programs.path("qzaudio-waits")], on_disk=True)
        return [line.split("\t") for line in output.splitlines()]


def medians(runs):
    return [statistics.median(float(run[i]) for run in runs) for i in range(len(runs[0]))]
