#!/usr/bin/env bash
# packages_test.sh BUILD_DIR SOURCE_DIR: makes the Debian packages of a build with QORVANE_PACKAGES, looks at them, and uses them; and compares the
# library's binary interface with tests/qorvane.abi. QORVANE_RECORD=1 writes that file anew: only where the interface was meant to change.
set -euo pipefail
build=$(cd "$1" && pwd) source=$2
library=$(find "$build" -name libTarnwell.Qorvane.so.1 -not -path '*/_CPack_Packages/*')
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "FAILED: $*"; exit 1; }

baseline=$source/tests/qorvane.abi
[ -z "${QORVANE_RECORD:-}" ] ||
  abidw --no-show-locs --no-comp-dir-path --no-elf-needed --no-corpus-path --drop-private-types --out-file "$baseline" "$library"
abidiff "$baseline" "$library" || fail "the binary interface isn't that of tests/qorvane.abi"
# A changed signature: one parameter `len` of type double.
double=$(sed -n "s/.*<type-decl name='double'.* id='\([^']*\)'.*/\1/p" "$baseline")
sed "0,/<parameter type-id='[^']*' name='len'/s//<parameter type-id='$double' name='len'/" "$baseline" > "$work/other.abi"
abidiff "$work/other.abi" "$library" > "$work/log" && fail "abidiff doesn't see a changed parameter"
grep -q "parameter .* changed" "$work/log" || fail "abidiff sees something else: $(cat "$work/log")"

(cd "$work" && cpack --config "$build/CPackConfig.cmake" > "$work/log" 2>&1) || { cat "$work/log"; fail "cpack"; }
packages=("$work"/*.deb)
[ ${#packages[@]} = 2 ] || fail "there are the packages ${packages[*]}"
lintian --allow-root --fail-on error "${packages[@]}" || fail lintian
depends() { dpkg -f "$work"/"$1"_*.deb Depends; }
version=$(dpkg -f "$work"/libqorvane-dev_*.deb Version)
[[ $(depends libtarnwell.qorvane1) =~ ^libc6\ \([^,]*\),\ libgomp1\ \([^,]*\)$ ]] || fail "libtarnwell.qorvane1 depends on $(depends libtarnwell.qorvane1)"
[[ $(depends libqorvane-dev) == *"libtarnwell.qorvane1 (= $version)"* ]] || fail "libqorvane-dev depends on $(depends libqorvane-dev)"

# The one that programs need to run has the library alone; both together are what a program is built with.
for package in "${packages[@]}"; do dpkg -x "$package" "$work/system"; done
dpkg -c "$work"/libtarnwell.qorvane1_*.deb | awk '{print $6}' | grep -vE '/$|/doc/|/libTarnwell\.Qorvane\.so\.1' && fail "libtarnwell.qorvane1 has more than the library"
"$source/tests/package_test.sh" "$work/system/usr" "$source" cc Shared Static
[ "$(find "$work/system/usr/share/man" -name '*.[13].gz' | wc -l)" -ge 100 ] && [ -e "$work/system/usr/share/man/man1/qorvane-info.1.gz" ] || fail "the manual pages aren't there"
