#!/bin/bash
# Includes run one way: nothing includes what is built on top of it.
#
#   includes.sh SOURCE_FOLDER
set -euo pipefail
shopt -s globstar nullglob
cd -- "$1"

failed=0
checked=0

# Where each header of the project stands; some names stand in several folders.
declare -A folders_of
for header in {include/qzaudio,platform,src,simulator,qml,service,doctor,bench,window,tests,benchmarks}/**/*.h; do
    [[ $header != src/settingsfile/* ]] || continue # a header for all
    folders_of[${header##*/}]+=" ${header%%/*}"
done

complain()
{
    echo "$1 includes $2"
    failed=1
}

# check FILE MAY_INCLUDE: a pattern of the folders beside its own
check()
{
    local file=$1 may_include=$2 target folder allowed
    while read -r target; do
        checked=$((checked + 1))
        [[ ${folders_of[${target##*/}]:-} && ( $target == *../* || ! -e ${file%/*}/$target ) ]] || continue
        allowed=false
        for folder in ${folders_of[${target##*/}]}; do
            # shellcheck disable=SC2053 # a pattern
            if [[ $folder == "${file%%/*}" || $folder == $may_include ]]; then allowed=true; fi
        done
        $allowed || complain "$file" "$target"
    done < <(includes_of "$file")
}

includes_of()
{
    sed -nE 's/^[[:space:]]*#[[:space:]]*include[[:space:]]*[<"]([^>"]+)[>"].*/\1/p' "$1"
}

for file in src/**/*.{h,cpp}; do check "$file" '@(platform|include)'; done
for file in service/**/*.{h,cpp}; do check "$file" include; done
for file in window/**/*.{h,cpp}; do check "$file" '@(bench|qml|simulator|include)'; done
for file in bench/**/*.{h,cpp}; do check "$file" '@(qml|simulator|include)'; done

# The doctor looks at the settings file with the library's own eyes, and at nothing else in the library.
for file in doctor/**/*.{h,cpp}; do
    check "$file" '@(platform|include|src)'
    for target in $(includes_of "$file"); do
        [[ $target == ../src/settingstext.h || ! -e src/${target##*/} || -e doctor/${target##*/} ]] || complain "$file" "$target"
    done
done

# Of the library the simulator knows the records only that the platform's declarations mention.
for file in simulator/**/*.{h,cpp}; do
    check "$file" '@(platform|include)'
    for target in $(includes_of "$file"); do
        [[ $target != qzaudio/* || $target == qzaudio/audioplatformrecords.h ]] || complain "$file" "$target"
    done
done

# The module QzAudio.Simulator, for which the other one works without the simulator.
simulator_module=(
    equalizercurves equalizerresponse focusinspector focusstack journalmodel nearestname platformarguments qmlplatform responsecurve
    simulatorplugin simulatortypes situations
)
of_simulator_module()
{
    local name
    for name in "${simulator_module[@]}"; do
        [[ ${1%.*} != "$name" ]] || return 0
    done
    return 1
}
for file in qml/**/*.{h,cpp}; do
    if of_simulator_module "${file#qml/}"; then
        check "$file" '@(simulator|include)'
        continue
    fi
    check "$file" include
    for target in $(includes_of "$file"); do
        ! of_simulator_module "$target" || complain "$file" "$target"
    done
done
for name in "${simulator_module[@]}"; do
    [[ -e qml/$name.h ]] || { echo "there is no qml/$name.h" && failed=1; }
done

# What is installed includes what is installed, Qt and the standard library; the platform's headers know the records only.
for file in include/qzaudio/*.h platform/*.h; do
    for target in $(includes_of "$file"); do
        checked=$((checked + 1))
        case $target in
        qzaudio/audioplatformrecords.h) continue ;;
        qzaudio/*.h) [[ ! -e include/$target || $file == platform/* ]] || continue ;;
        Qt*/* | c[a-z]*) continue ;;
        *.h) ;;
        *) continue ;;
        esac
        complain "$file" "$target"
    done
done

((checked > 500)) || { echo "only $checked includes were found" && failed=1; }
exit $failed
