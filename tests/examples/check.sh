#!/usr/bin/env bash
# Runs an example in an empty folder and compares its standard output with the kept text.
#
#   check.sh .../examples/NAME PROGRAM [EMULATOR...]
#
# NAME.txt is the expected output. NAME.in, if it exists, is the standard input, which is empty otherwise. NAME.sed, if it
# exists, replaces what varies from run to run, such as process IDs. The example must exit with status 0.
set -eu -o pipefail
name=$1 program=$2
shift 2
folder=$(mktemp -d)
trap 'rm -rf -- "$folder"' EXIT
cd "$folder"

input=/dev/null
[ ! -e "$name.in" ] || input=$name.in
filter=/dev/null
[ ! -e "$name.sed" ] || filter=$name.sed
status=0
"$@" "$program" < "$input" > output || status=$?
if [ "$status" -ne 0 ]; then
    cat output
    echo "$program: exit status $status"
    exit 1
fi
sed -f "$filter" output | diff -u "$name.txt" -
