#!/bin/bash
# A short run of a fuzzer, the same each time: ShortRun.sh PROGRAM RUNS SEEDS DICTIONARY. It begins
# with the seeds and keeps nothing; the dictionary need not be there.
set -eu
program="$1" runs="$2" seeds="$3" dictionary="$4"
options=(-runs="$runs" -seed=1 -max_len=4096 -timeout=60 -malloc_limit_mb=64 -close_fd_mask=3)
[ ! -f "$dictionary" ] || options+=(-dict="$dictionary")
inputs=("$seeds"/*)
[ -e "${inputs[0]}" ] || { echo "no seeds in $seeds"; exit 1; }
options+=(-seed_inputs="$(IFS=,; echo "${inputs[*]}")")
exec "$program" "${options[@]}" -artifact_prefix="$program-"
