#!/bin/sh
# An ordinary user's installed bench passes every installed scenario, and leaves nothing behind: neither on the machine's flash nor in the
# user's home.
#
# Usage: scenarios.sh PREFIX HOME [COMMAND...]    COMMAND runs the rest of its line, for example as another user
set -eu

prefix=$1 home=$2
shift 2

# state: what a run could change
state()
{
    for folder in /media/flash "$home"; do
        [ ! -e "$folder" ] || find "$folder" -printf '%p %s %T@\n'
    done | sort
}

before=$(state)
played=0
for scenario in "$prefix"/share/qzaudio/scenarios/*.js; do
    status=0
    output=$("$@" "$prefix/bin/qzaudio-bench" play "$scenario" 2>&1) || status=$?
    # Some measure what a drive sounds like, with programs that need not be there.
    case $output in
    *' is not installed: the Debian package '*)
        echo "skipped: $(basename "$scenario" .js)"
        continue
        ;;
    esac
    [ $status -eq 0 ] || {
        printf '%s\n' "$output"
        echo "$scenario: exit status $status"
        exit 1
    }
    played=$((played + 1))
done
echo "$played scenarios pass"
[ $played -gt 1 ]
after=$(state)
[ "$after" = "$before" ] || {
    printf 'the scenarios changed these files\n%s\nto these\n%s\n' "$before" "$after"
    exit 1
}
