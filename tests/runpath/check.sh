#!/usr/bin/env bash
# Looks for empty elements in the run paths of the programs and libraries of the build tree $1: the loader would look for
# libraries in the current directory there. Starts the program $2, with the words $3... in front of it where it needs an
# emulator, from a folder that holds a broken library of a name that the program needs.
set -eu
build=$1
program=$2
shift 2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
unset LD_LIBRARY_PATH

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

# "Library runpath: [$ORIGIN/../]" of a file that has one.
run_path() {
    LC_ALL=C readelf -d -- "$1" 2>/dev/null | sed -n 's/.*(R\(UN\)\{0,1\}PATH).*\[\(.*\)\]$/[\2]/p'
}

files=0
while IFS= read -r -d '' file; do
    path=$(run_path "$file")
    [ -n "$path" ] || continue
    files=$((files + 1))
    case ${path:1:-1} in
    "" | :* | *: | *::*) fail "$file has the run path $path" ;;
    esac
done < <(find "$build" -type f -perm -u+x ! -name '*.cmake' -print0)
[ -n "$(run_path "$program")" ] || fail "$program has no run path"

echo "not a library" >"$folder/libgcc_s.so.1"
cd "$folder"
"$@" "$program" -c "path /a/../b" </dev/null | grep -q '^normal  */b$' ||
    fail "$program does not start from a folder with a library of the same name as its own"
echo "$files run paths hold no empty element"
