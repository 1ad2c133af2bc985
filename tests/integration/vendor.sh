#!/bin/sh
# Builds the library against a make-believe vendor's SDK, installs it, and reaches every used platform operation through it.
#
# Usage: vendor.sh PROJECT WORK CMAKE LIBDIR [CMAKE_OPTION...]
# shellcheck disable=SC2086 # an emulator's command is several words
set -eu

project=$1 work=$2 cmake=$3 libdir=$4
shift 4

rm -rf "$work"
mkdir -p "$work"
"$project/tests/vendor/make-sdk.py" "$project/platform" "$work/sdk-source"
"$cmake" -G Ninja -S "$project/tests/vendor/sdk" -B "$work/sdk-build" "-DSDK_SOURCES=$work/sdk-source" \
    "-DRECORDS_INCLUDE=$project/include" "$@"
"$cmake" --build "$work/sdk-build"
"$cmake" --install "$work/sdk-build" --prefix "$work/sdk"

"$cmake" -G Ninja -S "$project" -B "$work/build" "-DCMAKE_INSTALL_PREFIX=$work/prefix" -DQZAUDIO_PLATFORM=vendor "-DQZAUDIO_PLATFORM_SDK=$work/sdk" "$@"
"$cmake" --build "$work/build"
"$cmake" --install "$work/build"
"$project/tests/integration/installed.sh" "$project" "$work/prefix" "$libdir" "$project/tests/integration/installed.txt"
# The vendor's library stands where the dynamic linker looks anyway; a folder of this machine's must not get in front of it.
for file in "$work/prefix/$libdir/libqzaudio.so.1" "$work/prefix/bin/qzaudio-doctor" "$work/prefix/bin/qzaudio-focusd"; do
    if readelf -d "$file" | grep -E "R(UN)?PATH"; then
        echo "$file has a run path"
        exit 1
    fi
done

prefix=-DCMAKE_PREFIX_PATH=$work/prefix
# Building for another processor, CMake looks below the roots of that processor's files only.
[ ! "${EMULATOR:-}" ] || prefix=-DCMAKE_FIND_ROOT_PATH=$work/prefix
"$cmake" -G Ninja -S "$project/tests/vendor/smoke" -B "$work/smoke" "$prefix" "-DSDK=$work/sdk" "$@"
"$cmake" --build "$work/smoke"
LD_LIBRARY_PATH=$work/prefix/$libdir:$work/sdk/lib ${EMULATOR:-} "$work/smoke/smoke"

# The doctor names the vendor's library, and asks it. There is no bus here.
status=0
DBUS_SESSION_BUS_ADDRESS=unix:path=/nowhere DBUS_SYSTEM_BUS_ADDRESS=unix:path=/nowhere LD_LIBRARY_PATH=$work/prefix/$libdir:$work/sdk/lib \
    "$project/tools/with-flash" --dir "$work/flash" ${EMULATOR:-} "$work/prefix/bin/qzaudio-doctor" --patience 60 --write-test >"$work/doctor.txt" || status=$?
cat "$work/doctor.txt"
[ $status -eq 14 ] || [ "$(stat --file-system --format %T "$work")" = tmpfs ] || { echo "the doctor ends with $status" && exit 1; }
for line in "library   good   version    .*$work/prefix/$libdir/libqzaudio\.so\." "platform  good   linked     $work/sdk/lib/libacmesound\.so\.7\$" \
    "platform  good   answers    10 of 10 calls" "records   good   sizes      .*audio_ext_eq_parameter_t 564," "flash     [a-z]* *sync       "; do
    grep -q "^$line" "$work/doctor.txt" || { echo "the doctor does not say: $line" && exit 1; }
done
