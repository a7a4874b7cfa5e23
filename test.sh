#!/usr/bin/env bash
# Builds everything and runs every test; see usage below.
set -euo pipefail

usage() {
    cat <<'TEXT'
Usage: ./test.sh [--asan] [ctest options...]

Builds everything in build/release and runs all tests. With --asan the build in build/asan, which has the
address and undefined-behaviour sanitizers, is used instead. With CI=true in the environment both are built
and tested, and compiler warnings are errors.

Packages that are missing on a Debian system are installed first, through sudo where needed.
TEXT
}

root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
# shellcheck source=tools/setup.sh
. "$root/tools/setup.sh"

presets=(release)
releaseOptions=(-DQUILLON_TESTS=ON -DQUILLON_BENCH=ON)
# The optimizer's warnings about sanitized code are not dependable, so only the release build is strict.
if [[ ${CI-} == true ]]; then
    presets=(release asan)
    releaseOptions+=(-DQUILLON_WERROR=ON)
fi
case ${1-} in
-h | --help)
    usage
    exit
    ;;
--asan)
    presets=(asan)
    shift
    ;;
esac

# The GL driver is unloaded before the leak check and all that it still holds would count as lost.
export ASAN_OPTIONS=detect_leaks=0${ASAN_OPTIONS:+:$ASAN_OPTIONS}

installMissing "${kPlayerPackages[@]}" "${kContactSheetPackages[@]}" "${kTestPackages[@]}"

failed=()
for preset in "${presets[@]}"; do
    if [[ $preset == release ]]; then
        configure release "${releaseOptions[@]}"
    else
        configure "$preset"
    fi
    buildTargets "$preset"
    say "Testing build/$preset"
    (cd "$root" && ctest --preset "$preset" --no-tests=error -j "$(nproc)" "$@") || failed+=("$preset")
done
((${#failed[@]} == 0)) || die "tests failed in: ${failed[*]}"
