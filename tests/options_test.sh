#!/bin/sh
# options_test.sh ACCURACY BENCH: the programs take the options that they know, and say what is wrong with others.
set -eu
accuracy=$1 bench=$2
failed=0

# refused MESSAGE-PART PROGRAM OPTION...: status 2, nothing on stdout, the part on stderr.
refused() {
  part=$1
  shift
  status=0
  said=$("$@" 2>&1 > /dev/null) || status=$?
  shown=$("$@" 2> /dev/null | head -c 1) || true
  case $said in *"$part"*) ;; *) status="$status, saying: $said" ;; esac
  [ "$status$shown" = 2 ] || { echo "FAILED: $*: status $status"; failed=1; }
}
# taken MESSAGE-PART PROGRAM OPTION...: status 0, the part on stdout.
taken() {
  part=$1
  shift
  said=$("$@" 2>&1) || said="status $?: $said"
  case $said in status*) echo "FAILED: $*: $said"; failed=1 ;; *"$part"*) ;; *) echo "FAILED: $*: says $said"; failed=1 ;; esac
}

for level in x 0 6 1.5 '' 1x; do refused 'a whole number from 1 to' "$accuracy" --level "$level" exp; done
for number in x 0 -1 1.5; do
  refused '--count takes' "$accuracy" --count "$number"
done
refused '--seed takes' "$accuracy" --seed x
refused 'no function expp' "$accuracy" expp
refused 'no range nowhere' "$accuracy" --range nowhere exp
refused '--at takes numbers' "$accuracy" --at x exp
refused 'unrecognized option' "$accuracy" --none
taken 'usage: ' "$accuracy" --help
refused 'requires an argument' "$accuracy" exp --level

taken 'exp, ' "$accuracy" exp --level 1 --count 1e3 --seed 7
taken 'at -0.5 (-0x1p-1)' "$accuracy" --at -0.5 exp
taken 'at 1.5 (' "$accuracy" exp --at 0x3ff8000000000000
taken '2, -3 (' "$accuracy" --at 2 -3 pow
taken 'largest error' "$accuracy" --level=1 --count=100 exp ln

# Every function's contestants are there: the library at its levels, and the peers.
listed=$("$bench" --benchmark_list_tests)
for name in 'exp/level 1/1000' 'exp/C library/1' 'exp/SLEEF SSE4/8' 'sin\[huge arguments\]/libmvec SSE4/100' 'complexPow/level 1/100000'; do
  echo "$listed" | grep -q "^$name" || { echo "FAILED: qorvane-bench has no $name"; failed=1; }
done
"$bench" --none > /dev/null 2>&1 && { echo "FAILED: qorvane-bench takes --none"; failed=1; }
exit $failed
