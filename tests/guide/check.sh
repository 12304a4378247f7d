#!/usr/bin/env bash
# Compares the programs and outputs in the document $1 with the files in the folder of examples $2. The build runs those
# programs and compares their output with the same files.
#
# Before a program, the document has a line with a link to its file, as in [examples/count.cpp](../examples/count.cpp).
# Then each C++ block must be that file, and each text block the file with its output.
#
#   check.sh DOCUMENT EXAMPLES            compares
#   check.sh DOCUMENT EXAMPLES --update   replaces the blocks in the document
set -eu -o pipefail
document=$1 examples=$2 update=${3:-}
folder=$(mktemp -d)
trap 'rm -rf -- "$folder"' EXIT

# Writes the document with the files as blocks, and the name of each file to the list.
: >"$folder/list"
awk -v examples="$examples" -v list="$folder/list" '
    function copy(path,    line, status) {
        while ((status = (getline line <path)) > 0)
            print line
        if (status < 0) {
            printf "no file %s\n", path >"/dev/stderr"
            exit 1
        }
        close(path)
        print path >list
    }
    match($0, /\(\.\.\/examples\/[a-z_]+\.cpp\)/) {
        name = substr($0, RSTART + 13, RLENGTH - 18)
    }
    /^```/ {
        print
        inside = !inside
        skipping = inside && ($0 == "```cpp" || $0 == "```text")
        if (skipping)
            copy(examples "/" name ($0 == "```cpp" ? ".cpp" : ".txt"))
        next
    }
    !skipping { print }' "$document" >"$folder/document"

if [ "$update" = --update ]; then
    cp "$folder/document" "$document"
    exit
fi
diff -u "$document" "$folder/document" || {
    echo "FAILED: the document (-) does not show the files (+); check.sh DOCUMENT EXAMPLES --update replaces the blocks" >&2
    exit 1
}

# A page without blocks, or a program without its output, would show nothing wrong.
programs=$(grep -c '\.cpp$' "$folder/list" || true)
outputs=$(grep -c '\.txt$' "$folder/list" || true)
if [ "$programs" -lt 8 ] || [ "$programs" -ne "$outputs" ]; then
    echo "FAILED: $programs programs, $outputs outputs" >&2
    exit 1
fi
echo "$programs programs"
