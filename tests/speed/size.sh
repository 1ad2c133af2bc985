#!/bin/sh
# What the library weighs, stripped: code and constants, all that is loaded, and what the dynamic linker has to do before main().
#
# Usage: size.sh READELF STRIP LIBRARY WORK CODE LOADED RELOCATIONS    limits: bytes of .text and .rodata, bytes of all, relative relocations
set -eu

readelf=$1 strip=$2 library=$3 work=$4
shift 4

mkdir -p "$work"
stripped=$work/libqzaudio.so
"$strip" -o "$stripped" "$library"

failed=0
# holds WHAT NUMBER LIMIT
holds()
{
    printf '%-32s %7d, at most %7d\n' "$1" "$2" "$3"
    [ "$2" -le "$3" ] || failed=1
}

# sections PATTERN: the bytes of the sections with such a name; any of those that are loaded, but for a pattern
sections()
{
    bytes=0
    for size in $("$readelf" -SW "$stripped" | sed -n "s/^ *\[ *[0-9]*\] \($1\)  *[A-Z_]*  *[0-9a-f]*  *[0-9a-f]*  *\([0-9a-f]*\)  *[0-9a-f]*  *[A-Z]*A[A-Z]* .*/\2/p"); do
        bytes=$((bytes + 0x$size))
    done
    echo "$bytes"
}

pointer=$("$readelf" -h "$stripped" | grep -q ELF64 && echo 8 || echo 4)
holds '.text and .rodata' "$(sections '\.text\|\.rodata')" "$1"
holds 'all that is loaded' "$(sections '[^ ]*')" "$2"
holds 'relative relocations' "$("$readelf" -rW "$stripped" | grep -cE ' R_[A-Z0-9_]+_RELATIVE( |$)')" "$3"
# The compiler's own, frame_dummy, is in every library.
holds 'static constructors' $(($(sections '\.init_array') / pointer - 1)) 0
exit $failed
