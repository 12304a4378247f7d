#!/usr/bin/env bash
# Reads off the libraries and the program $2... how they are hardened, and shows with a library that the compiler $1 makes
# without any of it that each lack is seen.
set -eu
export LC_ALL=C
compiler=$1
shift
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# The functions that the file $1 exports and that begin without endbr64, where indirect branches must not land. _start is
# the platform's.
unprotected_targets() {
    {
        readelf --dyn-syms -W -- "$1" | awk '$4 == "FUNC" && $5 != "LOCAL" && $7 != "UND" && $8 != "_start" { print "symbol", $2, $8 }'
        objdump -d --no-show-raw-insn -j .text -- "$1" |
            sed -n 's/^ *\([0-9a-f]*\):[[:space:]]*\([a-z0-9]*\).*/\1 \2/p'
    } | awk '
        $1 == "symbol" { sub(/^0+/, "", $2); name[$2] = $3; next }
        $1 in name && $2 != "endbr64" { print name[$1] }'
}

# Names what the file $1 lacks, one per line.
missing_from() {
    local file=$1 header segments dynamic symbols
    header=$(readelf -hW -- "$file")
    segments=$(readelf -lW -- "$file")
    dynamic=$(readelf -dW -- "$file")
    symbols=$(readelf --dyn-syms -W -- "$file" | awk '$7 == "UND" { sub(/@.*/, "", $8); print $8 }')

    grep -q 'Type: *DYN ' <<<"$header" || echo "position independence"
    grep -q '^ *GNU_RELRO ' <<<"$segments" || echo "read-only relocations"
    grep -qE '\((FLAGS|FLAGS_1|BIND_NOW)\).*NOW|\(BIND_NOW\)' <<<"$dynamic" || echo "binding at load"
    grep -qE '^ *GNU_STACK .* RW +0x' <<<"$segments" || echo "a stack that is not executable"
    ! grep -qE '\(TEXTREL\)|TEXTREL' <<<"$dynamic" || echo "code without relocations"
    # shellcheck disable=SC2016
    ! sed -n 's/.*(R\(UN\)\{0,1\}PATH).*\[\(.*\)\]$/\2/p' <<<"$dynamic" | tr : '\n' | grep -qvE '^\$ORIGIN(/|$)' ||
        echo "a run path that begins with \$ORIGIN"
    grep -qx __stack_chk_fail <<<"$symbols" || echo "stack protector"
    grep -v '^__stack_chk_' <<<"$symbols" | grep -q '_chk$' || echo "fortified functions"
    if grep -q 'Machine: .*X86-64' <<<"$header"; then
        [ -z "$(unprotected_targets "$file")" ] || echo "endbr64"
    fi
}

# A stack frame of more than a page is probed page by page: a write of 0 bits through the stack pointer.
probes_stack() {
    # shellcheck disable=SC2016
    objdump -d --no-show-raw-insn -j .text -- "$1" | grep -qE 'orq +\$0x0,(0x[0-9a-f]+)?\(%rsp\)'
}

x86_64=0
unprotected=()
if "$compiler" -dumpmachine | grep -q '^x86_64'; then
    x86_64=1
    unprotected=(-fcf-protection=none)
fi
cat >"$folder/bare.cpp" <<'END'
#include <cstdio>
extern "C" int exported(const char* text) {
    char copy[64];
    std::sprintf(copy, "%s", text);
    return copy[5];
}
END
"$compiler" -O2 -w -shared -fPIC -U_FORTIFY_SOURCE -fno-stack-protector -o "$folder/bare.so" "$folder/bare.cpp" \
    -Wl,-z,norelro -Wl,-z,lazy -Wl,-z,execstack -Wl,-rpath,/tmp "${unprotected[@]}"
expected="read-only relocations
binding at load
a stack that is not executable
a run path that begins with \$ORIGIN
stack protector
fortified functions"
[ $x86_64 -eq 0 ] || expected+="
endbr64"
found=$(missing_from "$folder/bare.so")
[ "$found" = "$expected" ] || {
    printf 'FAILED: of a library without hardening, these were missed:\n%s\n' "$found" >&2
    exit 1
}

status=0
probing=0
for file in "$@"; do
    found=$(missing_from "$file")
    [ -z "$found" ] || {
        printf 'FAILED: %s lacks:\n%s\n' "$file" "$found" >&2
        status=1
    }
    ! probes_stack "$file" || probing=1
done
if [ $x86_64 -eq 1 ] && [ $probing -eq 0 ]; then
    echo "FAILED: no large stack frame is probed" >&2
    status=1
fi
[ $status -ne 0 ] || echo "$# files are hardened"
exit $status
