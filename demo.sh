#!/usr/bin/env bash
# Builds the library, then evaluates every served function on real data and on a long array: status, time, error.
set -euo pipefail
cd "$(dirname "$0")"

tools/require_packages.sh g++ cmake libmpfr-dev libgmp-dev libgtest-dev libbenchmark-dev libsleef-dev

cmake --preset release > /dev/null
cmake --build build --target qorvane-demo -j2 | grep -E '^\[|error|warning'
exec build/examples/qorvane-demo examples/data
