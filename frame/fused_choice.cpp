// Whether the processor has fused multiply-adds.
#include "frame/fused_choice.h"

#include <cpuid.h>

NOTHING_ADDED bool qorvane::fusedFormFits(uint32_t ecx1, uint32_t xcr0, uint32_t ebx7) {
  constexpr uint32_t fmaOsxsaveAvx = 1u << 12 | 1u << 27 | 1u << 28, xmmAndYmm = 6, avx2 = 1u << 5;
  return (ecx1 & fmaOsxsaveAvx) == fmaOsxsaveAvx && (xcr0 & xmmAndYmm) == xmmAndYmm && (ebx7 & avx2) != 0;
}

NOTHING_ADDED bool qorvane::fusedFormFitsHere() {
  uint32_t highestLeaf, a, b, c, d, ecx1, xcr0 = 0, ebx7 = 0;
  __cpuid_count(0, 0, highestLeaf, b, c, d);
  __cpuid_count(1, 0, a, b, ecx1, d);
  if ((ecx1 >> 27 & 1) != 0) asm volatile("xgetbv" : "=a"(xcr0), "=d"(d) : "c"(0));
  if (highestLeaf >= 7) __cpuid_count(7, 0, a, ebx7, c, d);
  return fusedFormFits(ecx1, xcr0, ebx7);
}
