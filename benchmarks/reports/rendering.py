"""Measures how fast the bench makes sound of a drive, and in how much memory."""

import os
import statistics
import subprocess

from reports import goals
from reports.measuring import Failure

REPEATS = 3
MEGABYTE = 1_000_000
# Four channels of 24 bits at 48 kHz; the header of the file is nothing beside them.
BYTES_PER_SECOND = 4 * 3 * 48000


class Rendering:
    """Of each drive seconds, how many of them are rendered in a second of processor time, and resident megabytes."""

    def __init__(self, programs):
        self.programs = programs

    def measure(self):
        folder = os.path.join(self.programs.build, "sounds")
        os.makedirs(folder, exist_ok=True)
        found = {}
        for drive in goals.DRIVES:
            path = os.path.join(folder, f"{drive.scenario}.wav")
            try:
                runs = [self.run(drive.scenario, path) for _ in range(REPEATS)]
            finally:
                if os.path.exists(path):
                    os.remove(path)
            found[drive.scenario] = [statistics.median(column) for column in zip(*runs)]
        return found

    def run(self, scenario, path):
        command = [self.programs.path("qzaudio-bench"), "render", scenario, "-o", path]
        with subprocess.Popen(command, stdout=subprocess.DEVNULL) as process:
            # Times and memory are those of FFmpeg and of all else that it starts, too.
            _, status, used = os.wait4(process.pid, 0)
            process.returncode = os.waitstatus_to_exitcode(status)
        if process.returncode != 0:
            raise Failure(f"{' '.join(command)}: exit status {process.returncode}")
        seconds = os.path.getsize(path) / BYTES_PER_SECOND
        return [seconds, seconds / (used.ru_utime + used.ru_stime), used.ru_maxrss * 1024 / MEGABYTE]
