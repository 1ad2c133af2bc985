#!/bin/sh
# What the library weighs, stripped: code and constants, all that is loaded, and what the dynamic linker has to do before main().
#
# Usage: size.sh READELF STRIP LIBRARY WORK CODE LOADED RELOCATIONS
#
# The last three are limits: bytes of .text and .rodata, bytes of all that is loaded, number of relative relocations.
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

# sections PATTERN: the bytes of those that are loaded and have such a name
sections()
{
    # [Nr] Name Type Address Offset Size EntrySize Flags...; the number may have a blank in front.
    sizes=$("$readelf" -SW "$stripped" | sed -e 's/^ *\[ *[0-9]*\] *//' | awk -v "name=^($1)\$" '$1 ~ name && $7 ~ /A/ { print $5 }')
    bytes=0
    for size in $sizes; do
        bytes=$((bytes + 0x$size))
    done
    echo "$bytes"
}

pointer=$("$readelf" -h "$stripped" | grep -q ELF64 && echo 8 || echo 4)
holds '.text and .rodata' "$(sections '[.](text|rodata)')" "$1"
holds 'all that is loaded' "$(sections '.*')" "$2"
holds 'relative relocations' "$("$readelf" -rW "$stripped" | grep -cE ' R_[A-Z0-9_]+_RELATIVE( |$)')" "$3"
# The compiler's own, frame_dummy, is in every library.
holds 'static constructors' $(($(sections '[.]init_array') / pointer - 1)) 0
exit $failed
