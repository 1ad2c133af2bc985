"""What the numbers depend on."""

import os
import platform
import re
import subprocess


def first_match(pattern, text):
    found = re.search(pattern, text, re.MULTILINE)
    return found[1].strip() if found else "unknown"


def output_of(command):
    try:
        return subprocess.run(command, capture_output=True, text=True, check=False).stdout
    except OSError:
        return ""


def processor():
    with open("/proc/cpuinfo", encoding="utf-8") as file:
        return first_match(r"^model name\s*:\s*(.*)$", file.read())


def file_system(folder):
    return (output_of(["df", "--output=fstype", folder]).split() or ["unknown"])[-1]


def facts(folder):
    """Rows of what and which; the folder is the one whose disk the settings file is on."""
    compiler = output_of(["c++", "--version"]).partition("\n")[0]
    qt = output_of(["qmake", "-query", "QT_VERSION"]).strip()
    return [
        ("processor", f"{processor()}, {os.cpu_count()} of them, {platform.machine()}"),
        ("kernel", platform.release()),
        ("disk's file system", file_system(folder)),
        ("compiler", f"{compiler}, release build"),
        ("Qt", qt or "unknown"),
        ("load before", f"{os.getloadavg()[0]:.1f} processes that ran or waited to"),
    ]


def rows(about):
    return "\n".join(f"| {what} | {which} |" for what, which in about)
