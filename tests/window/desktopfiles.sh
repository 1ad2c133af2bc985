#!/bin/sh
# What a desktop reads of the window is in order, its manual page tells the options and the version of the program, and bash completes the options.
#
# Usage: desktopfiles.sh PROJECT BIN
set -eu

packaging=$1/packaging desk=$2/qzaudio-desk

desktop-file-validate "$packaging/qzaudio-desk.desktop"
appstreamcli validate --no-net --no-color "$packaging/qzaudio-desk.metainfo.xml"

# options_in: the long options in the text of the standard input
options_in()
{
    grep -oE -e '--[a-z][a-z-]*' | sort -u
}

help=$("$desk" --help | options_in)
page=$(sed 's/\\-/-/g' "$packaging/qzaudio-desk.1" | options_in)
[ "$help" ] || { echo "the help tells no option" && exit 1; }
[ "$help" = "$page" ] || { printf '%s\n' "the manual page has the options" "$page" "and the help has" "$help" && exit 1; }

# complete_word WORD: what bash makes of it, a line for each
complete_word()
{
    # shellcheck disable=SC2016 # bash replaces the names
    bash -c '. "$1"; COMP_WORDS=("$2" "$3"); COMP_CWORD=1; _qzaudio_desk; printf "%s\n" "${COMPREPLY[@]}"' bash "$packaging/qzaudio-desk.bash-completion" "$desk" "$1"
}
completed=$(complete_word -- | sort -u)
[ "$help" = "$completed" ] || { printf '%s\n' "bash completes the options" "$completed" "and the help has" "$help" && exit 1; }
[ "$(cd "$packaging" && complete_word qzaudio-desk.m)" = qzaudio-desk.metainfo.xml ] || { echo "bash does not complete the name of a file" && exit 1; }

version=$("$desk" --version)
sed 1q "$packaging/qzaudio-desk.1" | grep -q "\"qzaudio ${version##* }\"" || { echo "the manual page is not of version ${version##* }" && exit 1; }
grep -q "<release version=\"${version##* }\"" "$packaging/qzaudio-desk.metainfo.xml" || { echo "the description is not of version ${version##* }" && exit 1; }
