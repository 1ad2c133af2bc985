"""Which plots there are, and what they show."""

import os

from reports import goals, plots


def curve(results, label, colour, pattern, numbers, part="work"):
    return (label, colour, [(number, results.median(pattern.format(number), part)) for number in numbers])


def draw(results, folder):
    def path(name):
        return os.path.join(folder, f"{name}.svg")

    rows = [(row.title, results.value(row) / row.most) for row in goals.ROWS if row.most is not None and results.has(row.key)]
    plots.shares(path("ratios"), rows)
    focus = "focus/requestAndAbandon/{}"
    plots.lines(
        path("focus"),
        [
            curve(results, "the library", plots.WORK, focus, goals.DEPTHS),
            curve(results, "bare vector", plots.FLOOR, focus, goals.DEPTHS, "floor"),
        ],
        "entries in the focus stack",
        "time of request and abandon",
    )
    channels = "policy/setVolume/{}"
    plots.lines(
        path("channels"),
        [
            curve(results, "the library", plots.WORK, channels, goals.CHANNELS),
            curve(results, "bare calls", plots.FLOOR, channels, goals.CHANNELS, "floor"),
        ],
        "channels of the volume type",
        "time of setVolume, unsaved",
        logarithmic=False,
    )
    plots.lines(
        path("clients"),
        [
            curve(results, "none listens", plots.WORK, "bus/clients/{}", goals.CLIENTS),
            curve(results, "all listen", plots.THIRD, "bus/listeners/{}", goals.CLIENTS),
            curve(results, "an echo, all listen", plots.FLOOR, "bus/listeners/{}", goals.CLIENTS, "floor"),
        ],
        "other clients on the bus",
        "time of requestAudioFocus",
    )
    keys = "settings/save/{}"
    plots.lines(
        path("keys"),
        [
            curve(results, "the library", plots.WORK, keys, goals.KEYS[1:]),
            curve(results, "QSettings", plots.FLOOR, keys, goals.KEYS[1:], "floor"),
        ],
        "other programs' keys in the file",
        "time of a save in memory",
    )
