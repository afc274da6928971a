#!/bin/sh
# install_test.sh BUILD_DIR SOURCE_DIR CC: installs both libraries and uses them.
set -eu
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
cmake --install "$1" --prefix "$prefix" > "$prefix/log"
"$2/tests/package_test.sh" "$prefix" "$2" "$3" Shared Static
