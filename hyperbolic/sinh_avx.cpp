// sinh(x), level 5.
//
// Method: with a = |x|, 8a / ln 2 = n + rest with an integer n, so that a = n ln 2 / 8 + r with |r| <= ln 2 / 16. A row
// of a table has a polynomial of degree 7 in r for sinh(n ln 2 / 8 + r). It has rows for n up to 255; for greater n,
// where e^-a is negligible, the row of the last eight with the same n mod 8 serves, times a power of 2. Where n is 0 or
// 1 the row is an odd polynomial in a instead.
//
// Special values: a NaN gives the NaN quieted, infinities themselves, sinh(-0) -0; from 710.475860073944 up in
// magnitude the result is infinite and overflow, which raises its flag. Rounding mode, FTZ and DAZ are the caller's.
#include "frame/kernel_frame.h"
#include "hyperbolic/exponential_lane.h"

namespace qorvane {
namespace {

#include "hyperbolic/sinh_tables.inc"

constexpr Float64 invLn2By8 = fromBits(0x40271547652b82fe);  // 11.541560327111707 = 8 / ln 2
constexpr Float64 shifter = fromBits(0x4338000000000000);    // 1.5 * 2^52
constexpr Float64 ln2By8Hi = fromBits(0x3fb62e42fefa4000);   // 0.086643397570014713: n * ln2By8Hi is exact
constexpr Float64 ln2By8Lo = fromBits(0xbd18432a1b0e2634);   // -2.1549305657018543e-14: ln 2 / 8 - ln2By8Hi

// |x| from 709.7392578125 up, infinities and NaNs
constexpr int flaggedHighWord = 0x40862dea;

using V = Lanes4;

// `yes` in the lanes where the mask is set. The compiler takes the intrinsic apart into branches.
INLINE V select(V mask, V yes, V no) {
  asm("vblendvpd %3, %2, %1, %0" : "=x"(no) : "x"(no), "x"(yes), "x"(mask));
  return no;
}

// What the first pass finds of a strip of elements.
template <int64_t length>
struct Strip {
  alignas(32) Float64 r[length];         // the remainder, or a where n is 0 or 1
  alignas(32) Float64 u[length];         // the polynomial's variable: r, or a^2 where n is 0 or 1
  alignas(32) Float64 small[length];     // all ones where n is 0 or 1, else 0
  alignas(32) Float64 scale[length];     // the power of 2
  alignas(16) uint32_t offsets[length];  // of the rows, in bytes
};

template <int64_t length>
INLINE void reduce(V a, Strip<length>& strip, int64_t i) {
  const V t = a * invLn2By8 + shifter, n = t - shifter;
  const V small = _mm256_cmp_pd(n, _mm256_set1_pd(1.0), _CMP_LE_OQ);
  const V remainder = (a - n * ln2By8Hi) - n * ln2By8Lo;
  store(strip.r + i, select(small, a, remainder));
  store(strip.u + i, select(small, a * a, remainder));
  store(strip.small + i, small);

  const Words4 whole = lowWords(t), row = whole > 255 ? (whole & 7) | 248 : whole;
  const Words4 offset = row << 6;
  __builtin_memcpy(strip.offsets + i, &offset, sizeof offset);
  store(strip.scale + i, fromHighWords<V>(((whole - row) << 17) + 0x3ff00000));
}

// The second pass in three steps: the upper terms, the lower terms, and the sum.
template <int64_t length>
INLINE V upperTerms(const Strip<length>& strip, int64_t i) {
  const auto rows = rowsAt<V>(sinhPolyTable, strip.offsets + i);
  const V u = load<V>(strip.u + i);
  const auto [e6, e7] = columns(rows, 6);
  const auto [e4, e5] = columns(rows, 4);
  return ((e7 * u + e6) * u + e5) * u + e4;
}
template <int64_t length>
INLINE V lowerTerms(V p, const Strip<length>& strip, int64_t i) {
  const auto rows = rowsAt<V>(sinhPolyTable, strip.offsets + i);
  const V u = load<V>(strip.u + i);
  const auto [e2, e3] = columns(rows, 2);
  return ((p * u + e3) * u + e2) * u;
}
template <int64_t length>
INLINE V sum(V p, const Strip<length>& strip, int64_t i) {
  const auto rows = rowsAt<V>(sinhPolyTable, strip.offsets + i);
  const V r = load<V>(strip.r + i), small = load<V>(strip.small + i);
  const auto [e0, e1] = columns(rows, 0);
  const V early = _mm256_and_pd(small, e0), late = _mm256_andnot_pd(small, e0);
  return ((e1 * r + (p * r + early)) + late) * load<V>(strip.scale + i);  // the last product is exact
}

INLINE V core(V x) {
  Strip<4> strip;
  reduce(magnitude(x), strip, 0);
  return orBits(sum(lowerTerms(upperTerms(strip, 0), strip, 0), strip, 0), signOf(x));
}

[[gnu::noinline, gnu::cold]] Element sinhSpecialLane(Float64 x) {
  if ((highWord(x) & 0x7ff00000) == 0x7ff00000) return {x + x, nuvStatusOk};
  if (magnitude(x) >= firstOverflow) return {opaque(x) * opaque(largestFinite), nuvStatusOverflow};
  return {orBits(halfExponential(magnitude(x)), signOf(x)), nuvStatusOk};
}

// Elements that aren't flagged, a multiple of four of them.
INLINE void pipeline(const Float64* src, Float64* dst, int64_t count) {
  Strip<longestStrip + 8> strip;
  for (int64_t i = 0; i < count; i += 4) reduce(magnitude(load<V>(src + i)), strip, i);
  for (int64_t i = count; i < count + 8; i += 4) reduce(V{}, strip, i);

  V lower = lowerTerms(upperTerms(strip, 0), strip, 0), upper = upperTerms(strip, 4);
  for (int64_t i = 0; i < count; i += 4) {
    const V y = sum(lower, strip, i);
    lower = lowerTerms(upper, strip, i + 4);
    upper = upperTerms(strip, i + 8);
    store(dst + i, orBits(y, signOf(load<V>(src + i))));
  }
}

[[gnu::noinline]] nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  return stripLoop<V>(src, dst, len, flaggedHighWord, pipeline, core, sinhSpecialLane);
}

}  // namespace

nuvStatus sinhAvx(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, loop>(len, src, dst);
}

}  // namespace qorvane
