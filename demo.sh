#!/usr/bin/env bash
# Builds the library, then evaluates every served function on real data and on a long array: status, time, error.
set -euo pipefail
cd "$(dirname "$0")"

tools/require_packages.sh g++ cmake make

cmake -S . -B build-demo -DCMAKE_BUILD_TYPE=Release -DQORVANE_DEVELOPMENT=OFF -DQORVANE_EXAMPLES=ON > /dev/null
cmake --build build-demo --target qorvane-demo -j2 | grep -E '^\[|error|warning'
exec build-demo/examples/qorvane-demo examples/data
