#!/bin/bash
# The service's process and its client for people, as a user runs them: Aonctl.sh SERVICE AONCTL.
set -u
service="$1"
aonctl="$2"
AON_RUNTIME_DIR="$(mktemp -d)"
export AON_RUNTIME_DIR
out="$AON_RUNTIME_DIR/out"
failures=0
trap 'kill -9 "${pid:-}" "${watcher:-}" 2>/dev/null; rm -rf "$AON_RUNTIME_DIR"' EXIT

# expect STATUS PATTERN ARGUMENT...: runs aonctl; its status, and a pattern in what it says.
expect() {
    local status="$1" pattern="$2" said result
    shift 2
    said="$(timeout 60 "$aonctl" "$@" 2>&1)"
    result=$?
    if [ $result != "$status" ] || ! grep -qE -- "$pattern" <<<"$said"; then
        printf 'aonctl %s: status %s, not %s with "%s":\n%s\n' "$*" $result "$status" "$pattern" "$said"
        failures=$((failures + 1))
    fi
}

# until_seen PATTERN [COUNT]: waits for what the watcher prints.
until_seen() {
    timeout 60 sh -c 'until [ "$(grep -cE "$1" "$2")" -ge "$3" ]; do sleep 0.05; done' \
        sh "$1" "$out" "${2:-1}" && return
    printf 'never seen: %s\n' "$1"
    failures=$((failures + 1))
}

begin_service() {
    "$service" 2>"$AON_RUNTIME_DIR/log" &
    pid=$!
    timeout 60 sh -c 'until "$1" sensors >/dev/null 2>&1; do sleep 0.05; done' sh "$aonctl"
}

expect 3 'does not run' sensors
expect 2 'unknown option --bla' sensors --bla
expect 2 'there is no command' bla
expect 0 'Exit status' --help
expect 0 '--count NUMBER' watch --help

begin_service
expect 0 'sensor 0 +640x480 +rates 1 3 5 10 15 30' sensors
expect 0 'faces 1 ' watch --count 2 --rate 30
expect 0 '^\{"serviceType":8,.*"faceFeature":\[[0-9]+,' watch --count 1 --types feature --json
expect 1 'config not support \(no sensor offers' watch --size 1x1
expect 2 'wants a number from' watch --count x
expect 2 'wants a list of' watch --types eyes
expect 1 'there is no camera device 77' camera open 77
expect 2 'cameras cannot fly' camera fly 1
expect 0 '' setprop a.b c
expect 0 '^c$' getprop a.b
expect 1 'there is no fault point' fault nowhere
expect 0 '' fault stream.start --count 1
expect 0 'StartService failed \(a camera' watch --duration 0
expect 0 '' fault record fusion-count 4000000000
expect 0 '"fusionCount":-294967296' watch --count 1 --types fusion --json
expect 0 '' fault clear

"$aonctl" watch --rate 30 >"$out" 2>&1 &
watcher=$!
until_seen 'faces 1'
expect 0 '' camera open 0
until_seen BUSY
expect 0 'camera 0 +open' camera list
expect 0 '' camera close 0
until_seen STARTED 2
expect 0 '' scene nobody
until_seen 'faces 0'
kill -INT $watcher
wait $watcher || failures=$((failures + 1))

# A client that is killed gives the sensor back; a service that is told to end takes its names.
"$aonctl" watch >"$out" 2>&1 &
watcher=$!
until_seen 'faces 0'
kill -KILL $watcher
expect 0 'faces 0' watch --count 1
kill -TERM $pid
wait $pid || failures=$((failures + 1))
[ -z "$(find "$AON_RUNTIME_DIR" -type s)" ] || failures=$((failures + 1))

# A service that dies is noticed, and a new one takes the names it left.
begin_service
"$aonctl" watch >"$out" 2>&1 &
watcher=$!
until_seen 'faces 1'
kill -KILL $pid
wait $watcher
[ $? = 3 ] || failures=$((failures + 1))
until_seen 'went away'
begin_service
expect 0 'faces 1' watch --count 1
[ $failures = 0 ] || cat "$AON_RUNTIME_DIR/log"
exit $failures
