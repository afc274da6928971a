// Kernels with fused multiply-adds beside those of level 5: which of the two stands in a dispatch
// table. Their bits are the same.
//
// The kernel in the table is a symbol that the loader resolves, where that is the C library's: its
// word in the table is a relocation like the others, constant afterwards. A resolver runs before
// all other code, relocated or not: it reads no variable, and neither it nor what it calls is
// instrumented for sanitizers or anything else.
#pragma once
#include <features.h>

#include "frame/dispatch.h"

#ifdef __clang__
#define NOTHING_ADDED                                                       \
  __attribute__((no_instrument_function, disable_sanitizer_instrumentation, \
                 no_sanitize("address", "undefined", "thread", "coverage")))
#else
#define NOTHING_ADDED \
  __attribute__((no_instrument_function, no_sanitize("address", "undefined", "thread"), no_sanitize_coverage))
#endif

// Makes `kernel`, with these parameters and called with these arguments, one of the two at load; outside of all
// namespaces. The resolver is extern "C", since the loader's attribute takes the linker's name.
#ifdef __GLIBC__
#define CHOOSE_AT_LOAD(kernel, plain, fused, resolver, parameters, arguments)                              \
  extern "C" [[gnu::used, gnu::visibility("hidden")]] NOTHING_ADDED decltype(qorvane::plain)* resolver() { \
    return qorvane::fusedFormFitsHere() ? qorvane::fused : qorvane::plain;                                 \
  }                                                                                                        \
  namespace qorvane {                                                                                      \
  [[gnu::ifunc(#resolver)]] nuvStatus kernel parameters;                                                   \
  }
#else
#define CHOOSE_AT_LOAD(kernel, plain, fused, resolver, parameters, arguments) \
  nuvStatus qorvane::kernel parameters { return plain arguments; }
#endif

namespace qorvane {

// From ECX of CPUID leaf 1, register 0 of XGETBV and EBX of CPUID leaf 7, words that aren't there
// being 0: whether FMA and AVX2 are there and the system saves their registers.
[[gnu::visibility("hidden")]] bool fusedFormFits(uint32_t ecx1, uint32_t xcr0, uint32_t ebx7);

// The same of this processor, from CPUID and XGETBV alone.
[[gnu::visibility("hidden")]] bool fusedFormFitsHere();

}  // namespace qorvane
