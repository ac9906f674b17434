#!/bin/bash
# The conformance test against the service's process: Conformance.sh SERVICE CONFORMANCE_TEST.
set -u
service="$1"
conformance="$2"
# shellcheck source=tests/programs/Common.sh
source "$(dirname "$0")/Common.sh"

expect 0 'Exit status: 0 when' "$conformance" --help
expect 2 "unknown argument '--bla'" "$conformance" --bla
expect 3 'the service does not run' "$conformance"

# The first waits for the service to appear. Here is all that it looks for: it leaves nothing out.
"$service" 2>"$scratch/log" &
pid=$!
expect 0 'PASSED' "$conformance"
expect 0 'PASSED' "$conformance" --gtest_shuffle --gtest_repeat=2
"$conformance" 2>/dev/null | grep SKIPPED && fail 'a test found nothing to try'
end_service
[ $failures = 0 ] || tail -n 100 "$scratch/log"
exit $failures
