#!/usr/bin/env bash
# Installs the build tree $1 into a new folder, and builds a client of it with the C++ compiler $2, once through the
# CMake package (with the toolchain file $3, if not empty) and once with the flags of VXut.pc. The client crashes:
# its report must name all its functions. A client compiled with another time_t than the library is stopped with one line
# that says which flag to use. What follows $3 runs a program that was built.
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

# Runs a client, $@, which must report each of its functions once and end by the signal.
check_report() {
    local status=0 function
    { "$@" 2>"$folder/report"; } 2>/dev/null || status=$?
    [ "$status" -eq 139 ] || fail "the client ended with $status: $(cat "$folder/report")"
    for function in clientFirst clientSecond clientThird clientFourth; do
        [ "$(grep -c "^ *$function+0x" "$folder/report")" -eq 1 ] ||
            fail "$function is not in the report once: $(cat "$folder/report")"
    done
}

cmake --install "$build" --prefix "$prefix" >"$folder/install.log"
description=$(find "$prefix" -name VXut.pc)
package=$(find "$prefix" -name VXutConfig.cmake)

cmake -G Ninja -S "$source" -B "$folder/cmake" -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_COMPILER="$compiler" \
    -DCMAKE_TOOLCHAIN_FILE="$toolchain" -DVXut_DIR="${package%/*}" >"$folder/configure.log"
cmake --build "$folder/cmake" >"$folder/build.log" || {
    cat "$folder/build.log"
    fail "the CMake package does not build"
}
check_report "$@" "$folder/cmake/client"

if command -v pkg-config >/dev/null; then
    export PKG_CONFIG_PATH=${description%/*}
    # shellcheck disable=SC2046
    "$compiler" -std=c++17 -O2 -rdynamic "$source/client.cpp" $(pkg-config --cflags --libs VXut) \
        -Wl,-rpath,"$(pkg-config --variable=libdir VXut)" -o "$folder/client"
    check_report "$@" "$folder/client"
fi

# Stops the compiler for header $1, in language $2, with the options that follow; the only error must name the flag.
check_stopped() {
    local header=$1 language=$2 errors
    shift 2
    ! echo "#include <VXut/$header>" | "$compiler" -x "$language" -fsyntax-only "$@" - 2>"$folder/errors" ||
        fail "$header compiles with another time_t than that of the library"
    errors=$(grep 'error:' "$folder/errors")
    if [ "$(wc -l <<<"$errors")" -ne 1 ] || ! grep -q "#error .*: compile with -D_TIME_BITS=$bits" <<<"$errors"; then
        fail "$header is stopped with: $errors"
    fi
}

layout=$prefix/include/VXut/ut_Platform.h
bits=$(sed -n 's/^#define VXUT_TIME_BITS //p' "$layout")
if [ "$bits" -eq 32 ]; then
    other=(-I"$prefix/include" -D_TIME_BITS=64 -D_FILE_OFFSET_BITS=64)
else
    # No flag makes this platform's time_t smaller: a library that was built with 32 bits has this header.
    bits=32
    mkdir "$folder/other"
    cp -r "$prefix/include/VXut" "$folder/other"
    sed -i 's/64/32/g' "$folder/other/VXut/ut_Platform.h"
    other=(-I"$folder/other")
fi
check_stopped ut_DateTime.h c++ -std=c++17 "${other[@]}"
check_stopped VXut.h c++ -std=c++17 "${other[@]}"
check_stopped ut_md5.h c -std=c99 "${other[@]}"
echo "clients of the installed library are traced, and stopped where they must be"
