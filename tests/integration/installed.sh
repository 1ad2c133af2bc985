#!/bin/sh
# An installed tree holds what it should and nothing else; service files and manual pages name this very tree, and the links of the
# documents lead somewhere.
#
# Usage: installed.sh PROJECT PREFIX LIBDIR LIST...    each LIST names files below the prefix; DESTDIR as it was for the installation
set -eu

project=$1 prefix=$2 libdir=$3
shift 3
root=${DESTDIR:-}$prefix

complain()
{
    echo "$1"
    exit 1
}

# The file with a build type's settings is named after it.
(cd "$root" && find . ! -type d) | sed -e 's;^\./;;' -e 's;/QzAudioTargets-[a-z]*\.cmake$;/QzAudioTargets-CONFIGURATION.cmake;' | sort >"$root.is"
{
    sed -e "s;^LIBDIR/;$libdir/;" "$@"
    (cd "$project" && ls ./*.md docs/*.md docs/*/*.md docs/*/*.svg docs/*/*.js docs/*/*/*.png && find examples -type f) | sed -e 's;^\./;;' -e 's;^;share/doc/qzaudio/;'
    case "$*" in
    *simulator*) (cd "$project/bench" && find scenarios -name '*.js' | sed 's;^;share/qzaudio/;') ;;
    esac
} | sort >"$root.should"
diff -u "$root.should" "$root.is"

daemon=$prefix/bin/qzaudio-focusd
[ -x "${DESTDIR:-}$daemon" ] || complain "$daemon is no program"
count=0
for unit in lib/systemd/user lib/systemd/system share/dbus-1/services share/dbus-1/system-services; do
    for file in "$root/$unit"/*.service; do
        # Both quote like a shell, as far as a path needs it; a percent sign is doubled for systemd.
        command=$(sed -n -e 's/^Exec=//p' -e '/^ExecStart=/{s/^ExecStart=//;s/%%/%/g;p}' "$file")
        program=$(eval "set -- $command" && printf '%s' "$1")
        [ "$program" = "$daemon" ] || complain "$file starts $program, not $daemon"
        count=$((count + 1))
    done
done
[ $count -eq 4 ] || complain "$count service files, not 4"

escaped=$(printf '%s\n' "$prefix" | sed 's/[][\.*^$;]/\\&/g')
named=0
for page in "$root"/share/man/man1/*.gz; do
    # Roff writes a minus sign as \-.
    text=$(gzip -dc "$page" | sed -e 's/\\-/-/g' -e "s;$escaped/;PREFIX/;g")
    for path in $(printf '%s\n' "$text" | grep -oE 'PREFIX/[[:alnum:]/._-]+'); do
        path=${path#PREFIX/}
        [ -e "$root/${path%.}" ] || complain "$page names $prefix/$path, which is not there"
        named=$((named + 1))
    done
    if printf '%s\n' "$text" | sed 's;PREFIX/;;g' | grep -E '/usr|[[:upper:]]@|@[[:upper:]]|(^|[ "/])/(share|bin|lib)/'; then
        complain "$page names paths of no installation"
    fi
done
[ $named -gt 0 ] || complain "no manual page names an installed path"

linked=0
for document in "$root"/share/doc/qzaudio/*.md "$root"/share/doc/qzaudio/docs/*.md "$root"/share/doc/qzaudio/docs/*/*.md; do
    targets=$(grep -oE '\]\([^): ]+\)' "$document" | sed -e 's/^](//' -e 's/)$//' -e 's/#.*//')
    for target in $targets; do
        [ -e "${document%/*}/$target" ] || complain "$document links to $target, which is not there"
        linked=$((linked + 1))
    done
done
[ $linked -gt 10 ] || complain "the documents have $linked links only"
