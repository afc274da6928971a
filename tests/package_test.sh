#!/bin/sh
# package_test.sh PREFIX SOURCE_DIR CC KIND...: builds and runs programs against what is installed in PREFIX, by find_package and by pkg-config, with each
# KIND of library, Shared or Static, and finds the kind in the program that was asked for.
set -eu
prefix=$1 source=$2 cc=$3
shift 3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "FAILED: $*"; exit 1; }

libdir=$(dirname "$(find "$prefix" -name 'libTarnwell.Qorvane.*' | head -n 1)")
export LD_LIBRARY_PATH="$libdir" PKG_CONFIG_PATH="$libdir/pkgconfig"
grep -q '^Libs.private: .*-l' "$libdir/pkgconfig/qorvane.pc" || fail "qorvane.pc doesn't name the OpenMP runtime"

# check KIND PROGRAM: runs it, and looks whether it needs the shared library.
check() {
  "$2" > /dev/null || fail "$2 returned $?"
  needed=$(readelf -d "$2" | grep -c 'NEEDED.*Tarnwell' || true)
  [ "$needed" = "$([ "$1" = Shared ] && echo 1 || echo 0)" ] || fail "$2 isn't linked to the $1 library"
}

# configured LANGUAGE-FOLDER KIND: the folder of a program that was built by find_package; without KIND no component is asked for.
configured() {
  folder=$work/$(basename "$1")$2
  cmake -S "$source/tests/$1" -B "$folder" -DCMAKE_PREFIX_PATH="$libdir;$prefix" -DCMAKE_C_COMPILER="$cc" -DQORVANE_KIND="$2" > "$work/log" 2>&1 &&
    cmake --build "$folder" >> "$work/log" 2>&1 || { cat "$work/log" >&2; fail "$1 $2 can't be built"; }
  echo "$folder"
}

for kind in "$@"; do
  folder=$(configured consumer "$kind")
  check "$kind" "$folder/consumer"
  check "$kind" "$folder/spans"
  library=
  [ "$kind" = Shared ] || library='s/-lTarnwell.Qorvane/-l:libTarnwell.Qorvane.a/'
  "$cc" -std=c11 -pedantic -Wall -Werror "$source/tests/consumer/main.c" -o "$work/main$kind" \
    $(pkg-config "$([ "$kind" = Shared ] && echo --print-errors || echo --static)" --cflags --libs qorvane | sed "$library")
  check "$kind" "$work/main$kind"
done
folder=$(configured consumer '')
check "$1" "$folder/consumer"
