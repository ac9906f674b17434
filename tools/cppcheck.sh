# shellcheck shell=bash
# The second static analysis, which follows values rather than the language's rules.

# It cannot take Google Test's macros apart, nor __VA_OPT__ in the log's: those are left as calls.
step_cppcheck() {
    local work="$PWD/build/cppcheck" excluded=()
    local folder
    for folder in build tests; do
        excluded+=(-i "$PWD/$folder")
    done
    build asan
    mkdir -p "$work"
    cppcheck --project=build/asan/compile_commands.json --cppcheck-build-dir="$work" -j "$JOBS" \
        --enable=warning,performance,portability --inline-suppr --std=c++20 -UAON_LOG \
        "${excluded[@]}" --suppress='*:/usr/*' --suppress="*:$PWD/build/*" \
        --suppress=unmatchedSuppression --quiet --error-exitcode=1 \
        --template='{file}:{line}: {severity}: {id}: {message}'
    printf 'all but the tests\n'
}
