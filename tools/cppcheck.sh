# shellcheck shell=bash
# The second static analysis, which follows values rather than the language's rules.

# It cannot take Google Test's macros apart, nor __VA_OPT__ in the log's, which is left as a call.
step_cppcheck() {
    local work=build/cppcheck
    build asan
    mkdir -p "$work"
    cppcheck --project=build/asan/compile_commands.json --cppcheck-build-dir="$work" -j "$JOBS" \
        --enable=warning,performance,portability --inline-suppr --std=c++20 -UAON_LOG \
        -i build -i tests --suppress='*:/usr/*' --suppress="*:$PWD/build/*" \
        --suppress=unmatchedSuppression --quiet --error-exitcode=1 \
        --template='{file}:{line}: {severity}: {id}: {message}'
    printf 'all but the tests\n'
}
