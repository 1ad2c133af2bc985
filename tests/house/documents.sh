#!/bin/bash
# What the documents for those who work on the project name is there: tests, the project's tools, files and folders.
#
#   documents.sh PROJECT BUILD
set -euo pipefail

project=$1 build=$2
status=0

cd -- "$project"
tests=$(ctest --test-dir "$build" --show-only | sed -n 's/^ *Test *#[0-9]*: //p')
mark=$'\x60'
for document in CONTRIBUTING.md docs/{abi,architecture,decisions,testing}.md */README.md; do
    missing()
    {
        printf 'documents.sh: %s names %s, which there is none of\n' "$document" "$1" >&2
        status=1
    }

    count=0
    while read -r name; do
        case $name in
        *[fF]oo* | *NAME*) continue ;; # what a reader is to call as he likes
        tst_* | abi_* | house_* | integration_* | speed_* | *_tables)
            grep --quiet --line-regexp --fixed-strings "$name" <<<"$tests" || missing "the test $name"
            ;;
        build/*) continue ;;
        ./* | [a-z]*/*)
            # A folder of the project is in front. A name may have a pattern in it.
            [[ -d ${name%%/*} ]] || continue
            compgen -G "${name%/}" >/dev/null || missing "$name"
            ;;
        *) continue ;;
        esac
        count=$((count + 1))
        # In backticks, without arguments.
    done < <(grep --only-matching "${mark}[^$mark]*$mark" "$document" | tr --delete "$mark" | sed 's/ .*//' | sort --unique)
    [[ $document != @(CONTRIBUTING|docs/testing).md ]] || ((count >= 20)) ||
        { printf 'documents.sh: only %d names were found in %s\n' "$count" "$document" >&2 && status=1; }
done
exit $status
