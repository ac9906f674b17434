# shellcheck shell=bash
# What the scripts of this folder share: a scratch folder that is the runtime directory at first,
# failures that are counted, and the service's process. All of it goes with the script.
scratch="$(mktemp -d)"
export AON_RUNTIME_DIR="$scratch"
failures=0
# shellcheck disable=SC2046
trap 'kill -9 $(jobs -p) 2>/dev/null; rm -rf "$scratch"' EXIT

fail() {
    printf '%s\n' "$*"
    failures=$((failures + 1))
}

# expect STATUS PATTERN COMMAND...: runs it; its status, and a pattern in what it says.
expect() {
    local status="$1" pattern="$2" said result
    shift 2
    said="$(timeout 240 "$@" 2>&1)"
    result=$?
    [ $result = "$status" ] && grep -qE -- "$pattern" <<<"$said" && return
    fail "$* : status $result, not $status with \"$pattern\":" "$said"
}

# until_true COMMAND...: waits until a command succeeds.
until_true() {
    # shellcheck disable=SC2016
    timeout 60 sh -c 'until "$@" >/dev/null 2>&1; do sleep 0.05; done' sh "$@" || fail "never so: $*"
}

# begin_service ARGUMENT...: it can be reached when this returns; its log is $scratch/log.
begin_service() {
    "${service:?}" "$@" 2>"$scratch/log" &
    pid=$!
    until_true "${aonctl:?}" sensors
}

# end_service: tells it to end, which it does well, and takes its names along.
end_service() {
    kill -TERM "$pid"
    wait "$pid" || fail "the service ended with $?"
    [ -z "$(find "$scratch" -type s)" ] || fail "a name is left"
}
