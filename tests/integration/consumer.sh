#!/bin/sh
# Installs the build into a folder of its own and uses it the way clients do: a QML engine, and a library's client once through
# CMake, once through pkg-config.
#
# Usage: consumer.sh PROJECT BUILD WORK CMAKE LIBDIR [CMAKE_OPTION...]
# shellcheck disable=SC2016,SC2086 # the backquotes are literal; an emulator's command is several words
set -eu

project=$1 build=$2 work=$3 cmake=$4 libdir=$5
shift 5

rm -rf "$work"
mkdir -p "$work"
"$cmake" --install "$build" --prefix "$work/prefix" >"$work/install.log"
"$project/tests/integration/installed.sh" "$project" "$work/prefix" "$libdir" \
    "$project/tests/integration/installed.txt" "$project/tests/integration/installed-simulator.txt"

echo "== from QML"
# The build's own test of the modules, with the installed plugins and libraries instead of the build's.
QML2_IMPORT_PATH=$work/prefix/$libdir/qt5/qml LD_LIBRARY_PATH=$work/prefix/$libdir "$project/tools/with-flash" ${EMULATOR:-} \
    "$build/tests/tst_qmlmodule"

example=$(sed -n '/^```cpp$/,/^```$/{/^```/!p}' "$project/README.md")
case $(cat "$project/tests/consumer/main.cpp") in
*"$example"*) ;;
*) echo "the example of README.md is not that of tests/consumer/main.cpp" && exit 1 ;;
esac

echo "== through CMake"
prefix=-DCMAKE_PREFIX_PATH=$work/prefix
# Building for another processor, CMake looks below the roots of that processor's files only.
[ ! "${EMULATOR:-}" ] || prefix=-DCMAKE_FIND_ROOT_PATH=$work/prefix
"$cmake" -G Ninja -S "$project/tests/consumer" -B "$work/cmake" "$prefix" "$@"
"$cmake" --build "$work/cmake"
LD_LIBRARY_PATH=$work/prefix/$libdir "$project/tools/with-flash" ${EMULATOR:-} "$work/cmake/player"

# The system's pkg-config knows nothing of another processor's Qt.
[ ! "${EMULATOR:-}" ] || exit 0
echo "== through pkg-config"
flags=$(PKG_CONFIG_PATH=$work/prefix/$libdir/pkgconfig:${PKG_CONFIG_PATH:-} pkg-config --cflags --libs qzaudio)
# shellcheck disable=SC2086 # the flags are several words
${CXX:-c++} -std=c++14 -o "$work/player" "$project/tests/consumer/main.cpp" $flags
LD_LIBRARY_PATH=$work/prefix/$libdir "$project/tools/with-flash" "$work/player"
platform=$(PKG_CONFIG_PATH=$work/prefix/$libdir/pkgconfig pkg-config --variable=platform qzaudio)
[ "$platform" = simulator ] || {
    echo "pkg-config says platform \"$platform\""
    exit 1
}
