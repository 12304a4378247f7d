#!/usr/bin/env bash
# Lists the processor time that each public header takes to compile alone, the slowest first.
#
#   header_times.sh INCLUDE [COMPILER]   for the headers in the folder INCLUDE/VXut
#
# Exits with 1 if a header takes more than a second or does not compile. A header above that is measured twice more, and
# the shortest time counts.
set -u -o pipefail
include=$1 compiler=${2:-c++}
limit=1000
TIMEFORMAT='%3U %3S'
export LC_ALL=C
results=$(mktemp)
trap 'rm -f "$results"' EXIT

# milliseconds HEADER: of user and system time
milliseconds() {
    local times
    times=$({ time echo "#include <VXut/$1>" |
        "$compiler" -x c++ -std=c++17 -fsyntax-only -I"$include" - >&2; } 2>&1) || {
        echo "$times" >&2
        return 1
    }
    awk '{ printf "%d\n", ($1 + $2) * 1000 + 0.5 }' <<<"$times"
}

status=0
for header in "$include"/VXut/*.h; do
    header=${header##*/}
    shortest=
    for _ in 1 2 3; do
        taken=$(milliseconds "$header") || {
            echo "$header does not compile" >&2
            exit 1
        }
        [ -n "$shortest" ] && [ "$taken" -ge "$shortest" ] || shortest=$taken
        [ "$shortest" -gt "$limit" ] || break
    done
    mark=
    [ "$shortest" -le "$limit" ] || { mark='  over one second' && status=1; }
    printf '%5d ms  %s%s\n' "$shortest" "$header" "$mark" >>"$results"
done
[ -s "$results" ] || { echo "no header in $include/VXut" >&2 && exit 1; }
sort -rn "$results"
exit "$status"
