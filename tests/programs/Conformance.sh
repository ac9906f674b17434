#!/bin/bash
# The conformance test against the service's process: Conformance.sh SERVICE CONFORMANCE_TEST.
set -u
service="$1"
conformance="$2"
AON_RUNTIME_DIR="$(mktemp -d)"
export AON_RUNTIME_DIR
log="$AON_RUNTIME_DIR/log"
failures=0
trap 'kill -9 "${pid:-}" 2>/dev/null; rm -rf "$AON_RUNTIME_DIR"' EXIT

# expect STATUS PATTERN ARGUMENT...: runs the test; its status, and a pattern in what it says.
expect() {
    local status="$1" pattern="$2" said result
    shift 2
    said="$(timeout 240 "$conformance" "$@" 2>&1)"
    result=$?
    if [ $result != "$status" ] || ! grep -qE -- "$pattern" <<<"$said"; then
        printf 'conformance %s: status %s, not %s with "%s":\n%s\n' \
            "$*" $result "$status" "$pattern" "$said"
        failures=$((failures + 1))
    fi
}

expect 0 'Exit status: 0 when' --help
expect 2 "unknown argument '--bla'" --bla
expect 3 'the service does not run'

# The first waits for the service to appear.
"$service" 2>"$log" &
pid=$!
expect 0 'PASSED'
expect 0 'PASSED' --gtest_shuffle --gtest_repeat=2
kill -TERM $pid
wait $pid || failures=$((failures + 1))
[ -z "$(find "$AON_RUNTIME_DIR" -type s)" ] || failures=$((failures + 1))
[ $failures = 0 ] || tail -n 100 "$log"
exit $failures
