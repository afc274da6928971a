// What the complex functions of one element share: the classes of their parts, and the operations
// that raise a flag.
#pragma once
#include "complex/extended/extended.h"
#include "frame/kernel_frame.h"

namespace qorvane {

namespace {

constexpr Float64 smallestNormal = fromBits(0x0010000000000000);
constexpr Float64 largestFinite = fromBits(0x7fefffffffffffff);

INLINE uint32_t exponentFieldOf(Float64 x) { return highWord(x) >> 20 & 0x7ff; }
INLINE bool isNegative(Float64 x) { return toBits(x) >> 63 != 0; }
INLINE bool isZero(Float64 x) { return toBits(x) << 1 == 0; }
INLINE bool isFinite(Float64 x) { return exponentFieldOf(x) != 0x7ff; }
INLINE bool isInfinite(Float64 x) { return toBits(x) << 1 == uint64_t{0x7ff} << 53; }
INLINE bool isNaN(Float64 x) { return toBits(x) << 1 > uint64_t{0x7ff} << 53; }

INLINE Float64 negated(Float64 x) { return fromBits(toBits(x) ^ uint64_t{1} << 63); }
INLINE Float64 negatedUnlessNaN(Float64 x) { return isNaN(x) ? x : negated(x); }
INLINE Float64 zeroWithSign(bool negative) { return fromBits(static_cast<uint64_t>(negative) << 63); }
// `magnitude` with the sign of x.
INLINE Float64 withSignOf(Float64 magnitude, Float64 x) { return isNegative(x) ? -magnitude : magnitude; }

INLINE Float64 overflowedDouble() { return opaque(largestFinite) * largestFinite; }
INLINE void raiseUnderflow() { discard(opaque(smallestNormal) * smallestNormal); }
INLINE void raiseInexact() { discard(opaque(largestFinite) - smallestNormal); }

// A part that was stored as a subnormal number raises underflow, also where storing it was exact.
INLINE bool isSubnormal(Float64 x) { return (toBits(x) << 1) - 1 < (uint64_t{1} << 53) - 1; }
INLINE void raiseUnderflowOf(Float64 part) {
  if (isSubnormal(part)) [[unlikely]]
    raiseUnderflow();
}

// One routine for each element: the loop of every complex function that has no vectors.
template <Complex64 routine(Complex64)>
INLINE nuvStatus complexLoop(const Complex64* src, Complex64* dst, int64_t len) {
  for (int64_t i = 0; i < len; ++i) dst[i] = routine(src[i]);
  return nuvStatusOk;
}

}  // namespace
}  // namespace qorvane
