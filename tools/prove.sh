# shellcheck shell=bash
# ./aon prove

readonly MODEL=docs/arbitration
readonly PROVE_WORK=build/prove
# Bounds of the exploration, in megabytes and steps. What does not fit is not proven.
readonly PROVE_MEGABYTES=1200
readonly PROVE_DEPTH=400000
# Rows "switch of the model|part of the assertion that breaks".
readonly HAZARDS=(
    "HAZARD_OPEN_OVERTAKES_CLOSE|mOpenedSensorId&&(cameraHolds"
    "HAZARD_CLIENT_HANGS|AONManager_mNotifyMutex==0"
    "HAZARD_LATE_NOTICE|mSensorStates!="
)

help_prove() {
    cat <<HELP
usage: ./aon prove

Explores every state of the model in $MODEL/: the locks of the service, the manager and
the registry, the notifications of cameras, and a client that hangs and dies. Shows each hazard that
the model has a switch for, step by step, and proves that with none of them let in nobody waits for
ever and no stream runs on the sensor of an open camera. docs/arbitration.md tells more.

Needs spin and gcc; builds $PROVE_WORK. About a minute, and less than a gigabyte of memory.
Exit status: 0 when the proof holds and each hazard shows, 1 when not, 2 for a bad command line.
HELP
}

run_prove() {
    [ $# -eq 0 ] || unknown "$1"
    need "${PROVE_PACKAGES[@]}"
    step_prove
}

step_prove() {
    local row
    for row in "${HAZARDS[@]}"; do
        show_hazard "${row%%|*}" "${row#*|}"
    done
    say "everything, without these hazards"
    prove_the_rest
    printf 'proven: %s; hazards shown: %s\n' "$(explored proof)" ${#HAZARDS[@]}
}

# explore NAME GCC-OPTION [SPIN-OPTION]: explores the model in a folder NAME, and leaves a report
# there.
explore() {
    local work="$PROVE_WORK/$1"
    rm -rf "$work"
    mkdir -p "$work"
    cp "$MODEL"/*.pml "$work"
    (
        cd "$work"
        spin -a ${3:+"$3"} arbitration.pml
        gcc -w "$2" -DSAFETY -DCOLLAPSE "-DMEMLIM=$PROVE_MEGABYTES" -o pan pan.c
        ./pan -m"$PROVE_DEPTH" -w24 >report 2>&1 || true
    )
}

# found NAME TEXT: whether the explorer found an assertion broken that has the text.
found() { grep 'assertion violated' "$PROVE_WORK/$1/report" | grep -qF "$2"; }

# explored NAME: how much it was.
explored() {
    sed -nE 's/^ *([0-9]+) states, stored.*/\1 states/p
             s/.*depth reached ([0-9]+), errors.*/depth \1/p' "$PROVE_WORK/$1/report" |
        paste -sd ' ' | sed -E 's/(depth .*) (.* states)/\2, \1/'
}

# tell NAME [SPIN-OPTION]: the steps to what the explorer found, in the model's words.
tell() {
    (cd "$PROVE_WORK/$1" && spin -t -T ${2:+"$2"} arbitration.pml) |
        sed -nE 's/^ *([a-z]+)_([a-z]+): (.*)/\1 \2|\3/p' |
        awk -F '|' '{ printf "  %-20s %s\n", $1, $2 }'
}

# Breadth first, so that the way there is the shortest.
show_hazard() {
    say "$1"
    explore "$1" -DBFS "-D$1"
    found "$1" "$2" || fail "$1 does not show any more; see $PROVE_WORK/$1/report"
    tell "$1" "-D$1"
}

prove_the_rest() {
    local report="$PROVE_WORK/proof/report"
    explore proof -O2
    if grep -q 'errors: 0$' "$report" &&
        ! grep -qE 'Search not completed|depth too small' "$report"; then
        return
    fi
    grep -E '^(pan:|error:)|Warning: Search' "$report" >&2 || true
    [ ! -e "$PROVE_WORK/proof/arbitration.pml.trail" ] || tell proof >&2
    fail "not proven; see $report"
}
