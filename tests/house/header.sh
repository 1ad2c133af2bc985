#!/bin/sh
# One installed header compiles alone, twice in a row, for clients of different kinds: in C++14 with Qt's keywords, and in C++17
# without.
#
#   header.sh HEADER COMPILER ARGUMENT...
set -eu
header=$1
shift

# compiles COMPILER OPTION...
compiles()
{
    printf '#include <%s>\n#include <%s>\n' "$header" "$header" | "$@" -fsyntax-only -Wall -Wextra -Wpedantic -Wundef -Werror -x c++ -
}

compiles "$@" -std=c++14
compiles "$@" -std=c++17 -DQT_NO_KEYWORDS
