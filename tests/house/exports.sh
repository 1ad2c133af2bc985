#!/bin/sh
# The library exports its public classes, each of them, and nothing else.
#
#   exports.sh NM LIBRARY CLASS...
set -eu
nm=$1 library=$2
shift 2

# What belongs to no class: the sanitizers' own marks.
exported=$("$nm" -D --defined-only --demangle "$library" | cut -d' ' -f3- | grep -v '^__odr_asan' || :)
[ -n "$exported" ] || { echo "$library exports nothing"; exit 1; }

failed=0
patterns=
for class; do
    patterns="$patterns${patterns:+|}$class"
    if ! printf '%s\n' "$exported" | grep -q "^$class::"; then
        echo "not exported: $class"
        failed=1
    fi
done
strangers=$(printf '%s\n' "$exported" | grep -vE "^((vtable|typeinfo|typeinfo name) for |non-virtual thunk to |guard variable for )?($patterns)(::.*)?\$" || :)
if [ -n "$strangers" ]; then
    printf 'exported, but of no public class:\n%s\n' "$strangers"
    failed=1
fi
exit $failed
