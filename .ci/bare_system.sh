#!/usr/bin/env bash
# Proves both commands of README.md on a bare system of a named Debian release; see usage below.
set -euo pipefail

usage() {
    cat <<'TEXT'
Usage: .ci/bare_system.sh RELEASE [--keep]

Makes a bare system of the Debian release (bookworm, trixie) in a folder of its own, clones what is committed here
into it, and runs ./play.sh and ./test.sh there as root, without a display and with nothing installed before. The
exit code is 0 when both succeed. The system is removed afterwards; --keep leaves it to be looked into.

Needs root, debootstrap, 6 GB in TMPDIR (/var/tmp when unset), and an apt that knows where Debian's packages are.
TEXT
}

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
# shellcheck source=tools/setup.sh
. "$root/tools/setup.sh"

# Where apt gets the packages of an origin, by its label.
archiveOf() {
    # shellcheck disable=SC2016 # the names are apt-get's
    apt-get indextargets --format '$(LABEL) $(REPO_URI)' 'Created-By: Packages' |
        awk -v label="$1" '$1 == label { uri = $2 } END { print uri }'
}

# inSystem FOLDER COMMAND...: runs a command in the system as a fresh log-in of root's would.
inSystem() {
    env -i HOME=/root PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin TERM=dumb \
        ${http_proxy:+http_proxy="$http_proxy"} chroot "$1" "${@:2}" </dev/null
}

# proveIn FOLDER RELEASE
proveIn() {
    local system=$1 release=$2 archive security suite command began code=0
    archive=$(archiveOf Debian)
    security=$(archiveOf Debian-Security)
    [[ $archive ]] || die "apt knows no archive of Debian's; apt-get update may help"
    http_proxy=${http_proxy:-$(apt-config dump --format '%v' Acquire::http::Proxy)}
    [[ ! $http_proxy ]] || export http_proxy

    say "Making a bare $release in $system"
    debootstrap --variant=minbase "$release" "$system" "$archive" >"$system.log" 2>&1 || {
        tail -n 20 "$system.log" >&2
        die "debootstrap failed"
    }
    for suite in "$release" "$release-updates"; do printf 'deb %s %s main\n' "$archive" "$suite"; done \
        >"$system/etc/apt/sources.list"
    [[ ! $security ]] || printf 'deb %s %s-security main\n' "$security" "$release" >>"$system/etc/apt/sources.list"
    apt-config dump --format '%F "%v";%n' Acquire::http Acquire::https Acquire::Check-Valid-Until Acquire::Check-Date \
        >"$system/etc/apt/apt.conf.d/00machine"
    cp --dereference /etc/resolv.conf /etc/hosts "$system/etc/"
    mount -t proc proc "$system/proc"
    mount --bind /dev "$system/dev"
    mount -t devpts -o newinstance,ptmxmode=0666 devpts "$system/dev/pts"
    git clone --quiet --no-local "$root" "$system/root/player"

    for command in ./play.sh ./test.sh; do
        say "$command on a bare $release"
        began=$SECONDS
        if inSystem "$system" bash -c "cd /root/player && $command"; then
            say "$command on a bare $release succeeded in $((SECONDS - began)) s"
        else
            code=1
            say "$command on a bare $release FAILED after $((SECONDS - began)) s"
        fi
    done
    return "$code"
}

if [[ ${1-} == --inside ]]; then
    proveIn "$2" "$3"
    exit
fi

release='' keep=no
for argument in "$@"; do
    case $argument in
    -h | --help)
        usage
        exit
        ;;
    --keep) keep=yes ;;
    -*) die "unknown option '$argument'; --help shows the usage" ;;
    *) release=$argument ;;
    esac
done
[[ $release ]] || die "which release? --help shows the usage"
((EUID == 0)) || die "only root can make a system"
installMissing debootstrap

system=$(mktemp -d "${TMPDIR:-/var/tmp}/bare-$release.XXXXXX")
cleanUp() {
    kill -KILL "$inside" 2>/dev/null || true
    rm -f "$system.log"
    if [[ $keep == yes ]]; then
        say "The system is kept in $system"
        return
    fi
    # What was killed with the namespace may be at its last writes.
    rm -rf --one-file-system "$system" || { sleep 2 && rm -rf --one-file-system "$system"; }
}
# Mounts and processes live in namespaces of their own and are gone when these end, however they end.
unshare --mount --pid --fork --kill-child "$0" --inside "$system" "$release" &
inside=$!
trap cleanUp EXIT
trap 'exit 1' INT TERM HUP
wait "$inside"
