"""The plots of docs/performance.md: the same bytes for the same numbers, and readable on white and on black."""

import os

import matplotlib

matplotlib.use("svg")
matplotlib.rcParams.update(
    {
        "svg.hashsalt": "qzaudio",
        "svg.fonttype": "path",
        "font.size": 10,
        "axes.spines.top": False,
        "axes.spines.right": False,
        "axes.grid": True,
        "grid.alpha": 0.25,
        "legend.frameon": False,
    }
)
GREY = "#7d7d7d"
for part in ("axes.edgecolor", "axes.labelcolor", "xtick.color", "ytick.color", "text.color", "grid.color"):
    matplotlib.rcParams[part] = GREY

from matplotlib import pyplot

WORK = "#2f86d6"
FLOOR = "#e07b00"
THIRD = "#2fa36b"
LABEL_HEIGHT = 18  # pixels
SMALLEST_SHARE = 0.1
UNITS = (("s", 1e9), ("ms", 1e6), ("µs", 1e3), ("ns", 1))


def time_text(nanoseconds, _=None):
    for unit, size in UNITS:
        if nanoseconds >= size:
            return f"{nanoseconds / size:.3g} {unit}"
    return f"{nanoseconds:.2g} ns"


def number_text(number, _=None):
    return f"{number:,.0f}"


def lines(path, curves, horizontal, vertical, logarithmic=True):
    """curves: label, colour and points (number, ns) each; the label stands at the curve's end."""
    figure, axes = pyplot.subplots(figsize=(6.6, 3.6))
    for label, colour, points in curves:
        numbers, times = zip(*points)
        axes.plot(numbers, times, marker="o", color=colour, linewidth=1.8, markersize=4)
    if logarithmic:
        axes.set_xscale("log")
        axes.set_yscale("log")
        lowest = min(time for _, _, points in curves for _, time in points)
        highest = max(time for _, _, points in curves for _, time in points)
        # Curves that hardly rise look like it.
        axes.set_ylim(lowest / 2, max(highest * 2, lowest * 8))
    else:
        axes.set_ylim(bottom=0)
    axes.set_xticks(sorted({number for _, _, points in curves for number, _ in points}))
    axes.xaxis.set_major_formatter(number_text)
    axes.yaxis.set_major_formatter(time_text)
    axes.minorticks_off()
    axes.set_xlabel(horizontal)
    axes.set_ylabel(vertical)
    label_ends(axes, curves)
    save(figure, path)


def label_ends(axes, curves):
    """Each label stands at its curve's end, or as near above it as the one below leaves room."""
    ends = sorted((axes.transData.transform(points[-1])[1], label, colour, points[-1]) for label, colour, points in curves)
    lowest_free = float("-inf")
    for height, label, colour, end in ends:
        place = max(height, lowest_free)
        lowest_free = place + LABEL_HEIGHT
        pixels_per_point = axes.figure.dpi / 72
        axes.annotate(label, end, xytext=(8, (place - height) / pixels_per_point), textcoords="offset points", color=colour, va="center")


def shares(path, rows):
    """rows: title and ratio as a share of its goal."""
    figure, axes = pyplot.subplots(figsize=(8, 0.26 * len(rows) + 0.9))
    positions = range(len(rows), 0, -1)
    for position, (_, share) in zip(positions, rows):
        colour = WORK if share <= 1 else FLOOR
        shown = max(share, SMALLEST_SHARE)
        axes.plot([SMALLEST_SHARE, shown], [position, position], color=colour, linewidth=1.2, alpha=0.5)
        axes.plot([shown], [position], marker="o", color=colour, markersize=5, clip_on=False)
        axes.annotate(f"{max(share, 0):.0%}", (shown, position), xytext=(7, 0), textcoords="offset points", color=colour, va="center", fontsize=8)
    axes.axvline(1, color=GREY, linewidth=1)
    axes.set_xscale("log")
    axes.set_xlim(SMALLEST_SHARE, max(2, *(share * 1.4 for _, share in rows)))
    axes.set_xticks([SMALLEST_SHARE, 0.25, 0.5, 1, 2, 4])
    axes.xaxis.set_major_formatter(lambda share, _: f"{share:.0%}")
    axes.minorticks_off()
    axes.set_yticks(list(positions))
    axes.set_yticklabels([title.replace("`", "") for title, _ in rows], fontsize=8)
    axes.set_ylim(0.3, len(rows) + 0.7)
    axes.grid(axis="y", visible=False)
    axes.set_xlabel("ratio to the floor in % of its goal; to the left of 100% it is reached")
    save(figure, path)


def save(figure, path):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    figure.savefig(path, format="svg", bbox_inches="tight", transparent=True, metadata={"Date": None, "Creator": None})
    pyplot.close(figure)
