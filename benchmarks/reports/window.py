"""Measures how long the desk window takes to show itself and its frames, and how much memory it needs."""

import json
import statistics

REPEATS = 3


class Window:
    """Of each key of goals.WINDOW the median of several windows, on a display that nobody sees and without OpenGL."""

    def __init__(self, programs):
        self.programs = programs

    def measure(self):
        runs = [self.run() for _ in range(REPEATS)]
        return {key: statistics.median(run[key] for run in runs) for key in runs[0]}

    def run(self):
        display = ["xvfb-run", "--auto-servernum", "--server-args=-screen 0 1920x1080x24", "env", "QT_QUICK_BACKEND=software"]
        told = json.loads(self.programs.run_plainly(display + [self.programs.path("qzaudio-window-time")]))
        return {"start": told["start"], "frames": max(told["frames"].values()), "longest": max(told["longest"].values()), "resident": told["resident"]}
