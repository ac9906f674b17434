#!/bin/bash
# Holds programs and libraries to how they are hardened: Hardened.sh READELF FILE...
set -u
readelf="$1"
shift
failures=0

# expect FILE WHAT PATTERN: what readelf prints of the file has to match.
expect() {
    grep -qE "$3" <<<"$facts" && return
    echo "$1: $2"
    failures=$((failures + 1))
}

for file in "$@"; do
    facts="$("$readelf" --wide --file-header --program-headers --dynamic --dyn-syms "$file")"
    expect "$file" 'is bound to an address' '^ +Type: +DYN'
    expect "$file" 'has an executable stack' ' GNU_STACK .* RW +0x'
    expect "$file" 'what is read only after the start is writable' ' GNU_RELRO '
    expect "$file" 'resolves symbols late' 'FLAGS.*NOW'
    expect "$file" 'does not protect its stack' ' __stack_chk_fail(@| |$)'
    expect "$file" 'does not check the bounds of buffers' ' __[a-z]+_chk(@| |$)'
done
exit $failures
