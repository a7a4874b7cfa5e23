#!/usr/bin/env bash
# Builds everything and runs every test; see usage below.
set -euo pipefail

usage() {
    cat <<'TEXT'
Usage: ./test.sh [--linux | --asan | --fuzz | --windows | --lint] [ctest options...]

Builds everything in build/release and runs all tests; then the same for Windows, in build/windows, under Wine on
an X server of its own. --linux and --windows leave the other system out. With --asan the build in build/asan,
which has the address and undefined-behaviour sanitizers, is used instead. With --fuzz the fuzz targets are built by
clang in build/fuzz, and run their seeds and old finds once each. With --lint nothing is built: sources, scripts and
shaders are read by clang-format, clang-tidy, shellcheck and glslangValidator (tools/lint.sh). With CI=true in the
environment all of these are done, and compiler warnings are errors.

Packages that are missing on a Debian system are installed first, through sudo where needed.
TEXT
}

root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
# shellcheck source=tools/setup.sh
. "$root/tools/setup.sh"

presets=(release windows)
# The optimizer's warnings about sanitized code are not dependable, so only the other builds are strict.
strict=()
if [[ ${CI-} == true ]]; then
    presets=(lint release asan fuzz windows)
    strict=(-DQUILLON_WERROR=ON)
fi
case ${1-} in
-h | --help)
    usage
    exit
    ;;
--asan | --fuzz | --windows | --lint)
    presets=("${1#--}")
    shift
    ;;
--linux)
    presets=(release)
    shift
    ;;
esac

# The GL driver is unloaded before the leak check and all that it still holds would count as lost.
export ASAN_OPTIONS=detect_leaks=0${ASAN_OPTIONS:+:$ASAN_OPTIONS}

packages=("${kPlayerPackages[@]}" "${kContactSheetPackages[@]}" "${kTestPackages[@]}")
[[ " ${presets[*]} " != *" lint "* ]] || packages+=("${kLintPackages[@]}")
[[ " ${presets[*]} " != *" fuzz "* ]] || packages+=("${kFuzzPackages[@]}")
[[ " ${presets[*]} " != *" windows "* ]] || packages+=("${kWindowsPackages[@]}" "${kWineTestPackages[@]}")
installMissing "${packages[@]}"

failed=()
for preset in "${presets[@]}"; do
    desktop=()
    case $preset in
    lint | release) configure release -DQUILLON_TESTS=ON -DQUILLON_BENCH=ON "${strict[@]}" ;;
    asan) configure asan ;;
    fuzz) configure fuzz "${strict[@]}" ;;
    windows)
        configure windows -DQUILLON_TESTS=ON "${strict[@]}"
        desktop=("$root/tools/desktop.sh")
        ;;
    esac
    if [[ $preset == lint ]]; then
        "$root/tools/lint.sh" release || failed+=(lint)
        continue
    fi
    buildTargets "$preset"
    say "Testing build/$preset"
    (cd "$root" && "${desktop[@]}" ctest --preset "$preset" --no-tests=error -j "$(nproc)" "$@") || failed+=("$preset")
done
((${#failed[@]} == 0)) || die "failed: ${failed[*]}"
