# shellcheck shell=bash
# ./aon bench

readonly BENCH=build/bench
readonly BENCH_DOCS=docs/speed

readonly BENCH_ROWS=(
    "conversion|an event from the stream's record to a sink that does nothing"
    "counts|allocations and page faults per event"
    "rooms|the registry's fan-out and the manager's pass-through, each alone"
    "event|a whole event, to the vectors of a client in another process"
    "operations|register, subscribe, start, stop, unsubscribe, unregister"
    "growth|by image size, fusion items, verbose log, dumps"
    "memory|peak and growth of the service's process; takes minutes"
)

help_bench() {
    cat <<HELP
usage: ./aon bench [--quick] [--check] [--only ROW] [--write-docs]

Builds the service as it is installed, and measures what it costs, each row in turn with the floors
it stands on: the copies, system calls or locks that nobody can do without. Prints the conditions and
one table; every ratio is the median of the rounds' ratios. The table is written to
$BENCH/figures.json, too.

$(rows "${BENCH_ROWS[@]}")

  --quick       shorter rounds, and no memory rows: some seconds in place of some minutes
  --check       fail when more or fewer allocations or page faults were counted than a goal has
  --only ROW    only the rows whose names begin so, such as conversion or event/640x480
  --write-docs  also write the table and the plots to $BENCH_DOCS; a whole run

All processes stay on one core. Figures mean little while something else runs: look at the load
average above the table. Exit status: 0, 1 when something failed, 2 for a bad command line.
HELP
}

run_bench() {
    local options=(--json "$BENCH/figures.json") whole=yes docs=
    while [ $# -gt 0 ]; do
        case "$1" in
            --quick)
                options+=("$1")
                whole=
                ;;
            --check) options+=("$1") ;;
            --write-docs) docs=yes ;;
            --only)
                [ $# -ge 2 ] || misuse "bench: --only wants the beginning of a row's name"
                options+=("$1" "$2")
                whole=
                shift
                ;;
            *) unknown "$1" ;;
        esac
        shift
    done
    if [ -n "$docs" ]; then
        [ -n "$whole" ] || misuse "bench: --write-docs wants a whole run"
        mkdir -p "$BENCH_DOCS"
        options+=(--docs "$BENCH_DOCS")
    fi
    need "${RUN_PACKAGES[@]}" "${BENCH_PACKAGES[@]}"
    say "build"
    build bench
    say "measure"
    exec "$BENCH/bin/aon-bench" "${options[@]}"
}
