"""The text of docs/performance.md around the numbers."""

from reports import goals, machine
from reports.plots import number_text, time_text

HEAD = """\
# Performance

What the library's operations cost, held against a floor: the least that the same work can cost on the same platform, in the same program.
A time depends on the machine, a ratio hardly does. `benchmarks/report` measured and wrote this file.

    benchmarks/report                  # measures all and writes this file: some {minutes} minutes, best on an idle machine
    benchmarks/report --check          # writes nothing; fails where a ratio is more than {tolerance:.0f} % above its goal
    benchmarks/report --only focus     # prints one area
    benchmarks/report --help

| Measured | |
|---|---|
| on | {date} |
| rounds | {rounds}; in each of them every work directly beside its floor. A ratio is the median of the rounds' ratios |
{machine}

The platform below is one that does nothing of its own (`benchmarks/idleplatform/`), so that no time of a platform hides the library's. The library is
that of a release build. `tst_workloads` holds that each floor makes the same platform calls as the work beside it and writes the same lines.
"""

RATIOS = """\
## Ratios

Objects of the platform are made and destroyed for most operations, as the platform wants it; an object that does nothing still costs one allocation.
"Allocations" is the library's own number, the floor's already taken off. In memory means a flash in memory, on a disk one on the machine's disk.

"""

NOTES = """\
- The floor of a save and of a start is QSettings with its own guard, a lock file, which it synchronizes before it reads. The library's guard needs fewer system
  calls. A save by either of them is on the flash, its name included, before the call comes back.
- A read with a QSettings of its own does not read the file again while its size and time are the same: QSettings keeps in the process what it read.
- The gains and records of the equalizer's floors are ready beforehand: the library's time has the range checks and the filling of the record in it.
- A request over the bus is timed until its answer is there. Nobody else has focus then; what it costs more to tell somebody stands below.
- Below 0 ns is as good as 0: the difference is smaller than what two equal calls differ by.
"""

GROWTH = """\
## How it grows

### With the depth of the focus stack

A prompt asks for focus over so many clients that had it, and gives it back. Each entry is looked at, by its client id and by the loss that it suffers.

![Time over depth](performance/focus.svg)

{focus}

### With the number of channels of a volume type

Speech has 1 channel, telephony 2, media 14; each of them is sent its volume. Unsaved, log off.

![Time over channels](performance/channels.svg)

{channels}

### With the number of clients on the bus

A program asks `qzaudio-focusd` for focus over so many others, each with a connection of its own and a client in the stack; the daemon takes {holders} at most.
The answer comes after the one that had focus was told of its loss, with a signal. Where nobody listens to it, the number of clients hardly matters. Where all of
them do, the bus hands the signal to each of them before it hands on the answer, and they are woken: the last column is an echo that does nothing but
send such a signal and answer, to as many listeners.

![Time over clients](performance/clients.svg)

{clients}

### With the number of keys in the settings file

Other programs' keys are kept, so each save writes them, too. In memory, where the disk's time does not hide it.

![Time of a save over keys](performance/keys.svg)

{keys}

A save reads the file, changes it and writes it, so its time grows in proportion to the file's size: {per_key} for each further key.
"""

EDGES = """\
## At the edges

### A log handler that is slow

A handler that takes 1 ms for each line is a handler that writes to a slow terminal. What a call costs then is the number of its lines.

{handler}

### Memory and loading

Resident memory and memory of the process's own (private and dirty) of a program that is linked with the library and the platform that does nothing, and its page
faults from start to end. Qt Core and D-Bus are most of it.

{memory}

Loading the library into a program that has Qt and the platform already costs {faults:.0f} page faults, {resident:.0f} kB of resident memory and {dirty:.0f} kB
of the process's own.
"""

WAITS = """\
## How long a save waits

The caller saves again and again, with the library or with a fresh QSettings, while another process does the same, stands still in the middle of a save with the
lock in hand, or died there. A slow flash takes 500 ms for each synchronization. Times in ms; "in the file" is the number of saves that were written when the
call came back. What was not is kept by the library and written with the next save that gets through.

{waits}

The library waits for another writer up to a second. Who was waited for in vain is not waited for again: a caller that saves several values stands still once.
Where a busy writer left few saves in the file, it took the lock again each time before anybody else saw it free.
QSettings waits without a limit while the other process lives, and 30 seconds for the library's lock when it died. On a slow flash a save takes its two
synchronizations, of the file and of the folder, and as long as the writer in front of it needs, up to that second.
"""

READING = """\
## Reading a log

`qzaudio-bench explain --summary` over logs of the bundled scenarios' drives, one after the other, with a date before each line as `journalctl -o short-iso`
writes it. MB/s of processor time of one core; resident memory at its largest, which a longer log leaves as it is (`--log-size 2000`).

{reading}
"""

RENDERING = """\
## Making sound of a drive

`qzaudio-bench render SCENARIO -o FILE`: four channels of 24 bits at 48 kHz. Seconds of the drive in a second of processor time, that of FFmpeg and espeak-ng included;
resident memory of the largest of these processes.

{rendering}
"""

WINDOW = """\
## The desk window

`qzaudio-window-time`: all rooms of the window in turn, without OpenGL, while a scenario drives with 50 calls of the platform in a second of the car, ten times as
fast; then an hour's recording. Own work for a frame is what the scene graph tells of polishing and synchronizing. The thread's time is its own processor time
between two sleeps, painting left out, which a graphics card does elsewhere: events are in it, and the pauses in which the QML engine collects garbage, which make
the longest.

{window}
"""


def table(heads, rows):
    texts = ["| " + " | ".join(heads) + " |", "|" + "---|" * len(heads)]
    return "\n".join(texts + ["| " + " | ".join(row) + " |" for row in rows])


def goal_text(row):
    if row.most is None:
        return ""
    return f"{row.most:g} ns" if row.kind == "ns" else f"{row.most:.2f}"


def ratio_rows(results):
    for row in goals.ROWS:
        if not results.has(row.key):
            continue
        value = results.value(row)
        allocations = results.allocations.get(row.key, {})
        own = max(0, round(allocations["work"] - allocations["floor"])) if len(allocations) == 2 else None
        yield [
            f"**{value:.1f} ns**" if row.kind == "ns" else f"**{value:.2f}**",
            goal_text(row),
            row.title,
            time_text(results.median(row.key, "work")),
            time_text(results.median(row.key, "floor")),
            "" if own is None else str(own),
            row.floor,
        ]


def growth_table(results, head, pattern, numbers, parts):
    rows = []
    for number in numbers:
        times = [time_text(results.median(pattern.format(number), part)) for part in parts.values()]
        ratio = []
        if list(parts.values()) == ["work", "floor"]:
            ratio = [f"{results.ratio(pattern.format(number)):.2f}"]
        rows.append([number_text(number)] + times + ratio)
    return table([head] + list(parts) + (["Ratio"] if len(parts) == 2 else []), rows)


def clients_table(results, numbers):
    rows = []
    for number in numbers:
        quiet, listening = f"bus/clients/{number}", f"bus/listeners/{number}"
        rows.append(
            [
                number_text(number),
                time_text(results.median(quiet, "work")),
                f"{results.ratio(quiet):.2f}",
                time_text(results.median(listening, "work")),
                f"{results.ratio(listening):.2f}",
                time_text(results.median(listening, "floor")),
            ]
        )
    return table(["Clients", "None listens", "to 1 client", "All listen", "to the echo", "An echo"], rows)


def cost_of_a_key(results):
    few, many = goals.KEYS[0], goals.KEYS[-1]
    more = results.median(f"settings/save/{many}", "work") - results.median(f"settings/save/{few}", "work")
    return more / (many - few)


def wait_rows(waits):
    for wait in waits:
        if len(wait) == 3:
            yield [wait[0], wait[1], "does not come back", "", "", f"{wait[2]}"]
        else:
            times = [f"{float(time):.3g}" if float(time) < 100 else f"{float(time):.0f}" for time in wait[2:5]]
            yield wait[:2] + times + [f"{wait[5]} of {wait[6]}"]


def memory_rows(memory):
    names = {"nothing": "linked, nothing used", "facade": "only the facade", "all": "facade, manager, settings, focus"}
    for use, name in names.items():
        resident, dirty, faults = memory[use]
        yield [name, f"{resident:.0f} kB", f"{dirty:.0f} kB", f"{faults:.0f}"]


def reading_rows(reading):
    for log in goals.LOGS:
        megabytes, rate, resident = reading[log.key]
        yield [f"**{rate:.0f} MB/s**", f"{log.rate} MB/s", f"{resident:.0f} MB", f"{log.resident} MB", f"{megabytes:.0f} MB", log.title]


def rendering_rows(rendering):
    for drive in goals.DRIVES:
        seconds, rate, resident = rendering[drive.scenario]
        yield [f"**{rate:.0f} times**", f"{drive.rate} times", f"{resident:.0f} MB", f"{drive.resident} MB", f"{drive.scenario}, {seconds:.0f} s", drive.title]


def window_rows(window):
    for figure in goals.WINDOW:
        yield [f"**{window[figure.key]:.0f} {figure.unit}**", f"{figure.most} {figure.unit}", figure.title]


def text(results, edges, about):
    heads = ["Ratio", "Goal", "Work", "Takes", "Floor takes", "Allocations", "The floor is"]
    parts = {"The library": "work", "Floor": "floor"}
    faults, resident, dirty = edges["load"]
    sections = [
        HEAD.format(tolerance=goals.TOLERANCE * 100, machine=machine.rows(about["facts"]), **about),
        RATIOS + "![Ratios as shares of their goals](performance/ratios.svg)\n\n" + table(heads, ratio_rows(results)) + "\n\n" + NOTES,
        GROWTH.format(
            focus=growth_table(results, "Depth", "focus/requestAndAbandon/{}", goals.DEPTHS, parts),
            channels=growth_table(results, "Channels", "policy/setVolume/{}", goals.CHANNELS, parts),
            clients=clients_table(results, goals.CLIENTS),
            keys=growth_table(results, "Other keys", "settings/save/{}", goals.KEYS, {"The library": "work", "QSettings": "floor"}),
            holders=goals.MOST_CONNECTIONS,
            per_key=time_text(cost_of_a_key(results)),
        ),
        EDGES.format(
            handler=table(["Call", "Lines", "Takes"], [[f"`{name}`", f"{float(lines):g}", f"{float(time):.1f} ms"] for name, lines, time in edges["handler"]]),
            memory=table(["Used", "Resident", "Own", "Page faults"], memory_rows(edges["memory"])),
            faults=faults,
            resident=resident,
            dirty=dirty,
        ),
        WAITS.format(waits=table(["The other writer", "The caller's way", "First", "Median after it", "Longest after it", "In the file"], wait_rows(edges["waits"]))),
        READING.format(reading=table(["Speed", "At least", "Resident", "At most", "Log", "Of"], reading_rows(edges["reading"]))),
        RENDERING.format(rendering=table(["Real time", "At least", "Resident", "At most", "Drive", "With"], rendering_rows(edges["rendering"]))),
        WINDOW.format(window=table(["Measured", "At most", "What"], window_rows(edges["window"]))),
    ]
    return "\n".join(sections)
