#!/bin/bash
# Holds what libraries import to what a vendor process may: Imports.sh NM TABLE LIBRARY...
set -u
nm="$1"
table="$2"
shift 2
failures=0
for library in "$@"; do
    symbols="$("$nm" -D --undefined-only --format=posix "$library" | cut -d' ' -f1)"
    [ -n "$symbols" ] || {
        echo "$library imports nothing: is it the right file?"
        failures=$((failures + 1))
    }
    while read -r symbol; do
        echo "$library imports $symbol, which no vendor process may count on"
        failures=$((failures + 1))
    done < <(grep -vxEf <(grep -v '^#' "$table") <<<"$symbols")
done
exit $failures
