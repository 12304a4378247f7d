#!/usr/bin/env bash
# Installs the libraries of the static build tree $1 into a new folder and builds clients of them with the C++ compiler $2
# (and the toolchain file $3, if not empty), through the CMake package and with the flags of VXut.pc. What follows $3 runs
# a program that was built. Checks the output of the clients, what the libraries contribute to their size, and that only a
# client with crash reports contains the demangler.
set -eu
build=$1
compiler=$2
toolchain=$3
shift 3
source=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
prefix=$folder/prefix
ulimit -S -c 0

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

# Limits in bytes, for 32-bit ARM: the instructions of other platforms are longer.
declare -A limits=([format]=$((14 * 1024)) [identifiers]=$((17 * 1024)) [parameters]=$((17 * 1024)))
declare -A outputs=([format]="ports=4" [identifiers]="500a09818d5f1234 fe80::1" [parameters]="4711 ports")
[[ $("$compiler" -dumpmachine) == arm-* ]] || limits=()

for component in libraries development headers; do
    cmake --install "$build" --prefix "$prefix" --component "$component" >>"$folder/install.log"
done
[ -n "$(find "$prefix" -name libVXut.a)" ] || fail "$build has no static library"
package=$(find "$prefix" -name VXutConfig.cmake)
cmake -S "$source" -B "$folder/cmake" -DCMAKE_BUILD_TYPE=MinSizeRel -DCMAKE_CXX_COMPILER="$compiler" \
    -DCMAKE_TOOLCHAIN_FILE="$toolchain" -DVXut_DIR="${package%/*}" >"$folder/configure.log"
cmake --build "$folder/cmake" >"$folder/build.log" 2>&1 || fail "the clients do not build: $(cat "$folder/build.log")"

for name in "${!outputs[@]}"; do
    [ "$("$@" "$folder/cmake/$name")" = "${outputs[$name]}" ] || fail "$name prints something else"
    printf '%-12s ' "$name"
    python3 "$source/sizes.py" "$folder/cmake/$name.map" ${limits[$name]:+"${limits[$name]}"}
    ! grep -q 'cp-demangle\.o' "$folder/cmake/$name.map" || fail "$name contains the demangler"
done
# A limit that no program can meet must be noticed.
! python3 "$source/sizes.py" "$folder/cmake/format.map" 1000 >/dev/null 2>&1 || fail "a limit that is exceeded is not noticed"

grep -q 'cp-demangle\.o' "$folder/cmake/crash.map" || fail "the client with crash reports has no demangler"
status=0
{ "$@" "$folder/cmake/crash" 2>"$folder/report"; } 2>/dev/null || status=$?
[ "$status" -eq 139 ] || fail "the client with crash reports ended with $status"
grep -q '^Backtrace Start' "$folder/report" || fail "no crash report: $(cat "$folder/report")"

if command -v pkg-config >/dev/null; then
    description=$(find "$prefix" -name VXut.pc)
    # shellcheck disable=SC2046
    "$compiler" -std=c++17 -Os "$source/format.cpp" -Wl,--gc-sections -o "$folder/format" \
        $(PKG_CONFIG_PATH=${description%/*} pkg-config --cflags --libs VXut)
    [ "$("$@" "$folder/format")" = "${outputs[format]}" ] || fail "the client of VXut.pc prints something else"
fi
echo "the clients of the static libraries work"
