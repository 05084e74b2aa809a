#!/bin/bash
# getfileinfo.sh OUTPUT PATH...: appends the long listing of each path to OUTPUT.

if [ $# -lt 2 ]; then
    exit 0
fi

output=$1
shift

# A pipe that nobody reads would block forever.
if [ -p "$output" ]; then
    exit 0
fi

# A path with "*" in its name is listed by that name.
set -f
# shellcheck disable=SC2048 # unquoted: a path with a blank counts as two
for path in $*; do
    ls -dl -- "$path" >> "$output"
done
