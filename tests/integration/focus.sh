#!/bin/bash
# What "./run focus" does: a bus of its own, the daemon on it, a client or the demonstration; nothing is left at any end.
#
# Usage: focus.sh PROJECT BIN
set -euo pipefail

project=$1 bin=$2
daemon=$bin/qzaudio-focusd bench=$bin/qzaudio-bench
with_focusd=$project/tools/with-focusd
# A bus of the machine must not matter.
export DBUS_SESSION_BUS_ADDRESS=unix:path=/nowhere

work=$(mktemp -d)
started=
trap '[ ! "$started" ] || kill -KILL "$started" 2>/dev/null; rm -rf "$work"' EXIT
cd "$work"

fail()
{
    cat said
    printf '%s\n' "$*"
    exit 1
}

# left: what this test started and what still runs, known by a variable that they all inherit
left()
{
    grep -lsz "^FOCUS_TEST=$work\$" /proc/[0-9]*/environ | grep -v -e "^/proc/$$/" || true
}

# nothing_is_left WHEN
nothing_is_left()
{
    local try
    for try in $(seq 50); do
        [ "$(left)" ] || return 0
        sleep 0.1
    done
    fail "$1: still there after $try tries: $(left)"
}

echo "== the demonstration"
FOCUS_TEST=$work "$with_focusd" "$daemon" "$project/tools/show-focus" "$bench" >said 2>&1 || fail "ended with the status $?"
# What is told, in this order.
tr -s ' ' <said | grep -o -E '(music|navigation|service): .*' >told
cat >expected <<'END'
music: granted it may play
navigation: granted it may speak
music: music -3 LOSS_TRANSIENT_CAN_DUCK play on, quieter, for a while
service: 3 GAIN_TRANSIENT_MAY_DUCK how the holder asked
navigation: abandoned it is silent
music: music 1 GAIN play as before
music: abandoned it is silent
service: 0 nobody holds focus free for the next one
END
diff -u expected told
[ "$(wc -L <said)" -le 80 ] || fail 'is too wide'
! grep -q -i -E 'warning|error' said || fail 'complains'
nothing_is_left 'the demonstration'

echo "== it notices when something else is told"
cat >bench-that-lies <<END
#!/bin/sh
"$bench" "\$@" | sed -u 's/music 1 GAIN/music -1 LOSS/'
END
chmod +x bench-that-lies
! FOCUS_TEST=$work "$with_focusd" "$daemon" "$project/tools/show-focus" ./bench-that-lies >said 2>&1 || fail 'passed'
grep -q 'told "music -1 LOSS" instead of "music 1 GAIN"' said || fail 'does not say what it was told'
nothing_is_left 'a demonstration that failed'

echo "== an action, its input and its exit status"
FOCUS_TEST=$work "$with_focusd" "$daemon" "$bench" focus request me </dev/null >said 2>&1 || fail "request: status $?"
[ "$(paste -sd ' ' said)" = 'granted abandoned' ] || fail 'request says something else'
status=0
FOCUS_TEST=$work "$with_focusd" "$daemon" "$bench" focus request me --hint 9 </dev/null >said 2>&1 || status=$?
[ $status -eq 1 ] || fail "a denied request: status $status"
status=0
FOCUS_TEST=$work "$with_focusd" "$daemon" "$bench" focus steal >said 2>&1 || status=$?
[ $status -eq 2 ] || fail "an unknown action: status $status"
nothing_is_left 'actions'

echo "== what does not start"
status=0
FOCUS_TEST=$work "$with_focusd" /bin/false "$bench" focus current >said 2>&1 || status=$?
[ $status -eq 125 ] || fail "a daemon that ends at once: status $status"
status=0
"$with_focusd" "$bin/no-such-daemon" "$bench" focus current >said 2>&1 || status=$?
[ $status -eq 125 ] || fail "a daemon that is not built: status $status"
grep -q 'ninja -C build/release qzaudio-focusd' said || fail 'does not say how to build the daemon'
nothing_is_left 'a daemon that does not start'

echo "== Ctrl+C, and other ends from outside"
for signal in INT TERM KILL; do
    : >said # of the signal before
    # A process group of its own, as a terminal's foreground job is; the shell's own jobs would ignore Ctrl+C.
    FOCUS_TEST=$work setsid env --default-signal=INT "$with_focusd" "$daemon" "$bench" focus monitor >said 2>&1 &
    started=$!
    for try in $(seq 100); do
        ! grep -q '^0 nobody' said || break
        sleep 0.1
    done
    grep -q '^0 nobody' said || fail "monitor said nothing after $try tries"
    [ "$(left | wc -l)" -ge 4 ] || fail "bus, daemon and client are not found: $(left)"
    if [ $signal = INT ]; then kill -INT -- "-$started"; else kill -$signal "$started"; fi
    status=0
    wait "$started" || status=$?
    [ $status -eq $((128 + $(kill -l $signal))) ] || fail "$signal: status $status"
    nothing_is_left "$signal"
    started=
done
