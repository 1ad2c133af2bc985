#!/bin/sh
# Installs the build into a folder of its own and uses it the way clients do: a QML engine, and a library's client once through
# CMake, once through pkg-config; then, as an ordinary user, what README.md says and the desk bench. No LD_LIBRARY_PATH: what is
# installed has to find its libraries.
#
# Usage: consumer.sh PROJECT BUILD WORK CMAKE LIBDIR [CMAKE_OPTION...]
# shellcheck disable=SC2086 # an emulator's command is several words
set -eu

project=$1 build=$2 work=$3 cmake=$4 libdir=$5
shift 5

umask 022
unset LD_LIBRARY_PATH
export QT_LOGGING_RULES=default.debug=false
rm -rf "$work"
mkdir -p "$work"
# Where another user can read it, which the build folder need not be, and with a space.
shared=$(mktemp -d "${TMPDIR:-/tmp}/qzaudio consumer.XXXXXX")
trap 'rm -rf "$shared"' EXIT
chmod 755 "$shared"
prefix="$shared/the prefix"

"$cmake" --install "$build" --prefix "$prefix" >"$work/install.log"
desk=
[ ! -e "$build/bin/qzaudio-desk" ] || desk=$project/tests/integration/installed-desk.txt
"$project/tests/integration/installed.sh" "$project" "$prefix" "$libdir" \
    "$project/tests/integration/installed.txt" "$project/tests/integration/installed-simulator.txt" ${desk:+"$desk"}
# The same for an image, whose files lie elsewhere than they will be.
DESTDIR=$shared/image "$cmake" --install "$build" --prefix "/opt/100% audio" >"$work/install-image.log"
DESTDIR=$shared/image "$project/tests/integration/installed.sh" "$project" "/opt/100% audio" "$libdir" \
    "$project/tests/integration/installed.txt" "$project/tests/integration/installed-simulator.txt" ${desk:+"$desk"}
# Where the service files could not name the daemon, nothing is installed.
if "$cmake" --install "$build" --prefix "$shared/\$HOME" >"$work/install-refused.log" 2>&1 || [ -e "$shared/\$HOME" ]; then
    echo "installed to a folder that no service file can name"
    exit 1
fi
grep -q 'could not start the daemon in' "$work/install-refused.log"

echo "== from QML"
# The build's own test of the modules. It links with the library, too, and finds the installed one where the build's stood.
mkdir "$work/tests"
cp "$build/tests/tst_qmlmodule" "$work/tests"
ln -s "$prefix/$libdir" "$work/lib"
QML2_IMPORT_PATH=$prefix/$libdir/qt5/qml "$prefix/bin/qzaudio-with-flash" ${EMULATOR:-} "$work/tests/tst_qmlmodule"

echo "== through CMake"
prefix_option=-DCMAKE_PREFIX_PATH=$prefix
# Building for another processor, CMake looks below the roots of that processor's files only.
[ ! "${EMULATOR:-}" ] || prefix_option=-DCMAKE_FIND_ROOT_PATH=$prefix
"$cmake" -G Ninja -S "$project/tests/consumer" -B "$work/cmake" "$prefix_option" "$@"
"$cmake" --build "$work/cmake"
"$prefix/bin/qzaudio-with-flash" ${EMULATOR:-} "$work/cmake/player"

echo "== a view that knows nothing but the modules"
QML2_IMPORT_PATH=$prefix/$libdir/qt5/qml "$prefix/bin/qzaudio-with-flash" ${EMULATOR:-} "$work/cmake/view" "$project/tests/consumer/view.qml"

echo "== the bench"
${EMULATOR:-} "$prefix/bin/qzaudio-bench" --version
${EMULATOR:-} "$prefix/bin/qzaudio-focusd" --version

# The system's pkg-config knows nothing of another processor's Qt, and with-flash does not start its programs.
[ ! "${EMULATOR:-}" ] || exit 0
echo "== through pkg-config"
export PKG_CONFIG_PATH="$prefix/$libdir/pkgconfig:${PKG_CONFIG_PATH:-}"
eval "${CXX:-c++} -std=c++14 -o '$work/player' '$project/tests/consumer/main.cpp' $(pkg-config --cflags --libs qzaudio) '-Wl,-rpath,$prefix/$libdir'"
"$prefix/bin/qzaudio-with-flash" "$work/player"
platform=$(pkg-config --variable=platform qzaudio)
[ "$platform" = simulator ] || {
    echo "pkg-config says platform \"$platform\""
    exit 1
}
unset PKG_CONFIG_PATH

# The rest as an ordinary user, who has nothing but a home.
export HOME="$shared/home"
mkdir "$HOME"
set -- env
if [ "$(id -u)" -eq 0 ]; then
    chown 65534:65534 "$HOME"
    set -- setpriv --reuid=65534 --regid=65534 --clear-groups
fi
"$@" bwrap --dev-bind / / true || {
    echo "an ordinary user cannot make a namespace here: allow user namespaces, or run the tests outside this container"
    exit 1
}
"$@" test -x "$prefix/bin/qzaudio-bench" || {
    echo "an ordinary user cannot read $shared: let TMPDIR name a folder that everybody can read"
    exit 1
}

echo "== as README.md says"
"$project/tests/integration/readme.sh" "$project" "$prefix" "$HOME" "$@" env CMAKE_GENERATOR=Ninja

echo "== the daemon, started by the bus"
XDG_DATA_DIRS=$prefix/share "$@" dbus-run-session -- "$prefix/bin/qzaudio-bench" focus current

echo "== scenarios"
"$project/tests/integration/scenarios.sh" "$prefix" "$HOME" "$@"
