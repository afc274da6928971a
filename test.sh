#!/usr/bin/env bash
# Installs what is missing (Debian packages, as root), builds, and runs every test. Stages: format, release, static, sanitize, clang, fuzz;
# without an argument all of them.
set -euo pipefail
cd "$(dirname "$0")"

tools/require_packages.sh g++ cmake python3 pkg-config binutils libmpfr-dev libmpc-dev libgmp-dev libgtest-dev libbenchmark-dev libsleef-dev libomp-14-dev \
  clang-14 clang-format-14 libclang-rt-14-dev libfuzzer-14-dev qemu-user llvm gnuplot-nox

# build NAME CMAKE_OPTION...: configures build-NAME (build for release) and builds it.
build() {
  local folder=build-$1
  [ "$1" = release ] && folder=build
  shift
  cmake -S . -B "$folder" -DQORVANE_WERROR=ON "$@" > /dev/null
  echo "building in $folder"
  cmake --build "$folder" -j2 > "$folder/build.log" 2>&1 || { grep -E -A8 'error|undefined' "$folder/build.log" || cat "$folder/build.log"; exit 1; }
}

format() {
  git ls-files '*.cpp' '*.h' '*.c' | xargs clang-format-14 --dry-run --Werror
}
release() {
  build release -DCMAKE_BUILD_TYPE=Release
  ctest --test-dir build -j2 --output-on-failure --progress
}
static() {
  build static -DBUILD_SHARED_LIBS=OFF -DQORVANE_DEVELOPMENT=OFF
  tests/install_test.sh "$PWD/build-static" "$PWD" cc
}
sanitize() {
  build sanitize -DCMAKE_BUILD_TYPE=RelWithDebInfo -DQORVANE_SANITIZE=ON
  ctest --test-dir build-sanitize -j2 --output-on-failure --progress
}
clang() {
  build clang -DCMAKE_BUILD_TYPE=Release -DCMAKE_C_COMPILER=clang-14 -DCMAKE_CXX_COMPILER=clang++-14
  ctest --test-dir build-clang -j2 --output-on-failure --progress
}
fuzz() {
  build fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_C_COMPILER=clang-14 -DCMAKE_CXX_COMPILER=clang++-14 -DQORVANE_FUZZ=ON -DQORVANE_DEVELOPMENT=OFF -DBUILD_SHARED_LIBS=OFF
  local log
  log=$(mktemp -d)
  find build-fuzz/tests/fuzz -name 'fuzz_*' -type f -perm -1 -printf '%f\n' | xargs -P2 -I{} sh -c \
    "./build-fuzz/tests/fuzz/{} -max_total_time=\${FUZZ_SECONDS:-30} -max_len=1284 -len_control=0 -artifact_prefix=$log/ > $log/{} 2>&1 || { cat $log/{}; exit 255; }"
  for shape in "$log"/*; do echo "$(basename "$shape"): $(tail -n 1 "$shape")"; done
}

stages=("$@")
[ ${#stages[@]} -gt 0 ] || stages=(format release static sanitize clang fuzz)
for stage in "${stages[@]}"; do
  SECONDS=0
  echo "== $stage"
  "$stage"
  echo "== $stage: passed after $SECONDS s"
done
