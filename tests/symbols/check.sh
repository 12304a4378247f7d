#!/usr/bin/env bash
# Compares what the libraries in the build tree $2 export with the list $1, and shows that the comparison sees a symbol
# lost and a symbol added.
set -eu
list=$1
build=$2
symbols=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/../../scripts" && pwd)/symbols
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

"$symbols" --compare "$list" "$build"

{
    grep -v ' _ZNK7utility5Array6lengthEv$' "$list"
    echo "VXut _ZN7utility7nothingEv"
} | LC_ALL=C sort >"$folder/list"
expected="lost, though callers may use it:
VXut utility::nothing()
added:
VXut utility::Array::length() const"
! "$symbols" --compare "$folder/list" "$build" >"$folder/difference" || fail "a lost and an added symbol went unseen"
[ "$(head -n 4 "$folder/difference")" = "$expected" ] || fail "they are shown as: $(cat "$folder/difference")"
! "$symbols" --compare "$list" "$folder" >/dev/null 2>&1 || fail "a folder without libraries went unseen"
