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

# fails_on_output STATUS PATTERN ARGUMENT...: runs aonctl with a full disk for its output.
fails_on_output() {
    local aonctl_said status
    aonctl_said="$(timeout 60 "$aonctl" "${@:3}" 2>&1 >/dev/full)"
    status=$?
    [ $status = "$1" ] && [ "$(grep -c . <<<"$aonctl_said")" = 1 ] && grep -q "$2" <<<"$aonctl_said" &&
        return
    printf 'aonctl %s to a full disk: status %s, and\n%s\n' "${*:3}" $status "$aonctl_said"
    failures=$((failures + 1))
}

# check WHAT COMMAND...: a command that has to succeed.
check() {
    "${@:2}" && return
    printf 'not so: %s\n' "$1"
    failures=$((failures + 1))
}

begin_service() {
    "$service" 2>"$AON_RUNTIME_DIR/log" &
    pid=$!
    timeout 60 sh -c 'until "$1" sensors >/dev/null 2>&1; do sleep 0.05; done' sh "$aonctl"
}

expect 3 'does not run' sensors
expect 2 'unknown option --bla' sensors --bla
expect 2 'there is no command .bla.' bla
expect 2 "camera cannot 'fly'" camera fly 1
expect 2 'camera open wants ID' camera open
expect 2 "too much for camera list: '1'" camera list 1
expect 2 "ID wants a number from 0 .* not 'x'" camera open x
expect 2 "scene cannot 'many'" scene many
expect 2 "no lie 'white'" fault record white 1
expect 2 'getprop wants NAME' getprop
expect 2 'unknown option -x' setprop a -x
expect 3 'does not run' setprop a -- -x
expect 3 'does not run' setprop a -1
expect 3 'does not run' fault --count 1 stream.start
expect 3 'does not run' dump --json --help
expect 0 'usage: aonctl dump' dump --help
expect 0 'usage: aonctl watch' help watch
expect 2 'there is no command .bla.' help bla
fails_on_output 1 'cannot write the output: No space' --help
expect 0 'Exit status' --help
expect 0 '--count NUMBER' watch --help

begin_service
expect 0 'sensor 0 +640x480 +rates 1 3 5 10 15 30' sensors
expect 0 'faces 1 ' watch --count 2 --rate 30
expect 0 '^\{"serviceType":8,.*"faceFeature":\[[0-9]+,' watch --count 1 --types feature --json
expect 1 'config not support \(no sensor offers' watch --size 1x1
expect 2 'wants a number of at least 1' watch --count x
expect 2 'wants a list of' watch --types eyes
expect 1 'there is no camera device 77' camera open 77
expect 0 '' setprop a.b c
expect 0 '^c$' getprop a.b
expect 1 'there is no fault point' fault nowhere
expect 0 '' fault stream.start --count 1
expect 0 'StartService failed \(a camera' watch --duration 0
expect 0 '' fault record fusion-count 4000000000
expect 0 '"fusionCount":-294967296' watch --count 1 --types fusion --json
expect 0 '' fault clear

# Pictures: whole files, for their owner only; none of half a size, and none with a lie about it.
images="$AON_RUNTIME_DIR/images"
is_png() { [ "$(head -c 8 "$1" | od -An -tx1 | tr -d ' ')" = 89504e470d0a1a0a ]; }
expect 0 'image 640x480' watch --count 2 --rate 30 --save-images "$images"
check 'two pictures' test "$(find "$images" -type f -name 'frame-0*.png' -perm 600 | wc -l)" = 2
check 'a picture' is_png "$(find "$images" -type f | head -n 1)"
rm -r "$images"
expect 0 '' fault record image-stride 0
expect 0 'frame-[0-9]+ is not saved: its event has no picture' watch --count 1 --save-images "$images"
expect 0 '' fault clear
expect 1 'cannot save into .*/no/images: No such file' watch --save-images "$AON_RUNTIME_DIR/no/images"
expect 1 "cannot save into .*: Not a directory" watch --save-images "$aonctl"
(
    ulimit -f 4
    expect 1 'cannot write .*/frame-[0-9]+.png: File too large' watch --save-images "$images"
    exit $failures
) || failures=$((failures + 1))
check 'no half picture' test -z "$(find "$images" -type f)"

# Output that nobody takes, or nobody takes any longer.
fails_on_output 1 'No space left' sensors
fails_on_output 1 'No space left' watch --json
expect 0 '' camera open 0
(
    set -o pipefail
    timeout 60 "$aonctl" watch 2>/dev/null | head -n 1 >"$out"
) || failures=$((failures + 1))
until_seen '\*\* sensor 0 is BUSY'
expect 0 '' camera close 0
check 'nobody died so far' test "$(grep -c 'callback died' "$AON_RUNTIME_DIR/log")" = 0

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
