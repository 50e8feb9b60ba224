#!/usr/bin/env bash
# usage: run_without_display_test.sh SOURCE_DIRECTORY PROGRAM
#
# scripts/run_without_display makes the sample's pages, and fails when there are
# none to make.
set -euo pipefail
script=$1/scripts/run_without_display
sample=$1/examples/heat
program=$2

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export HOME=$scratch
cd "$scratch"

fail() {
  echo "FAILED: $1" >&2
  exit 1
}

# run_in DIRECTORY ARGUMENT...
run_in() (
  cd "$1"
  shift
  "$script" "$scratch/window.png" "$program" "$@" >"$scratch/output"
)

cp -r "$sample" sample
rm -rf sample/HTML
run_in sample -r -e f90 || fail "the sample gives no pages"
sources=$(find sample -name '*.f90' | wc -l)
grep -qx "$((sources + 1)) pages: $scratch/sample/HTML/index.html" output ||
  fail "not one page per source and an index: $(cat output)"
[ "$(identify -format '%w x %h' window.png)" = '529 x 363' ] ||
  fail "no picture of the window"

mkdir empty
export ZELKOR_PATIENCE=3
if run_in empty -r -e f90 2>errors; then fail "no sources, but status 0"; fi
grep -qx 'No pages were made.' errors || fail "no message about the missing pages"

run_in empty -h || fail "the program's own status is not passed on"
if run_in empty nonsense 2>errors; then fail "nonsense, but status 0"; fi
