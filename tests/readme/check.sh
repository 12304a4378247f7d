#!/usr/bin/env bash
# Compiles each C++ block of README.md with the C++ compiler $2 against the build tree $1, runs it, and compares its output
# with the text block after it. A text block that begins with "$ ./scripts/console" is compared with the output of the
# console $3, if that is not empty. Also checks that all links between the documents lead to files. What follows $3 runs a
# program that was built.
set -eu -o pipefail
build=$1
compiler=$2
console=$3
shift 3
root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/../.." && pwd)
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

# Writes each block to a file named after its number and language.
awk -v folder="$folder" '
    /^```/ {
        if (file == "") { file = sprintf("%s/%02d.%s", folder, ++count, substr($0, 4)); printf "" >file }
        else { close(file); file = "" }
        next
    }
    file != "" { print >file }' "$root/README.md"

# A block without a main function becomes the body of one.
compile() {
    local block=$1
    if ! grep -q 'int main' "$block"; then
        { printf '#include <cstdio>\n#include <VXut/VXut.h>\nint main() {\n'; cat "$block"; echo '}'; } >"$folder/body"
        mv "$folder/body" "$block"
    fi
    "$compiler" -std=c++17 -Wall -Wextra -Werror -I"$build/include" "$block" -o "${block%.cpp}" \
        -L"$build" -lVXut -lVXfw -Wl,-rpath,"$build" || fail "a block of the README does not compile: $(cat "$block")"
}

compare() {
    diff "$1" "$2" || fail "the README shows another output (<) than the program prints (>)"
}

programs=0
outputs=0
printed=
for block in "$folder"/*.*; do
    case $block in
    *.cpp)
        [ -z "$printed" ] || fail "the README does not show what the program before $(head -n 1 "$block") prints"
        compile "$block"
        printed=${block%.cpp}.printed
        "$@" "${block%.cpp}" >"$printed"
        programs=$((programs + 1))
        ;;
    *.text)
        if read -r prompt script option command <"$block" && [ "$prompt $script $option" = "\$ ./scripts/console -c" ]; then
            [ -n "$console" ] || continue
            command=${command#\"}
            "$@" "$console" -c "${command%\"}" >"$folder/printed"
            sed -i 1d "$block"
            compare "$block" "$folder/printed"
        else
            [ -n "$printed" ] || fail "the README shows an output without a program"
            compare "$block" "$printed"
            printed=
        fi
        outputs=$((outputs + 1))
        ;;
    esac
done
[ -z "$printed" ] || fail "the README does not show what its last program prints"
[ "$programs" -ge 2 ] || fail "only $programs programs were found in the README"

cd "$root"
links=0
for document in ./*.md docs/*.md; do
    while read -r link; do
        [ -e "$(dirname "$document")/$link" ] || fail "$document links to $link, which does not exist"
        links=$((links + 1))
    done < <(grep -oE '\]\([^)#:]+' "$document" | sed 's/^](//')
done
[ "$links" -gt 0 ] || fail "no links were found"
echo "$programs programs and $outputs outputs of the README, and $links links are right"
