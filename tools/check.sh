# shellcheck shell=bash
# ./aon check and ./aon format, and which sources a check is about.

help_check() {
    cat <<'HELP'
usage: ./aon check [--all]

Looks at the layout of C++ sources (clang-format), at shell scripts (shellcheck), and analyses
C++ sources (clang-tidy), each as .clang-format and .clang-tidy say. It takes what you changed: what
differs from the commit at which your branch left main, files that git does not know yet, and the
sources that include a changed header. After a change of .clang-format or .clang-tidy, everything.

  --all  all files

The analysis reads what the build below build/asan generates, so that is brought up to date first.
A source that was found clean is not analysed again until it, a header of it, its compiler options
or the configuration change; the notes about that are in ~/.cache/aon-tidy and may be deleted.
Seconds per changed source; with --all and no notes some minutes on two cores.
HELP
}

run_check() {
    SCOPE=changed
    if [ "${1-}" = --all ]; then
        SCOPE=all
        shift
    fi
    [ $# -eq 0 ] || unknown "$1"
    need "${TEST_PACKAGES[@]}"
    local step
    for step in format shell tidy; do
        run_step "$step" "mend it and run ./aon check again"
    done
}

help_format() {
    cat <<'HELP'
usage: ./aon format

Lays out all C++ sources in place with clang-format, as .clang-format says, and names those that it
changed. Takes seconds.
HELP
}

run_format() {
    [ $# -eq 0 ] || unknown "$1"
    need "${FORMAT_PACKAGES[@]}"
    SCOPE=all
    local files file before
    files="$(sources '*.cpp' '*.h')"
    while IFS= read -r file; do
        before="$(cksum <"$file")"
        clang-format-14 -i "$file"
        [ "$before" = "$(cksum <"$file")" ] || printf 'changed: %s\n' "$file"
    done <<<"$files"
}

# parting_of_main: the commit at which this branch left main.
parting_of_main() {
    git merge-base HEAD origin/main 2>/dev/null || git merge-base HEAD main 2>/dev/null ||
        git rev-parse HEAD
}

# sources PATTERN...: the files that the running check is about.
sources() {
    local base
    base="$(parting_of_main)"
    if [ "$SCOPE" = all ] || ! git diff --quiet "$base" -- .clang-format '*.clang-tidy'; then
        base="$(git hash-object -t tree /dev/null)"
    fi
    git diff --name-only --diff-filter=d "$base" -- "$@"
    git ls-files --others --exclude-standard -- "$@"
}

step_format() {
    sources '*.cpp' '*.h' | xargs -r -d '\n' -P "$JOBS" -n 16 clang-format-14 --dry-run --Werror
    printf 'files: %s\n' "$(sources '*.cpp' '*.h' | wc -l)"
}

# The scripts are few and read each other: always all of them.
step_shell() {
    shellcheck --external-sources --check-sourced aon .ci/run
    printf 'all scripts\n'
}
