#!/bin/sh
# The manual pages tell every option that the programs' help tells, and no other, and they and the changelog are of the programs'
# version.
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

# compare PROGRAM HELP
compare()
{
    # Roff writes a minus sign as \-.
    page=$(sed 's/\\-/-/g' "$project/packaging/$1.1" | options_in)
    help=$(printf '%s\n' "$2" | options_in)
    [ "$help" ] || { echo "$1 tells no option" && exit 1; }
    [ "$page" = "$help" ] || {
        printf '%s: its manual page has the options\n%s\nand its help has\n%s\n' "$1" "$page" "$help"
        exit 1
    }
}

help_of_bench=$(for command in '' play settings focus; do ${EMULATOR:-} "$bin/qzaudio-bench" $command --help; done)
compare qzaudio-bench "$help_of_bench"
compare qzaudio-focusd "$(${EMULATOR:-} "$bin/qzaudio-focusd" --help)"
compare qzaudio-with-flash "$("$bin/qzaudio-with-flash" --help)"
for program in qzaudio-bench qzaudio-focusd; do
    version=$(${EMULATOR:-} "$bin/$program" --version)
    has_version $program "${version##* }"
done
# A script without a version of its own.
has_version qzaudio-with-flash "${version##* }"
