#!/bin/bash
# What docs/testing.md names is there: tests, the project's tools, files and folders.
#
#   documents.sh PROJECT BUILD
set -euo pipefail

project=$1 build=$2
document=$project/docs/testing.md
status=0

missing()
{
    printf 'documents.sh: %s names %s, which there is none of\n' "$document" "$1" >&2
    status=1
}

# In backticks, without arguments.
mark=$'\x60'
names=$(grep --only-matching "${mark}[^$mark]*$mark" "$document" | tr --delete "$mark" | sed 's/ .*//' | sort --unique)
tests=$(ctest --test-dir "$build" --show-only | sed -n 's/^ *Test *#[0-9]*: //p')
count=0
while read -r name; do
    case $name in
    tst_* | abi_* | integration_* | speed_*)
        grep --quiet --line-regexp --fixed-strings "$name" <<<"$tests" || missing "the test $name"
        ;;
    tests/* | tools/* | bench/* | docs/* | src/* | ./check)
        # A name may have a pattern in it.
        compgen -G "$project/$name" >/dev/null || missing "$name"
        ;;
    *) continue ;;
    esac
    count=$((count + 1))
done <<<"$names"
((count >= 20)) || { printf 'documents.sh: only %d names were found in %s\n' "$count" "$document" >&2 && status=1; }
exit $status
