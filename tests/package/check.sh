#!/usr/bin/env bash
# Installs the build tree $1 into a new folder, and builds and runs a program against it, through the CMake package and
# through pkg-config. The same program also compiles with the source tree as a part of its own, and the installed
# console starts. What concerns the headers alone is in headers/check.sh.
set -eu
build=$1
source=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
prefix=$folder/prefix
compiler=${CXX:-c++}
expected="port=4x 1239 ut_PutStream"

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

cmake --install "$build" --prefix "$prefix" >"$folder/install.log"

cmake -G Ninja -S "$source" -B "$folder/cmake" -DCMAKE_PREFIX_PATH="$prefix" >"$folder/configure.log"
cmake --build "$folder/cmake" >"$folder/build.log" || {
    cat "$folder/build.log"
    fail "the CMake package does not build"
}
[ "$("$folder/cmake/consumer")" = "$expected" ] || fail "the program of the CMake package prints something else"

# With the generator that every machine has: nothing may need Ninja.
generator=Ninja
! command -v make >/dev/null || generator="Unix Makefiles"
cmake -G "$generator" -S "$source" -B "$folder/part" -DVXUT_SOURCE="$source/../.." >"$folder/configure.log"
object=CMakeFiles/consumer.dir/consumer.cpp.o
[ "$generator" = Ninja ] || object=consumer.o
cmake --build "$folder/part" --target "$object" >"$folder/build.log" || {
    cat "$folder/build.log"
    fail "the source tree is no part of another project"
}

! grep -rq 'VXut\.h' --include=cmake_install.cmake "$folder/part" ||
    fail "as a part of another project, the library adds install rules to it"
grep -q 'VXut\.h' "$build/cmake_install.cmake" || fail "the install rules are not where they are looked for"

# Builds for use do not fail where the console's libraries are missing, except when the console was asked for.
configure_without_console_libraries() {
    cmake -G "$generator" -S "$source/../.." -B "$folder/$1" -DVXUT_BUILD_TESTS=OFF -DVXUT_BUILD_FUZZ=OFF \
        -DCMAKE_IGNORE_PATH=/usr/include "${@:2}" >"$folder/configure.log" 2>&1
}
configure_without_console_libraries without_console || {
    cat "$folder/configure.log"
    fail "the libraries alone need the console's libraries"
}
grep -q 'vxconsole is not built: install nlohmann-json3-dev' "$folder/configure.log" ||
    fail "nobody says why there is no console"
! configure_without_console_libraries with_console -DVXUT_BUILD_EXAMPLES=ON ||
    fail "a console that was asked for is left out"

console=$prefix/bin/vxconsole
[ ! -e "$console" ] || "$console" -c "path /a/../b" </dev/null | grep -q '^normal  *//*b$' ||
    fail "the installed console does not start"

description=$(find "$prefix" -name VXut.pc)
[ -n "$description" ] || fail "no VXut.pc"
if command -v pkg-config >/dev/null; then
    export PKG_CONFIG_PATH=${description%/*}
    libraries=$(pkg-config --variable=libdir VXut)
    # shellcheck disable=SC2046
    "$compiler" -std=c++17 "$source/consumer.cpp" $(pkg-config --cflags --libs VXut) -o "$folder/consumer"
    [ "$(LD_LIBRARY_PATH=$libraries "$folder/consumer")" = "$expected" ] || fail "the program of VXut.pc prints something else"
fi

if grep -rlE 'internal/[a-zA-Z_]+\.h' "$prefix"; then
    fail "internal headers are named"
fi
echo "the installed package works"
