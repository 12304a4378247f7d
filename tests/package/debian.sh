#!/usr/bin/env bash
# Installs the packages in the folder $1 into a bare Debian 12, builds and runs four clients there (pkg-config, CMake, plain
# g++, static), starts the console, and removes and purges the packages again. Exits with 77 where that is not possible.
# The bare system comes from the archive that this machine's apt uses.
set -eu
packages=$1
source=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)
expected="port=4x 1239 ut_PutStream"
release=bookworm
export LC_ALL=C DEBIAN_FRONTEND=noninteractive

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

skip() {
    echo "skipped: $*"
    exit 77
}

[ "$(id -u)" -eq 0 ] || skip "only root can make a Debian system"
command -v debootstrap >/dev/null || skip "debootstrap is not installed"
# shellcheck disable=SC2016
archive=$(apt-get indextargets --format '$(CODENAME) $(COMPONENT) $(REPO_URI)' 'Created-By: Packages' |
    sed -n "s/^$release main //p" | head -n 1)
[ -n "$archive" ] || skip "apt of this machine has no archive of $release"

system=$(mktemp -d)
trap 'rm -rf --one-file-system "$system"' EXIT
debootstrap --variant=minbase --include=g++,cmake,make,pkg-config,libcrypt-dev,libedit2 "$release" "$system" "$archive" \
    >"$system.log" 2>&1 || {
    tail -n 3 "$system.log"
    rm -f "$system.log"
    skip "debootstrap failed"
}
rm -f "$system.log"

inside() {
    # Mounts end with the namespace.
    unshare --mount --pid --fork --mount-proc="$system/proc" chroot "$system" "$@"
}

mkdir "$system/packages" "$system/client"
cp -- "$packages"/*.deb "$system/packages"
cp -- "$source/consumer.cpp" "$source/CMakeLists.txt" "$system/client"
inside sh -c 'dpkg -i /packages/*.deb' >"$system/install.log" || fail "the packages are not installed: $(cat "$system/install.log")"

# runs NAME COMMAND: whether the client that the command builds prints what it must.
runs() {
    local name=$1
    inside sh -euc "cd /client; $2" >"$system/build.log" 2>&1 || fail "$name does not build: $(cat "$system/build.log")"
    [ "$(inside "/client/$name")" = "$expected" ] || fail "$name prints something else"
    echo "$name works"
}
# shellcheck disable=SC2016
runs with-pkg-config 'g++ -std=c++17 consumer.cpp $(pkg-config --cflags --libs VXut) -o with-pkg-config'
runs with-cmake 'cmake -S . -B build && cmake --build build && cp build/consumer with-cmake'
runs with-compiler 'g++ -std=c++17 consumer.cpp -lVXut -lVXfw -o with-compiler'
runs static 'g++ -std=c++17 consumer.cpp -Wl,--gc-sections -l:libVXut.a -l:libVXfw.a -lstdc++ -lsupc++ -lcrypt -o static'
! inside ldd /client/static | grep -q VX || fail "the static client needs the shared libraries"
inside vxconsole -c "path /a/../b" | grep -q '^normal  *//*b$' || fail "the console does not start"

# shellcheck disable=SC2016
inside sh -euc 'names=$(dpkg-query -W -f "\${source:Package} \${Package}\n" | sed -n "s/^vxut //p"); dpkg -r $names; dpkg -P $names' \
    >"$system/remove.log" 2>&1 || fail "the packages are not removed: $(cat "$system/remove.log")"
left=$(find "$system/usr" "$system/etc" "$system/var/lib/dpkg/info" -iname '*vxut*' -o -iname 'libVX*' -o -name 'vxconsole*')
[ -z "$left" ] || fail "purged packages leave $left"
echo "the packages work in a bare Debian"
