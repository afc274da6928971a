#!/bin/sh
# languages_test.sh LIBRARY DOCUMENT: runs the programs of docs/languages.md whose languages are there.
set -eu
folder=$(dirname "$1") document=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export LD_LIBRARY_PATH="$folder"

# block LANGUAGE: the program in that language.
block() { sed -n "/^\`\`\`$1\$/,/^\`\`\`\$/p" "$document" | sed '1d;$d'; }
# expect COMMAND...: it prints a status for the overflow of e^1000, and the three results.
expect() {
  printed=$("$@")
  [ "$(echo "$printed" | tr A-Z a-z)" = "$overflow 1.0 2.718281828459045 inf" ] || { echo "FAILED: $* printed $printed"; exit 1; }
}
overflow=$(sed -n 's/.*nuvStatusOverflow *= *\([0-9]*\).*/\1/p' "$(dirname "$0")/../frame/include/qorvane.h")

block python > "$work/program.py"
expect /usr/bin/python3 "$work/program.py"
if command -v rustc > /dev/null; then
  block rust > "$work/program.rs"
  rustc -A warnings -L "$folder" -o "$work/program" "$work/program.rs"
  expect "$work/program"
else
  echo "SKIP: no rustc"
fi
