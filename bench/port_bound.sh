#!/bin/sh
# The port bound of Exp at level 5 on long arrays: takes its loops out of the object file, gives each to llvm-mca and adds
# them up. With the measured time in ns an element and the clock in GHz, both as qorvane-bench prints them, it also says
# how near they come.
#   bench/port_bound.sh [BUILD-FOLDER [NANOSECONDS GIGAHERTZ]]
# The processor models are llvm's; MCPU names another one than znver3.
set -eu
build=${1:-build}
object=$build/CMakeFiles/qorvane_objects.dir/explog/exp_avx.cpp.o
mca=$(command -v llvm-mca || command -v llvm-mca-14) || { echo "llvm-mca is missing (package llvm)" >&2; exit 1; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Every backward jump closes a loop, if none is in it. That without products looks for flagged elements, 16 a turn; the
# others take two vectors.
objdump -d --no-show-raw-insn -C "$object" | awk -v folder="$work" '
  /^[0-9a-f]+ <.*>:/ { inside = /::longArray</; count = 0; next }
  inside && /^ *[0-9a-f]+:\t/ {
    address = $1; sub(/:/, "", address)
    text = $0; sub(/^ *[0-9a-f]+:\t/, "", text)
    line[count] = text; at[address] = count
    if (text ~ /^j[a-z]+ / && text !~ /^jmp/) {
      split(text, word, " +")
      if (word[2] in at && at[word[2]] > closed) {
        first = at[word[2]]; products = vectors = 0
        for (i = first; i <= count; ++i) { products += line[i] ~ /^vmulpd .*%ymm/; vectors += line[i] ~ /%[xy]mm/ }
        if (vectors >= 5) {
          body = folder "/loop" ++loops "." (products ? 8 : 16)
          print "top:" > body
          for (i = first; i <= count; ++i) { text = line[i]; sub(/ *[#<].*/, "", text); if (text ~ /^j/) sub(/ .*/, " top", text); print text > body }
        }
        closed = count
      }
    }
    ++count
  }
  END { if (loops != 4) { print loops + 0 " loops found, not 4" > "/dev/stderr"; exit 1 } }'
for body in "$work"/loop*; do
  echo "Elements: ${body##*.}"
  "$mca" -mcpu="${MCPU:-znver3}" -iterations=1000 "$body"
done > "$work/report"
awk -v nanoseconds="${2:-0}" -v clock="${3:-0}" -v cpu="${MCPU:-znver3}" '
  /^Elements:/ { elements = $2 }
  /^Instructions:/ { instructions += $2 / 1000 / elements }
  /^Block RThroughput:/ { bound += $3 / elements }
  /^Total Cycles:/ { simulated += $3 / 1000 / elements }
  END {
    printf "%s: %.1f instructions for 4 elements; the ports allow %.2f cycles an element, the simulated window %.2f\n", cpu, instructions * 4, bound, simulated
    if (nanoseconds > 0) printf "measured: %.2f cycles an element, %.2f times the port bound\n", nanoseconds * clock, nanoseconds * clock / bound
  }' "$work/report"
