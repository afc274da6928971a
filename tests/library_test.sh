#!/bin/sh
# library_test.sh BUILD_DIR SOURCE_DIR OBJCOPY...: what the shared library shows outside: names, dependencies, hardening, stubs; and what its level objects define.
set -eu
build=$1 source=$2
lib=$build/libTarnwell.Qorvane.so.1
failed=0
fail() { echo "FAILED: $*"; failed=1; }

# Exactly the exports of the table.
{ echo nuvGetNumThreads; echo nuvSetNumThreads; sed -n 's/^FUNCTION(\([A-Za-z0-9_]*\),.*/nuvs\1\nnuvs\1_Idx/p' "$source/frame/functions.inc"; } | sort > "$build/names.expected"
nm -D --defined-only "$lib" | awk '{print $3}' | sort > "$build/names.exported"
diff "$build/names.expected" "$build/names.exported" || fail "the exported names aren't those of the table"

# It needs the C library and an OpenMP runtime, and asks for nothing that allocates or belongs to the C++ runtime.
for needed in $(readelf -d "$lib" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p'); do
  case $needed in libc.so.6 | libgomp.so.1 | libomp.so.5 | libomp5*) ;; *) fail "needs $needed" ;; esac
done
for symbol in $(nm -D --undefined-only "$lib" | awk '{print $2}'); do
  case $symbol in
    omp_get_num_procs* | omp_get_max_threads* | memcpy* | memset* | __cxa_finalize* | __gmon_start__ | _ITM_*) ;;
    *) fail "imports $symbol" ;;
  esac
done

# Hardening.
readelf -d "$lib" | grep -q TEXTREL && fail "has text relocations"
readelf -d "$lib" | grep -qE 'BIND_NOW|FLAGS.*NOW' || fail "isn't bound at load"
readelf -lW "$lib" | grep -q GNU_RELRO || fail "has no RELRO segment"
readelf -lW "$lib" | grep GNU_STACK | grep -q 'RWE' && fail "has an executable stack"

# Its only writable data are the variables of the frame.
for symbol in $(nm -C "$lib" | grep -i ' [bd] ' | sed 's/^[0-9a-f]* [a-zA-Z] //; s/(anonymous namespace):://g; s/ /_/g'); do
  case $symbol in
    DispatchLevel | qorvane::ProcessorFeatures | qorvane::threadCount | qorvane::cachedFeatures | qorvane::featuresAreCached) ;;
    qorvane::*Kernels | *_DYNAMIC | *_GLOBAL_OFFSET_TABLE_ | __dso_handle | completed* | __TMC_END__ | __frame_dummy* | __do_global_dtors* | _edata | __bss_start | _end) ;;
    *) fail "has the writable $symbol" ;;
  esac
done
# ... the dispatch tables are constant after load.
for symbol in $(nm -C "$lib" | grep -E ' [dD] .*Kernels$' | awk '{print $1}'); do
  readelf -SW "$lib" | awk -v a="$symbol" '$0 ~ /\.data\.rel\.ro/ {sub(/^ *\[ *[0-9]+\]/, ""); s = strtonum("0x" $3); n = strtonum("0x" $5); v = strtonum("0x" a); if (v >= s && v < s + n) ok = 1} END {exit !ok}' 2>/dev/null ||
    python3 - "$lib" "$symbol" <<'PY' || fail "a dispatch table is writable"
import re, subprocess, sys
value = int(sys.argv[2], 16)
sections = subprocess.run(["readelf", "-SW", sys.argv[1]], capture_output=True, text=True).stdout
m = re.search(r"\.data\.rel\.ro\s+PROGBITS\s+([0-9a-f]+)\s+[0-9a-f]+\s+([0-9a-f]+)", sections)
sys.exit(0 if m and int(m[1], 16) <= value < int(m[1], 16) + int(m[2], 16) else 1)
PY
done

# ... and some kernels of level 5 are chosen by the loader, while it relocates them: those with or without fused multiply-adds.
fused='tan atanh complexSinh complexCosh complexTanh complexSin complexCos complexTan complexLog10 complexPow complexPowx'
chosen=$(readelf -rW "$lib" | awk '/R_X86_64_IRELATIV/ {print $1}')
[ "$(echo "$chosen" | wc -w)" = "$(echo "$fused" | wc -w)" ] || fail "the loader chooses other kernels than it should"
for stem in $fused; do
  table=$(nm -C "$lib" | awk -v name="qorvane::${stem}Kernels" '$3 == name {print $1}')
  echo "$chosen" | grep -q "$(printf '%x$' $((0x$table + 40)))" || fail "the loader doesn't choose the kernel of $stem"
done

# A stub is one load of DispatchLevel and one jump through the table; a twin adjusts pointers before that.
for name in $(grep -v NumThreads "$build/names.exported"); do
  code=$(objdump -d --no-show-raw-insn --disassemble="$name" "$lib" | grep -E '^ +[0-9a-f]+:' | grep -vE 'nop|xchg +%ax,%ax' | sed 's/^[^\t]*\t//')
  [ "$(echo "$code" | grep -c DispatchLevel)" = 1 ] || fail "$name doesn't load DispatchLevel once"
  echo "$code" | tail -1 | grep -qE '^jmp +\*' || fail "$name doesn't end in an indirect jump"
  echo "$code" | grep -qE 'call|push|\bj[a-z]+ +[0-9a-f]|%[re]sp.*%[re]sp' && fail "$name does more than jump"
  case $name in *_Idx) ;; *) [ "$(echo "$code" | wc -l)" -le 4 ] || fail "$name is longer than a load and a jump" ;; esac
done

# Level objects define nothing that the linker could share between levels.
for object in $(find "$build/CMakeFiles/qorvane_objects.dir" -name '*.o'); do
  weak=$(nm -C "$object" | grep -E ' [WVu] ' || true)
  [ -z "$weak" ] || fail "$object defines $weak"
  case $object in
    *_fma.cpp.o) ;;
    *_avx.cpp.o) objdump -d --no-show-raw-insn "$object" | grep -qE '\svfn?m(add|sub)' && fail "$object uses FMA" ;;
    *) objdump -d --no-show-raw-insn "$object" | grep -qE '^ +[0-9a-f]+:\s+v[a-z]+ ' && fail "$object uses AVX" ;;
  esac
done
exit $failed
