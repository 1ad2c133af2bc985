"""What is measured, and the goals: the one table of them."""

from collections import namedtuple

# key      of the measurement; what stands behind @ is where the settings file was
# title    of the row
# floor    what the work is held against, in one phrase
# most     the goal, None where there is none
# kind     of the goal: "ratio" of the work to its floor, "ns" that it may take more
Row = namedtuple("Row", "key title floor most kind", defaults=("ratio",))

PER_OBJECT = "create, the operation, destroy"
BY_HAND = "the same calls and the same lines, written with qDebug() in their place"
BARE_STACK = "the same decisions on a vector of type, hint, loss and client id"
FRESH_SAVE = "the 14 platform calls, one save with a QSettings of its own, fsync of the folder"

ROWS = [
    Row("volume/setStreamVolume", "`setStreamVolume`, log off", f"{PER_OBJECT}", 4),
    Row("volume/setStreamVolume/logged", "`setStreamVolume`, log on", BY_HAND, 1.10),
    Row("policy/updateAudioStatus", "`updateAudioStatus`, log off", f"{PER_OBJECT}", 6),
    Row("policy/updateAudioStatus/logged", "`updateAudioStatus`, log on", BY_HAND, 1.15),
    Row("policy/setVolume/14", "`setVolume` of media, unsaved", f"14 times: {PER_OBJECT}", 5),
    Row("policy/setVolume/2", "`setVolume` of telephony, unsaved", f"2 times: {PER_OBJECT}", None),
    Row("policy/setVolume/1", "`setVolume` of speech, unsaved", f"{PER_OBJECT}", None),
    Row("equalizer/setFadeBalance", "`setFadeBalance`", "4 calls on a kept object, gains known", 4),
    Row("equalizer/setEqGain", "`setEqGain`", f"{PER_OBJECT}, record ready", 4),
    Row("equalizer/setEqMode", "`setEqMode`", "1 call on a kept object, record ready", None),
    Row("volume/setMute", "`setMute`, on and off", "4 calls on a kept object", 4),
    Row("volume/setAlterStepVolume", "`setAlterStepVolume`", PER_OBJECT, 4),
    Row("volume/setMicAnalogGain", "`setMicAnalogGain`", PER_OBJECT, 4),
    Row("routing/setOutputSource", "`setOutputSource`", PER_OBJECT, 4),
    Row("routing/setInputDestination", "`setInputDestination`", "create and destroy of two objects, the operation", 4),
    Row("routing/setMainAudioDunkingMode", "`setMainAudioDunkingMode`", PER_OBJECT, 4),
    Row("routing/setMainAudioDunkingTargetGain", "`setMainAudioDunkingTargetGain`", PER_OBJECT, 4),
    Row("policy/duck", "`aaDuckAudio` and `aaUnduckAudio`", f"5 times: {PER_OBJECT}", 4),
    Row("settings/volumeKey@flash", "volume key with save, on a disk", FRESH_SAVE, 1.15),
    Row("settings/volumeKey@memory", "volume key with save, in memory", FRESH_SAVE, 1.3),
    Row("settings/getAutoMicGain@flash", "`getAutoMicGain`, on a disk", "one read with a QSettings of its own", 1.05),
    Row("settings/getAutoMicGain@memory", "`getAutoMicGain`, in memory", "one read with a QSettings of its own", 1.05),
    Row("start/there@flash", "first `instance()`, file there, on a disk", "its platform calls, 33 reads and 4 saves", 1.15),
    Row("start/missing@flash", "first `instance()`, no file, on a disk", "its platform calls, 33 reads and 4 saves", 1.15),
    Row("start/there@memory", "first `instance()`, file there, in memory", "its platform calls, 33 reads and 4 saves", 1.15),
    Row("start/missing@memory", "first `instance()`, no file, in memory", "its platform calls, 33 reads and 4 saves", 1.15),
    Row("focus/requestAndAbandon/1", "focus request and abandon, depth 1", BARE_STACK, 2.0),
    Row("focus/requestAndAbandon/10", "focus request and abandon, depth 10", BARE_STACK, 2.0),
    Row("focus/requestAndAbandon/100", "focus request and abandon, depth 100", BARE_STACK, 2.0),
    Row("focus/requestAndAbandon/1000", "focus request and abandon, depth 1,000", BARE_STACK, 2.0),
    Row("focus/requestAndAbandon/1/dispatched", "focus with a dispatcher, depth 1", f"{BARE_STACK}, telling those whose loss changes", 2.0),
    Row("focus/requestAndAbandon/10/dispatched", "focus with a dispatcher, depth 10", f"{BARE_STACK}, telling those whose loss changes", 2.0),
    Row("focus/requestAndAbandon/100/dispatched", "focus with a dispatcher, depth 100", f"{BARE_STACK}, telling those whose loss changes", 2.0),
    Row("focus/requestAndAbandon/1000/dispatched", "focus with a dispatcher, depth 1,000", f"{BARE_STACK}, telling those whose loss changes", 2.0),
    Row("bus/requestAudioFocus", "`requestAudioFocus` over the bus", "an echo with QtDBus of the same signature, on the same bus", 1.3),
    Row("bus/clients/500", "a request with 500 clients", "the same request with 1 client", 1.5),
    Row("logging/disabledLine", "a log line that is off", "an operation that does nothing", 3, "ns"),
]

# key      of the log
# title    of its row
# others   lines of other programs before each of the library's
# rate     least MB/s of one core
# resident most MB in memory, however long the log is
Log = namedtuple("Log", "key title others rate resident")

LOGS = [
    Log("library", "nothing but the library's lines", 0, 50, 60),
    Log("mixed", "three lines of other programs for each of the library's", 3, 50, 60),
]

# scenario of the drive
# title    of its row
# rate     least seconds of the drive in a second of one core
# resident most MB in memory
Drive = namedtuple("Drive", "scenario title rate resident")

DRIVES = [
    Drive("commute", "music, prompts, ringing and a call, with the equalizer of the file player", 20, 100),
]

# key   of what qzaudio-window-time prints
# title of its row
# most  of it
# unit  of both
Window = namedtuple("Window", "key title most unit")

WINDOW = [
    Window("start", "from its start to its first frame", 1500, "ms"),
    Window("frames", "own work for a frame, a scenario at ten times driving, the longest in all rooms", 8, "ms"),
    Window("longest", "longest that its thread is away then, painting left out: a frame at 60 in a second", 16, "ms"),
    Window("resident", "resident memory after an hour's recording", 150, "MB"),
]

# Operations in a round of the work, where that has to end as it began.
OPERATIONS = {"policy/updateAudioStatus": 2, "policy/updateAudioStatus/logged": 2, "settings/volumeKey": 2}

# What grows with a number that is part of the key.
DEPTHS = [1, 10, 100, 1000]
CHANNELS = [1, 2, 14]
CLIENTS = [1, 10, 100, 500]
KEYS = [0, 100, 1000, 10000]
OPERATIONS.update({f"settings/save/{keys}": 2 for keys in KEYS})

# That the daemon takes with clients in the stack.
MOST_CONNECTIONS = 128

# Those that are held against a floor, in rounds, and those that are not.
RATIO_AREAS = ["volume", "equalizer", "routing", "policy", "focus", "logging", "settings", "start", "bus"]
AREAS = RATIO_AREAS + ["reading", "rendering", "window"]

# So much above its goal a ratio may be measured before it counts as a failure.
TOLERANCE = 0.15


def area_of(row):
    return row.key.split("/")[0]
