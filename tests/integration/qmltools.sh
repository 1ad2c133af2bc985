#!/bin/sh
# Lets qmllint look at every QML program in the manual, with the types that are installed with the modules, and at the same programs
# with one name misspelled.
#
# Usage: qmltools.sh DOCUMENT MODULES WORK QMLLINT QT_MODULES
set -eu

document=$1 modules=$2 work=$3 qmllint=$4 qt_modules=$5

rm -rf "$work"
mkdir -p "$work"
awk -v work="$work" '
    /^```qml$/ { file = work "/example" ++count ".qml"; next }
    /^```$/ { file = "" }
    file { print > file }' "$document"

lint()
{
    # It tells of what it does not know, and ends with 0 all the same where that is no error.
    "$qmllint" -U -I "$modules" -I "$qt_modules" "$1" >"$work/said" 2>&1 && [ ! -s "$work/said" ]
}

refuse()
{
    sed "s/$2/$3/" "$1" >"$work/misspelled.qml"
    cmp -s "$1" "$work/misspelled.qml" && return 1
    if lint "$work/misspelled.qml" || ! grep -q "$3" "$work/said"; then
        echo "qmllint says nothing of $3:"
        cat "$work/said"
        exit 1
    fi
    refused=$((refused + 1))
}

refused=0
programs=0
for program in "$work"/example*.qml; do
    grep -q '^QtObject' "$program" || continue # no program by itself
    programs=$((programs + 1))
    lint "$program" || {
        echo "qmllint does not take $program:"
        cat "$work/said"
        exit 1
    }
    refuse "$program" 'AudioPolicy\.updateAudioChannel' 'AudioPolicy.updateAudioChanel' || true
    refuse "$program" 'AudioPolicy\.Media' 'AudioPolicy.Medium' || true
    refuse "$program" 'Platform\.trackVolume' 'Platform.trackVolumes' || true
    refuse "$program" 'live\.isDucked' 'live.isDuck' || true
    refuse "$program" 'AudioControl\.setStreamVolume' 'AudioControl.setStreamVolum' || true
    refuse "$program" 'AudioFocus\.GainTransientMayDuck' 'AudioFocus.GainTransientDuck' || true
done
echo "$programs programs taken, $refused misspelled ones refused"
[ "$programs" -ge 2 ] && [ "$refused" -ge 5 ]
