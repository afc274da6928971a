// What the levels of Tan share.
//
// Method: |x| = k * pi/2 + hi + lo with the integer k, so that with r = hi + lo, or its negative
// where k is odd, tan|x| is tan r or 1 / tan(r), and tan r = r P(r^2) / Q(r^2) with cubic P and Q.
// Arguments are taken in chunks of 64: first the remainders and the outer halves of the
// polynomials, in vectors of double precision, then the quotients, in x87 extended precision, so
// that one rounding to double precision remains. One division serves two elements.
//
// Special values and large arguments: tanSpecialLane.
#pragma once
#include "frame/loops.h"

namespace qorvane {

constexpr int tanChunkSize = 64;

// A chunk between the vector stages and the x87 stage. Bit c of `odd` and the elements c belong
// together.
struct TanScratch {
  alignas(32) Float64 hi[tanChunkSize], lo[tanChunkSize];  // the remainder, with the sign of x, negated where k is odd
  alignas(32) Float64 pRest[tanChunkSize], qRest[tanChunkSize];  // P(z) = 1 + (p1 + pRest) z, Q(z) = 1 + (q1 + qRest) z
  uint64_t odd;                                                  // whether k is odd
  bool anyFlagged;                                               // an element goes to tanSpecialLane
};

// |x| from 128000 up, infinities and NaNs go to tanSpecialLane. Below, k is less than 2^17, so that
// k * part1 and k * part2 are exact.
constexpr int tanFlaggedHighWord = 0x40ff4000;

// tan(x) for any x.
Element tanSpecialLane(Float64 x);

// The x87 stage: the results of a chunk of `count` elements, or, where none is flagged, of the pairs
// with an element whose bit is set; bits from `count` on don't matter. The x87 unit has 64-bit
// significands and rounds to nearest.
nuvStatus tanQuotients(const TanScratch& scratch, const Float64* src, Float64* dst, int count,
                       uint64_t set = ~uint64_t{0});

namespace {

// a * b + c where the product is exact, so that it doesn't matter whether it is fused.
template <class V>
INLINE V exactProductPlus(Float64 a, V b, V c) {
#ifdef __FMA__
  if constexpr (laneCount<PartOf<V>> == 4) return fused(broadcast<V>(a), b, c);
#endif
  return a * b + c;
}

template <class V>
struct TanRemainder {
  V hi, lo;
  uint64_t odd;  // bit i: k of lane i is odd
};

template <class V>
INLINE TanRemainder<V> tanRemainder(V x) {
  constexpr Float64 twoOverPi = fromBits(0x3fe45f306dc9c883);  // 0.63661977236758138
  constexpr Float64 shifter = 0x1p52;  // k stands in the low bits of a sum that is at least 2^52
  constexpr Float64 minusPart1 = fromBits(0xbff921fb54400000);  // -1.5707963267341256, the first 33 bits of -pi/2
  constexpr Float64 minusPart2 = fromBits(0xbdd0b4611a600000);  // -6.077100506303966e-11, the next 33
  constexpr Float64 part3 = fromBits(0x3ba3198a2e037073);       // 2.0222662487959506e-21, the rest of pi/2

  const V a = magnitude(x);
  const V shifted = a * twoOverPi + shifter;
  const V k = shifted - shifter;
  const V t = exactProductPlus(minusPart1, k, a);
  const V s = exactProductPlus(minusPart2, k, t), e = exactProductPlus(minusPart2, k, t - s);
  const V w = part3 * k - e, h = s - w, l = (s - h) - w;
  const V odd = lowestBitAsSign(shifted), flip = xorBits(odd, signOf(x));
  return {xorBits(h, flip), xorBits(l, flip), signMask(odd)};
}

// The vector stages: two loops, because the longest chain of one element is then short enough for
// the scheduler to see the next ones behind it. Of flagged elements they make numbers that nobody
// reads; no finite x makes an invalid operation.
template <class V>
INLINE void tanReduceChunk(const Float64* src, int count, TanScratch& scratch) {
  using Part = PartOf<V>;
  uint64_t odd = 0;
  bool anyFlagged = false;
  const auto reduce = [&](auto x, int c) INLINED {
    anyFlagged |= anyMagnitudeFrom(x, tanFlaggedHighWord);
    const auto r = tanRemainder(x);
    store(scratch.hi + c, r.hi);
    store(scratch.lo + c, r.lo);
    odd |= r.odd << c;
  };
  int c = 0;
  for (; c + laneCount<V> <= count; c += laneCount<V>) reduce(load<V>(src + c), c);
  for (; c < count; c += laneCount<Part>)
    reduce(loadPart<Part>(src + c, count - c < laneCount<Part> ? count - c : laneCount<Part>), c);
  scratch.odd = odd;
  scratch.anyFlagged = anyFlagged;

  constexpr Float64 p3 = fromBits(0xbedf637dea7c0b2c);  // -7.483634966612065e-06
  constexpr Float64 p2 = fromBits(0x3f66fc6fe2982a7b);  // 0.002805918241169989
  constexpr Float64 q3 = fromBits(0xbf2b525b10d0a168);  // -0.00020844804422038708
  constexpr Float64 q2 = fromBits(0x3f97e7b68d9a55f3);  // 0.02334485282206873
  for (c = 0; c < count; c += laneCount<Part>) {
    const Part r = load<Part>(scratch.hi + c) + load<Part>(scratch.lo + c), z = r * r;
    store(scratch.pRest + c, (p3 * z + p2) * z);
    store(scratch.qRest + c, (q3 * z + q2) * z);
  }
}

template <class V>
INLINE nuvStatus tanLoop(const Float64* src, Float64* dst, int64_t len) {
  TanScratch scratch;
  nuvStatus status = nuvStatusOk;
  for (int64_t i = 0; i < len; i += tanChunkSize) {
    const int count = len - i < tanChunkSize ? static_cast<int>(len - i) : tanChunkSize;
    tanReduceChunk<V>(src + i, count, scratch);
    const nuvStatus ofChunk = tanQuotients(scratch, src + i, dst + i, count);
    if (ofChunk != nuvStatusOk) status = ofChunk;
  }
  return status;
}

}  // namespace
}  // namespace qorvane
