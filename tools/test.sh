# shellcheck shell=bash
# ./aon test, and how the steps of a check run.

readonly STEPS=(
    "format|the layout of C++ sources"
    "shell|the analysis of shell scripts"
    "gcc|a build with g++, all tests"
    "asan|a build with clang, all tests under the address and undefined-behaviour sanitizers"
    "tsan|a build with clang, all tests under the thread sanitizer"
    "phone|the library and its program with libc++, lld and no RTTI, as on the phone"
    "arm64|a build for the phone's processor; codec, parser and layout tests in an emulator"
    "prove|the proof of the arbitration, on a model of its locks"
    "cppcheck|the analysis of where values go, of all C++ sources but the tests"
    "tidy|the static analysis of all C++ sources"
)

help_test() {
    cat <<HELP
usage: ./aon test [--only STEP]...

Passes every check and test, step by step, and stops at the first step that fails:

$(rows "${STEPS[@]}")

  --only STEP  only this step; may be given more than once

Warnings are errors in every build. A step's whole output is in build/log/STEP.log; only that of
one that fails is shown, without the lines of the tests that passed. AON_JOBS=NUMBER in the
environment says how many things to do at once (otherwise one per processor); ccache is used when
installed.
On two cores about 30 minutes from nothing, 6 with warm caches. Exit status: 0 when all is well, 1
when not, 2 for a bad command line.
HELP
}

run_test() {
    local chosen=()
    while [ $# -gt 0 ]; do
        [ "$1" = --only ] || unknown "$1"
        [ $# -ge 2 ] || misuse "test: --only wants the name of a step"
        has_row "$2" "${STEPS[@]}" || misuse "test: unknown step '$2'; see ./aon help test"
        chosen+=("$2|")
        shift 2
    done
    need "${TEST_PACKAGES[@]}"
    SCOPE=all
    local row step
    for row in "${STEPS[@]}"; do
        step="${row%%|*}"
        [ ${#chosen[@]} -eq 0 ] || has_row "$step" "${chosen[@]}" || continue
        run_step "$step" "that step alone: ./aon test --only $step"
    done
    printf 'all passed in %s\n' "$(duration "$SECONDS")"
}

duration() { printf '%dm%02ds' $(($1 / 60)) $(($1 % 60)); }

# run_step STEP HINT: runs step_STEP, says how long it took and, in the last line of its output,
# what it did; when it fails, says all and ends the command. To be called where errexit is in force.
run_step() {
    local step="$1" hint="$2" log="build/log/$1.log" start="$SECONDS" status
    mkdir -p build/log
    printf '%-9s' "$step"
    set +e
    (set -e && "step_$step") >"$log" 2>&1
    status=$?
    set -e
    if [ "$status" != 0 ]; then
        printf 'FAILED after %s\n\n' "$(duration $((SECONDS - start)))"
        without_passed_tests "$log"
        fail "step '$step' failed (its whole output: $log); $hint"
    fi
    printf 'passed  %7s  %s\n' "$(duration $((SECONDS - start)))" "$(tail -n 1 "$log")"
}

without_passed_tests() {
    grep -vE '^ +Start +[0-9]+: |^ *[0-9]+/[0-9]+ Test .* Passed |^\[[0-9]+/[0-9]+\] ' "$1" || true
}

# run_tests PRESET: all tests of build/PRESET.
run_tests() {
    ctest --preset "$1" -j "$JOBS"
    printf 'tests: %s\n' "$(ctest --preset "$1" -N | sed -n 's/^Total Tests: //p')"
}

step_gcc() {
    build gcc
    run_tests gcc
}

step_asan() {
    build asan
    run_tests asan
}

step_tsan() {
    build tsan
    run_tests tsan
}

step_phone() {
    build libcxx
    printf 'compiled and linked only\n'
}

step_arm64() {
    build arm64
    run_tests arm64
}
