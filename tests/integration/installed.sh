#!/bin/sh
# An installed tree holds what it should and nothing else, and the programs that its units start.
#
# Usage: installed.sh PROJECT PREFIX LIBDIR LIST...    each LIST names files below the prefix
set -eu

project=$1 prefix=$2 libdir=$3
shift 3

# The file with a build type's settings is named after it.
(cd "$prefix" && find . ! -type d) | sed -e 's;^\./;;' -e 's;/QzAudioTargets-[a-z]*\.cmake$;/QzAudioTargets-CONFIGURATION.cmake;' | sort >"$prefix.is"
{
    sed -e "s;^LIBDIR/;$libdir/;" "$@"
    case "$*" in
    *simulator*) (cd "$project/bench" && find scenarios -name '*.js' | sed 's;^;share/qzaudio/;') ;;
    esac
} | sort >"$prefix.should"
diff -u "$prefix.should" "$prefix.is"

# Units name programs by the configured prefix, which need not be the one of this installation.
for unit in $(cd "$prefix" && find . -name '*.service' | sort); do
    program=$(sed -n -e 's/^Exec=//p' -e 's/^ExecStart=//p' "$prefix/$unit" | cut -d ' ' -f 1)
    case $program in
    "$prefix"/*) ;;
    *) program=$prefix/bin/${program##*/} ;;
    esac
    if [ ! -f "$program" ] || [ ! -x "$program" ]; then
        echo "$unit starts $program, which is not there"
        exit 1
    fi
done
