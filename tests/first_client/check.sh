#!/usr/bin/env bash
# Assembles the client that was compiled with the first headers, $1, with the compiler $2, links it with the libraries of the
# build tree $3, and compares its output. What follows $3 runs a program that was built.
set -eu
assembly=$1
compiler=$2
build=$3
shift 3
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
"$compiler" "$assembly" -L"$build" -lVXut -lVXfw -Wl,-rpath,"$build" -o "$folder/client"
"$@" "$folder/client" >"$folder/printed"
cat >"$folder/expected" <<'END'
ports=4 7
<[abcdef]><[ghijkl]>
30 2 1
500a09818d5f1234 fe80::1 /a b
1239 ut_PutStream
END
diff "$folder/expected" "$folder/printed" || {
    echo "FAILED: the first client works differently with these libraries (>)" >&2
    exit 1
}
echo "the first client works with these libraries"
