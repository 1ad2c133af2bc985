#!/bin/sh
# Does what README.md tells a client to do, word for word: its CMake project and its commands. Its program goes on for ever; the one of
# tests/consumer, which begins like it, ends.
#
# Usage: readme.sh PROJECT PREFIX WORK [COMMAND...]    COMMAND runs the rest of its line, for example as another user
set -eu

project=$1 prefix=$2 work=$3
shift 3

# block LANGUAGE NUMBER: one of the section's blocks
block()
{
    awk -v fence="\`\`\`$1" -v wanted="$2" '
        /^## / { here = $0 == "## Use it in your own project" }
        $0 == "```" { inside = 0 }
        inside
        here && $0 == fence { inside = ++count == wanted }
    ' "$project/README.md"
}

example=$(block cpp 1)
case $(cat "$project/tests/consumer/main.cpp") in
*"$example"*) ;;
*) echo "the example of README.md is not in tests/consumer/main.cpp" && exit 1 ;;
esac

for way in 1 2; do
    folder="$work/readme $way"
    mkdir "$folder"
    block cmake 1 >"$folder/CMakeLists.txt"
    cp "$project/tests/consumer/main.cpp" "$folder/main.cpp"
    block sh $way >"$folder/commands"
    grep -q /player "$folder/commands"
    chmod 777 "$folder"
    # Nothing of this machine's helps the programs to their libraries.
    (cd "$folder" && "$@" env -u LD_LIBRARY_PATH PREFIX="$prefix" sh -eux ./commands)
done
