#!/usr/bin/env bash
# Compares the includes of the source tree $1 with docs/architecture.md, and shows that scripts/check-levels finds each
# kind of fault in a copy of the tree.
# shellcheck disable=SC2016  # the expressions are for sed
set -u
root=$1
if ! command -v python3 >/dev/null; then
    echo "check.sh: Skipped"
    echo "python3 is not installed"
    exit 77
fi
python3 -B "$root/scripts/check-levels" || exit
folder=$(mktemp -d) || exit
trap 'rm -rf "$folder"' EXIT
status=0

# finds MESSAGE COMMAND...: whether the message is printed after the command has changed a copy of the tree.
finds() {
    local message=$1 copy=$folder/tree output
    rm -rf "$copy" && mkdir "$copy" && cp -r "$root/framework" "$root/src" "$root/docs" "$copy" || exit
    (cd "$copy" && "${@:2}") || exit
    if output=$(python3 -B "$root/scripts/check-levels" --root "$copy") || [[ $output != *"$message"* ]]; then
        printf 'FAILED: after %s, "%s" is not among\n%s\n' "${*:2}" "$message" "$output" >&2
        status=1
    fi
}

architecture=docs/architecture.md
finds 'ut_Array (level 4) uses ut_DateTime (level 8): not in the list of exceptions' \
    sed -i '$a #include "ut_DateTime.h"' src/util/ut_Array.cpp
finds 'ut_HexText (level 2) uses ut_DebugCrash (level 7)' \
    sed -i '$a #include "ut_Debug.h"\nvoid f() { utility::Debug::ErrorContext(); }' src/util/internal/ut_HexText.cpp
finds 'headers include each other: ut_Array ut_IntArray' sed -i '$a #include "ut_IntArray.h"' src/util/ut_Array.h
finds 'a cycle of 2 without an exception: ut_Array ut_IntArray' sed -i '$a #include "ut_IntArray.h"' src/util/ut_Array.cpp
finds ', more than 6: ' sed -i '$a #include "ut_PutStream.h"' src/util/internal/ut_Trace.h
finds 'ut_New is not in the table' touch src/util/ut_New.h
finds 'src/util/ut_New.h is in 0 families' touch src/util/ut_New.h
finds 'ut_Gone is in the table and not in the tree' sed -i 's/`ut_Array`/& `ut_Gone`/' $architecture
finds 'ut_Array is listed twice' sed -i 's/`ut_Array`/& &/' $architecture
finds 'exception ut_List -> ut_Array: there is no such arrow' sed -i '$a - `ut_List` -> `ut_Array`: why' $architecture
finds 'exception ut_IntArray -> ut_Array: the arrow is allowed anyway' \
    sed -i '$a - `ut_IntArray` -> `ut_Array`: why' $architecture
finds 'ut_Array.h is public and includes internal/ut_Trace.h' sed -i '$a #include "internal/ut_Trace.h"' src/util/ut_Array.h
finds 'includes ut_Trace.h by another folder' sed -i '$a #include "ut_Trace.h"' src/util/ut_Array.cpp
finds 'ut_Array.cpp includes ut_Nothing.h' sed -i '$a #include "ut_Nothing.h"' src/util/ut_Array.cpp
finds 'levels.dot is not current' sed -i 's/ut_Array;/ut_Other;/' docs/levels.dot
finds 'levels.svg is not current' sed -i 's/>ut_Array</>ut_Other</' docs/levels.svg
exit $status
