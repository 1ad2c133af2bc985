#!/bin/sh
# The manual pages tell every option that the programs' help tells, and no other, and they and the changelog are of the programs'
# version. Of the bench's commands, which it is asked for, each has its section, with its own options, and its exit statuses.
#
# Usage: manuals.sh PROJECT BIN
# shellcheck disable=SC2086 # an emulator's command is several words
set -eu

project=$1 bin=$2

# options_in: the long options in the text of the standard input
options_in()
{
    grep -oE -e '--[a-z][a-z-]*' | sort -u
}

# has_version PAGE VERSION: the page and the latest entry of the packages' changelog
has_version()
{
    for line in "$1.1:.TH .* \"qzaudio $2\" " "changelog:qzaudio ($2) "; do
        sed 1q "$project/packaging/${line%%:*}" | grep -q "^${line#*:}" || {
            echo "packaging/${line%%:*} is not of version $2"
            exit 1
        }
    done
}

fail()
{
    printf '%s\n' "$@"
    exit 1
}

# compare WHAT TEXT HELP: text and help tell the same options
compare()
{
    text=$(printf '%s\n' "$2" | options_in)
    help=$(printf '%s\n' "$3" | options_in)
    [ "$help" ] || fail "the help of $1 tells no option"
    [ "$text" = "$help" ] || fail "$1: the manual page has the options" "$text" "and the help has" "$help"
}

# page PROGRAM: its text; roff writes a minus sign as \-
page()
{
    sed 's/\\-/-/g' "$project/packaging/$1.1"
}

# section TITLE: of the bench's page
section()
{
    page qzaudio-bench | awk -v title=".SH $1" '/^\.SH / { inside = $0 == title; next } inside'
}

bench()
{
    ${EMULATOR:-} "$bin/qzaudio-bench" "$@"
}

commands=$(bench help --commands)
[ "$commands" ] || fail "qzaudio-bench tells no command"
# The entries of the section, each in one line: "130 143: interrupted by ..."
endings=$(section 'EXIT STATUS' | awk '
    $0 == ".TP" { if (entry) print entry; entry = ""; next }
    entry == "" { gsub(/[^0-9]+/, " "); sub(/^ /, ""); sub(/ $/, ""); entry = $0 ":"; next }
    { entry = entry " " tolower($0) }
    END { print entry }
')
told=
help_of_bench=$(bench --help)
for command in $commands; do
    title=$(printf '%s\n' "$command" | tr '[:lower:]' '[:upper:]')
    text=$(section "$title")
    [ "$text" ] || fail "qzaudio-bench $command has no section in the manual page"
    page qzaudio-bench | grep -qx ".B qzaudio-bench $command" || fail "qzaudio-bench $command is not in the synopsis of the manual page"
    help=$(bench "$command" --help)
    # Told once for all commands.
    compare "qzaudio-bench $command" "$text --help" "$help"
    help_of_bench="$help_of_bench $help"

    statuses=$(bench help --exit-statuses "$command")
    [ "$statuses" ] || fail "qzaudio-bench $command tells no exit status"
    told="$told
$statuses"
done
printf '%s\n' "$told" | sed '/^$/d' | while read -r status when; do
    printf '%s\n' "$endings" | grep -E "^([0-9]+ )*$status( [0-9]+)*: " | grep -qF "$when" ||
        fail "the manual page of qzaudio-bench does not tell exit status $status: $when"
done
printf '%s\n' "$endings" | while IFS=: read -r numbers _; do
    printf '%s\n' "$told" | grep -q "^${numbers%% *} " || fail "the manual page tells exit status $numbers, which no command has"
done
compare qzaudio-bench "$(page qzaudio-bench)" "$help_of_bench"
compare qzaudio-focusd "$(page qzaudio-focusd)" "$(${EMULATOR:-} "$bin/qzaudio-focusd" --help)"
compare qzaudio-doctor "$(page qzaudio-doctor)" "$(${EMULATOR:-} "$bin/qzaudio-doctor" --help)"
compare qzaudio-with-flash "$(page qzaudio-with-flash)" "$("$bin/qzaudio-with-flash" --help)"
for program in qzaudio-bench qzaudio-doctor qzaudio-focusd; do
    version=$(${EMULATOR:-} "$bin/$program" --version)
    has_version $program "${version##* }"
done
# A script without a version of its own.
has_version qzaudio-with-flash "${version##* }"
