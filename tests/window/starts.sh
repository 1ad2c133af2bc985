#!/bin/bash
# The window's command line, and what stands where it cannot open: one line on the error output, an exit status, and no crash.
#
# Usage: starts.sh BIN WORK
set -euo pipefail

bin=$1 work=$2

rm -rf -- "$work"
mkdir -p "$work"/{home,runtime}
chmod 700 "$work/runtime"
printf 'powerOn();\nwait(1000);\n' >"$work/drive.js"
printf 'a log\n' >"$work/unit.log"
printf '\0\1' >"$work/binary.js"
unset DISPLAY WAYLAND_DISPLAY QT_QPA_PLATFORM
export HOME=$work/home XDG_RUNTIME_DIR=$work/runtime LC_ALL=C.UTF-8 QT_LOGGING_RULES='default.debug=false' TMPDIR=$work

fail()
{
    printf '%s\n' "$@" >&2
    exit 1
}

# expect STATUS TEXT COMMAND...: it ends with the status, and says the text on one line of the error output, or nothing for none
expect()
{
    local status=0 wanted=$1 text=$2 lines
    shift 2
    timeout 60 "$@" >"$work/output" 2>"$work/errors" || status=$?
    ((status == wanted)) || fail "$*: exit status $status instead of $wanted" "$(<"$work/errors")"
    lines=$(wc -l <"$work/errors")
    if [[ $text ]]; then
        ((lines == 1)) || fail "$*: $lines lines instead of one" "$(<"$work/errors")"
        grep -qF -- "$text" "$work/errors" || fail "$*: does not say \"$text\" but" "$(<"$work/errors")"
    else
        ((lines == 0)) || fail "$*: says" "$(<"$work/errors")"
    fi
}

desk=$bin/qzaudio-desk
expect 0 '' "$desk" --version
grep -qxE 'qzaudio-desk [0-9]+\.[0-9]+\.[0-9]+' "$work/output" || fail "--version says $(<"$work/output")"
expect 0 '' "$desk" --help
grep -q -- --room "$work/output" || fail "the help does not tell --room"

expect 2 "Unknown option 'nonsense'" "$desk" --nonsense
expect 2 'exclude each other' "$desk" --dark --light
expect 2 'one file at a time' "$desk" "$work/drive.js" "$work/unit.log"
expect 2 "none.js\": No such file" "$desk" "$work/none.js"
expect 2 'is a folder' "$desk" "$work"
expect 2 'is no scenario' "$desk" "$work/binary.js"
expect 2 'neither DISPLAY nor WAYLAND_DISPLAY is set' "$desk"
expect 2 'no window can be opened on this display' env DISPLAY=:7777 "$desk"
expect 2 'no window can be opened on this display' env QT_QPA_PLATFORM=nonsense "$desk"

# A display that nobody sees, and without OpenGL.
export QT_QPA_PLATFORM=offscreen
expect 2 'there is no room called "cellar"' "$desk" --room cellar

# cars: the number of cars, each of which is the child of a window
cars()
{
    pgrep --count --full "^$bin/qzaudio-desk-car" || true
}

# start ARGUMENT...: a window, until its car is there
start()
{
    local before
    before=$(cars)
    # In the background bash lets signals of the keyboard be ignored.
    env --default-signal=INT "$desk" "$@" 2>>"$work/errors" &
    windows+=($!)
    for ((i = 0; i < 300; ++i)); do
        (($(cars) == before)) || return 0
        sleep 0.1
    done
    fail "qzaudio-desk $*: no car comes" "$(<"$work/errors")"
}

windows=()
trap '((${#windows[@]} == 0)) || kill "${windows[@]}"' EXIT
before=$(cars)
: >"$work/errors"
start
start "$work/drive.js"
start --room tone --dark "$work/unit.log"
for signal in INT TERM HUP; do
    window=${windows[0]}
    windows=("${windows[@]:1}")
    kill -s "$signal" "$window"
    status=0
    wait "$window" || status=$?
    ((status == 128 + $(kill -l "$signal"))) || fail "a window that SIG$signal ends has the exit status $status"
done
for ((i = 0; i < 100 && $(cars) != before; ++i)); do sleep 0.1; done
(($(cars) == before)) || fail "windows that ended left cars behind"
[[ ! -s $work/errors ]] || fail "the windows say" "$(<"$work/errors")"
[[ ! $(find "$work/home" -path '*/unsaved/*.js') ]] || fail "windows that ended in order left a recording behind"
