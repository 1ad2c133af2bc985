#!/usr/bin/env python3
"""Makes a make-believe vendor's SDK out of the platform's declarations.

Its classes have further virtual operations before, between and after the ones that the library uses, as the real ones do, and
its library has a name of its own. Each used operation notes that it was reached; each further one notes that too, so a call that
lands in the wrong table entry shows.

Usage: make-sdk.py PLATFORM_FOLDER OUTPUT_FOLDER
"""

import pathlib
import re
import sys

KINDS = ["Volume", "Source", "Mixer", "App"]
OPERATION = re.compile(r"^    virtual (?P<result>.+?)(?P<name>\w+)\((?P<parameters>.*)\) = 0;$")
CLASS = re.compile(r"^class (?P<name>\w+)$")


def extended_header(text):
    """The header with a further operation before and after every listed one, and the listed ones by class."""
    lines, operations, kind, count = [], {name: [] for name in KINDS}, None, 0

    def further():
        nonlocal count
        count += 1
        name = f"vendorOperation{count}"
        operations[kind].append(("int ", name, ""))
        lines.append(f"    virtual int {name}() = 0;")

    for line in text.splitlines():
        if match := CLASS.match(line):
            kind = match["name"]
        if match := OPERATION.match(line):
            further()
            lines.append(line)
            operations[kind].append((match["result"], match["name"], match["parameters"]))
            further()
        else:
            lines.append(line)
    return "\n".join(lines) + "\n", operations


def implementation(operations):
    """Classes that note every operation reached, and the factories."""
    parts = [
        '#include "mcuservice.h"\n#include "settingsprovider.h"\n#include "spaudiosetting.h"\n#include <string>\n',
        "static std::string reached;",
        'extern "C" const char *takeReached()\n{\n    static std::string taken;\n    taken = reached;\n    reached.clear();\n'
        "    return taken.c_str();\n}\n",
        'static int note(const char *name)\n{\n    reached += name;\n    reached += " ";\n    return 0;\n}\n',
        "namespace audio::SPAudioSetting\n{",
    ]
    for kind in KINDS:
        parts.append(f"class Vendor{kind} final : public {kind}\n{{\npublic:")
        for result, name, parameters in operations[kind]:
            value = "note" if result.strip() == "int" else "(note"
            call = f'note("{kind}.{name}")' if value == "note" else f'(note("{kind}.{name}"), "S+FilePlayer")'
            parts.append(f"    {result}{name}({parameters}) override {{ return {call}; }}")
        parts.append("};")
        parts.append(f"{kind} *create{kind}() {{ return new Vendor{kind}; }}")
        parts.append(f"void destroy({kind} *object) {{ delete static_cast<Vendor{kind} *>(object); }}")
    parts.append("} // namespace audio::SPAudioSetting")
    parts.append(
        "zelmcu::ZEL_McuService::ZEL_McuService(QObject *parent) : QObject(parent) {}\n"
        "zelmcu::ZEL_McuService::~ZEL_McuService() = default;\n"
        "namespace\n{\nstruct Service : zelmcu::ZEL_McuService { Service() : ZEL_McuService(nullptr) {} };\n}\n"
        "zelmcu::ZEL_McuService *zelmcu::ZEL_McuService::instance()\n{\n    static Service service;\n    return &service;\n}\n"
        "vd::SettingsProvider *vd::SettingsProvider::instance()\n{\n    static SettingsProvider provider;\n    return &provider;\n}\n"
        "int vd::SettingsProvider::getHomeUiType() { return 0; }\n"
    )
    return "\n".join(parts) + "\n"


def main():
    platform, output = (pathlib.Path(argument) for argument in sys.argv[1:3])
    output.mkdir(parents=True, exist_ok=True)
    header, operations = extended_header((platform / "spaudiosetting.h").read_text(encoding="utf-8"))
    (output / "spaudiosetting.h").write_text(header, encoding="utf-8")
    (output / "sound.cpp").write_text(implementation(operations), encoding="utf-8")
    for name in ("mcuservice.h", "settingsprovider.h"):
        (output / name).write_text((platform / name).read_text(encoding="utf-8"), encoding="utf-8")


main()
