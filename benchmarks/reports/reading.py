"""Measures how fast the bench reads a unit's log, and in how much memory."""

import glob
import json
import os
import statistics
import subprocess

from reports import goals
from reports.measuring import Failure

REPEATS = 5
MEGABYTE = 1_000_000
# ms from a drive to the next one
PAUSE = 1000

# Lines of other programs, between those of the library.
OTHERS = [
    "unit kernel: usb 1-1: new high-speed USB device number {number} using ehci-platform",
    "unit systemd[1]: Started Session {number} of user root.",
    "unit navigation[733]: [route] segment {number} of 214, 350 m to the next manoeuvre, position is 48.1374 11.5755",
]


def texts(event):
    """Time and text of the library's lines in what the bench told of a drive."""
    if event.get("event") == "log":
        yield event["time"], event["text"]
    for caused in event.get("caused", []):
        yield from texts(caused)


def drives(programs):
    """For each scenario its library's lines."""
    found = []
    for scenario in sorted(glob.glob(os.path.join(programs.project, "bench", "scenarios", "*.js"))):
        told = programs.run_plainly([programs.path("qzaudio-bench"), "play", "--json", "--log", scenario])
        found.append([line for event in told.splitlines() for line in texts(json.loads(event))])
    return [lines for lines in found if lines]


def stamp(milliseconds):
    hours = milliseconds // 3_600_000
    return f"2026-11-{1 + hours // 24 % 28:02}T{hours % 24:02}:{milliseconds // 60_000 % 60:02}:{milliseconds // 1000 % 60:02}.{milliseconds % 1000:03}"


def write_log(path, lines_of_drives, megabytes, others):
    """One drive after the other until the file is as long as wanted, with so many lines of others before each of the library's."""
    begin, size, number = 0, 0, 0
    with open(path, "w", encoding="utf-8") as file:
        while size < megabytes * MEGABYTE:
            for lines in lines_of_drives:
                text = []
                for time, line in lines:
                    at = stamp(begin + time)
                    for _ in range(others):
                        number += 1
                        text.append(f"{at} {OTHERS[number % len(OTHERS)].format(number=number)}\n")
                    text.append(f"{at} unit player[812]: {line}\n")
                begin += lines[-1][0] + PAUSE
                size += file.write("".join(text))


class Reading:
    """Of each log megabytes, MB/s of processor time and resident megabytes."""

    def __init__(self, programs, megabytes):
        self.programs = programs
        self.megabytes = megabytes

    def measure(self):
        lines = drives(self.programs)
        folder = os.path.join(self.programs.build, "logs")
        os.makedirs(folder, exist_ok=True)
        found = {}
        for log in goals.LOGS:
            path = os.path.join(folder, f"{log.key}.log")
            write_log(path, lines, self.megabytes, log.others)
            try:
                runs = [self.run(path) for _ in range(REPEATS)]
            finally:
                os.remove(path)
            found[log.key] = [statistics.median(column) for column in zip(*runs)]
        return found

    def run(self, path):
        size = os.path.getsize(path) / MEGABYTE
        command = [self.programs.path("qzaudio-bench"), "explain", "--summary", path]
        with subprocess.Popen(command, stdout=subprocess.DEVNULL) as process:
            _, status, used = os.wait4(process.pid, 0)
            process.returncode = os.waitstatus_to_exitcode(status)
        if process.returncode != 0:
            raise Failure(f"{' '.join(command)}: exit status {process.returncode}")
        return [size, size / (used.ru_utime + used.ru_stime), used.ru_maxrss * 1024 / MEGABYTE]
