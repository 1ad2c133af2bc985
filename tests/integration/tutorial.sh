#!/bin/sh
# Follows docs/tutorial.md to its end, in a home whose name has a space, with the library installed in a folder there; then compiles and runs the
# other examples against it. Warnings are errors.
#
# Usage: tutorial.sh PROJECT BUILD WORK [CMAKE_OPTION...]
set -eu

project=$1 build=$2 work=$3
shift 3

unset LD_LIBRARY_PATH QT_LOGGING_RULES
rm -rf "$work"
# What compiles for the reader, who gives no options.
for option; do
    case $option in
    -DCMAKE_CXX_COMPILER_LAUNCHER=*ccache)
        CCACHE_DIR=$(ccache --get-config cache_dir)
        CMAKE_CXX_COMPILER_LAUNCHER=${option#*=}
        export CCACHE_DIR CMAKE_CXX_COMPILER_LAUNCHER
        ;;
    esac
done
export CMAKE_GENERATOR=Ninja CXXFLAGS='-Wall -Wextra -Werror'
export QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software QT_QUICK_CONTROLS_STYLE=Default
export HOME="$work/a home" XDG_RUNTIME_DIR="$work/run"
mkdir -p "$HOME" "$XDG_RUNTIME_DIR"
chmod 700 "$XDG_RUNTIME_DIR"

cd "$project"
"$project/tests/tutorial/follow.py" --hand "$work/hand" --without 'As Debian packages' --without 'Or built here' \
    --instead build/release "$build" docs/tutorial.md

prefix=$HOME/qzaudio
export PATH="$prefix/bin:$PATH" CMAKE_PREFIX_PATH="$prefix" QML2_IMPORT_PATH="$prefix/lib/qt5/qml" XDG_DATA_DIRS="$prefix/share"
"$project/tests/tutorial/examples.py" "$project/examples" "$work/examples" "$work/hand" "$project/tools/focus-bus.conf"
