#!/bin/sh
# install_test.sh BUILD_DIR SOURCE_DIR CC: installs, then builds and runs a C program against what was installed, by find_package and by pkg-config.
set -eu
build=$1 source=$2 cc=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cmake --install "$build" --prefix "$work/prefix" > "$work/log"
cmake -S "$source/tests/consumer" -B "$work/consumer" -DCMAKE_PREFIX_PATH="$work/prefix" -DCMAKE_C_COMPILER="$cc" >> "$work/log"
cmake --build "$work/consumer" >> "$work/log"
"$work/consumer/consumer"
libdir=$(dirname "$(find "$work/prefix" -name qorvane.pc)")
export PKG_CONFIG_PATH="$libdir"
grep -q '^Libs.private: .*-l' "$libdir/qorvane.pc"
static=
[ -e "$libdir/../libTarnwell.Qorvane.so" ] || static=--static
"$cc" -std=c11 -pedantic -Wall -Werror "$source/tests/consumer/main.c" -o "$work/main" $(pkg-config $static --cflags --libs qorvane)
LD_LIBRARY_PATH="$libdir/.." "$work/main"
