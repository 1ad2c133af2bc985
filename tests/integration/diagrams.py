#!/usr/bin/python3
"""Draws the diagrams of the documents once more, from what files include and from what a drive logs, and compares.

Usage: diagrams.py [--write] BENCH PROJECT

Each stands between two lines, <!-- diagram: NAME --> and <!-- end of diagram -->. With --write they are renewed.
"""

import collections
import itertools
import json
import pathlib
import re
import subprocess
import sys

# The folders that the diagram shows, with what a reader knows them as.
FOLDERS = {
    "window": "the desk window",
    "bench": "the desk bench",
    "qml": "QML module QzAudio",
    "qml of the simulator": "QML module QzAudio.Simulator",
    "service": "the focus daemon",
    "doctor": "the doctor",
    "src": "the library",
    "src/settingsfile": "the settings file's name",
    "simulator": "the simulated platform",
    "platform": "what the platform declares",
    "include": "the public headers",
}

# What two diagrams follow: its start, and its last request.
SCENARIO = """\
powerOn();
wait(3000);
AudioPolicy.updateAudioStatus(AudioPolicy.StatusCarPlayTelephony);
"""

STATES = pathlib.Path(__file__).with_name("duckingstates.js")

INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*[<"]([^>"]+)[>"]', re.MULTILINE)
SIMULATOR_MODULE = re.compile(r"^simulator_module=\(\n(.*?)^\)", re.MULTILINE | re.DOTALL)
TRACE = re.compile(r"\[...\] \d+ \S+ (?:\w+::)*(\w+)::(\w+)\(.*?\)(?: const)? \d+ -- (.*)")
FACADE = re.compile(r"\[QT\] \[Audiocontrol\] (.*)")
CALL = re.compile(r"(.*) -> (.*)")


# Layers -------------------------------------------------------------------------------------------------------------------


def folder_of(path, simulator_module):
    parts = path.parts
    if parts[0] == "qml" and path.stem in simulator_module:
        return "qml of the simulator"
    return "src/settingsfile" if parts[:2] == ("src", "settingsfile") else parts[0]


def includes(project):
    """Which folders' files include headers of which others, as a set of pairs."""
    rules = (project / "tests/house/includes.sh").read_text(encoding="utf-8")
    simulator_module = SIMULATOR_MODULE.search(rules).group(1).split()
    files = [file.relative_to(project) for name in FOLDERS if (project / name).is_dir() for file in sorted((project / name).rglob("*"))]
    files = sorted({file for file in files if file.suffix in (".h", ".cpp")})
    places = collections.defaultdict(set)
    for file in files:
        if file.suffix == ".h":
            places[file.name].add(file)
    pairs = set()
    for file in files:
        own = folder_of(file, simulator_module)
        for target in INCLUDE.findall((project / file).read_text(encoding="utf-8")):
            found = places[pathlib.Path(target).name]
            # Some names stand in several folders: then the one at that path is meant, or the own one's.
            if (project / file.parent / target).exists():
                found = {(project / file.parent / target).resolve().relative_to(project.resolve())}
            elif any(place.parts[0] == file.parts[0] for place in found):
                found = {place for place in found if place.parts[0] == file.parts[0]}
            pairs |= {(own, folder_of(place, simulator_module)) for place in found}
    return {(one, other) for one, other in pairs if one != other}


def beyond(start, pairs):
    """All that is reached from there, itself left out unless it is reached in a circle."""
    reached, waiting = set(), [start]
    while waiting:
        one = waiting.pop()
        for other in {other for own, other in pairs if own == one} - reached:
            reached.add(other)
            waiting.append(other)
    return reached


def layers(_bench, project):
    pairs = includes(project)
    for name in FOLDERS:
        if name in beyond(name, pairs):
            sys.exit(f"{name}: what it includes includes it")
    names = {name: re.sub(r"\W", "_", name) for name in FOLDERS}
    lines = ["flowchart TD"]
    lines += [f'    {names[name]}["<b>{name.split(" ")[0]}/</b><br>{what}"]' for name, what in FOLDERS.items()]
    for one in FOLDERS:
        direct = {other for own, other in pairs if own == one}
        for other in FOLDERS:
            if other in direct and not any(other in beyond(between, pairs) for between in direct):
                lines.append(f"    {names[one]} --> {names[other]}")
    return lines


# A drive ----------------------------------------------------------------------------------------------------------------


def drive(bench, *options):
    """What the bench tells programs of the scenario, as a list of events."""
    run = subprocess.run([bench, "play", "-", "--json", *options], input=SCENARIO, capture_output=True, text=True, check=False)
    if run.returncode != 0:
        sys.exit(f"{bench} ends with {run.returncode}: {run.stderr}")
    return [json.loads(line) for line in run.stdout.splitlines()]


def call(bench, _project):
    request = [event for event in drive(bench, "--log") if event["event"] == "request"][-1]
    lines = [
        "sequenceDiagram",
        "    participant application",
        "    participant ZelAudioManager",
        "    participant AudioControl",
        "    participant platform",
        f"    application->>ZelAudioManager: {request['text'].split('.', 1)[1]}",
    ]
    at = "ZelAudioManager"
    for event in request["caused"]:
        text = event["text"]
        if event["event"] == "call":
            operation, result = CALL.fullmatch(text).groups()
            lines += [f"    {at}->>platform: {operation}", f"    platform-->>{at}: {result}"]
            continue
        trace = TRACE.fullmatch(text)
        owner, operation, value = trace.groups() if trace else ("AudioControl", None, FACADE.fullmatch(text).group(1))
        if owner == "AudioControl" != at:
            lines.append(f"    {at}->>{owner}: {operation}()")
        elif owner != at:
            lines.append(f"    {at}-->>{owner}: #32;")
        at = owner
        lines.append(f"    Note over {owner}: {value}")
    if at != "ZelAudioManager":
        lines.append(f"    {at}-->>ZelAudioManager: #32;")
    return lines


def calls(event):
    """The platform calls that it caused, those of one operation in a row as one line."""
    texts = [CALL.fullmatch(caused["text"]).group(1) for caused in event["caused"] if caused["event"] == "call"]
    for operation, group in itertools.groupby(texts, key=lambda text: text.split("(")[0]):
        group = list(group)
        yield group[0] if len(group) == 1 else f"{operation}, {len(group)} times"


def start(bench, _project):
    lines = ["sequenceDiagram", "    participant application", "    participant library", "    participant platform"]
    events = [event for event in drive(bench) if event["event"] in ("request", "timer")][:-1]
    for event in events:
        if event["event"] == "request":
            lines.append("    application->>library: ZelAudioManager::instance()")
        else:
            lines.append(f"    Note over library: after {event['time']} ms: {event['text']}")
        lines += [f"    library->>platform: {text}" for text in calls(event)]
    return lines


def ducking(bench, _project):
    run = subprocess.run([bench, "play", STATES, "--json"], capture_output=True, text=True, check=False)
    if run.returncode != 0:
        sys.exit(f"{STATES} ends with {run.returncode}: {run.stderr}")
    causes = {}
    for event in map(json.loads, run.stdout.splitlines()):
        if event["event"] == "note":
            change = json.loads(event["text"].partition(": ")[2])
            causes.setdefault((change["from"], change["to"], ", ".join(change["effects"])), []).append(change["cause"])
    lines = ["stateDiagram-v2", "    [*] --> Idle"]
    for (one, other, effects), together in causes.items():
        lines.append(f"    {one} --> {other} : {' / '.join(together)}{'<br>' * bool(effects)}{effects}")
    return lines


DIAGRAMS = (("architecture.md", "layers", layers), ("architecture.md", "call", call), ("policy.md", "ducking", ducking), ("policy.md", "start", start))


def main():
    is_renewed = "--write" in sys.argv[1:]
    bench, folder = [word for word in sys.argv[1:] if word != "--write"]
    project = pathlib.Path(folder)
    mistakes = 0
    for name, diagram, draw in DIAGRAMS:
        document = project / "docs" / name
        text = document.read_text(encoding="utf-8")
        block = re.compile(rf"(<!-- diagram: {diagram} -->\n).*?(<!-- end of diagram -->\n)", re.DOTALL)
        if not block.search(text):
            sys.exit(f"{document} has no diagram {diagram}")
        drawn = "\n".join(["```mermaid", *draw(pathlib.Path(bench).absolute(), project), "```", ""])
        renewed = block.sub(lambda match, drawn=drawn: match.group(1) + drawn + match.group(2), text)
        if renewed == text:
            continue
        if is_renewed:
            document.write_text(renewed, encoding="utf-8")
            print(f"{document}: the diagram {diagram} is new")
        else:
            mistakes += 1
            print(f"{document}: the diagram {diagram} is not what the project shows now; tools/pictures renews it")
    print(f"{len(DIAGRAMS)} diagrams, {mistakes} mistakes")
    return 1 if mistakes else 0


if __name__ == "__main__":
    sys.exit(main())
