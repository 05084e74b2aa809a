#!/bin/bash
# extractfont.sh SUITE EXECUTABLE DOCUMENT: lets the suite write down the document's missing fonts.

suite=$1
executable=$2
document=$3

set -f
# The program, not the builtin, which would run commands named in an operand such as "-v a[$(...)]".
# shellcheck disable=SC2086 # unquoted: a path with blanks fails the test itself and goes on
if env test ! -f $document; then
    exit 1
fi
printf '%s\n' "$document"

if [ ! -d "$suite" ]; then
    exit 1
fi
printf '%s\n' "$suite"

"$suite/$executable" -savemissfont "$document"
