# shellcheck shell=bash disable=SC2034
# Sourced by the scripts in the parent folder: finds the source tree and installs the Debian packages that a script needs.
# Nothing here reads standard input, which belongs to the script.

root=$(cd -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/../.." && pwd)

build_packages=(cmake ninja-build g++ libcrypt-dev googletest libedit-dev nlohmann-json3-dev)
test_packages=(gdb openssl pkg-config python3)
check_packages=(clang clang-format clang-tidy)
deep_packages=(clang libclang-rt-14-dev cppcheck gcovr valgrind)
mutate_packages=(python3 util-linux)
instructions_packages=(valgrind python3)
bench_packages=(libfmt-dev libspdlog-dev libabsl-dev libboost-dev libglib2.0-dev libssl-dev libmsgpack-cxx-dev libprotobuf-dev
    libpocofoundation80 pkg-config python3)
armhf_packages=(g++-arm-linux-gnueabihf gdb-multiarch qemu-user libc6:armhf libstdc++6:armhf libcrypt-dev:armhf libedit2:armhf)
packaging_packages=(debhelper dpkg-dev doxygen fakeroot lintian debootstrap)
abi_packages=(abigail-tools xz-utils)

# Under sudo, only packages are installed as root. Everything else runs as the user who called sudo and belongs to that user.
caller=()
if [ "$(id -u)" -eq 0 ] && [[ ${SUDO_UID:-} =~ ^[1-9][0-9]*$ && ${SUDO_GID:-} =~ ^[0-9]+$ ]]; then
    caller=(setpriv --reuid "$SUDO_UID" --regid "$SUDO_GID" --init-groups
        env "HOME=$(getent passwd "$SUDO_UID" | cut -d: -f6)")
fi

as_caller() {
    "${caller[@]}" "$@"
}

# Creates the build folder. A build folder that belongs to root, or a tree that the user cannot read, is used as root.
make_build_folder() {
    if [ ${#caller[@]} -gt 0 ]; then
        [ -e "$root/build" ] || install -d -o "$SUDO_UID" -g "$SUDO_GID" -- "$root/build" || return
        as_caller test -w "$root/build" -a -r "$root/CMakeLists.txt" || caller=()
    fi
    mkdir -p -- "$root/build"
}

# For scripts that need root only for packages: restarts script $1 as the user who called sudo.
become_caller() {
    local script=$1
    shift
    make_build_folder || return
    [ ${#caller[@]} -eq 0 ] || exec "${caller[@]}" "$root/scripts/$script" "$@"
}

job=
elevated=

# Ends the script and the process group it waits for after signal number $1. A process that needs more than a second, such
# as dpkg in the middle of a package, continues alone.
stop() {
    local attempt
    trap '' INT TERM HUP
    if [ -n "$job" ]; then
        kill -s INT -- "-$job" 2>/dev/null
        [ -z "$elevated" ] || sudo -n kill -s INT -- "-$job" </dev/null 2>/dev/null
        for attempt in {1..10}; do
            kill -0 -- "-$job" 2>/dev/null || break
            sleep 0.1
        done
    fi
    [ ! -t 2 ] || echo >&2
    exit $((128 + $1))
}
trap 'stop 1' HUP
trap 'stop 2' INT
trap 'stop 15' TERM

# Runs a command in its own process group and waits for it, because bash handles a signal only after a foreground command
# has ended.
interruptible() {
    local status
    set -m
    (
        trap 'exit 130' INT
        "$@"
    ) </dev/null &
    job=$!
    set +m
    wait "$job"
    status=$?
    job=
    return "$status"
}

# Shows the packages being installed and the [n/m] of a build: in a single line on a terminal, else line by line.
show_progress() {
    local line shown='' progress='^(\[[1-9][0-9]*/[0-9]+\] |Get:|Unpacking |Setting up |Waiting for cache lock|Trying again)'
    while IFS= read -r line; do
        [[ $line =~ $progress ]] || continue
        if [ -t 2 ]; then
            printf '\r\033[K%.79s' "$line" >&2
            shown=1
        else
            printf '%s\n' "$line" >&2
        fi
    done
    [ -z "$shown" ] || printf '\r\033[K' >&2
}

# Runs a command with its output in the file $1. Shows only progress, but the whole output if the command fails.
logged() {
    local log=$1 status
    shift
    as_caller mkdir -p -- "$(dirname -- "$log")" || return
    NINJA_STATUS='[%f/%t] ' "$@" 2>&1 9>&- | as_caller tee -- "$log" | show_progress
    status=${PIPESTATUS[0]}
    [ "$status" -eq 0 ] || cat -- "$log" >&2
    return "$status"
}

quietly() {
    interruptible logged "$@"
}

locked=

# Takes the lock that lets only one script of this tree install and build. It is released by unlock or when the script ends.
lock() {
    [ -z "$locked" ] || return 0
    make_build_folder || return
    [ -e "$root/build/setup.lock" ] || as_caller touch -- "$root/build/setup.lock" || return
    exec 9>>"$root/build/setup.lock" || return
    if ! flock -n 9; then
        echo "Waiting for another set-up of this tree to end" >&2
        interruptible flock 9 || return
    fi
    locked=1
}

unlock() {
    exec 9>&-
    locked=
}

# Whether packages can be installed. sudo asks for a password here and not later.
can_become_root() {
    [ "$(id -u)" -ne 0 ] || return 0
    command -v sudo >/dev/null && sudo -v </dev/null && elevated=1
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    else
        sudo -n "$@"
    fi
}

apt_get() {
    as_root env DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8 apt-get -q -y -o DPkg::Lock::Timeout=300 \
        -o Acquire::Retries=3 "$@"
}

# Whether a package is installed, for the architecture in its name or the machine's own.
installed() {
    local architecture
    case $1 in
    *:*) architecture=${1#*:} ;;
    *) architecture=$(dpkg --print-architecture) ;;
    esac
    dpkg-query -W -f '${db:Status-Status} ${Architecture}\n' "$1" 2>/dev/null |
        grep -qxE "installed ($architecture|all)"
}

# A failed update does not stop the installation: the existing lists may contain the packages.
install_with_retries() {
    local pause
    trap 'exit 130' INT
    for pause in 0 1 5 15 30; do
        if [ "$pause" -gt 0 ]; then
            echo "Trying again in $pause s"
            sleep "$pause"
            apt_get update || echo "Some package lists could not be updated."
        fi
        apt_get install --no-install-recommends "$@" && return 0
    done
    return 1
}

find_missing() {
    local package
    missing=()
    for package in "$@"; do
        installed "$package" || missing+=("$package")
    done
}

# Installs the named packages that are missing, under the lock. Needs neither root nor a network if none is missing.
ensure_packages() {
    local missing architecture=''
    find_missing "$@"
    [ ${#missing[@]} -gt 0 ] || return 0

    if ! command -v apt-get >/dev/null; then
        echo "Please install these Debian packages or their equivalents: ${missing[*]}" >&2
        return 1
    fi
    if [[ " ${missing[*]} " == *:armhf* ]] && ! dpkg --print-foreign-architectures | grep -qx armhf; then
        architecture="dpkg --add-architecture armhf"
    fi
    if ! can_become_root; then
        echo "Packages are missing, and installing them needs root or sudo. Ask an administrator to run:" >&2
        echo "    ${architecture:+$architecture && apt-get update && }apt-get install ${missing[*]}" >&2
        return 1
    fi
    lock || return
    # The previous holder of the lock may have installed them.
    find_missing "$@"
    [ ${#missing[@]} -gt 0 ] || return 0
    echo "Installing ${missing[*]}" >&2
    # shellcheck disable=SC2086
    [ -z "$architecture" ] || as_root $architecture </dev/null || return
    quietly "$root/build/setup.log" install_with_retries "${missing[@]}"
}
