#!/usr/bin/env bash
# Runs an example in an empty folder and compares its standard output with the kept text.
#
#   check.sh .../examples/NAME PROGRAM [EMULATOR...]
#
# NAME.txt is the expected output. NAME.in, if it exists, is the standard input, which is empty otherwise. NAME.sed, if it
# exists, replaces what varies from run to run, such as process IDs. NAME.status, if it exists, is the exit status, which
# is 0 otherwise.
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
expected=0
[ ! -e "$name.status" ] || expected=$(cat "$name.status")
status=0
"$@" "$program" < "$input" > output || status=$?
if [ "$status" -ne "$expected" ]; then
    cat output
    echo "$program: exit status $status"
    exit 1
fi
sed -E -f "$filter" output | diff -u "$name.txt" -
