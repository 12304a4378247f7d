# shellcheck shell=bash disable=SC2034
# Sourced by the scripts beside this folder: the place of the tree, and the Debian packages that a script needs.
# Nothing here reads standard input, so that a script's own input stays whole.

root=$(cd -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/../.." && pwd)

build_packages=(cmake ninja-build g++ libcrypt-dev googletest)
test_packages=(openssl pkg-config)
check_packages=(clang-format clang-tidy)
armhf_packages=(g++-arm-linux-gnueabihf qemu-user libc6:armhf libstdc++6:armhf libcrypt-dev:armhf)

# Runs a command quietly: what it prints goes to a file and is shown only when it fails.
quietly() {
    local log=$1 status
    shift
    mkdir -p "$(dirname -- "$log")" || return
    "$@" </dev/null >"$log" 2>&1
    status=$?
    [ $status -eq 0 ] || cat "$log" >&2
    return $status
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        echo "This needs root or sudo: $*" >&2
        return 1
    fi
}

apt_get() {
    as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o DPkg::Lock::Timeout=300 -o Acquire::Retries=3 "$@"
}

# A name with an architecture asks for that one, any other name for the machine's own.
installed() {
    local architecture
    case $1 in
    *:*) architecture=${1#*:} ;;
    *) architecture=$(dpkg --print-architecture) ;;
    esac
    dpkg-query -W -f '${db:Status-Status} ${Architecture}\n' "$1" 2>/dev/null |
        grep -qxE "installed ($architecture|all)"
}

# A failing update is no reason to stop: what is needed may be in the lists all the same.
install_with_retries() {
    local pause
    for pause in 0 1 5 15 30; do
        if [ "$pause" -gt 0 ]; then
            sleep "$pause"
            apt_get update || echo "The package lists could not all be brought up to date."
        fi
        apt_get install --no-install-recommends "$@" && return 0
    done
    return 1
}

# Installs those of the named packages that are missing; without any missing, neither root nor a network is needed.
ensure_packages() {
    local package missing=()
    for package in "$@"; do
        installed "$package" || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0

    if ! command -v apt-get >/dev/null; then
        echo "Please install what Debian calls: ${missing[*]}" >&2
        return 1
    fi
    [ ! -t 2 ] || echo "Installing ${missing[*]}" >&2
    if [[ " ${missing[*]} " == *:armhf* ]] && ! dpkg --print-foreign-architectures | grep -qx armhf; then
        as_root dpkg --add-architecture armhf </dev/null || return
    fi
    quietly "$root/build/setup.log" install_with_retries "${missing[@]}"
}
