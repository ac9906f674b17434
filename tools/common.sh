# shellcheck shell=bash
# What the commands share: messages, packages, building.

readonly RUN_PACKAGES=(cmake ninja-build g++ android-liblog-dev libpng-dev)
readonly BENCH_PACKAGES=(libbenchmark-dev libsystemd-dev)
readonly FORMAT_PACKAGES=(git clang-format-14)
readonly PROVE_PACKAGES=(spin gcc)
readonly COVERAGE_PACKAGES=("${RUN_PACKAGES[@]}" libgtest-dev librapidcheck-dev pkgconf
                            mandoc clang-14 libclang-rt-14-dev llvm-14)
readonly TEST_PACKAGES=("${RUN_PACKAGES[@]}" libgtest-dev librapidcheck-dev pkgconf mandoc
                        clang-14 libclang-rt-14-dev libc++-14-dev libc++abi-14-dev lld-14
                        "${FORMAT_PACKAGES[@]}" "${PROVE_PACKAGES[@]}" clang-tidy-14 shellcheck
                        cppcheck checkpolicy m4 libxml2-utils g++-aarch64-linux-gnu qemu-user
                        "${BENCH_PACKAGES[@]}")

say() { printf '\n== %s\n' "$*"; }

fail() {
    printf 'aon: %s\n' "$*" >&2
    exit 1
}

# misuse MESSAGE...: the command line, or the environment, is wrong.
misuse() {
    printf 'aon: %s\n' "$*" >&2
    exit 2
}

# unknown ARGUMENT: an argument that the running command does not know.
unknown() { misuse "$COMMAND: unknown argument '$1'; see ./aon help $COMMAND"; }

# Tables are arrays of rows "name|text".
rows() {
    local row
    for row in "$@"; do
        printf '  %-10s %s\n' "${row%%|*}" "${row#*|}"
    done
}

has_row() {
    local name="$1" row
    shift
    for row in "$@"; do
        [ "${row%%|*}" != "$name" ] || return 0
    done
    return 1
}

# jobs_at_once: how many things to do at once.
jobs_at_once() {
    local jobs="${AON_JOBS:-$(nproc)}"
    [[ "$jobs" =~ ^[1-9][0-9]{0,2}$ ]] ||
        misuse "AON_JOBS wants a number from 1 to 999, not '$jobs'"
    printf '%s\n' "$jobs"
}

is_installed() {
    [ "$(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

# need PACKAGE...: sees to it that these Debian packages are there.
need() {
    command -v dpkg-query >/dev/null ||
        fail "this command sets itself up on Debian 12 only; it needs: $*"
    local missing=() package
    for package in "$@"; do
        is_installed "$package" || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    if [ "$(id -u)" != 0 ]; then
        fail "these packages are missing; have them installed, then run this again:
    sudo apt-get install ${missing[*]}"
    fi
    say "installing ${missing[*]}"
    apt-get update -q
    DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends "${missing[@]}"
}

# build PRESET: configures and builds what CMakePresets.json calls so, in build/PRESET.
build() {
    local output
    output="$(cmake --preset "$1" 2>&1)" || {
        printf '%s\n' "$output" >&2
        fail "cmake failed in build/$1"
    }
    cmake --build --preset "$1" -j "$JOBS"
}

JOBS="$(jobs_at_once)"
readonly JOBS
