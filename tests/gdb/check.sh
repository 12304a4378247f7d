#!/usr/bin/env bash
# Runs the programs of this folder, which the build tree $1 has built, in gdb and compares what gdb prints. The other
# arguments are the emulator of a foreign build, and its options.
#
#   - a live process, where gdb loads the printers from the build tree by itself; also with corrupted objects;
#   - its core file, through scripts/gdb;
#   - an installed library, stripped, with its debug information in a file of its own, where gdb loads the installed printers;
#   - a foreign program, through the emulator's gdb server.
set -u
build=$1
emulator=("${@:2}")
source=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)
root=$source/../..
export LC_ALL=C TZ=Europe/Berlin
unset DEBUGINFOD_URLS

skip() {
    echo "check.sh: Skipped"
    echo "skipped: $*"
    exit 77
}

gdb=gdb
[ ${#emulator[@]} -eq 0 ] || gdb="gdb-multiarch"
command -v "$gdb" >/dev/null || skip "$gdb is not installed"
"$gdb" -nx -batch -ex 'python print("works")' 2>/dev/null | grep -q works || skip "$gdb has no Python"
[ -e "$build/libVXut.so" ] || skip "the libraries are static"
readelf -S "$build/libVXut.so" 2>/dev/null | grep -q debug_info || skip "the library has no debug information"

folder=$(mktemp -d) || exit
trap 'rm -rf "$folder"' EXIT
status=0
checks=0

# in_gdb NAME OPTION...: runs gdb without a terminal, the user's settings and the machine's debug information, such as that
# of libc, which takes long to read.
in_gdb() {
    local name=$1
    timeout -k 5 100 "$gdb" -nx -batch -iex 'set debuginfod enabled off' -iex 'set confirm off' \
        -iex "set debug-file-directory $folder" "${@:2}" \
        </dev/null >"$folder/$name.log" 2>&1
    if grep -q 'ptrace: Operation not permitted' "$folder/$name.log"; then
        skip "gdb may not trace processes here"
    fi
}

# passes NAME: whether the script that ran in gdb compared something and found no difference.
passes() {
    local name=$1
    if grep -qE '^[1-9][0-9]* .* compared, 0 failed$' "$folder/$name.log" &&
        ! grep -qE 'FAILED|Python Exception|Traceback' "$folder/$name.log"; then
        checks=$((checks + 1))
    else
        echo "FAILED: $name" >&2
        head -n 40 "$folder/$name.log" | cut -c 1-300 >&2
        status=1
    fi
}

autoload=(-iex "add-auto-load-safe-path $build")
load=(-iex "source $root/gdb/load.py")

# live_and_core NAME FUNCTION: stops the program gdb_NAME in the function and runs NAME.py there; then again in its core file.
live_and_core() {
    local name=$1 program=$build/tests/gdb_$1
    export VXUT_EXPECTED=$folder/$name.expected
    VXUT_CORRUPT=1 in_gdb "$name" "${autoload[@]}" -ex "break $2" -ex "run $VXUT_EXPECTED" \
        -ex "generate-core-file $folder/$name.core" -ex "source $source/$name.py" "$program"
    passes "$name"
    in_gdb "$name-core" "${load[@]}" -ex "source $source/$name.py" "$program" "$folder/$name.core"
    passes "$name-core"
}

# emulated NAME FUNCTION: the same for a live program in the emulator.
emulated() {
    local name=$1 program=$build/tests/gdb_$1 socket=$folder/$1.socket pid
    export VXUT_EXPECTED=$folder/$name.expected
    timeout -k 5 100 "${emulator[0]}" -g "$socket" "${emulator[@]:1}" "$program" "$VXUT_EXPECTED" \
        </dev/null >"$folder/$name.out" 2>&1 &
    pid=$!
    for _ in {1..300}; do
        [ ! -S "$socket" ] || break
        sleep 0.1
    done
    in_gdb "$name" "${autoload[@]}" -iex 'set sysroot /' -ex "target remote $socket" -ex "break $2" -ex continue \
        -ex "source $source/$name.py" -ex kill "$program"
    passes "$name"
    kill "$pid" 2>/dev/null
    wait "$pid" 2>/dev/null
}

# installed: the library of the build tree, stripped, in a prefix.
installed() {
    local prefix=$folder/prefix libraries file
    cmake --install "$build" --component debugger --prefix "$prefix" >"$folder/install.log" || exit
    libraries=$(find "$prefix/share/gdb/auto-load" -name 'libVXut.so*-gdb.py' -printf '%h')
    libraries=${libraries#"$prefix/share/gdb/auto-load"}
    if [[ $libraries != "$prefix"/* ]]; then
        echo "FAILED: the printers are not installed for a library in $prefix but in $libraries" >&2
        status=1
        return
    fi
    mkdir -p "$libraries" && cp -d "$build"/libVX{ut,fw}.so* "$libraries" && rm -f "$libraries"/*-gdb.py || exit
    for file in "$libraries"/libVX{ut,fw}.so.*.*; do
        objcopy --only-keep-debug "$file" "$file.debug" && strip --strip-unneeded "$file" &&
            objcopy --add-gnu-debuglink="$file.debug" "$file" || exit
    done
    export VXUT_EXPECTED=$folder/installed.expected
    # Preloaded, because the program finds the library of the build tree.
    in_gdb installed -iex "set auto-load scripts-directory $prefix/share/gdb/auto-load" -iex "add-auto-load-safe-path $prefix" \
        -ex "set environment LD_LIBRARY_PATH $libraries" -ex 'break objectsExist' -ex "run $VXUT_EXPECTED" \
        -ex "info sharedlibrary libVXut" -ex "source $source/values.py" "$build/tests/gdb_values"
    passes installed
    grep -q "$libraries/libVXut.so.1" "$folder/installed.log" || {
        echo "FAILED: the program uses another library" >&2
        status=1
    }
}

if [ ${#emulator[@]} -gt 0 ]; then
    emulated values objectsExist
    emulated locks locksAreHeld
else
    live_and_core values objectsExist
    live_and_core locks locksAreHeld
    installed
fi
[ "$status" -ne 0 ] || echo "$checks runs of $("$gdb" --version | head -n 1)"
exit "$status"
