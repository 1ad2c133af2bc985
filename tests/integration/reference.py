#!/usr/bin/python3
"""Makes the reference and looks into it; then with mistakes, which have to be told.

Usage: reference.py PROJECT WORK BENCH
"""

import filecmp
import pathlib
import re
import shutil
import sqlite3
import subprocess
import sys
import zlib

# A page, and what has to stand in it.
EXPECTED = {
    "index.html": ['href="tasks.html"', 'href="annotated.html"', 'href="bus.html"', 'href="commands.html"', 'href="qml.html#qml-scenarios"'],
    "tasks.html": ["Set a volume", "Ask for focus", ">ZelAudioManager::updateCurrentAudioVolume()</a>"],
    "annotated.html": ["ZelAudioManager", "AudioControl", "AudioFocusControl"],
    "classZelAudioManager.html": ["The volume key: one step up or down, 0 to 25", "Microphone"],
    "classaudio_1_1AudioControl.html": ["Places the sound in the car.", "steps, -15 (rear) to +15 (front)", "Fade and balance"],
    "audiotypes_8h.html": ["AudioStatusBtPhoneRing", "an incoming call over Bluetooth"],
    "bus.html": ["Method requestAudioFocus", "AccessDenied", "32-bit integer"],
    "commands.html": ["qzaudio-bench play", "Usage: qzaudio-bench explain", "Exit status"],
    "qml.html": ["AudioPolicy, a singleton", "updateCurrentAudioVolume", "cutPowerWhileSaving"],
}
# A mistake: the file, what stands there, what comes in its place, and what is said of it.
MISTAKES = [
    ("include/qzaudio/audiocontrol.h", "    /// Microphone input volume, 0 to 91; outside", "    // outside", "setMicroPhoneVolume"),
    ("include/qzaudio/audiotypes.h", " ///< Bluetooth audio", "", "AudioChannelBtAudio"),
    ("include/qzaudio/zelaudiomanager.h", "@param volume usually", "@param loudness usually", "'loudness'"),
    ("dbus/tavi.AudioService.xml", "<!-- The duration hint of the holder, 0 when nobody holds focus. -->", "", "getCurrentAudioFocus"),
    ("docs/reference/tasks.md", "ZelAudioManager::isAttOn()", "ZelAudioManager::isAttOff()", "isAttOff"),
]


def fail(text):
    sys.exit(f"reference.py: {text}")


def run(project, output, bench):
    return subprocess.run(
        [project / "tools" / "reference", "--output", output, bench], capture_output=True, text=True, check=False
    )


def operations(header):
    """The public operations that a header declares, by their names."""
    text = header.read_text(encoding="utf-8")
    public = re.sub(r"^private:.*?^};", "", text, flags=re.DOTALL | re.MULTILINE)
    return set(re.findall(r"^    (?!return|static_assert)[\w:<>*&, ]*[ *&](\w+)\([^;{]*\)(?: const| override| = 0)*(?:;|$)", public, re.MULTILINE))


def help_files(path):
    """All pages of the file for Qt's help, as it keeps them: compressed behind their length."""
    with sqlite3.connect(path) as base:
        rows = base.execute("SELECT Name, Data FROM FileNameTable JOIN FileDataTable ON FileId = Id WHERE length(Data) > 4")
        return {name: zlib.decompress(data[4:]) for name, data in rows}


def look(project, output, bench):
    html = output / "html"
    for name, texts in EXPECTED.items():
        page = (html / name).read_text(encoding="utf-8")
        for text in texts:
            if text not in page:
                fail(f"{html / name} has no {text}")

    found = set()
    for page in html.glob("*.html"):
        found.update(re.findall(r'class="memtitle">.*?</span>(\w+)(?:\(\)|<)', page.read_text(encoding="utf-8")))
    declared = {name for header in (project / "include" / "qzaudio").glob("*.h") for name in operations(header)}
    if len(declared) < 150 or declared - found:
        fail(f"of {len(declared)} operations these are not described: {sorted(declared - found)}")

    pages = help_files(output / "qzaudio.qch")
    for name in EXPECTED:
        if pages.get(name) != (html / name).read_bytes():
            fail(f"{name} of qzaudio.qch is another one")
    places = [str(place).encode() for place in (project, output, bench, pathlib.Path.home()) if len(str(place)) > 5]
    contents = {**pages, **{str(path.relative_to(html)): path.read_bytes() for path in html.rglob("*") if path.is_file()}}
    for name, content in contents.items():
        for place in places:
            if place in content:
                fail(f"{name} names {place.decode()}")
    return len(declared), len(contents)


def compare(first, second):
    """That two folders have the same files."""
    names = sorted(path.relative_to(first) for path in first.rglob("*") if path.is_file())
    if names != sorted(path.relative_to(second) for path in second.rglob("*") if path.is_file()):
        fail("made again it has other files")
    _, mismatch, errors = filecmp.cmpfiles(first, second, names, shallow=False)
    if mismatch or errors:
        fail(f"made again these are other ones: {mismatch + errors}")


def with_mistakes(project, work, bench):
    copy = work / "mistakes"
    for name in ("dbus", "docs", "examples", "include", "tools"):
        shutil.copytree(project / name, copy / name)
    for path in [*project.glob("*.md"), project / "CMakeLists.txt"]:
        shutil.copy(path, copy)
    for name, right, wrong, _ in MISTAKES:
        text = (copy / name).read_text(encoding="utf-8")
        if text.count(right) != 1:
            fail(f"{name} has {text.count(right)} times {right}")
        (copy / name).write_text(text.replace(right, wrong), encoding="utf-8")
    done = run(copy, work / "of-mistakes", bench)
    if done.returncode != 1:
        fail(f"with mistakes it ends with {done.returncode}")
    for name, _, _, told in MISTAKES:
        if told not in done.stderr:
            fail(f"of the mistake in {name} nothing is told:\n{done.stderr}")


def main():
    project, work = (pathlib.Path(word).resolve() for word in sys.argv[1:3])
    bench = pathlib.Path(sys.argv[3])
    shutil.rmtree(work, ignore_errors=True)
    work.mkdir(parents=True)
    outputs = [work / "first", work / "second-and-longer"]
    for output in outputs:
        done = run(project, output, bench)
        if done.returncode != 0 or done.stderr:
            fail(f"tools/reference ends with {done.returncode}:\n{done.stderr}")
    described, files = look(project, outputs[0], bench)
    compare(*(output / "html" for output in outputs))
    if not filecmp.cmp(*(output / "qzaudio.qch" for output in outputs), shallow=False):
        fail("made again qzaudio.qch is another one")
    with_mistakes(project, work, bench)
    print(f"{described} operations are described, in {files} files; {len(MISTAKES)} mistakes are told")


main()
