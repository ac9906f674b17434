#!/bin/bash
# The manual pages and the completion, against what the programs themselves say that they have:
# Manual.sh SERVICE AONCTL MANDOC FOLDER, where FOLDER holds man/ and completion/.
set -u
service="$1"
aonctl="$2"
folder="$4"
page="$folder/man/aonctl.1"
failures=0

# same WHAT EXPECTED ACTUAL: two lists, in any order.
same() {
    local difference
    difference="$(diff <(sort <<<"$2") <(sort <<<"$3"))" && return
    printf '%s (<: the program has it, >: the page has it)\n%s\n' "$1" "$difference"
    failures=$((failures + 1))
}

# section HEAD: the lines of the page from one heading to the next.
section() { awk -v head="$1" '/^\.S[sh] /{inside = $0 == head} inside' "$page"; }

# items PATTERN: the items of a list that begin so.
items() { sed -nE "s/^\.It $1.*/\1/p"; }

commands="$("$aonctl" --complete | cut -f 1 | grep -v '^-')"
same "commands" "$commands" "$(sed -n 's/^\.Ss //p' "$page")"
for command in $commands; do
    candidates="$("$aonctl" --complete "$command" | cut -f 1 | grep -v '^--help$')"
    text="$(section ".Ss $command")"
    [[ "$text" != *"Sx CLIENT OPTIONS"* ]] || text+=$'\n'"$(section '.Sh CLIENT OPTIONS')"
    same "options of $command" "$(grep '^--' <<<"$candidates")" \
        "$(items 'Fl (-[a-z-]+)' <<<"$text" | sed 's/^/-/')"
    [ "$command" = help ] ||
        same "words of $command" "$(grep -v '^[-:]' <<<"$candidates")" "$(items 'Cm ([a-z-]+)' <<<"$text")"
done

page="$folder/man/vendor.zarvo.hardware.camera.aon-service.8"
AON_RUNTIME_DIR="$(mktemp -d)"
export AON_RUNTIME_DIR
same "options of the service" \
    "$(timeout 20 "$service" --help | grep -oE '^ +--[a-z-]+' | tr -d ' ' | grep -vE 'help|version')" \
    "$(items 'Fl (-[a-z-]+)' <"$page" | sed 's/^/-/' | grep -vE 'help|version')"
rm -rf "$AON_RUNTIME_DIR"

"$3" -T lint -W warning "$folder"/man/* || failures=$((failures + 1))

# completes EXPECTED WORD...: what bash offers for the last word.
# shellcheck source=host/ctl/completion/aonctl.bash
source "$folder/completion/aonctl.bash"
completes() {
    local expected="$1"
    COMP_WORDS=("$aonctl" "${@:2}")
    COMP_CWORD=$(($# - 1))
    _aonctl "$aonctl"
    [ "${COMPREPLY[*]}" = "$expected" ] && return
    printf 'completion of "%s": "%s", not "%s"\n' "${*:2}" "${COMPREPLY[*]}" "$expected"
    failures=$((failures + 1))
}
completes "sensors show scene setprop" s
completes "open" camera o
completes "--save-images" watch --json --sa
completes "fusion feature" watch --types f
completes "feature" watch --types = fe
completes "$folder/man" watch --save-images "$folder/m"
completes "setprop" help set
completes "" dump --
exit $failures
