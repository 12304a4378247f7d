#!/usr/bin/env bash
# Installs the headers of the build tree $1 and includes them as a client does that asks the compiler $2 for every
# warning; $3 and on are further options for the compiler.
#
#   - each header on its own, and the umbrella header under each standard, without a warning;
#   - the headers for C also as C, and as a C++ older than that of the library;
#   - every other header as C++98, and the umbrella header as C++11 and C++14: the first error asks for C++17;
#   - the umbrella header includes all the others.
set -u
# shellcheck source=tests/support/installed_headers.sh
. "$(dirname -- "${BASH_SOURCE[0]}")/../support/installed_headers.sh"
options=("${@:3}")
for_c=(ut_CExport.h ut_Platform.h ut_Switches.h ut_md5.h)
demand='VXut needs C++17 or later: compile with -std=c++17'

headers=$folder/include/VXut
# Not as system headers, in which a compiler does not report its warnings.
options+=(-I"$folder/include")

warnings=(-Wall -Wextra -Wpedantic -Wshadow -Wconversion)
warnings_cxx=(-Wnon-virtual-dtor)
one_error=-fmax-errors=1
if "$compiler" --version | grep -q clang; then
    warnings+=(-Weverything -Wno-padded)
    warnings_cxx+=(-Wno-c++98-compat -Wno-c++98-compat-pedantic)
    one_error=-ferror-limit=1
fi

# compiles LANGUAGE STANDARD HEADER OPTION...: whether a source that includes the header compiles without a warning.
compiles() {
    local extra=("${@:4}")
    [ "$1" = c ] || extra+=("${warnings_cxx[@]}")
    # C wants at least one declaration.
    printf '#include <VXut/%s>\nextern int client;\n' "$3" |
        "$compiler" "${options[@]}" -x "$1" -std="$2" "${warnings[@]}" -Werror "${extra[@]}" - ||
        fail "$3 as $2"
}

# demands_cxx17 STANDARD HEADER: whether the first error asks for C++17.
demands_cxx17() {
    local first
    first=$(echo "#include <VXut/$2>" |
        "$compiler" "${options[@]}" -x c++ -std="$1" -fsyntax-only "$one_error" - 2>&1 | grep -m 1 'error:')
    [[ $first == *"$demand"* ]] || fail "$2 as $1 begins with: ${first:-no error}"
}

check_header() {
    compiles c++ c++17 "$1" -fsyntax-only
    if [[ " ${for_c[*]} " == *" $1 "* ]]; then
        compiles c c99 "$1" -fsyntax-only
        compiles c++ c++98 "$1" -fsyntax-only
    else
        demands_cxx17 c++98 "$1"
    fi
}

cd "$headers" || exit
all=(*.h)
diff <(printf '%s\n' "${all[@]}" | grep -vx VXut.h | sort) <(sed -n 's/^#include "\(.*\)"$/\1/p' VXut.h | sort) ||
    fail "VXut.h includes other headers than those that are installed"
for standard in c++17 c++20 c++2b; do
    compiles c++ "$standard" VXut.h -O2 -S -o /dev/null
done
for standard in c++11 c++14; do
    demands_cxx17 "$standard" VXut.h
done
for header in "${all[@]}"; do
    check_header "$header"
done
echo "${#all[@]} headers, $("$compiler" --version | head -n 1)"
