#!/bin/sh
# The port bound of the inner loop of Exp at level 5: takes the loop out of the object file and gives it to llvm-mca. With the measured time in ns an element and
# the clock in GHz, both as qorvane-bench prints them, it also says how near the loop comes.
#   bench/port_bound.sh [BUILD-FOLDER [NANOSECONDS GIGAHERTZ]]
# The processor models are llvm's; MCPU names another one than znver3.
set -eu
build=${1:-build}
object=$build/CMakeFiles/qorvane_objects.dir/explog/exp_avx.cpp.o
mca=$(command -v llvm-mca || command -v llvm-mca-14) || { echo "llvm-mca is missing (package llvm)" >&2; exit 1; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Every backward jump closes a loop; the inner loop is the shortest that has the ten multiplications of a vector.
objdump -d --no-show-raw-insn -C "$object" | awk -v body="$work/loop.s" '
  /^[0-9a-f]+ <.*>:/ { inside = /::loop\(/; count = 0; next }
  inside && /^ *[0-9a-f]+:\t/ {
    address = $1; sub(/:/, "", address)
    text = $0; sub(/^ *[0-9a-f]+:\t/, "", text)
    line[count] = text; at[address] = count
    if (text ~ /^j[a-z]+ / && text !~ /^jmp/) {
      split(text, word, " +")
      if (word[2] in at) {
        first = at[word[2]]; products = 0
        for (i = first; i <= count; ++i) if (line[i] ~ /^vmulpd .*%ymm/) ++products
        if (products >= 10 && (!found || count - first < last - start)) { found = 1; start = first; last = count; for (i = first; i <= count; ++i) best[i] = line[i] }
      }
    }
    ++count
  }
  END {
    if (!found) { print "no loop found" > "/dev/stderr"; exit 1 }
    print "top:" > body
    for (i = start; i <= last; ++i) { text = best[i]; sub(/ *[#<].*/, "", text); if (text ~ /^j/) sub(/ .*/, " top", text); print text > body }
  }'
"$mca" -mcpu="${MCPU:-znver3}" -iterations=1000 "$work/loop.s" > "$work/report"
awk -v nanoseconds="${2:-0}" -v clock="${3:-0}" -v cpu="${MCPU:-znver3}" '
  /^Instructions:/ { instructions = $2 / 1000 }
  /^Block RThroughput:/ { bound = $3 }
  /^Total Cycles:/ { simulated = $3 / 1000 }
  END {
    printf "%s: %d instructions for 4 elements; the ports allow %.2f cycles an element, the simulated window %.2f\n", cpu, instructions, bound / 4, simulated / 4
    if (nanoseconds > 0) printf "measured: %.2f cycles an element, %.2f times the port bound\n", nanoseconds * clock, nanoseconds * clock / (bound / 4)
  }' "$work/report"
