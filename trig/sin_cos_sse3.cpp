// sin(x), cos(x) and both at once, levels 1 to 4.
//
// Method: x is taken to the nearest of the points t = 2 pi j / 64 (of 2 pi j / 128 where both are
// computed) and a remainder r + e, and sin(t + r + e) is expanded around t with the sine and the
// cosine of t from a table (sin_cos.h) and Taylor polynomials. Below 90112 the remainder comes from
// subtractions of the step in three parts. If any element of a block of 4 is larger, all of them go
// through the fix lane, which adds up in another order and reduces modulo pi/2 first from 2^17
// on (reduction.h). Elements after the last block stand for themselves.
//
// Error: largest found below 90112 0.52 ulp for one function, 0.551 ulp for both; in the fix
// lane 0.602 ulp, next to zeros between 90112 and 2^17 (docs/accuracy.md has the arguments). The
// kernels run in round-to-nearest with subnormals honoured, whatever the caller's mode.
//
// Special values: infinities give the default NaN, and out-of-domain with its flag; a NaN gives
// itself, quiet. sin(-0) is +0 on the fast path, -0 in the fix lane.
#include "frame/kernel_frame.h"
#include "trig/reduction.h"
#include "trig/sin_cos.h"

namespace qorvane {
namespace {

#include "trig/sin_cos_tables.inc"

// 2 pi / N in three parts; a count times the first or the second is exact up to |x| = 2^17.
constexpr Step step64 = {
    fromBits(0x40245f306dc9c883),  // 10.185916357881302 = 64 / (2 pi)
    fromBits(0x3fb921fb54400000),  // 0.09817477042088285
    fromBits(0x3d90b4611a600000),  // 3.798187816439979e-12
    fromBits(0x3b63198a2e037073),  // 1.2639164054974691e-22
};
constexpr Step step128 = {
    fromBits(0x40345f306dc9c883),  // 20.371832715762604 = 128 / (2 pi)
    fromBits(0x3fa921fb54400000),  // 0.049087385210441425
    fromBits(0x3d80b4611a600000),  // 1.8990939082199895e-12
    fromBits(0x3b53198a2e037073),  // 6.3195820274873455e-23
};

// sin r = r (1 + s1 z + s2 z^2 + s3 z^3 + s4 z^4) with z = r^2, |r| <= pi / 64: error 2^-65.1;
// cos r = 1 + c1 z + c2 z^2 + c3 z^3 + c4 z^4 with z = r^2, |r| <= pi / 64: error 2^-65.2
constexpr Float64 s1 = fromBits(0xbfc5555555555555);  // -0.16666666666666666
constexpr Float64 s2 = fromBits(0x3f81111111111111);  // 0.0083333333333333332
constexpr Float64 s3 = fromBits(0xbf2a01a01a01a01a);  // -0.0001984126984126984
constexpr Float64 s4 = fromBits(0x3ec71de3a556c734);  // 2.7557319223985893e-06
constexpr Float64 c1 = fromBits(0xbfe0000000000000);  // -0.5
constexpr Float64 c2 = fromBits(0x3fa5555555555555);  // 0.041666666666666664
constexpr Float64 c3 = fromBits(0xbf56c16c16c16c17);  // -0.001388888888888889
constexpr Float64 c4 = fromBits(0x3efa01a01a01a01a);  // 2.48015873015873e-05

constexpr int fastHighWord = 0x40f60000;  // 90112.0, from which on blocks take the fix lane
constexpr int quarterOf64 = 16, quarterOf128 = 32;

// `row` is a row of a table; offsets lead on from it.
template <class V>
INLINE Terms<V> expandAt(const Float64* row, BitsOf<V> offsets, V r, V e, V sinPoly, V cosPoly) {
  const auto c = columns<4, V>(row, offsets);
  return expand(SplitSine<V>{c.of[0], c.of[3], c.of[1], c.of[2]}, r, e, sinPoly, cosPoly);
}

// The sine of m, a quarter turn further on the cosine.
template <class V>
INLINE Terms<V> expandBy64(int firstRow, Remainder<V> m) {
  const V z = m.r * m.r;
  const V sinPoly = (((s4 * z + s3) * z + s2) * z + s1) * z;
  const V cosPoly = (((c4 * z + c3) * z + c2) * z + c1) * z;
  return expandAt(trigTable64[firstRow], (m.shifted & 63u) << 5, m.r, m.e, sinPoly, cosPoly);
}

template <class V>
INLINE V sumOf(Terms<V> t) {
  return ((((t.d1 + t.g) + t.d2) + t.ps) + t.pc) + t.hi;
}

// --- Fix lanes ---

constexpr int exponentOf(Float64 x) { return static_cast<int>(highWord(x) >> 20) & 0x7ff; }
constexpr int tinyExponent = 771;  // below 2^-252 the sine is x, and the cosine 1
constexpr int largeExponent = 1040;

nuvStatus statusOfNonFinite(Float64 x) { return toBits(x) << 12 == 0 ? nuvStatusOutOfDomain : nuvStatusOk; }
Float64 tinySine(Float64 x) { return x == 0 ? x : (0x1p55 * x - x) * 0x1p-55; }
Float64 tinyCosine(Float64 x) { return 1.0 - __builtin_fabs(x); }

Remainder<Float64> reduceLane(Float64 x) {
  PiOver2Remainder p = {x, 0, 0};
  if (exponentOf(x) >= largeExponent) p = reducePiOver2(x);
  Remainder<Float64> m = removeSteps(p.hi, step64);
  m.e = m.e + p.lo;
  m.shifted += static_cast<uint64_t>(quarterOf64 * p.quadrant);
  return m;
}

nuvStatus fixLane(int firstRow, Float64 x, Float64* y) {
  const int exponent = exponentOf(x);
  if (exponent == 0x7ff) return *y = x - x, statusOfNonFinite(x);
  if (exponent < tinyExponent) return *y = firstRow == 0 ? tinySine(x) : tinyCosine(x), nuvStatusOk;
  const Terms<Float64> t = expandBy64(firstRow, reduceLane(x));
  *y = t.hi + ((((t.g + t.ps) + t.pc) + t.d1) + t.d2);
  return nuvStatusOk;
}

nuvStatus sinCosFixLane(Float64 x, Float64* sine, Float64* cosine) {
  const int exponent = exponentOf(x);
  if (exponent == 0x7ff) return *sine = *cosine = x - x, statusOfNonFinite(x);
  if (exponent < tinyExponent) return *sine = tinySine(x), *cosine = tinyCosine(x), nuvStatusOk;
  const Remainder<Float64> m = reduceLane(x);
  const auto sumOfBoth = [](Terms<Float64> t) { return t.hi + ((((t.ps + t.pc) + t.g) + t.d1) + t.d2); };
  *sine = sumOfBoth(expandBy64(0, m));
  *cosine = sumOfBoth(expandBy64(quarterOf64, m));
  return nuvStatusOk;
}

// --- Loops ---

// special(Float64 x, int64_t i) -> status stores the results of element i.
template <class Special>
[[gnu::noinline]] nuvStatus slowBlock(const Float64* x, int64_t first, int64_t count, Special special) {
  nuvStatus status = nuvStatusOk;
  for (int64_t i = 0; i < count; ++i) takeStatus<Raises::yes>(status, special(x[i], first + i));
  return status;
}

// fast(V x, int64_t i, int64_t count) stores the results of `count` elements.
template <class Fast, class Special>
INLINE nuvStatus loop(const Float64* src, int64_t len, Fast fast, Special special) {
  using Block = Pack<Lanes2, 2>;
  return blockLoop<Block>(
      src, len, [](auto x) INLINED { return anyMagnitudeFrom(x, fastHighWord); }, fast,
      [&](auto x, int64_t i, int64_t count) INLINED {
        alignas(16) Float64 saved[laneCount<Block>];
        store(saved, x);
        return slowBlock(saved, i, count, special);
      });
}

template <int firstRow>
nuvStatus unaryOf64(const Float64* src, Float64* dst, int64_t len) {
  return loop(
      src, len,
      [=](auto x, int64_t i, int64_t count)
          INLINED { put(dst + i, sumOf(expandBy64(firstRow, removeSteps(x, step64))), count); },
      [=](Float64 x, int64_t i) { return fixLane(firstRow, x, dst + i); });
}

nuvStatus sinCosLoop(const Float64* src, Float64* dstA, Float64* dstB, int64_t len) {
  return loop(
      src, len,
      [=](auto x, int64_t i, int64_t count) INLINED {
        const auto m = removeSteps(x, step128);
        const auto offsets = (m.shifted & 127u) << 5;
        const auto z = m.r * m.r;
        const auto sinPoly = ((s3 * z + s2) * z + s1) * z, cosPoly = ((c3 * z + c2) * z + c1) * z;
        put(dstA + i, sumOf(expandAt(trigTable128[0], offsets, m.r, m.e, sinPoly, cosPoly)), count);
        put(dstB + i, sumOf(expandAt(trigTable128[quarterOf128], offsets, m.r, m.e, sinPoly, cosPoly)), count);
      },
      [=](Float64 x, int64_t i) { return sinCosFixLane(x, dstA + i, dstB + i); });
}

}  // namespace

nuvStatus sinSse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, unaryOf64<0>>(len, src, dst);
}
nuvStatus cosSse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, unaryOf64<quarterOf64>>(len, src, dst);
}
nuvStatus sinCosSse3(const Float64* src, Float64* dstA, Float64* dstB, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, sinCosLoop>(len, src, dstA, dstB);
}

}  // namespace qorvane
