#!/bin/bash
# A short run of a fuzzer, the same each time: ShortRun.sh PROGRAM TARGET RUNS SEEDS. It begins with
# the seeds and keeps nothing.
set -eu
program="$1" target="$2" runs="$3" seeds="$4"
here="$(dirname "$0")"
# shellcheck source=fuzz/Options.sh
source "$here/Options.sh"
fuzz_options "$target" "$here/$target.dict"
inputs=("$seeds"/*)
[ -e "${inputs[0]}" ] || { echo "no seeds in $seeds"; exit 1; }
exec "$program" "${options[@]}" -runs="$runs" -seed=1 -timeout=60 \
    -seed_inputs="$(IFS=,; echo "${inputs[*]}")" -artifact_prefix="$program-"
