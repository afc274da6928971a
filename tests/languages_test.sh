#!/bin/sh
# languages_test.sh LIBRARY DOCUMENT: runs the programs of docs/languages.md whose languages are there.
set -eu
folder=$(cd "$(dirname "$1")" && pwd) document=$2 header=$(cd "$(dirname "$0")/../frame/include" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export LD_LIBRARY_PATH="$folder"

# block LANGUAGE: the program in that language.
block() { sed -n "/^\`\`\`$1\$/,/^\`\`\`\$/p" "$document" | sed '1d;$d'; }
# expect COMMAND...: it prints a status for the overflow of e^1000, and the three results.
expect() {
  printed=$("$@")
  [ "$(echo $printed | tr A-Z a-z | sed 's/ 1 / 1.0 /')" = "$overflow 1.0 2.718281828459045 inf" ] || { echo "FAILED: $* printed $printed"; exit 1; }
}
overflow=$(sed -n 's/.*nuvStatusOverflow *= *\([0-9]*\).*/\1/p' "$header/qorvane.h")

block python > "$work/program.py"
expect /usr/bin/python3 "$work/program.py"
if command -v rustc > /dev/null; then
  block rust > "$work/program.rs"
  rustc -A warnings -L "$folder" -o "$work/program" "$work/program.rs"
  expect "$work/program"
else
  echo "SKIP: no rustc"
fi
if command -v R > /dev/null; then
  block c > "$work/qorvane.c"
  block r > "$work/program.r"
  (cd "$work" && PKG_CPPFLAGS="-I$header" R CMD SHLIB qorvane.c -L"$folder" -lTarnwell.Qorvane > log 2>&1) || { cat "$work/log"; exit 1; }
  cd "$work"
  expect Rscript program.r
else
  echo "SKIP: no R"
fi
if command -v julia > /dev/null; then
  block julia > "$work/program.jl"
  expect julia "$work/program.jl"
else
  echo "SKIP: no julia"
fi
