# What play.sh, test.sh and package.sh share: progress lines, the packages a bare Debian lacks, the build folder.
# Sourced by bash with `root` set to the absolute path of the checkout.
# shellcheck shell=bash disable=SC2034,SC2154

# A compiler, the build tools, and the libraries that the player is built with and runs on. libgl1-mesa-dri
# holds the software renderer for machines without a graphics card.
kPlayerPackages=(
    g++ cmake ninja-build pkg-config
    libsdl2-dev libegl-dev libopengl-dev libgl-dev
    libpng-dev libjpeg-dev libtiff-dev libwebp-dev
    libmpg123-dev libvorbis-dev libflac-dev libopusfile-dev libopenmpt-dev libspeexdsp-dev
    libegl1 libegl-mesa0 libgl1 libgl1-mesa-dri
)
kContactSheetPackages=(imagemagick fonts-dejavu-core ffmpeg)
# xvfb-run needs xauth, which xvfb only recommends. mesa-vulkan-drivers is a second GL driver, zink on lavapipe.
kTestPackages=(libgtest-dev libbenchmark-dev xvfb xauth xdotool python3 ffmpeg mesa-vulkan-drivers)
# The fuzzer comes with clang; llvm counts the lines that it reaches.
kFuzzPackages=(clang libclang-rt-dev llvm)
# The Windows player is built here too, and tested under Wine. libgl1 brings the OpenGL that Wine hands on; with a
# window manager windows are closed and fill the screen as on a desktop.
kWindowsPackages=(g++-mingw-w64-x86-64-posix cmake ninja-build)
kWineTestPackages=(wine wine64 googletest libgl1 libgl1-mesa-dri openbox xvfb xauth xdotool python3 imagemagick)
kLintPackages=(clang-format clang-tidy shellcheck glslang-tools)
# dpkg-dev tells which libraries the Debian package depends on.
kPackagingPackages=(dpkg-dev file)

say() {
    printf '==> %s\n' "$*" >&2
}

die() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

# Installs those of the named Debian packages that are missing; does not call apt-get when none is.
installMissing() {
    local installed package missing=()
    if ! command -v dpkg-query >/dev/null; then
        say "No Debian package system here; these packages' equivalents are needed: $*"
        return
    fi
    # Names that dpkg does not know make it fail and are left out of its list: missing, that is.
    installed=" $(dpkg-query -W -f '${db:Status-Status}=${Package} ' "$@" 2>/dev/null || true)"
    for package in "$@"; do
        [[ $installed == *" installed=$package "* ]] || missing+=("$package")
    done
    ((${#missing[@]})) || return 0

    command -v apt-get >/dev/null || die "please install these packages first: ${missing[*]}"
    local asRoot=()
    if ((EUID != 0)); then
        command -v sudo >/dev/null ||
            die "neither root nor sudo; as root: apt-get install --no-install-recommends ${missing[*]}"
        asRoot=(sudo)
    fi
    local apt=("${asRoot[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -o Dpkg::Use-Pty=0)
    local log=$root/build/packages.log
    mkdir -p "$root/build"
    say "Installing missing packages: ${missing[*]}"
    # With the lists of an earlier update the installation can still go through.
    "${apt[@]}" update </dev/null >"$log" 2>&1 || say "The package lists could not be renewed"
    if ! "${apt[@]}" install -y --no-install-recommends "${missing[@]}" </dev/null >>"$log" 2>&1; then
        tail -n 20 "$log" >&2
        die "installing the packages failed; all that apt-get said is in $log"
    fi
}

# True when build/PRESET was configured in this very place: CMake refuses the folder of a checkout that has
# been moved or copied since.
isConfigured() {
    [[ -e $root/build/$1/build.ninja ]] &&
        grep -qsxF "CMAKE_HOME_DIRECTORY:INTERNAL=$root" "$root/build/$1/CMakeCache.txt"
}

# configure PRESET [cmake options...]
configure() {
    isConfigured "$1" || rm -rf "$root/build/$1/CMakeCache.txt" "$root/build/$1/CMakeFiles"
    say "Configuring build/$1"
    (cd "$root" && cmake --preset "$@" >&2) || die "configuring failed"
}

# buildTargets PRESET [cmake --build options...]
buildTargets() {
    say "Building build/$1"
    (cd "$root" && cmake --build --preset "$@" >&2) || die "the build failed"
}
