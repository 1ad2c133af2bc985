#!/bin/sh
# In place of a test that cannot run in a build: says why.
echo "skipped: $*"
exit 77
