#!/bin/sh
# One installed header compiles alone, twice in a row, for clients of every kind: in C++14 and C++17, with and without Qt's
# keywords.
#
#   header.sh HEADER COMPILER ARGUMENT...
set -eu
header=$1
shift

failed=0
for standard in c++14 c++17; do
    for keywords in '' -DQT_NO_KEYWORDS; do
        if ! printf '#include <%s>\n#include <%s>\n' "$header" "$header" \
            | "$@" -fsyntax-only -std=$standard ${keywords:+"$keywords"} -Wall -Wextra -Wpedantic -Wundef -Werror -x c++ -; then
            echo "<$header> does not compile alone in $standard $keywords"
            failed=1
        fi
    done
done
exit $failed
