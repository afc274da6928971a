// tan(x), level 5, for processors with fused multiply-adds: the kernel. Its bits are those of the
// x87 stage (trig/tan_quotients.cpp).
//
// Method: after the vector stages of trig/tan.h, N = r P(r^2) and Q = Q(r^2) are made as sums of two
// doubles, and T / U as q - d, with d from the residual q U - T. Where every number within the x87
// stage's error of that rounds to the same double, this is its result; the pairs of the others, one
// element in 120, go through it. docs/tan.md proves the bound.
//
// Remainders below 2^-100, zeros among them, are those of arguments which are their own tangents;
// their lanes run with 0, so that they raise no flag. A chunk with an element for tanSpecialLane
// goes through the x87 stage as a whole.
//
// The kernel runs in round-to-nearest without FTZ, and with 64-bit significands in the x87 unit,
// whatever the caller's mode; DAZ and the exception masks are the caller's. Special values: see
// trig/tan_avx.cpp.
#include "frame/kernel_frame.h"
#include "trig/tan.h"

namespace qorvane {
namespace {

struct Pair {
  Lanes4 hi, lo;
};

// 1 + (coefficient + rest) z for a coefficient greater than the rest: P or Q, from z = zHi + zLo.
INLINE Pair onePlus(Float64 coefficient, Lanes4 rest, Lanes4 zHi, Lanes4 zLo) {
  const Lanes4 one = broadcast<Lanes4>(1.0), c = broadcast<Lanes4>(coefficient);
  const Lanes4 a = c + rest, aLo = (c - a) + rest;
  const Lanes4 hi = fused(a, zHi, one);
  return {hi, fused(a, zHi, one - hi) + fused(a, zLo, aLo * zHi)};
}

// The results of the four elements from c on, without a test of their rounding, and a mask of those
// that aren't certain.
struct Certified {
  Lanes4 y;
  uint64_t uncertain;
};
INLINE Certified certified(const TanScratch& scratch, int c) {
  constexpr Float64 p1 = fromBits(0xbfc06b97bf03648a);  // -0.12828347040957438
  constexpr Float64 q1 = fromBits(0xbfdd8b2134d70767);  // -0.46161680374290487
  constexpr Float64 bound = 10.25 * 0x1p-64;            // of both errors

  const Lanes4 r = load<Lanes4>(scratch.hi + c), rLo = load<Lanes4>(scratch.lo + c);
  const Lanes4 isSmall = lessLanes(magnitude(r), broadcast<Lanes4>(0x1p-100)), hi = withoutBits(r, isSmall);
  const Lanes4 z = hi * hi, zLo = fused(hi + hi, rLo, fusedLess(hi, hi, z));
  const Pair p = onePlus(p1, load<Lanes4>(scratch.pRest + c), z, zLo);
  const Pair q = onePlus(q1, load<Lanes4>(scratch.qRest + c), z, zLo);
  const Lanes4 n = hi * p.hi, nLo = fused(hi, p.lo, fused(rLo, p.hi, fusedLess(hi, p.hi, n)));

  // All bits of the lanes where k is odd.
  const __m256i places = _mm256_setr_epi64x(1, 2, 4, 8);
  const __m256i bits = _mm256_and_si256(_mm256_set1_epi64x(static_cast<int64_t>(scratch.odd >> c)), places);
  const Lanes4 odd = _mm256_castsi256_pd(_mm256_cmpeq_epi64(bits, places));
  const Lanes4 t = select(odd, q.hi, n), tLo = select(odd, q.lo, nLo);
  const Lanes4 u = select(odd, n, q.hi), uLo = select(odd, nLo, q.lo);

  const Lanes4 inverse = 1.0 / u, quotient = t * inverse;
  const Lanes4 residual = fusedLess(quotient, u, t) + fusedLess(quotient, uLo, tLo);
  const Lanes4 error = quotient * bound;
  const Lanes4 y = quotient - fused(residual, inverse, error), other = quotient - fusedLess(residual, inverse, error);
  return {orBits(y, andBits(r, isSmall)), signMask(equalLanes(y, other)) ^ 15};
}

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  TanScratch scratch;
  nuvStatus status = nuvStatusOk;
  for (int64_t i = 0; i < len; i += tanChunkSize) {
    const int count = len - i < tanChunkSize ? static_cast<int>(len - i) : tanChunkSize;
    tanReduceChunk<Pack<Lanes4, 2>>(src + i, count, scratch);
    uint64_t left = ~uint64_t{0};
    if (!scratch.anyFlagged) [[likely]] {
      left = 0;
      for (int c = 0; c < count; c += 4) {
        const Certified four = certified(scratch, c);
        storePart(dst + i + c, four.y, count - c < 4 ? count - c : 4);
        left |= four.uncertain << c;
      }
      if (left == 0) continue;
    }
    const nuvStatus ofChunk = tanQuotients(scratch, src + i, dst + i, count, left);
    if (ofChunk != nuvStatusOk) status = ofChunk;
  }
  return status;
}

}  // namespace

nuvStatus tanAvxFma(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::clearRounding, loop, X87::fix>(len, src, dst);
}

}  // namespace qorvane
