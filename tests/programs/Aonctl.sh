#!/bin/bash
# The service's process and its client for people, as a user runs them: Aonctl.sh SERVICE AONCTL.
set -u
service="$1"
aonctl="$2"
# shellcheck source=tests/programs/Common.sh
source "$(dirname "$0")/Common.sh"
out="$scratch/out"

# ctl STATUS PATTERN ARGUMENT...: runs aonctl; its status, and a pattern in what it says.
ctl() { expect "$1" "$2" "$aonctl" "${@:3}"; }

# full_disk PATTERN ARGUMENT...: runs aonctl with a full disk for its output; it says one line.
full_disk() {
    local said status
    said="$("$aonctl" "${@:2}" 2>&1 >/dev/full)"
    status=$?
    [ $status = 1 ] && [ "$(grep -c . <<<"$said")" = 1 ] && grep -q "$1" <<<"$said" && return
    fail "aonctl ${*:2} to a full disk: status $status, and" "$said"
}

# check WHAT COMMAND...: a command that has to succeed.
check() { "${@:2}" || fail "not so: $1"; }

# begin_watch OPTION...: aonctl watch, whose output until_seen reads.
begin_watch() {
    "$aonctl" watch "$@" >"$out" 2>&1 &
    watcher=$!
}

# until_seen PATTERN [COUNT]: waits for what the watcher prints.
# shellcheck disable=SC2016
until_seen() {
    until_true sh -c '[ "$(grep -cE "$1" "$2")" -ge "$3" ]' sh "$1" "$out" "${2:-1}"
}

ctl 3 'does not run' sensors
ctl 2 'unknown option --bla' sensors --bla
ctl 2 'there is no command .bla.' bla
ctl 2 "camera cannot 'fly'" camera fly 1
ctl 2 "too much for camera list: '1'" camera list 1
ctl 2 "ID wants a number from 0 .* not 'x'" camera open x
ctl 2 "no lie 'white'" fault record white 1
ctl 2 'getprop wants NAME' getprop
ctl 3 'does not run' setprop a -- -x
ctl 0 'usage: aonctl dump' dump --help
full_disk 'cannot write the output: No space' --help
ctl 0 'Exit status' --help

begin_service
expect 1 'cannot publish .*/default: exception -5, another process may serve it' "$service"
ctl 0 'sensor 0 +640x480 +rates 1 3 5 10 15 30' sensors
ctl 0 'faces 1 ' watch --count 2 --rate 30
ctl 0 'delivered: [0-9]+$' dump
ctl 0 '^\{"service":\{"version".*\}$' dump --json
ctl 1 'usage: dump' dump --bla
ctl 0 '^\{"serviceType":8,.*"faceFeature":\[[0-9]+,' watch --count 1 --types feature --json
ctl 1 'config not support \(no sensor offers' watch --size 1x1
ctl 2 'wants a number of at least 1' watch --count x
ctl 2 'wants a list of' watch --types eyes
ctl 1 'there is no camera device 77' camera open 77
ctl 0 '' setprop a.b c
ctl 0 '^c$' getprop a.b
ctl 1 'there is no fault point' fault nowhere
ctl 0 '' fault stream.start --count 1
ctl 0 'StartService failed \(a camera' watch --duration 0
ctl 0 '' fault record fusion-count 4000000000
ctl 0 '"fusionCount":-294967296' watch --count 1 --types fusion --json
ctl 0 '' fault clear

# Pictures: whole files, for their owner only; none of half a size, and none with a lie about it.
images="$scratch/images"
is_png() { [ "$(head -c 8 "$1" | od -An -tx1 | tr -d ' ')" = 89504e470d0a1a0a ]; }
ctl 0 'image 640x480' watch --count 2 --rate 30 --save-images "$images"
check 'two pictures' test "$(find "$images" -type f -name 'frame-0*.png' -perm 600 | wc -l)" = 2
check 'a picture' is_png "$(find "$images" -type f | head -n 1)"
rm -r "$images"
ctl 0 '' fault record image-stride 0
ctl 0 'frame-[0-9]+ is not saved: its event has no picture' watch --count 1 --save-images "$images"
ctl 0 '' fault clear
ctl 1 'cannot save into .*/no/images: No such file' watch --save-images "$scratch/no/images"
ctl 1 "cannot save into .*: Not a directory" watch --save-images "$aonctl"
(
    ulimit -f 4
    ctl 1 'cannot write .*/frame-[0-9]+.png: File too large' watch --save-images "$images"
    exit $failures
) || failures=$((failures + 1))
check 'no half picture' test -z "$(find "$images" -type f)"

# Output that nobody takes, or nobody takes any longer.
full_disk 'No space left' sensors
full_disk 'No space left' watch --json
ctl 0 '' camera open 0
(
    set -o pipefail
    timeout 60 "$aonctl" watch 2>/dev/null | head -n 1 >"$out"
) || fail "watch did not end with its reader"
until_seen '\*\* sensor 0 is BUSY'
ctl 0 '' camera close 0
check 'nobody died so far' test "$(grep -c 'callback died' "$scratch/log")" = 0

begin_watch --rate 30
until_seen 'faces 1'
ctl 0 '' camera open 0
until_seen BUSY
ctl 0 'camera 0 +open' camera list
ctl 0 '' camera close 0
until_seen STARTED 2
ctl 0 '' scene nobody
until_seen 'faces 0'

# A client's process that stands still holds nobody up who only looks.
kill -STOP $watcher
check 'a client that hangs is seen' timeout 60 sh -c \
    'until "$1" dump | grep -q "client 1  callback onAONEvent"; do sleep 0.05; done' sh "$aonctl"
kill -CONT $watcher
kill -INT $watcher
wait $watcher || fail "Ctrl-C gave $?"

# A service that is told to end does; one that dies is noticed.
end_service
begin_service
begin_watch
until_seen 'faces 1'
kill -KILL "$pid"
wait $watcher
[ $? = 3 ] || fail "watch ended with another status"
until_seen 'went away'
[ $failures = 0 ] || cat "$scratch/log"
exit $failures
