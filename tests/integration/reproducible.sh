#!/bin/sh
# Builds the library twice, in two folders and from two copies of the sources, and compares the bytes.
#
# Usage: reproducible.sh PROJECT BUILD WORK CMAKE STRIP [CMAKE_OPTION...]
set -eu

project=$1 build=$2 work=$3 cmake=$4 strip=$5
shift 5

rm -rf "$work"
# The simulated platform of the build at hand serves as a vendor's: it need not be built twice more.
mkdir -p "$work/sdk/lib"
ln -s "$project/platform" "$work/sdk/include"
ln -s "$build"/lib/libqzaudio_simulator.so* "$work/sdk/lib"
for copy in first second-and-longer; do
    mkdir -p "$work/$copy/source"
    for part in CMakeLists.txt README.md cmake dbus doctor include packaging src; do
        cp -r "$project/$part" "$work/$copy/source/"
    done
    CCACHE_DISABLE=1 "$cmake" -G Ninja -S "$work/$copy/source" -B "$work/$copy/build" -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF \
        -DQZAUDIO_PLATFORM=vendor "-DQZAUDIO_PLATFORM_SDK=$work/sdk" -DQZAUDIO_WITH_SERVICE=OFF "$@"
    CCACHE_DISABLE=1 "$cmake" --build "$work/$copy/build" --target qzaudio
    "$strip" -o "$work/$copy.so" "$work/$copy/build/lib/libqzaudio.so.1.0.0"
done
sha256sum "$work/first.so" "$work/second-and-longer.so"
cmp "$work/first.so" "$work/second-and-longer.so"
