#!/bin/sh
# info_test.sh QORVANE_INFO VERSION: qorvane-info tells the version, and at each level, here and on emulated processors, the hash that is recorded.
set -eu
info=$1 version=$2
fail() { echo "FAILED: $*"; exit 1; }

# told LINE COMMAND...: what the command says after "LINE: ", to the next space or comma.
told() {
  line=$1
  shift
  "$@" 2> /dev/null | sed -n "s/^$line: \([^ ,]*\).*/\1/p"
}
recorded() {
  case $1 in
    0 | 1) echo 4a67a204dc918be2 ;;
    2 | 3) echo 1db253d3882b6da8 ;;
    4) echo 497d8d3914344f28 ;;
    5) echo 228e338f3a09bbe6 ;;
  esac
}

[ "$(told version "$info")" = "$version" ] || fail "the version isn't $version"
[ "$(told functions "$info")" = "$(grep -c '^FUNCTION(' "$(dirname "$0")/../frame/functions.inc")" ] || fail "there are other functions"
level=$(told level "$info")
[ "$(told bits "$info")" = "$(recorded "$level")" ] || fail "other bits at level $level: $(told bits "$info")"
estimates=$(told 'bits from estimates' "$info")
[ -n "$estimates" ] && [ "$(told 'bits from estimates' "$info")" = "$estimates" ] || fail "the bits from estimates differ from call to call"
[ "$estimates" != "$(told bits "$info")" ] || fail "both hashes are the same"

# An address sanitizer has no place in an emulator.
command -v qemu-x86_64 > /dev/null && ! grep -q __asan_init "$info" || { echo "SKIP: no emulated processors"; exit 0; }
for processor in 0.qemu64,-sse3 1.qemu64 2.Conroe 3.max,-avx,-sse4.1,-sse4.2 4.Nehalem 5.SandyBridge 5.max; do
  level=${processor%%.*}
  emulated="qemu-x86_64 -cpu ${processor#*.} $info"
  [ "$(told level $emulated)" = "$level" ] || fail "$processor has level $(told level $emulated)"
  [ "$(told bits $emulated)" = "$(recorded "$level")" ] || fail "other bits on $processor: $(told bits $emulated)"
done
