#!/bin/sh
# Builds the library twice, in two folders and from two copies of the sources, and compares the bytes.
#
# Usage: reproducible.sh PROJECT WORK CMAKE STRIP [CMAKE_OPTION...]
set -eu

project=$1 work=$2 cmake=$3 strip=$4
shift 4

rm -rf "$work"
for copy in first second-and-longer; do
    mkdir -p "$work/$copy/source"
    for part in CMakeLists.txt cmake dbus include packaging platform src simulator; do
        cp -r "$project/$part" "$work/$copy/source/"
    done
    CCACHE_DISABLE=1 "$cmake" -G Ninja -S "$work/$copy/source" -B "$work/$copy/build" -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF \
        -DQZAUDIO_WITH_QML=OFF -DQZAUDIO_WITH_SERVICE=OFF "$@"
    CCACHE_DISABLE=1 "$cmake" --build "$work/$copy/build" --target qzaudio
    "$strip" -o "$work/$copy.so" "$work/$copy/build/lib/libqzaudio.so.1.0.0"
done
sha256sum "$work/first.so" "$work/second-and-longer.so"
cmp "$work/first.so" "$work/second-and-longer.so"
