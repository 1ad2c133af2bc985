#!/usr/bin/python3
"""Counts what the library's operations cost, and compares it with a table."""

import argparse
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile

DESCRIPTION = """\
Counts what the work costs that COUNTWORK does, and fails where that is more or less than TABLE says. KIND is what is counted, in one round
of each piece of work:

  instructions  in user space: by callgrind, in the emulator by its plugin
  allocations   blocks that the heap is asked for, by the program itself
  systemcalls   by strace, in the emulator by itself

The numbers are the same on all machines that have the same libraries: environment, process numbers, the place of the build and what the
heap holds do not change, and no function is used that the C library and Qt have for some processors only."""

PROJECT = pathlib.Path(__file__).resolve().parents[2]
SKIPPED = 77

HIDDEN_FROM_C_LIBRARY = """
    SSE3 SSSE3 SSE4_1 SSE4_2 AVX AVX2 AVX_Fast_Unaligned_Load BMI1 BMI2 ERMS FMA FSRM LZCNT MOVBE POPCNT RTM
""".split()
TUNABLES = {
    "glibc.cpu.hwcaps": ",".join(f"-{feature}" for feature in HIDDEN_FROM_C_LIBRARY),
    # Blocks are neither split nor joined, so that none costs more for what happened to be freed before it.
    "glibc.malloc.tcache_count": "4000",
    "glibc.malloc.tcache_max": "60000",
}
ENVIRONMENT = {
    "GLIBC_TUNABLES": ":".join(f"{name}={value}" for name, value in TUNABLES.items()),
    "HOME": "/media",
    "LC_ALL": "C.UTF-8",
    "LD_BIND_NOW": "1",
    "PATH": "/usr/bin",
    "QT_HASH_SEED": "0",
    "QT_NO_CPU_FEATURE": "sse3 ssse3 sse4.1 sse4.2 avx avx2 bmi bmi2 f16c rdrnd",
    "TZ": "UTC0",
}
# Places in the folder that tools/with-flash makes anew.
BUILD = "/media/build"
OUTPUT = "/media/output"

# One after the other on the same flash.
REMOVE_SETTINGS = ()
FILL_SETTINGS = ("fill",)
RUNS = (
    ("start", "start/withoutFile work"),
    REMOVE_SETTINGS,
    ("startByHand", "start/withoutFile floor"),
    FILL_SETTINGS,
    ("start", "start/withFile work"),
    ("startByHand", "start/withFile floor"),
    REMOVE_SETTINGS,
    ("work",),
)
OPENS = {"open", "openat", "openat2", "creat"}
STATES = {"stat", "stat64", "lstat", "lstat64", "fstat", "fstat64", "fstatat64", "newfstatat", "statx"}
# Asking the time is a system call on some machines only, memory comes when the heap happens to be full, and the time of a file is set
# where two saves fall into one tick of the clock.
DEPENDS_ON_MACHINE = {"brk", "clock_gettime", "clock_gettime64", "gettimeofday", "utimensat", "utimensat_time64"}


class Skip(Exception):
    """It cannot be counted here."""


def arguments():
    parser = argparse.ArgumentParser(description=DESCRIPTION, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--renew", action="store_true", help="write the table anew, below the comment that it begins with")
    parser.add_argument("--emulator", metavar="WORDS", default="", help="what runs COUNTWORK, when it is for another processor")
    parser.add_argument("--plugin", metavar="FILE", type=pathlib.Path, help="of the emulator: counts instructions")
    parser.add_argument("kind", metavar="KIND", choices=("instructions", "allocations", "systemcalls"))
    parser.add_argument("table", metavar="TABLE", type=pathlib.Path)
    parser.add_argument("program", metavar="COUNTWORK", type=pathlib.Path)
    return parser.parse_args()


def trace_of(path):
    """Of each part of the work its title and the names of its system calls: what strace writes, or the emulator."""
    parts = []
    is_inside = False
    for line in path.read_text(encoding="utf-8", errors="replace").splitlines():
        call = re.match(r"(?:\d+ +)?(\w+)\(", line)
        mark = re.match(r'(?:\d+ +)?access\("([^"]*)",.*0x5ee8', line)
        if mark:
            is_inside = mark[1] != "end"
            if is_inside:
                parts.append((mark[1], []))
        elif call and is_inside and call[1] not in DEPENDS_ON_MACHINE:
            parts[-1][1].append(call[1])
    return parts


class Counter:
    """Counts one kind of thing: what the program is run with, and what came of it, as numbers by the title of each part."""

    columns = ("own", "work", "floor")
    tolerance = 0.0

    def __init__(self, given):
        self.emulator = given.emulator.split()

    def words(self, _name):
        return self.emulator

    def counts(self, path, printed):
        """Of each part that the program printed its numbers; PATH is where what counts was told to write."""
        raise NotImplementedError

    @staticmethod
    def row(work, floor):
        return [work[0] - floor[0], work[0], floor[0]]

    @staticmethod
    def measure(number, _row):
        """What the tolerance is a part of, for a number in a row of the table."""
        return abs(number)


class Allocations(Counter):
    """The program counts them itself."""

    def counts(self, path, printed):
        return {title: [allocations] for title, _, allocations in printed}


class Instructions(Counter):
    """By callgrind."""

    tolerance = 0.03

    def __init__(self, given):
        super().__init__(given)
        if not shutil.which("valgrind"):
            raise Skip("there is no valgrind")

    def words(self, name):
        return ["valgrind", "--tool=callgrind", "--quiet", "--vgdb=no", f"--callgrind-out-file={OUTPUT}/{name}"]

    def counts(self, path, printed):
        found = {}
        for dump in path.parent.glob(f"{path.name}.*"):
            title = None
            with open(dump, encoding="utf-8", errors="replace") as file:
                for line in file:
                    if line.startswith("desc: Trigger: Client Request: "):
                        title = line.split(": ", 3)[3].strip()
                    elif line.startswith("summary: "):
                        found[title] = [int(line.split()[1])]
                        break
        return {title: found[title] for title, _, _ in printed}


class EmulatedInstructions(Counter):
    """By a plugin of the emulator, which knows the order of the parts and not their titles.

    A little differs from run to run and from machine to machine: 32-bit Arm divides in a loop, and so the time of day and the place of a
    block in memory count. That is small beside the work, but not beside what is the library's own in it."""

    tolerance = 0.03

    @staticmethod
    def measure(_number, row):
        return max(abs(number) for number in row)

    def __init__(self, given):
        super().__init__(given)
        self.plugin = inside(given, given.plugin)

    def words(self, name):
        return [*self.emulator, "-plugin", f"{self.plugin},counts={OUTPUT}/{name}"]

    def counts(self, path, printed):
        numbers = path.read_text(encoding="utf-8").split()
        return {title: [int(number)] for (title, _, _), number in zip(printed, numbers, strict=True)}


class SystemCalls(Counter):
    """By strace, or by the emulator itself."""

    columns = ("calls", "opens", "stats", "floor's calls", "floor's opens", "floor's stats")

    def __init__(self, given):
        super().__init__(given)
        if self.emulator:
            return
        if not shutil.which("strace"):
            raise Skip("there is no strace")
        trial = subprocess.run(["strace", "-o", "/dev/null", "true"], stderr=subprocess.PIPE, text=True, check=False)
        if trial.returncode != 0:
            raise Skip(f"no process may be traced here: {trial.stderr.strip()}")

    def words(self, name):
        if self.emulator:
            return [self.emulator[0], "-strace", "-D", f"{OUTPUT}/{name}", *self.emulator[1:]]
        return ["strace", "-f", "-o", f"{OUTPUT}/{name}"]

    def counts(self, path, printed):
        return {
            title: [len(calls), sum(call in OPENS for call in calls), sum(call in STATES for call in calls)] for title, calls in trace_of(path)
        }

    @staticmethod
    def row(work, floor):
        return [*work, *floor]


def counter_of(given):
    if given.kind == "instructions":
        return EmulatedInstructions(given) if given.plugin else Instructions(given)
    return Allocations(given) if given.kind == "allocations" else SystemCalls(given)


def build_folder(given):
    return given.program.resolve().parents[1]


def inside(given, path):
    """Where a file of the build is found while counting."""
    return f"{BUILD}/{path.resolve().relative_to(build_folder(given))}"


def run(given, output, lines):
    """Runs shell lines in a place that is the same for every machine, every build and every caller."""
    machine_id = pathlib.Path(output, "machine-id")
    machine_id.write_text("0123456789abcdef" * 2 + "\n", encoding="utf-8")
    words = [str(PROJECT / "tools/with-flash"), "bwrap", "--dev-bind", "/", "/", "--die-with-parent"]
    words += ["--unshare-pid", "--proc", "/proc", "--unshare-uts", "--hostname", "unit"]
    # QSettings asks for the machine's name and number when it locks a file.
    words += ["--tmpfs", "/var", "--ro-bind", str(machine_id), "/var/lib/dbus/machine-id"]
    # Which may be a folder of /var; the Arm libraries stand there.
    words += ["--ro-bind", str(PROJECT), str(PROJECT)]
    words += ["--ro-bind", str(build_folder(given)), BUILD, "--bind", output, OUTPUT, "--clearenv"]
    for name, value in ENVIRONMENT.items():
        words += ["--setenv", name, value]
    status = subprocess.run([*words, "sh", "-e", "-c", "\n".join(lines)], check=False).returncode
    if status != 0:
        sys.exit(f"ended with status {status}:\n" + "\n".join(lines))


def count(given, counter):
    """The rows of the table."""
    program = inside(given, given.program)
    lines = []
    for number, words in enumerate(RUNS):
        if words == REMOVE_SETTINGS:
            lines.append("rm --recursive --force /media/flash/nvm/*")
        elif words == FILL_SETTINGS:
            lines.append(shlex.join([*given.emulator.split(), program, *words]))
        else:
            lines.append(shlex.join([*counter.words(f"run{number}"), program, *words]) + f" >{OUTPUT}/printed{number}")
    parts = {}
    with tempfile.TemporaryDirectory() as output:
        run(given, output, lines)
        for path in sorted(pathlib.Path(output).glob("printed*")):
            rows = (line.split("\t") for line in path.read_text(encoding="utf-8").splitlines())
            printed = [(title, int(rounds), int(allocations)) for title, rounds, allocations in rows]
            counts = counter.counts(path.with_name(path.name.replace("printed", "run")), printed)
            for title, rounds, _ in printed:
                parts[title] = [number / rounds for number in counts[title]]
    subjects = [title.removesuffix(" work") for title in parts if title.endswith(" work")]
    nothing = [0] * len(next(iter(parts.values())))
    rows = {subject: counter.row(parts[f"{subject} work"], parts.get(f"{subject} floor", nothing)) for subject in subjects}
    return {subject: [round(number) for number in row] for subject, row in rows.items()}


def read(table):
    """The comment that a table begins with, and its rows."""
    lines = table.read_text(encoding="utf-8").splitlines() if table.exists() else []
    comment = [line for line in lines if line.startswith("#")]
    rows = {}
    for line in lines:
        if line and not line.startswith("#"):
            name, *numbers = line.split()
            rows[name] = [int(number) for number in numbers]
    return comment, rows


def write(table, comment, rows):
    lines = comment + [f"{name:40}" + "".join(f" {number:8}" for number in numbers) for name, numbers in rows.items()]
    table.write_text("\n".join(lines) + "\n", encoding="utf-8")


def differences(counter, expected, counted):
    for name in [*expected, *(name for name in counted if name not in expected)]:
        if name not in counted:
            yield f"{name}: stands in the table, but there is no such work"
        elif name not in expected:
            yield f"{name}: is not in the table"
        else:
            for column, should, number in zip(counter.columns, expected[name], counted[name], strict=True):
                measure = counter.measure(should, expected[name])
                if abs(number - should) > max(counter.tolerance * measure, 1 if counter.tolerance else 0):
                    more = f", {(number - should) / abs(should):+.1%}" if should else ""
                    yield f"{name}: {column} {number}, in the table {should}{more}"


def main():
    given = arguments()
    try:
        counter = counter_of(given)
    except Skip as reason:
        print(f"skipped: {reason}")
        return SKIPPED
    counted = count(given, counter)
    comment, expected = read(given.table)
    if given.renew:
        write(given.table, comment, counted)
        return 0
    found = list(differences(counter, expected, counted))
    for difference in found:
        print(difference)
    if found:
        print(f"If that is meant, tools/counts --renew writes {given.table.name} anew.")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
