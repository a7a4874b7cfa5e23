#!/usr/bin/env bash
# Reads sources, scripts and shaders with what finds faults without running them, and says what was found:
# tools/lint.sh PRESET, where build/PRESET is configured, for the compiler's options. The exit code is 1 where something
# was found.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
# shellcheck source=tools/setup.sh
. "$root/tools/setup.sh"
cd "$root"
preset=${1:?the name of a preset}

# Formatting and remarks change from release to release of clang; sources are held to those of this one.
kClangRelease=14

# named PATTERN...: the files of the checkout whose paths are like one of these, each with a zero byte behind it.
named() {
    local path likes=()
    for path in "$@"; do likes+=(-o -path "$path"); done
    find . \( -path ./build -o -path ./.git \) -prune -o -type f \( "${likes[@]:1}" \) -print0
}

# What the player is made of here. Tests and benchmarks consist of macros, of which clang-tidy has much to say.
compiled() {
    sed -n "s|^  \"file\": \"$root/\(src/.*\)\"\$|\1|p" "build/$preset/compile_commands.json" | sort -u | tr '\n' '\0'
}

failed=()
# check COMMAND...: runs it with the files that standard input names behind its arguments, and shows its words if it fails.
check() {
    local output
    say "Reading with $1"
    output=$(xargs -0 "${checkOptions[@]}" "$@" 2>&1) && return
    printf '%s\n' "$output" | grep -vE '^[0-9]+ warnings? generated\.$' >&2 || true
    failed+=("$1")
}

release=$(clang-tidy --version | sed -n 's/.*version \([0-9]*\)\..*/\1/p')
if [[ $release == "$kClangRelease" ]]; then
    checkOptions=()
    check clang-format --dry-run -Werror < <(named '*.cpp' '*.h')
    checkOptions=(-n 1 -P "$(nproc)")
    # The compiler's options may be another compiler's, of which clang knows less.
    check clang-tidy --quiet -p "build/$preset" --extra-arg=-Wno-unknown-warning-option < <(compiled)
else
    say "Sources are held to clang $kClangRelease (Debian 12); clang $release has other words and is not asked"
fi
checkOptions=()
check shellcheck -x < <(named '*.sh' './.ci/run')
# The stage of a shader is its file's ending.
check glslangValidator < <(named '*.vert' '*.frag')
((${#failed[@]} == 0)) || die "remarks by: ${failed[*]}"
