#!/usr/bin/env bash
# Builds the library, then evaluates every served function on real data and on a long array: status, time, error.
set -euo pipefail
cd "$(dirname "$0")"

packages=(g++ cmake libmpfr-dev libgmp-dev libmpc-dev libgtest-dev libbenchmark-dev libsleef-dev)
missing=()
for package in "${packages[@]}"; do
  dpkg-query -W -f '${Status}' "$package" 2> /dev/null | grep -q 'ok installed' || missing+=("$package")
done
if [ ${#missing[@]} -gt 0 ]; then
  if [ "$(id -u)" != 0 ]; then
    echo "missing packages; install them with: apt-get install ${missing[*]}"
    exit 1
  fi
  echo "installing ${missing[*]}"
  apt-get update -qq
  DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" > /dev/null
fi

cmake --preset release > /dev/null
cmake --build build --target qorvane-demo -j2 | grep -E '^\[|error|warning'
exec build/examples/qorvane-demo examples/data
