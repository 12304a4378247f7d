# shellcheck shell=bash
# For scripts that compile against the installed headers: sets `build` and `compiler` from $1 and $2, and installs the
# headers of the build tree into $folder/include, a directory that is removed at exit. Exits with 77 if the compiler is
# not installed.
build=$1
compiler=$2

if ! command -v "$compiler" >/dev/null; then
    echo "check.sh: Skipped"
    echo "$compiler is not installed"
    exit 77
fi
folder=$(mktemp -d) || exit
trap 'rm -rf "$folder"' EXIT
export LC_ALL=C

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

cmake --install "$build" --component headers --prefix "$folder" >"$folder/install.log" || fail "the headers are not installed"
