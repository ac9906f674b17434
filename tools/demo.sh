# shellcheck shell=bash
# ./aon demo

help_demo() {
    cat <<'HELP'
usage: ./aon demo [--seed NUMBER] [--quick] [--verbose]

Builds the service with a simulated sensor and plays a client's whole life: it registers,
subscribes, starts services, gets events; the regular camera takes the sensor and gives it back; a
second client joins and is killed. Lines with '|' are the service's own log.

Service and clients are processes of their own, in a runtime directory of their own; however the
demo ends, Ctrl-C included, none of it is left.

  --seed NUMBER  another scene before the sensor
  --quick, -q    no pauses for the reader
  --verbose, -v  the log of every frame, too (faces in numbers)

Builds build/demo (g++ and cmake, no test library); the program is build/demo/bin/aon-demo.
A minute or two the first time, then ten seconds, or five with --quick.
Exit status: 0 when all went as it should, 1 when not, 2 for a bad command line.
HELP
}

run_demo() {
    local argument previous=""
    for argument in "$@"; do
        case "$previous|$argument" in
            --seed\|*) argument="" ;;
            *\|--seed | *\|--quick | *\|-q | *\|--verbose | *\|-v) ;;
            *) unknown "$argument" ;;
        esac
        previous="$argument"
    done
    need "${RUN_PACKAGES[@]}"
    say "build"
    build demo
    say "demo"
    exec build/demo/bin/aon-demo "$@"
}
