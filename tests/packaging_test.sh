#!/usr/bin/env bash
# packaging_test.sh BUILD_DIR SOURCE_DIR: what a user meets before the first result: the library inside another project, installed in several ways, on a
# processor that it isn't for; and what the scripts say on a system that they can't prepare. The library is compiled once, inside a superproject.
set -euo pipefail
build=$1 source=$2
prefix=$build/prefix super=$build/super
rm -rf "$build"
mkdir -p "$build"
fail() { echo "FAILED: $*"; exit 1; }
quietly() { "$@" > "$build/log" 2>&1 || { cat "$build/log"; fail "$*"; }; }
configure() { quietly cmake -S "$source/tests/superproject" -B "$super" -G "Unix Makefiles" -DQORVANE_SOURCE="$source" -DQORVANE_WERROR=ON "$@"; }
built() { quietly cmake --build "$super" -j2; }
installed() { quietly cmake --install "$super" "$@"; }

echo "inside a project with fast-math options, another instruction set and no build type"
configure
built
"$super/user_shared"
"$super/user_static"
mkdir -p "$super/qorvane/CMakeFiles"
"$source/tests/library_test.sh" "$super/qorvane" "$source"
# The code is that of the library by itself: a source of each ending.
quietly cmake -S "$source" -B "$build/plain" -G "Unix Makefiles" -DQORVANE_DEVELOPMENT=OFF -DQORVANE_EXAMPLES=ON
code() { objdump -d --no-show-raw-insn "$1/CMakeFiles/qorvane_objects.dir/$2.cpp.o" | tail -n +4; }
for ending in sse3 ssse3 sse41 avx fma; do
  object=$(cd "$source" && find . -name "*_$ending.cpp" -not -path "./build*" -not -path "./tests/*" | sort | head -n 1)
  [ -n "$object" ] || continue
  object=${object#./} object=${object%.cpp}
  quietly make -C "$build/plain" "$object.o"
  [ -n "$(code "$super/qorvane" "$object")" ] || fail "$object wasn't found"
  diff <(code "$build/plain" "$object") <(code "$super/qorvane" "$object") > "$build/log" || { head "$build/log"; fail "$object is compiled otherwise in a superproject"; }
done

echo "the demonstration alone asks for no more than the compiler"
grep -iE '(mpfr|gmp|sleef|gtest|benchmark)_(library|dir)' "$build/plain/CMakeCache.txt" && fail "the tests' packages are looked for"

echo "installed from a superproject: only if it asks for it, and findable without a build type"
installed --prefix "$prefix"
[ -z "$(find "$prefix" -type f 2> /dev/null)" ] || fail "the superproject's installation has the library in it"
configure -DQORVANE_INSTALL=ON
built
installed --prefix "$prefix"
"$source/tests/package_test.sh" "$prefix" "$source" cc Shared Static

echo "a Fortran project with the static library"
quietly cmake -S "$source/tests/consumer/fortran" -B "$build/fortran" -DCMAKE_PREFIX_PATH="$prefix"
quietly cmake --build "$build/fortran"
"$build/fortran/consumer"

echo "Debian packages, and the binary interface"
configure -DQORVANE_PACKAGES=ON -DCMAKE_INSTALL_LIBDIR=lib/$(cc -print-multiarch)
built
"$source/tests/packages_test.sh" "$super" "$source"

echo "a library folder with an absolute name"
configure -DQORVANE_PACKAGES=OFF -DCMAKE_INSTALL_PREFIX="$build/absolute" -DCMAKE_INSTALL_LIBDIR="$build/elsewhere/lib"
built
installed
"$source/tests/package_test.sh" "$build/elsewhere" "$source" cc Shared Static

echo "the static library alone; over an installation of both; and both over it"
configure -UCMAKE_INSTALL_PREFIX -UCMAKE_INSTALL_LIBDIR -DBUILD_SHARED_LIBS=OFF
built
installed --prefix "$prefix"
installed --prefix "$build/static"
"$source/tests/package_test.sh" "$build/static" "$source" cc Static
"$source/tests/package_test.sh" "$prefix" "$source" cc Shared Static
cp -R "$prefix/." "$build/static"
"$source/tests/package_test.sh" "$build/static" "$source" cc Shared Static
cmake -S "$source/tests/consumer" -B "$build/none" -DCMAKE_PREFIX_PATH="$prefix" -DQORVANE_KIND=Dynamic > "$build/log" 2>&1 && fail "there is a component Dynamic"
grep -q "the component Dynamic isn't installed" "$build/log" || fail "an unknown component isn't named"

echo "another processor"
cmake -S "$source" -B "$build/aarch64" -DCMAKE_SYSTEM_NAME=Linux -DCMAKE_SYSTEM_PROCESSOR=aarch64 -DCMAKE_TRY_COMPILE_TARGET_TYPE=STATIC_LIBRARY \
  -DCMAKE_{C,CXX}_COMPILER_TARGET=aarch64-linux-gnu -DCMAKE_C_COMPILER=clang-14 -DCMAKE_CXX_COMPILER=clang++-14 > "$build/log" 2>&1 && fail "builds for aarch64"
[ "$(grep -c Error "$build/log")" = 1 ] && grep -q 'x86-64 processors only' "$build/log" || { cat "$build/log"; fail "aarch64 isn't refused with one sentence"; }

echo "the scripts: unknown stages, and a system without apt-get"
status=0
said=$("$source/test.sh" release true 2>&1) || status=$?
[ "$status" = 2 ] && grep -q 'no stage true' <<< "$said" || fail "test.sh took the stage true: $said"
mkdir "$build/bin"
for program in bash id grep; do ln -s "$(command -v "$program")" "$build/bin"; done
said=$(PATH=$build/bin "$source/tools/require_packages.sh" first second 2>&1) || fail "require_packages.sh stops where it can't know: $said"
grep -q 'first second' <<< "$said" || fail "require_packages.sh doesn't show its list: $said"
