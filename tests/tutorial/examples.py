#!/usr/bin/python3
"""Compiles the programs of examples/, those of the first hour excepted, against an installed library, runs them, and looks what they do.

Usage: examples.py EXAMPLES WORK HAND BUS_WITHOUT_SERVICES

PATH, CMAKE_PREFIX_PATH and QML2_IMPORT_PATH lead to the library; XDG_DATA_DIRS to the daemon's service file. HAND is where follow.py built the plugin
that works windows, BUS_WITHOUT_SERVICES a bus's configuration."""

import os
import re
import signal
import subprocess
import sys

EXAMPLES, WORK, HAND, BUS_WITHOUT_SERVICES = sys.argv[1:5]
PATIENCE = "120"  # seconds, after which a program that hangs is ended
QUIET = {"QT_LOGGING_RULES": "default.debug=false"}


def same(what, found, wanted):
    if found != wanted:
        sys.exit(f"{what}: expected\n{wanted}\nbut there is\n{found}")


def build(name):
    folder = os.path.join(WORK, name)
    for command in (["cmake", "-S", os.path.join(EXAMPLES, name), "-B", folder], ["cmake", "--build", folder]):
        done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
        if done.returncode != 0:
            sys.exit(f"{name}:\n{done.stdout}")
    return folder


def run(command, status=0, flash=None, **variables):
    """Its output and its errors."""
    kept = ["--dir", flash] if flash else []
    command = ["timeout", PATIENCE, "qzaudio-with-flash", *kept, *command]
    done = subprocess.run(command, env={**os.environ, **QUIET, **variables}, capture_output=True, text=True, check=False)
    if done.returncode != status:
        sys.exit(f"{command}: exit status {done.returncode} instead of {status}\n{done.stdout}{done.stderr[-2000:]}")
    return done.stdout, done.stderr


def work(command, steps, **options):
    """Works the window that a command opens; its errors, without lines about nothing but the platform."""
    given = {"QT_QPA_GENERIC_PLUGINS": "hand", "QT_PLUGIN_PATH": HAND, "HAND_STEPS": steps}
    errors = run(command, **given, **options)[1]
    if "QT_LOGGING_RULES" not in options:
        lines = [line for line in errors.splitlines() if not line.startswith("qzaudio.simulator: ")]
        same(f"{command} says", lines, ["hand: did all of it"])
    return errors


def heard(log):
    """What the driver heard, by the library's log."""
    file = os.path.join(WORK, "log")
    with open(file, "w", encoding="utf-8") as opened:
        opened.write(log)
    explained = subprocess.run(["qzaudio-bench", "explain", file], stdout=subprocess.PIPE, text=True, check=True).stdout
    return re.findall(r" heard +(.*)", explained)


def phone_call():
    program = os.path.join(build("phone-call"), "phone-call")
    printed, log = run([program], QT_LOGGING_RULES="default.debug=true")
    wanted = [
        "music granted",
        "music LOSS_TRANSIENT",
        "IN_VOICE_COMM_FOCUS_ID granted",
        "ring volume 21",
        "call volume 19",
        "navigation denied",
        "music GAIN",
        "media volume 20",
    ]
    same("phone-call prints", printed.splitlines(), wanted)
    # Ring and call each on their own source, and the volume key on the one that is heard: a step of 20 is 0.4 dB up, 0.5 dB down.
    wanted = [
        "file player -5.3 dB",
        "Bluetooth ringtone -1.8 dB",
        "Bluetooth ringtone -1.4 dB (was -1.8 dB)",
        "Bluetooth telephone -1.8 dB",
        "Bluetooth telephone -2.3 dB (was -1.8 dB)",
        "file player -5.3 dB",
    ]
    same("in the phone call is heard", heard(log), wanted)


def console():
    program = os.path.join(build("console"), "volumes")
    flash = os.path.join(WORK, "console-flash")
    defaults = {"media": 20, "prompts": 20, "telephony": 20, "ring": 20, "speech": 20, "hicar": 15}

    def volumes():
        return {name: int(volume) for name, volume in (line.split() for line in run([program], flash=flash)[0].splitlines())}

    same("volumes of a new unit", volumes(), defaults)
    same("after showing them the flash has", os.listdir(flash), [])
    run([program, "telephony", "12"], flash=flash)
    same("volumes after one was set", volumes(), {**defaults, "telephony": 12})
    for wrong in (["bells", "3"], ["ring", "26"], ["ring", "-1"], ["ring", "loud"], ["ring"]):
        _, errors = run([program, *wrong], status=2, flash=flash)
        same(f"{wrong} is explained", bool(re.search("there is no volume|a volume is|Usage", errors)), True)
    same("volumes after mistakes", volumes(), {**defaults, "telephony": 12})


def settings_page():
    program = os.path.join(build("settings-page"), "settings-page")
    flash = os.path.join(WORK, "settings-flash")
    steps = "see curve 6; up equalizer; see your own curve; down equalizer; see curve 6; up band 3; see your own curve"
    work([program], f"{steps}; up fade; up fade; down balance", flash=flash)
    with open(os.path.join(flash, "audioData.db"), encoding="utf-8") as file:
        kept = set(file.read().split())
    missing = {"Custom3=2", "Type=7", "[SettingsPage]", "Fade=2", "Balance=-1"} - kept
    same("the page did not keep", missing, set())
    # The next start has all of it. The log has the balance first, and counts it to the right.
    log = work([program], "see your own curve", flash=flash, QT_LOGGING_RULES="default.debug=true")
    same("places at the start", re.findall(r"setFadeBalance (.*)", log), ["1 2"])


def view():
    file = os.path.join(EXAMPLES, "view", "volumes.qml")
    work(["qml", file], "see The platform has 80 for the file player; up media; see The platform has 84 for the file player; up ring; see 21; press Mute")


class Client:
    """A program on the bus."""

    def __init__(self, *command):
        self.command = command
        environment = {**os.environ, **QUIET}
        self.process = subprocess.Popen(
            ["timeout", PATIENCE, *command], env=environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True
        )

    def tells(self, *lines):
        for line in lines:
            same(f"{self.command} tells", self.process.stdout.readline(), f"{line}\n")

    def ends(self, status):
        self.process.stdin.close()
        same(f"{self.command} ends, after", self.process.stdout.read(), "")
        same(f"{self.command}: exit status", self.process.wait(), status)


def end_daemon():
    import dbus  # not before there is a bus

    bus = dbus.SessionBus()
    os.kill(int(bus.get_object("org.freedesktop.DBus", "/").GetConnectionUnixProcessID("tavi.AudioService")), signal.SIGTERM)


def on_bus(kinds):
    one, other = kinds
    for first, second in ((one, other), (other, one)):
        loser = Client(first, "music")
        loser.tells("granted")
        winner = Client(second, "radio")
        winner.tells("granted")
        loser.tells("LOSS")
        loser.ends(0)
        # The daemon that comes after it knows nobody, and the client asks again.
        end_daemon()
        winner.tells("granted")
        prompt = Client("qzaudio-bench", "focus", "request", "navigation", "--hint", "3")
        winner.tells("LOSS_TRANSIENT_CAN_DUCK")
        prompt.tells("granted")
        prompt.process.stdin.close()
        winner.tells("GAIN")
        last = Client(first, "television")
        last.tells("granted")
        winner.tells("LOSS")
        winner.ends(0)
        last.process.terminate()
        last.process.wait()
    call = Client("qzaudio-bench", "focus", "request", "IN_VOICE_COMM_FOCUS_ID")
    call.tells("granted")
    for kind in kinds:
        denied = Client(kind, "music")
        denied.tells("denied")
        denied.ends(1)
    call.process.stdin.close()
    call.tells("abandoned")


def bus_client():
    kinds = [os.path.join(build("bus-client"), "bus-client"), os.path.join(EXAMPLES, "bus-client", "bus-client.py")]
    bus = ["dbus-run-session", "--"]
    done = subprocess.run([*bus, sys.executable, *sys.argv[:5], *kinds], stderr=subprocess.PIPE, text=True, check=False)
    if done.returncode != 0:
        sys.exit(f"on the bus:\n{done.stderr}")
    for kind in kinds:
        errors = run([kind], status=1, DBUS_SESSION_BUS_ADDRESS="unix:path=/nowhere")[1]
        same(f"{kind} without a bus says something", bool(errors.strip()), True)
        errors = run(["dbus-run-session", f"--config-file={BUS_WITHOUT_SERVICES}", "--", kind], status=1)[1]
        same(f"{kind} without the daemon names it", "tavi.AudioService" in errors, True)


def main():
    if len(sys.argv) > 5:
        on_bus(sys.argv[5:])
        return
    for example in (phone_call, console, settings_page, view, bus_client):
        print(f"== {example.__name__}", flush=True)
        example()
    folders = {name for name in os.listdir(EXAMPLES) if os.path.isdir(os.path.join(EXAMPLES, name))}
    same("examples", folders, {"first-hour", "phone-call", "console", "settings-page", "view", "bus-client"})


main()
