# shellcheck shell=bash
# ./aon fuzz

source fuzz/Options.sh

readonly FUZZERS=(
    "events|the stream's records, as the service makes events of them"
    "parcel|each record of the interfaces, in a parcel"
    "transactions|calls of the service and of a client's callback, between frames, cameras, deaths"
    "control|calls of the host control"
    "session|what the other end of a session says, in both roles"
    "recording|recordings, as they are shown and replayed"
    "aidl|texts for the AIDL generator"
    "properties|the list of properties in the environment"
    "lines|what the demo's processes say to each other"
    "arguments|the command lines of aonctl, the service, the demo and the AIDL generator"
)
readonly FUZZ_PACKAGES=("${RUN_PACKAGES[@]}" libgtest-dev pkgconf mandoc clang-14
                        libclang-rt-14-dev)
readonly FUZZ=build/fuzz

help_fuzz() {
    cat <<HELP
usage: ./aon fuzz [TARGET] [SECONDS]

Feeds arbitrary bytes to what reads bytes from outside, under the address and undefined-behaviour
sanitizers, guided by the branches that they take: each target, or the one named, for SECONDS (60
when not said). At the end, or at the first finding of a target, a line tells how many inputs it
had, how many features of the code the inputs kept reach, and what was found.

$(rows "${FUZZERS[@]}")

It begins with what earlier runs kept in $FUZZ/corpus/TARGET, and with seeds that the build makes:
records, recordings, sessions, calls, texts. A finding is an input in $FUZZ/findings/TARGET-…; mend the
fault, and keep the case as a test. A short run of each target is part of ./aon test.

Builds $FUZZ, needs clang++. Minutes the first time. Exit status: 0 when nothing was found, 1 when
something was, 2 for a bad command line.
HELP
}

run_fuzz() {
    local targets=() row seconds=60
    for row in "${FUZZERS[@]}"; do
        targets+=("${row%%|*}")
    done
    if [[ "${1-}" =~ ^[a-z] ]]; then
        has_row "$1" "${FUZZERS[@]}" || misuse "fuzz: unknown target '$1'; see ./aon help fuzz"
        targets=("$1")
        shift
    fi
    if [ $# -gt 0 ]; then
        [[ "$1" =~ ^[1-9][0-9]{0,6}$ ]] || misuse "fuzz: SECONDS is a number from 1, not '$1'"
        seconds="$1"
        shift
    fi
    [ $# -eq 0 ] || unknown "$1"
    need "${FUZZ_PACKAGES[@]}"
    say "build"
    build fuzz
    say "$seconds seconds for each target"
    local target found=0
    mkdir -p build/log "$FUZZ/findings"
    for target in "${targets[@]}"; do
        fuzz_target "$target" "$seconds" || found=1
    done
    return "$found"
}

# fuzz_target TARGET SECONDS: false, and the report, if something was found.
fuzz_target() {
    local target="$1" corpus="$FUZZ/corpus/$1" log="build/log/fuzz-$1.log" status=0
    local options
    fuzz_options "$target" "fuzz/$target.dict"
    options+=(-max_total_time="$2" -timeout=30 -print_final_stats=1
              -artifact_prefix="$FUZZ/findings/$target-")
    mkdir -p "$corpus"
    printf '%-13s' "$target"
    "$FUZZ/bin/${target}_fuzzer" "${options[@]}" "$corpus" \
        "$FUZZ/fuzz/seeds/$target" >"$log" 2>&1 || status=$?
    awk '/ cov: / { for (i = 1; i < NF; i++) if ($i == "ft:") features = $(i + 1) }
         $1 == "stat::number_of_executed_units:" { inputs = $2 }
         END { printf "%10d inputs  %6d features  ", inputs, features }' "$log"
    [ "$status" != 0 ] || { printf 'nothing found\n'; return; }
    printf 'FOUND a fault\n\n'
    grep -vE '^#[0-9]|^INFO:|NEW_FUNC|NEW_PC' "$log" | tail -n 60
    return 1
}
