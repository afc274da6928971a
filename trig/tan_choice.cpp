// tan(x), level 5: which of its two kernels stands in the dispatch table. Their bits are the same.
//
// tanAvx is resolved when the library is loaded, by the loader where that is the C library's: its
// word in the table is a relocation like the others, constant afterwards. The resolver runs before
// all other code, relocated or not: it calls nothing, reads no variable, and no sanitizer may add
// anything to it.
#include <features.h>

#include "frame/dispatch.h"

#ifdef __GLIBC__
#include <cpuid.h>
#endif

namespace qorvane {

shapes::realUnary tanAvx;
[[gnu::visibility("hidden")]] nuvStatus tanAvxX87(const Float64* src, Float64* dst, int32_t len);
[[gnu::visibility("hidden")]] nuvStatus tanAvxFma(const Float64* src, Float64* dst, int32_t len);

}  // namespace qorvane

#ifdef __GLIBC__
#ifdef __clang__
#define NOTHING_ADDED \
  __attribute__((disable_sanitizer_instrumentation, no_sanitize("address", "undefined", "thread", "coverage")))
#else
#define NOTHING_ADDED __attribute__((no_sanitize("address", "undefined", "thread"), no_sanitize_coverage))
#endif

// Whether FMA and AVX2 are there and the system saves their registers, from CPUID and XGETBV alone.
extern "C" [[gnu::used, gnu::visibility("hidden")]] NOTHING_ADDED qorvane::shapes::realUnary* qorvaneChooseTan() {
  uint32_t a, b, c, d, state = 0, stateHigh;
  __cpuid_count(0, 0, a, b, c, d);
  if (a < 7) return qorvane::tanAvxX87;
  __cpuid_count(1, 0, a, b, c, d);
  constexpr uint32_t wanted = 1u << 12 | 1u << 27 | 1u << 28;  // FMA, OSXSAVE, AVX
  if ((c & wanted) != wanted) return qorvane::tanAvxX87;
  asm volatile("xgetbv" : "=a"(state), "=d"(stateHigh) : "c"(0));
  __cpuid_count(7, 0, a, b, c, d);
  return (state & 6) == 6 && (b & 1u << 5) != 0 ? qorvane::tanAvxFma : qorvane::tanAvxX87;
}

namespace qorvane {

[[gnu::ifunc("qorvaneChooseTan")]] nuvStatus tanAvx(const Float64* src, Float64* dst, int32_t len);

}  // namespace qorvane
#else

nuvStatus qorvane::tanAvx(const Float64* src, Float64* dst, int32_t len) { return tanAvxX87(src, dst, len); }

#endif
