# SPDX-License-Identifier: MIT
# What the scripts share; sourced from them, never run. Leaves the current folder at the top of the
# source tree.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
jobs=${KORTOOLS_JOBS:-$(nproc)}
export NINJA_STATUS='[%f/%t %es] '

say()
{
    printf '\n== %s\n' "$*"
}

# build_preset <preset> [targets...]: configures and builds, with Ninja's progress.
build_preset()
{
    local preset=$1
    shift
    say "building the $preset preset"
    cmake --preset "$preset" --log-level=WARNING
    cmake --build --preset "$preset" --parallel "$jobs" ${1:+--target "$@"}
}

# run_tests <preset> [ctest arguments...]: runs the suite. The results of earlier runs are removed,
# so that a program that no longer exists cannot count.
run_tests()
{
    local preset=$1
    shift
    say "running the tests of the $preset preset"
    rm -rf "build/$preset/test-results"
    ctest --preset "$preset" --parallel "$jobs" "$@"
}
