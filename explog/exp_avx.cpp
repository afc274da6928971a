// exp(x), level 5.
//
// Method: 64x / ln 2 = k + rest with the integer k = 64m + j, so that exp(x) = 2^m * 2^(j/64) * exp(r) with |r| <= ln 2 / 128. exp(r) - 1 is a polynomial of
// degree 5, 2^(j/64) comes from a table as high + low, m is added to the exponent field.
//
// Error: at most 0.527 ulp for normal results, 0.51 ulp for subnormal ones (docs/accuracy.md has the arguments), in round-to-nearest; rounding mode, FTZ and
// DAZ are the caller's.
//
// Special values: NaN gives the NaN, +Inf +Inf, -Inf +0; above 709.78271289338397 +Inf and overflow; below -708.39641853226408 a subnormal result or +0, and
// underflow. Statuses raise their flags.
#include "frame/kernel_frame.h"
#include "frame/loops.h"

namespace qorvane {
namespace {

#include "explog/exp_tables.inc"

constexpr Float64 invLn2By64 = fromBits(0x40571547652b82fe);  // 92.332482616893657 = 64 / ln 2
constexpr Float64 shifter = fromBits(0x4338000000000000);     // 1.5 * 2^52
constexpr Float64 ln2By64Hi = fromBits(0x3f862e42fefa0000);   // 0.010830424696223417: k * ln2By64Hi is exact
constexpr Float64 ln2By64Lo = fromBits(0x3d1cf79abc9e3b3a);   // 2.5728046223276691e-14: ln 2 / 64 - ln2By64Hi

// exp(r) = 1 + r + r^2 * (c2 + c3 r + c4 r^2 + c5 r^3)
constexpr Float64 c5 = fromBits(0x3f8111112d9f549b);  // 0.0083333341644141103
constexpr Float64 c4 = fromBits(0x3fa555573f218b93);  // 0.041666723686623851
constexpr Float64 c3 = fromBits(0x3fc555555555653e);  // 0.16666666666677971
constexpr Float64 c2 = fromBits(0x3fdfffffffffdb3b);  // 0.49999999999947747

// |x| from 708.39599609375 up, infinities and NaNs: the results there may leave the normal range.
constexpr int flaggedHighWord = 0x4086232b;

template <class V>
struct Reduced {
  V r;
  BitsOf<V> shifted;  // the low 32 bits are k
};

template <class V>
[[gnu::always_inline]] inline Reduced<V> reduce(V x) {
  const V s = (x * invLn2By64) + shifter;
  const V k = s - shifter;
  return {(x - (k * ln2By64Hi)) - (k * ln2By64Lo), bitsOf(s)};
}

template <class V>
[[gnu::always_inline]] inline V core(V x) {
  const Reduced<V> a = reduce(x);
  const auto row = twoColumns<V>(expTableNearest, (a.shifted & 63) << 4);
  const V r = a.r;
  const V z = ((c5 * r + c4) * r + c3) * r + c2;
  const V q = (z * (r * r)) + r;
  const V y = ((q * row.first) + row.second) + row.first;
  return valueOf<V>(bitsOf(y) + ((a.shifted & ~uint64_t{63}) << 46));
}

// The number with this exponent field, 2^(field - 1023).
Float64 powerOfTwo(int field) { return fromBits(static_cast<uint64_t>(field) << 52); }

[[gnu::noinline, gnu::cold]] nuvStatus expSpecialLane(Float64 x, Float64* result) {
  // The polynomial is of one degree more than the fast path's: 1 + r + r^2 * (p2 + p3 r + ... + p6 r^4).
  constexpr Float64 p6 = fromBits(0x3f56c16a1c2a3ffd);  // 0.0013888870459233254
  constexpr Float64 p5 = fromBits(0x3f8111123aaf20d3);  // 0.0083333419951404971
  constexpr Float64 p4 = fromBits(0x3fa5555555558fcc);  // 0.041666666666770519
  constexpr Float64 p3 = fromBits(0x3fc55555555548f8);  // 0.16666666666657881
  constexpr Float64 p2 = 0.5;
  constexpr Float64 largestFinite = fromBits(0x40862e42fefa39ef);    // 709.78271289338397: the largest x with a finite result
  constexpr Float64 smallestNonZero = fromBits(0xc0874910d52d3051);  // -745.13321910194111: the smallest x with a result above +0
  constexpr Float64 smallestNormal = fromBits(0xc086232bdd7abcd2);   // -708.39641853226408: the smallest x with a normal result
  constexpr Float64 largest = fromBits(0x7fefffffffffffff), aboveSmallest = fromBits(0x0010000000000001);
  const auto give = [&](Float64 value, nuvStatus status) { return *result = value, status; };

  if ((highWord(x) & 0x7ff00000) == 0x7ff00000) return give(toBits(x) == 0xfff0000000000000 ? 0.0 : x * x, nuvStatusOk);
  if (x > largestFinite) return give(opaque(largest) * opaque(largest), nuvStatusOverflow);
  if (x < smallestNonZero) return give(opaque(aboveSmallest) * opaque(aboveSmallest), nuvStatusUnderflow);

  const Reduced<Float64> a = reduce(x);
  const int m = static_cast<int32_t>(a.shifted) >> 6;
  const auto [hi, relativeLo] = twoColumns<Float64>(expTableRelative, (a.shifted & 63) << 4);
  const Float64 r = a.r;
  const Float64 p = ((((((p6 * r + p5) * r + p4) * r + p3) * r + p2) * r) * r) + r;
  const Float64 t = (p + relativeLo) * hi;
  if (x >= smallestNormal) {
    const Float64 v = t + hi;
    if (m == 1024) return give((v * powerOfTwo(0x7fe)) * 2.0, nuvStatusOk);
    return give(v * powerOfTwo(m + 0x3ff), nuvStatusOk);
  }

  // The result is subnormal or nearly so: t + hi, scaled by 2^(m + 60), is brought down in two parts so that it rounds but once. `upper` is the sum cut to the
  // bits that a subnormal result keeps, `lower` the rest of it with its rounding error.
  const int field = m + 0x43b;
  const Float64 scaledT = t * powerOfTwo(field), scaledHi = powerOfTwo(field) * hi, sum = scaledT + scaledHi;
  constexpr Float64 down = fromBits(0x3c30000000000000);  // 2^-60
  if (field <= 0x32) return give(sum * down, nuvStatusUnderflow);
  const Float64 rest = (scaledHi - sum) + scaledT;
  const Float64 cut = sum * fromBits(0x41f8000000000000);  // 1.5 * 2^32
  const Float64 upper = (sum + cut) - cut, lower = (sum - upper) + rest;
  return give((upper * down) + (lower * down), nuvStatusUnderflow);
}

[[gnu::noinline]] nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  return unaryLoop<Pack<Lanes4, 2>, Raises::yes>(
      src, dst, len, [](auto x) __attribute__((always_inline)) { return core(x); },
      [](auto x) __attribute__((always_inline)) { return anyMagnitudeFrom(x, flaggedHighWord); }, expSpecialLane);
}

}  // namespace

nuvStatus expLevel5(const Float64* src, Float64* dst, int32_t len) { return runKernel<Check::lengthFirst, Mode::none, loop>(len, src, dst); }

}  // namespace qorvane
