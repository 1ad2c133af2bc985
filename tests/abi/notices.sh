#!/bin/sh
# The checks of the binary interface notice what breaks a client, name it, and let additions pass.
#
# Usage: notices.sh PROJECT WORK
set -eu

project=$1 work=$2
abi=$project/tools/abi
whole=$project/abi/libqzaudio.so.1.abi
metaobjects=$project/abi/metaobjects.txt
mkdir -p "$work"

fail()
{
    cat "$work/said"
    echo "$*"
    exit 1
}

# passes COMMAND...
passes()
{
    "$@" >"$work/said" 2>&1 || fail "failed: $*"
}

# breaks NAME COMMAND...: fails, and says what it is about
breaks()
{
    name=$1
    shift
    ! "$@" >"$work/said" 2>&1 || fail "passed: $*"
    grep -q "$name" "$work/said" || fail "does not tell of $name: $*"
}

echo "== an operation is gone"
operation=_ZN15ZelAudioManager10saveVolumeEv
sed -e "/<elf-symbol name='$operation'/d" -e "/mangled-name='$operation'/,/<\\/function-decl>/d" "$whole" >"$work/without.abi"
breaks saveVolume "$abi" compare "$work/without.abi"

echo "== an operation came"
passes "$abi" compare "$whole" "$work/without.abi"
grep -q saveVolume "$work/said" || fail "does not tell of saveVolume"

echo "== nothing changed"
passes "$abi" compare "$whole"
passes "$abi" check-metaobjects cat "$metaobjects"

echo "== signals changed places"
sed -e '/ signal /{h;N;s/\(.*\)\n\(.*\)/\2\n\1/}' "$metaobjects" >"$work/swapped.txt"
breaks audioChannel "$abi" check-metaobjects cat "$work/swapped.txt"

echo "== the program that prints the meta-objects ends badly"
breaks 'failed with status' "$abi" check-metaobjects sh -c "cat '$metaobjects'; exit 3"
