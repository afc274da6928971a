#!/usr/bin/env bash
# Installs what is missing (Debian packages, as root), builds, and runs every test.
#   test.sh [STAGE...]      the stages in the given order; all of them without an argument
set -euo pipefail
cd "$(dirname "$0")"

all=(format release packaging python tidy sanitize clang fuzz)
stages=("$@")
[ ${#stages[@]} -gt 0 ] || stages=("${all[@]}")
for stage in "${stages[@]}"; do
  [[ " ${all[*]} " == *" $stage "* ]] || { echo "test.sh: no stage $stage; the stages are ${all[*]}" >&2; exit 2; }
done

tools/require_packages.sh g++ gfortran cmake make python3 python3-mpmath python3-dev python3-numpy python3-pytest pkg-config binutils libmpfr-dev libmpc-dev libgmp-dev libgtest-dev libbenchmark-dev libsleef-dev libomp-14-dev \
  clang-14 clang-format-14 clang-tidy-14 libclang-rt-14-dev libfuzzer-14-dev qemu-user llvm mandoc lintian abigail-tools dpkg-dev file r-base-core rustc

# build NAME CMAKE_OPTION...: configures build-NAME (build for release) and builds it.
build() {
  local folder=build-$1
  [ "$1" = release ] && folder=build
  shift
  cmake -S . -B "$folder" -DQORVANE_WERROR=ON "$@" > /dev/null
  echo "building in $folder"
  cmake --build "$folder" -j2 > "$folder/build.log" 2>&1 || { grep -E -A8 'error:|undefined' "$folder/build.log" || cat "$folder/build.log"; exit 1; }
}

with_clang=(-DCMAKE_BUILD_TYPE=Release -DCMAKE_C_COMPILER=clang-14 -DCMAKE_CXX_COMPILER=clang++-14)
format() {
  git ls-files '*.cpp' '*.h' '*.c' | xargs clang-format-14 --dry-run --Werror
}
release() {
  build release -DCMAKE_BUILD_TYPE=Release
  ctest --test-dir build -j2 --output-on-failure --progress
}
packaging() {
  tests/packaging_test.sh "$PWD/build-packaging" "$PWD"
}
python() {
  build release -DCMAKE_BUILD_TYPE=Release -DQORVANE_PYTHON=ON -DPython3_EXECUTABLE=/usr/bin/python3  # beside the library that is there
  PYTHONPATH=build/python /usr/bin/python3 -m pytest -q -p no:cacheprovider python/test_qorvane.py
}
tidy() {
  cmake -S . -B build-clang "${with_clang[@]}" -DQORVANE_WERROR=ON > /dev/null
  git ls-files '*.cpp' ':!tests/fuzz' ':!tests/consumer' | xargs -P2 -n4 clang-tidy-14 -p build-clang --quiet 2> /dev/null
}
sanitize() {
  build sanitize -DCMAKE_BUILD_TYPE=RelWithDebInfo -DQORVANE_SANITIZE=ON
  ctest --test-dir build-sanitize -j2 --output-on-failure --progress
}
clang() {
  build clang "${with_clang[@]}"
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

for stage in "${stages[@]}"; do
  SECONDS=0
  echo "== $stage"
  "$stage"
  echo "== $stage: passed after $SECONDS s"
done
