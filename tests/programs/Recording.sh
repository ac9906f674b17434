#!/bin/bash
# What one service sends is recorded, and another one plays it: Recording.sh SERVICE AONCTL.
set -u
service="$1"
aonctl="$2"
scratch="$(mktemp -d)"
failures=0
trap 'kill -9 "${pid:-}" "${recorder:-}" 2>/dev/null; rm -rf "$scratch"' EXIT

fail() {
    printf '%s\n' "$*"
    failures=$((failures + 1))
}

# expect STATUS PATTERN COMMAND...: its status, and a pattern in what it says.
expect() {
    local status="$1" pattern="$2" said result
    shift 2
    said="$(timeout 60 "$@" 2>&1)"
    result=$?
    if [ $result != "$status" ] || ! grep -qE -- "$pattern" <<<"$said"; then
        fail "$* : status $result, not $status with \"$pattern\":" "$said"
    fi
}

# begin_service NAME ARGUMENT...: in a runtime directory of its own, for all that follows.
begin_service() {
    export AON_RUNTIME_DIR="$scratch/$1"
    "$service" "${@:2}" 2>"$scratch/$1.log" &
    pid=$!
    timeout 60 sh -c 'until "$1" sensors >/dev/null 2>&1; do sleep 0.05; done' sh "$aonctl"
}

end_service() {
    kill -TERM "$pid"
    wait "$pid" || fail "the service ended with $?"
}

# The events of a recording, without their times.
events() {
    "$aonctl" show --json "$1" | sed -n 's/^{"time":[0-9.]*,\("serviceType".*\)/\1/p'
}

export AON_RUNTIME_DIR="$scratch/none"
expect 3 'does not run' "$aonctl" record "$scratch/first"
[ -e "$scratch/first" ] && fail "a recording without a service"
begin_service live
expect 0 '^6 events, 1 states, [0-9.]+ MB to ' \
    "$aonctl" record --count 6 --rate 5 --types fusion,angle,gaze,feature "$scratch/first"
expect 1 'is there already' "$aonctl" record "$scratch/first"
expect 1 'No space left' "$aonctl" record --force /dev/full
expect 1 'No such file' "$aonctl" record "$scratch/no/where"
expect 2 'wants FILE' "$aonctl" record
expect 0 '0\.000000  sensor 0, 640x480 at 5, fusion\+face angle\+gaze\+face feature' \
    "$aonctl" show "$scratch/first"
expect 0 'the end; 0 events were missed' "$aonctl" show "$scratch/first"

# Ctrl-C ends a recording well; a recorder that is killed leaves what it has written.
"$aonctl" record --rate 30 "$scratch/ended" 2>"$scratch/said" &
recorder=$!
timeout 60 sh -c 'until [ "$(stat -c %s "$1" || echo 0)" -gt 1000000 ]; do sleep 0.05; done' \
    sh "$scratch/ended" 2>/dev/null
kill -INT $recorder
wait $recorder || fail "Ctrl-C gave $?"
grep -q 'MB to' "$scratch/said" || fail "no summary"
expect 0 'the end' "$aonctl" show "$scratch/ended"
end_service
head -c 1000000 "$scratch/first" >"$scratch/cut"
expect 1 'at byte 1000000: the recording ends in the middle of a chunk' "$aonctl" show "$scratch/cut"

# What cannot be played is refused before anything is served.
export AON_RUNTIME_DIR="$scratch/none"
mkfifo "$scratch/pipe"
expect 1 'no regular file' "$service" --replay "$scratch/pipe"
expect 1 'no regular file' "$service" --replay=/dev/zero
expect 1 'no regular file' "$aonctl" show "$scratch"
expect 1 'No such file' "$service" --replay "$scratch/nowhere"
expect 1 'at byte 0: this is no recording' "$service" --replay "$service"
expect 2 'unknown option --bla' "$service" --bla
expect 2 'wants --replay' "$service" --replay-loop
expect 0 'aon-service [0-9]' "$service" --version
expect 0 '--replay FILE' "$service" --help

begin_service played --replay "$scratch/first"
expect 0 '^6 events' "$aonctl" record --count 6 --types gaze "$scratch/second"
[ "$(events "$scratch/first" | wc -l)" = 6 ] || fail "the events are not shown"
[ "$(events "$scratch/first")" = "$(events "$scratch/second")" ] || fail "other events were played"
expect 0 '^0 events' "$aonctl" record --duration 0 "$scratch/third"
end_service
grep -q 'no more frames: 6 events played' "$scratch/played.log" || fail "its end is not told"

begin_service again --replay "$scratch/cut" --replay-loop
expect 0 '^5 events' "$aonctl" record --count 5 "$scratch/loop"
end_service
grep -q 'at byte 1000000.*what there is will be played' "$scratch/again.log" || fail "no warning"
exit $failures
