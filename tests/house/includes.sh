#!/bin/sh
# Includes run one way: nothing includes what is built on top of it.
#
#   includes.sh SOURCE_FOLDER
set -eu
cd "$1"

failed=0
checked=0

# Every #include of a folder, as FILE:TARGET
includes_of()
{
    find "$1" -name '*.h' -o -name '*.cpp' | sort | while read -r file; do
        sed -nE 's/^[[:space:]]*#[[:space:]]*include[[:space:]]*[<"]([^>"]+)[>"].*/\1/p' "$file" | sed "s|^|$file:|"
    done
}

# forbid FOLDER FORBIDDEN...: no file of the folder includes a header that stands in a forbidden one. A name that the folder
# itself or what it may use has, too, is theirs.
forbid()
{
    folder=$1
    shift
    forbidden=$(find "$@" -name '*.h' ! -path 'src/settingsfile/*') # a header for all
    list=$(includes_of "$folder")
    [ -n "$list" ] || { echo "$folder includes nothing"; failed=1; }
    for include in $list; do
        checked=$((checked + 1))
        target=${include#*:}
        if [ -e "$folder/$target" ] || [ -e "include/$target" ] || [ -e "platform/$target" ]; then
            continue
        fi
        for header in $forbidden; do
            [ "${header##*/}" != "${target##*/}" ] && continue
            echo "${include%%:*} includes $header"
            failed=1
        done
    done
}

forbid src simulator qml service bench tests benchmarks
forbid simulator src qml service bench tests benchmarks
forbid qml src service bench tests benchmarks
forbid service src simulator qml bench tests benchmarks
forbid bench src service tests benchmarks

# What is installed includes what is installed, Qt and the standard library; the platform's headers know the records only.
for include in $(includes_of include) $(includes_of platform); do
    checked=$((checked + 1))
    target=${include#*:}
    case $target in
    qzaudio/*.h) [ -e "include/$target" ] && continue ;;
    Qt*/* | c[a-z]*) continue ;;
    *.h) ;;
    *) continue ;;
    esac
    echo "${include%%:*} includes $target"
    failed=1
done

[ $checked -gt 100 ] || { echo "only $checked includes were found"; failed=1; }
exit $failed
