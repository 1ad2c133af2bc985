"""Runs the measuring programs and collects what they print."""

import json
import os
import shutil
import statistics
import subprocess
import sys

from reports import goals

FILTERS = {
    "volume": "^volume/",
    "equalizer": "^equalizer/",
    "routing": "^routing/",
    "policy": "^policy/",
    "focus": "^focus/",
    "logging": "^logging/",
    "settings": "^settings/(volumeKey|getAutoMicGain)/",
    "keys": "^settings/save/",
}

# Seconds for each work and each floor, in each round.
TIME_IN_MEMORY = 0.02
TIME_WITH_FILES = 0.05
# Each a process of its own; their median is the round's.
STARTS = 3


class Failure(Exception):
    """Something that the one who runs the report can read and mend."""


class Programs:
    """The measuring programs of one build folder."""

    def __init__(self, project, build):
        self.project = project
        self.build = build
        self.folder = os.path.join(build, "flash")

    def path(self, name):
        return os.path.join(self.build, "bin", name)

    def run(self, command, on_disk=False, before=None):
        """The output of a command that has a flash of its own, in memory or in the build folder. What is done before is not timed."""
        wrapped = [os.path.join(self.project, "tools", "with-flash")]
        if on_disk:
            shutil.rmtree(self.folder, ignore_errors=True)
            wrapped += ["--dir", self.folder]
        if before:
            command = ["sh", "-c", '"$0" "$1" && shift && exec "$@"', before[0], before[1]] + command
        return self.run_plainly(wrapped + command)

    def run_plainly(self, command):
        try:
            done = subprocess.run(command, capture_output=True, text=True, errors="replace", check=False)
        except OSError as error:
            raise Failure(f"{command[0]} cannot be started: {error.strerror}") from error
        if done.returncode != 0:
            raise Failure(f"{' '.join(command)}: exit status {done.returncode}\n{done.stderr.strip()}")
        return done.stdout


class Results:
    """Of each work and its floor the times of all rounds, in ns."""

    def __init__(self, times=None, allocations=None):
        self.times = times or {}
        self.allocations = allocations or {}

    def add(self, key, part, nanoseconds):
        self.times.setdefault(key, {}).setdefault(part, []).append(nanoseconds)

    def has(self, key):
        return "work" in self.times.get(key, {})

    def median(self, key, part):
        times = self.times.get(key, {}).get(part)
        return statistics.median(times) if times else None

    def ratio(self, key):
        """The median of the rounds' ratios: what one round slows down it slows down for both."""
        parts = self.times[key]
        return statistics.median(work / floor for work, floor in zip(parts["work"], parts["floor"]))

    def difference(self, key):
        parts = self.times[key]
        return statistics.median(work - floor for work, floor in zip(parts["work"], parts["floor"]))

    def value(self, row):
        return self.ratio(row.key) if row.kind == "ratio" else self.difference(row.key)

    def add_google(self, text, clock, suffix=""):
        for benchmark in json.loads(text)["benchmarks"]:
            if benchmark.get("error_occurred"):
                raise Failure(f"{benchmark['name']}: {benchmark['error_message']}")
            key, part = benchmark["name"].rsplit("/", 1)
            operations = goals.OPERATIONS.get(key, 1)
            self.add(key + suffix, part, benchmark[clock] / operations)
            if "allocations" in benchmark:
                self.allocations.setdefault(key + suffix, {})[part] = benchmark["allocations"] / operations


class Round:
    """One round: all work, each directly before its floor."""

    def __init__(self, programs, results):
        self.programs = programs
        self.results = results

    def google(self, program, pattern, seconds, clock, on_disk=False, suffix=""):
        command = [
            self.programs.path(program),
            f"--benchmark_filter={pattern}",
            f"--benchmark_min_time={seconds}",
            "--benchmark_format=json",
        ]
        self.results.add_google(self.programs.run(command, on_disk), clock, suffix)

    def run(self, areas):
        in_memory = [FILTERS[area] for area in areas if area not in ("settings", "start", "bus")]
        if in_memory:
            # Time of the processor: what else the machine does counts as little as can be.
            self.google("qzaudio-benchmarks", "|".join(in_memory), TIME_IN_MEMORY, "cpu_time")
        if "settings" in areas:
            for on_disk, suffix in ((True, "@flash"), (False, "@memory")):
                self.google("qzaudio-benchmarks", FILTERS["settings"], TIME_WITH_FILES, "real_time", on_disk, suffix)
            self.google("qzaudio-benchmarks", FILTERS["keys"], TIME_IN_MEMORY, "real_time")
        if "start" in areas:
            self.starts()
        if "bus" in areas:
            self.bus()

    def starts(self):
        program = self.programs.path("qzaudio-start-time")
        for on_disk, suffix in ((True, "@flash"), (False, "@memory")):
            for state, before in (("there", [program, "fill"]), ("missing", None)):
                times = {"work": [], "floor": []}
                for _ in range(STARTS):
                    for part in times:
                        times[part].append(int(self.programs.run([program, part], on_disk, before)))
                for part in times:
                    self.results.add(f"start/{state}{suffix}", part, statistics.median(times[part]))

    def bus(self):
        output = self.programs.run_plainly(
            [
                os.path.join(self.programs.project, "tools", "with-focusd"),
                self.programs.path("qzaudio-focusd"),
                self.programs.path("qzaudio-bus-time"),
            ]
        )
        for line in output.splitlines():
            key, part, time = line.split()
            self.results.add(key, part, float(time))
        for clients in goals.CLIENTS:
            self.results.add(f"bus/clients/{clients}", "floor", self.results.times["bus/clients/1"]["work"][-1])


def tell(text):
    print(text, file=sys.stderr, flush=True)
