#!/bin/sh
# check_tables.sh GENERATOR SOURCE_DIR: every file that the generator writes is the same in the source tree.
set -eu
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT
"$1" "$out"
for table in "$out"/*; do
  committed=$(find "$2" -path "$2/build*" -prune -o -name "${table##*/}" -print)
  [ -n "$committed" ] || { echo "${table##*/} isn't committed"; exit 1; }
  cmp "$table" "$committed"
done
