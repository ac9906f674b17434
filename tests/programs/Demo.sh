#!/bin/bash
# The demo, as a user runs it and as things go wrong: Demo.sh DEMO. However it ends, it leaves no
# process; and no file, unless it was killed itself.
set -u
set -m # A group of its own for each demo, as a terminal makes one, for Ctrl-C to go to.
demo="$1"
# shellcheck source=tests/programs/Common.sh
source "$(dirname "$0")/Common.sh"
export TMPDIR="$scratch"
group=""
declare -A pids
trap '[ -z "$group" ] || kill -KILL -- -"$group" 2>/dev/null; rm -rf "$scratch"' EXIT

wrong() { fail "$what: $*"; }

# begin: starts the demo with its output at descriptor 3, and learns who takes part.
begin() {
    local name pid
    said=""
    mkfifo "$scratch/said"
    "$demo" --quick >"$scratch/said" 2>&1 &
    group=$!
    exec 3<"$scratch/said"
    rm "$scratch/said"
    until_said '^ +service \(pid'
    pids=([director]=$group)
    while read -r name pid; do
        pids[$name]=$pid
    done < <(grep -oE '[a-z]+ \(pid [0-9]+' <<<"$said" | tr -d '(' | sed 's/ pid / /')
    [ ${#pids[@]} = 5 ] || wrong "who takes part? ${!pids[*]}"
}

# until_said PATTERN: reads on, to the end if it is never said.
until_said() {
    local line
    while IFS= read -r -t 60 -u 3 line; do
        said+="$line"$'\n'
        [[ ! "$line" =~ $1 ]] || return 0
    done
    return 1
}

# ended STATUS [PATTERN]: what the demo gave and said, and that nobody is left.
ended() {
    local pid result
    # The end of its output: nobody of them is there to write more.
    until_said '^never said$'
    wait "${pids[director]}"
    result=$?
    exec 3<&-
    [ $result = "$1" ] || wrong "exit status $result, not $1"
    [ $# -lt 2 ] || grep -qE "$2" <<<"$said" || wrong "never said: $2"
    for pid in "${pids[@]}"; do
        timeout 60 tail --pid="$pid" -f /dev/null && continue
        wrong "process $pid is left"
        kill -KILL "$pid"
    done
    group=""
}

left_nothing() {
    [ -z "$(ls -A "$TMPDIR")" ] || wrong "left: $(ls -AR "$TMPDIR")"
}

what="to its end"
begin
ended 0 '^ +([0-9]+) of \1 checks held'
left_nothing

# Whom it hits, with which signal, and what the user is told.
while read -r target signal told; do
    what="SIG$signal to $target"
    begin
    until_said 'alice: +event 2' || wrong "no events"
    case "$target" in
        all) kill -"$signal" -- -"$group" ;;
        *) kill -"$signal" "${pids[$target]}" ;;
    esac
    ended 1 "^aon-demo: $told"
    [ "$(grep -c '^aon-demo: ' <<<"$said")" = 1 ] || wrong "told more than once"
    left_nothing
done <<'CASES'
all INT told to end: Interrupt
director TERM told to end: Terminated
service KILL service \(pid [0-9]+\) ended too early: killed by signal 9
service TERM service \(pid [0-9]+\) ended too early: exit status 0
alice KILL alice \(pid [0-9]+\) ended too early: killed by signal 9
CASES

what="nobody reads it"
"$demo" --quick 2>"$scratch/told" | head -n 1 >/dev/null
[ "${PIPESTATUS[0]}" = 1 ] || wrong "exit status ${PIPESTATUS[0]}"
grep -q '^aon-demo: cannot write' "$scratch/told" || wrong "told: $(cat "$scratch/told")"
rm "$scratch/told"
left_nothing

what="kill -9 of the demo itself"
begin
until_said 'alice: +event 2' || wrong "no events"
kill -KILL "${pids[director]}"
ended 137

[ $failures = 0 ] || printf 'the last output:\n%s' "$said"
exit $failures
