#!/bin/bash
# ./run builds and runs the checkout that it stands in, also where that was copied or moved together with what was built; and gives the
# bench the arguments that the user means.
#
#   checkout.sh PROJECT WORK
#
# A small project stands in for the sources: its bench says which checkout it was built from, and its arguments, one a line.
set -euo pipefail

project=$1 work=$2
rm -rf "$work"
mkdir -p "$work/original/bench/scenarios" "$work/original/tools"
cd "$work"
cp "$project/run" "$project/CMakePresets.json" original
cp "$project"/tools/{configure,install-packages,packages} original/tools
touch original/bench/scenarios/{commute,mute}.js original/bench/{play,settings,help}command.h
cat >original/CMakeLists.txt <<'END'
cmake_minimum_required(VERSION 3.16)
project(QzAudio LANGUAGES CXX)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
add_executable(qzaudio-bench bench/main.cpp)
END

fail()
{
    cat out err
    printf '%s\n' "$*"
    exit 1
}

# source_of CHECKOUT TEXT
source_of()
{
    printf '%s\n' '#include <cstdio>' 'int main(int count, char **words)' '{' "    std::puts(\"$2\");" \
        '    for (int i = 1; i < count; ++i)' '        std::puts(words[i]);' '    return 7;' '}' >"$1/bench/main.cpp"
}

# plays CHECKOUT TEXT: ./run gives the bench's output and exit status
plays()
{
    local status=0
    "$1/run" >out 2>err || status=$?
    [ $status -eq 7 ] || fail "$1 ended with the status $status"
    [ "$(head -n 1 out)" = "$2" ] || fail "$1 plays something else than $2"
}

# configured HOW_OFTEN ANEW
configured()
{
    [ "$(grep -c 'Configuring done' err)" -eq "$1" ] || fail "was not configured $1 times"
    [ "$(grep -c 'was configured for .*; starting it anew$' err)" -eq "$2" ] || fail "did not say $2 times that it starts anew"
}

export QZAUDIO_PACKAGES=present
source_of original 'the original'
plays original 'the original'
configured 1 0
plays original 'the original'
configured 0 0

echo "== a copy builds its own sources"
cp -a original 'a copy'
echo '#error "this is the copy"' >>'a copy/bench/main.cpp'
! 'a copy/run' >out 2>err || fail 'the copy builds, whatever stands in it'
cat out err >both
grep -q 'this is the copy' both || fail 'the copy does not fail for its error'
! grep -q 'the original$' out || fail "the copy runs the original's bench"
grep -qx "tools/configure: $work/a copy/build/release was configured for $work/original; starting it anew" err || fail 'does not say why'
source_of 'a copy' 'the copy'
plays 'a copy' 'the copy'
plays original 'the original'
configured 0 0

echo "== so does one that was moved"
mv original 'moved elsewhere'
source_of 'moved elsewhere' 'the moved one'
plays 'moved elsewhere' 'the moved one'
configured 1 1
mv 'a copy' original
plays original 'the copy'
configured 1 1
plays 'moved elsewhere' 'the moved one'
configured 0 0

echo "== the same one under another name needs nothing"
ln -s original link
plays link 'the copy'
configured 0 0

echo "== what was configured by hand is put right"
cmake -DCMAKE_EXPORT_COMPILE_COMMANDS=OFF original/build/release >out
plays original 'the copy'
configured 1 0
grep -q '^CMAKE_EXPORT_COMPILE_COMMANDS:.*=ON$' original/build/release/CMakeCache.txt || fail 'is not configured as all commands do'

echo "== what is not this project's is left alone"
rm -rf original/build
mkdir -p other/build
printf 'cmake_minimum_required(VERSION 3.16)\nproject(Other NONE)\n' >other/CMakeLists.txt
cmake -G Ninja -S other -B other/build >out
! original/tools/configure --build other/build release >out 2>err || fail 'takes the build folder of another project'
grep -q 'belongs to another project' err || fail 'does not say whose folder it is'
[ -e other/build/CMakeCache.txt ] || fail 'removed the build folder of another project'

echo "== arguments"
# passes EXPECTED ARGUMENT...: what the bench is given, in one line
passes()
{
    local expected=$1
    shift
    (cd original && ./run "$@") >out 2>err || [ $? -eq 7 ] || fail "$*: does not run"
    [ "$(tail -n +2 out | paste -sd ' ')" = "$expected" ] || fail "./run $*: is not \"$expected\""
}
scenarios=$work/original/bench/scenarios
touch original/own.js
passes "play $scenarios/commute.js"
passes "play $scenarios/commute.js -v" -v
passes "play $scenarios/commute.js --flash folder --log" --flash folder --log
passes "play $scenarios/mute.js" mute
passes "play $scenarios/mute.js $scenarios/commute.js --flash mute" mute commute --flash mute
passes 'play own.js -v' own.js -v
passes 'play -v own.js' -v own.js
passes 'play -v mute' -v mute
passes 'play - --log' - --log
passes 'play missing' missing
passes 'play bench/scenarios' bench/scenarios
passes 'play -v bench/scenarios' -v bench/scenarios
passes 'play --list' --list
passes 'play own.js' play own.js
passes 'settings --json' settings --json
passes 'help play' help play
passes '--version' --version

echo "== packages"
# brings GROUPS ARGUMENT...: what is installed first
brings()
{
    local groups=$1
    shift
    passes "$@"
    [ "$(cat original/groups)" = "$groups" ] || fail "./run ${*:2}: installs $(cat original/groups)"
}
rm original/tools/install-packages
printf '%s\n' '#!/bin/sh' 'echo "$*" >groups' >original/tools/install-packages
chmod +x original/tools/install-packages
touch original/bench/plotcommand.h original/bench/rendercommand.h
echo 'expect(Sound.above("S+FilePlayer")).toBeGreaterThan(6);' >original/measured.js
brings 'run' "play $scenarios/mute.js" mute
brings 'run sound' 'render mute -o mute.wav' render mute -o mute.wav
brings 'run sound' 'play -v measured.js' -v measured.js
echo 'expect(Sound.above("S+FilePlayer")).toBeGreaterThan(6);' >"$scenarios/mute.js"
brings 'run sound' 'plot timeline mute' plot timeline mute
brings 'run' 'plot policy -o policy.svg' plot policy -o policy.svg
brings 'run plots' 'plot policy -o policy.png' plot policy -o policy.png

echo "== the reference"
# opens EXPECTED DISPLAY: what "./run docs" prints, and what a display shows
opens()
{
    (cd original && DISPLAY=$2 WAYLAND_DISPLAY='' PATH=$work/display:$PATH ./run docs) >out 2>err || fail "./run docs ends with the status $?"
    [ "$(paste -sd ' ' out)" = "$1" ] || fail "./run docs with the display \"$2\" is not \"$1\""
    [ "$(cat original/groups)" = 'run docs' ] || fail "./run docs installs $(cat original/groups)"
}
mkdir display
cat >original/tools/reference <<'END'
#!/bin/sh
echo "page of ${1##*/}"
END
cat >display/xdg-open <<'END'
#!/bin/sh
echo "opened $1"
END
chmod +x original/tools/reference display/xdg-open
opens 'page of qzaudio-bench' ''
opens 'page of qzaudio-bench opened page of qzaudio-bench' :7
! (cd original && ./run docs mute) >out 2>err || fail './run docs takes an argument'
grep -q 'takes nothing behind it' err || fail 'does not say what is wrong with the argument'
