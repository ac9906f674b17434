# shellcheck shell=bash
# ./aon soak

help_soak() {
    cat <<'HELP'
usage: ./aon soak [--cycles NUMBER] [--minutes NUMBER]

Builds the service as it is installed, and puts its process under load for a long time: starts and
stops, cameras that open and close, starts against a storm of cameras, clients that are killed
wherever they may be, and events, to another service, as fast as it takes them. After each,
descriptors, threads and memory must be back at what they were when the service was warm, the sensor
released, no state lost, and the next client served. Shows how far it is, and prints a table at the
end.

  --cycles NUMBER   how many starts, cameras, and storm cycles (10000); a tenth of it in kills for
                    each of six states, a hundred times of it in events
  --minutes NUMBER  begin again with new services until so many minutes are over or something
                    was found

About ten minutes on two cores; a short run is one of the tests. Ctrl-C ends it with the table so
far. Exit status: 0 when nothing was found, 1 when something was, or it was interrupted, 2 for a bad
command line.
HELP
}

run_soak() {
    need "${RUN_PACKAGES[@]}"
    say "build"
    build soak
    say "soak"
    exec build/soak/bin/aon-soak "$@"
}
