"""A copy of the project in which the library is changed, built and tested."""

import json
import os
import re
import shutil
import subprocess

AREAS = ["facade", "store", "policy", "focus", "bench"]
# What their test programs start besides
PROGRAMS = ["qzaudio", "qzaudio-bench", "qzaudio-focusd"]
BUILD = os.path.join("build", "release")
# What a changed source gets into, beside the library
KEPT_OUTPUTS = re.compile(r"lib/libqzaudio\.so\.[\d.]+|tests/\w+|bin/qzaudio-(bench|focusd)")
LONGEST_COMPILATION = 300  # seconds
# A loop without an end must not eat up the machine: bytes of memory, and of a file.
LIMITS = ["prlimit", "--core=0", f"--as={8 << 30}", f"--fsize={1 << 30}"]


class Failure(Exception):
    """Something that the one who runs the tool can read and mend."""


class Workshop:
    """
    One copy. Commands see it in the project's own place, and the machine's files around it cannot be written to: a changed
    library does to files what nobody foresees. What it leaves running ends with each command.
    """

    def __init__(self, project, folder):
        self.project = project
        self.tree = os.path.join(folder, "tree")
        self.kept = os.path.join(folder, "kept")
        self.build = os.path.join(project, BUILD)  # as the commands see it
        self.running = None

    def sandbox(self, command):
        bubblewrap = ["bwrap", "--ro-bind", "/", "/", "--dev-bind", "/dev", "/dev", "--proc", "/proc", "--tmpfs", "/tmp"]
        bubblewrap += ["--setenv", "CCACHE_READONLY", "1", "--setenv", "CCACHE_TEMPDIR", "/tmp"]
        return bubblewrap + ["--bind", self.tree, self.project, "--chdir", self.project, "--unshare-pid", "--die-with-parent", "--"] + command

    def run(self, command, seconds=None):
        """Exit status and output; None where it did not end in time."""
        # A session of its own: Ctrl+C is for the tool.
        with subprocess.Popen(self.sandbox(command), stdout=subprocess.PIPE, stderr=subprocess.STDOUT, start_new_session=True) as self.running:
            try:
                output, _ = self.running.communicate(timeout=seconds)
            except subprocess.TimeoutExpired:
                self.running.kill()
                return None, ""
        return self.running.returncode, output.decode(errors="replace")

    def stop(self):
        """Ends the command that runs, from another thread."""
        if self.running:
            self.running.kill()

    def run_or_fail(self, command):
        status, output = self.run(command)
        if status != 0:
            raise Failure(f"{' '.join(command)}: exit status {status}\n{output.strip()[-2000:]}")
        return output

    # The pristine state ------------------------------------------------------------------------------------------------

    def copy_sources(self):
        """What the user's tree has now; only what differs, so that the rest is not built again."""
        command = ["git", "-C", self.project, "ls-files", "-z", "--cached", "--others", "--exclude-standard"]
        names = {name for name in subprocess.run(command, stdout=subprocess.PIPE, check=True).stdout.decode().split("\0") if name}
        names = {name for name in names if os.path.isfile(os.path.join(self.project, name))}
        for name in sorted(names):
            there, here = os.path.join(self.project, name), os.path.join(self.tree, name)
            with open(there, "rb") as file:
                wanted = file.read()
            if os.path.exists(here):
                with open(here, "rb") as file:
                    if file.read() == wanted:
                        continue
                os.remove(here)
                shutil.copy(there, here)
            else:
                os.makedirs(os.path.dirname(here), exist_ok=True)
                shutil.copy2(there, here)
        for folder, folders, files in os.walk(self.tree):
            folders[:] = [name for name in folders if os.path.join(folder, name) != os.path.join(self.tree, "build")]
            for name in files:
                if os.path.relpath(os.path.join(folder, name), self.tree) not in names:
                    os.remove(os.path.join(folder, name))

    def prepare(self):
        self.copy_sources()
        os.makedirs(os.path.join(self.tree, BUILD), exist_ok=True)
        self.run_or_fail(["tools/configure", "release", "-DBUILD_TESTING=ON"])
        self.run_or_fail(["ninja", "-C", self.build] + PROGRAMS)  # and CMake before it, which knows new tests afterwards
        programs = {name for test in self.tests() for name in self.programs_of(test)}
        self.run_or_fail(["ninja", "-C", self.build] + sorted(programs))
        shutil.rmtree(self.kept, ignore_errors=True)

    def programs_of(self, test):
        """CTest names no command whose program is not there yet; such a test has the name of its program."""
        if "command" not in test:
            return [test["name"]]
        return [os.path.basename(word) for word in test["command"] if word.startswith(self.build + "/tests/")]

    def copy_of(self, other):
        """The other's files with their times, which says that nothing has to be built."""
        if not os.path.exists(self.tree):
            os.makedirs(os.path.dirname(self.tree), exist_ok=True)
            subprocess.run(["cp", "--archive", "--reflink=auto", other.tree, self.tree], check=True)

    def tests(self):
        """Those of the areas, as ctest knows them."""
        listed = self.run_or_fail(["ctest", "--test-dir", self.build, "--show-only=json-v1"])
        tests = json.loads(listed[listed.index("{") :])["tests"]
        folders = {os.path.join(self.build, "tests", area) for area in AREAS}
        return [test for test in tests if any(entry["name"] == "WORKING_DIRECTORY" and entry["value"] in folders for entry in test["properties"])]

    # A mutant ----------------------------------------------------------------------------------------------------------

    def learn(self):
        """Which objects are made of which sources, and what they get into."""
        self.objects_of = {}
        current = None
        for line in self.run_or_fail(["ninja", "-C", self.build, "-t", "deps"]).splitlines():
            if line.startswith(" "):
                path = os.path.relpath(os.path.join(self.build, line.strip()), self.project)
                if path.startswith("src" + os.sep):
                    self.objects_of.setdefault(path, set()).add(current)
            elif ": #deps" in line:
                current = line.partition(":")[0]
        self.steps_of = {}

    def outputs_of(self, path):
        described = self.run_or_fail(["ninja", "-C", self.build, "-t", "query", path])
        return [line.strip() for line in described.partition("outputs:")[2].splitlines() if line.strip()]

    def steps(self, file):
        """What has to be made again for a source, in order: paths in the build folder with their commands."""
        if file not in self.steps_of:
            outputs, links = [], []
            for compiled in sorted(self.objects_of.get(file, [])):
                waiting, linked = [compiled], []
                while waiting:
                    for output in self.outputs_of(waiting.pop(0)):
                        is_archive = output.endswith(".a")
                        if (is_archive or KEPT_OUTPUTS.fullmatch(output)) and output not in linked:
                            linked.append(output)
                            waiting += [output] if is_archive else []
                if any(not output.endswith(".a") for output in linked):
                    outputs.append(compiled)
                    links += [output for output in linked if output not in links]
            # Not everything was built: nobody asks the window.
            links = [output for output in links if os.path.exists(os.path.join(self.tree, BUILD, output))]
            links.sort(key=lambda output: (not output.endswith(".a"), not output.startswith("lib/")))
            commands = [(output, self.command_for(output)) for output in outputs + links]
            self.steps_of[file] = [(output, command) for output, command in commands if command]
        return self.steps_of[file]

    def command_for(self, output):
        """Empty for a name that only stands for others."""
        command = "".join(self.run_or_fail(["ninja", "-C", self.build, "-t", "commands", "-s", output]).splitlines()[-1:])
        # What the compiler thinks of a mutant is no news.
        return command + " -w" if output.endswith(".o") else command

    def make(self, file, text):
        """Whether the changed source compiles."""
        with open(os.path.join(self.tree, file), "w", encoding="utf-8") as opened:
            opened.write(text)
        steps = self.steps(file)
        for output, _ in steps:
            kept = os.path.join(self.kept, output)
            if not os.path.exists(kept):
                os.makedirs(os.path.dirname(kept), exist_ok=True)
                shutil.copy2(os.path.join(self.tree, BUILD, output), kept)
        script = "\n".join(["set -e", f"cd {self.build}"] + [command for _, command in steps])
        status, _ = self.run(["sh", "-c", script], LONGEST_COMPILATION)
        return status == 0

    def undo(self, file, text):
        """The source last: where this is broken off, the next run sees that it is not as it should be, and builds it again."""
        for output, _ in self.steps(file):
            kept, there = os.path.join(self.kept, output), os.path.join(self.tree, BUILD, output)
            if os.path.exists(kept):
                if os.path.exists(there):
                    os.remove(there)
                shutil.copy2(kept, there)
        path = os.path.join(self.tree, file)
        before = os.stat(os.path.join(self.project, file))
        with open(path, "w", encoding="utf-8") as opened:
            opened.write(text)
        os.utime(path, ns=(before.st_atime_ns, before.st_mtime_ns))

    def passes(self, test, seconds):
        """Of a test that does not end in time nobody knows it; it did not pass."""
        command = ["ctest", "--test-dir", self.build, "--no-tests=error", "--output-on-failure", "--tests-regex", f"^{re.escape(test)}$"]
        status, output = self.run(["env", "QTEST_DISABLE_STACK_DUMP=1"] + LIMITS + command, seconds)
        return status == 0, "timed out" if status is None else output
