# shellcheck shell=bash
# ./aon coverage

readonly ROOMS=(service callbacks manager events)
readonly COVERAGE=build/coverage

help_coverage() {
    cat <<HELP
usage: ./aon coverage [--missing]

Builds with clang's coverage counters, runs all tests, and prints for each source of ${ROOMS[*]}
how many functions, lines and branches ran. The sources with counts per line and
branch are in $COVERAGE/html/index.html.

  --missing  then also list each line that never ran, and each branch never taken

Builds $COVERAGE, needs clang++ and llvm. Some minutes the first time, then about one.
HELP
}

run_coverage() {
    local show_missing=
    if [ "${1-}" = --missing ]; then
        show_missing=yes
        shift
    fi
    [ $# -eq 0 ] || unknown "$1"
    need "${COVERAGE_PACKAGES[@]}"
    SCOPE=all
    run_step counted "mend it and run ./aon coverage again"
    llvm_cov report --show-region-summary=false | coverage_table
    llvm_cov show --format=html --show-branches=count --output-dir="$COVERAGE/html"
    [ -z "$show_missing" ] || llvm_cov export --format=lcov | missing
    printf '\nline by line: %s\n' "$COVERAGE/html/index.html"
}

# Each test is a process; those of one program share its counters' files.
step_counted() {
    build coverage
    rm -rf "$COVERAGE/profiles" "$COVERAGE/html"
    run_tests coverage
    # A process that is killed while it writes leaves a file that cannot be read.
    llvm-profdata-14 merge --sparse --failure-mode=all -o "$COVERAGE/all.profdata" \
        "$COVERAGE"/profiles/*.profraw
}

# It warns of inline functions that one program uses and another does not.
without_mismatches() { sed $'s/\e\\[[0-9;]*m//g; /mismatched data$/d; /^$/d'; }

# llvm_cov COMMAND OPTION...: about the rooms, as seen from all programs and libraries. The compiler
# names sources relative to the root, and then relative to the folder where it runs.
llvm_cov() {
    local command="$1" binary objects=()
    shift
    for binary in "$COVERAGE"/bin/*_test "$COVERAGE"/lib/*.so; do
        objects+=(--object "$binary")
    done
    llvm-cov-14 "$command" "$@" --instr-profile="$COVERAGE/all.profdata" \
        --path-equivalence="./$COVERAGE,$PWD" "${objects[@]:1}" \
        "${ROOMS[@]/#/$PWD/}" 2> >(without_mismatches >&2)
}

# coverage_table: the report without functions, narrow enough for a terminal.
coverage_table() {
    local layout='%-46s %6s %7s %8s  %8s %7s %8s\n'
    # shellcheck disable=SC2059
    printf "\n$layout" "" lines missed covered branches missed covered
    awk -v layout="$layout" '
        $1 == "TOTAL" { close("sort"); printf "\n" }
        NF == 10 {
            row = sprintf(layout, $1, $5, $6, $7, $8, $9, $10)
            if ($1 == "TOTAL") printf "%s", row; else printf "%s", row | "sort"
        }'
}

# missing: lines "FILE:LINE: what never happened: SOURCE" from an lcov trace.
missing() {
    printf '\n'
    sed "s|^SF:\./$COVERAGE/\./|SF:|" | awk -F '[:,]' '
        function report(what) { print file ":" $2 ": never " what ": " text[$2] }
        $1 == "SF" {
            file = $2
            for (line = 1; (getline text[line] < file) > 0; line++) sub(/^ +/, "", text[line])
            close(file)
        }
        $1 == "DA" && $3 == 0 { report("ran") }
        $1 == "BRDA" && $5 == 0 { report($4 % 2 ? "false" : "true") }' |
        sort -t : -k 1,1 -k 2,2n | uniq
}
