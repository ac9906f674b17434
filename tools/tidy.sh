# shellcheck shell=bash
# The static analysis. What was found clean is remembered by a hash over all that decides about the
# result: the bytes of the source and of every file that it includes, its compile command, the
# configuration and clang-tidy's version. Paths count relative to the root: all clones share it.

readonly TIDY_BUILD=build/asan
readonly TIDY_WORK=build/tidy
TIDY_CLEAN="${XDG_CACHE_HOME:-${HOME:-$PWD/build}/.cache}/aon-tidy"
readonly TIDY_CLEAN

# dependencies: what `ninja -t deps` says, with paths relative to the root. It says some of ours
# relative to the build, when a compiler cache had its hand in them.
dependencies() {
    ninja -C "$TIDY_BUILD" -t deps | sed -E "
        s|^ +$PWD/| |
        t
        s|^ +\.\./\.\./| |
        t
        s|^ +([^/ ])| $TIDY_BUILD/\1|
        s|^ +| |"
}

# compile_commands: lines "SOURCE<tab>COMMAND".
compile_commands() {
    sed -n "s|$PWD/*||g; /\"command\":/h; /\"file\":/{s/.*: \"\(.*\)\"/\1/; G; s/\n/\t/p}" \
        "$TIDY_BUILD/compile_commands.json"
}

# tidy_configuration: what concerns the analysis of every source.
tidy_configuration() {
    clang-tidy-14 --version | grep version
    git ls-files --cached --others --exclude-standard -- '*.clang-tidy' | xargs sha256sum
}

# tidy_units: writes lines "HASH  FACTS-FILE" into units, for all sources that the check is about,
# and into uncompiled those that are not part of the build.
tidy_units() {
    local work="$TIDY_WORK"
    rm -rf "$work"
    mkdir -p "$work/facts"
    dependencies >"$work/dependencies"
    sed -n 's/^ //p' "$work/dependencies" | sort -u | xargs -d '\n' sha256sum >"$work/hashes"
    compile_commands >"$work/commands"
    sources '*.cpp' '*.h' >"$work/wanted"
    tidy_configuration >"$work/configuration"
    awk -v out="$work/facts" -f tools/units.awk \
        part=1 "$work/hashes" part=2 "$work/commands" part=3 "$work/wanted" \
        part=4 "$work/configuration" part=5 "$work/dependencies" >"$work/uncompiled"
    find "$work/facts" -type f -exec sha256sum {} + >"$work/units"
}

# tidy_file HASH FACTS-FILE: analyses one source. clang-tidy counts on stderr what it suppressed in
# other people's headers; anything else that it says, however it ends, is a finding.
tidy_file() {
    local hash="$1" source="${2##*/}" findings
    source="${source//%//}"
    findings="$(clang-tidy-14 --quiet -p "$TIDY_BUILD" "$source" 2>&1)" ||
        findings+=$'\n'"in $source"
    findings="$(grep -vE '^[0-9]+ warnings? generated\.$' <<<"$findings" || true)"
    if [ -n "$findings" ]; then
        printf '%s\n' "$findings"
        return 1
    fi
    # A source that was edited meanwhile is not the one that the hash is of.
    [ "$source" -nt "$TIDY_WORK/units" ] || : >"$TIDY_CLEAN/$hash"
}

step_tidy() {
    if [ -z "$(sources '*.cpp' '*.h')" ]; then
        printf 'no changed sources\n'
        return
    fi
    build asan
    tidy_units
    mkdir -p "$TIDY_CLEAN"
    local hash facts new=()
    while read -r hash facts; do
        touch --no-create "$TIDY_CLEAN/$hash"
        [ -e "$TIDY_CLEAN/$hash" ] || new+=("$hash" "$facts")
    done <"$TIDY_WORK/units"
    find "$TIDY_CLEAN" -type f -mtime +30 -delete
    export -f tidy_file
    export TIDY_BUILD TIDY_WORK TIDY_CLEAN
    [ ${#new[@]} -eq 0 ] || printf '%s\n' "${new[@]}" |
        xargs -d '\n' -P "$JOBS" -n 2 bash -c 'tidy_file "$@"' tidy
    printf 'sources: %s, analysed anew: %s%s\n' "$(wc -l <"$TIDY_WORK/units")" $((${#new[@]} / 2)) \
        "$(sed 's/^/, not compiled and so not analysed: /' "$TIDY_WORK/uncompiled" | tr -d '\n')"
}
