// sinh(x), level 5.
//
// Method: with a = |x|, 8a / ln 2 = n + rest with an integer n, so that a = n ln 2 / 8 + r with |r|
// <= ln 2 / 16. A row of a table has a polynomial of degree 7 in r for sinh(n ln 2 / 8 + r). It has
// rows for n up to 255; for greater n, where e^-a is negligible, the row of the last eight with the
// same n mod 8 serves, times a power of 2. Where n is 0 or 1 the row is an odd polynomial in a
// instead.
//
// Error: at most 1.000 ulp, where e0 is off by nearly half a unit, in round-to-nearest
// (docs/accuracy.md has the arguments). In directed rounding n is the next integer in that
// direction, r twice as long and the error up to 711 ulp.
//
// Special values: a NaN gives the NaN quieted, infinities themselves, sinh(-0) -0; from
// 710.475860073944 up in magnitude the result is infinite and overflow, which raises its flag.
// Rounding mode, FTZ and DAZ are the caller's.
#include "frame/kernel_frame.h"
#include "hyperbolic/sinh_cosh_avx.h"

namespace qorvane {
namespace {

#include "hyperbolic/sinh_tables.inc"

constexpr Float64 invLn2By8 = fromBits(0x40271547652b82fe);  // 11.541560327111707 = 8 / ln 2
constexpr Float64 shifter = fromBits(0x4338000000000000);    // 1.5 * 2^52
constexpr Float64 ln2By8Hi = fromBits(0x3fb62e42fefa4000);   // 0.086643397570014713: n * ln2By8Hi is exact
constexpr Float64 ln2By8Lo = fromBits(0xbd18432a1b0e2634);   // -2.1549305657018543e-14: ln 2 / 8 - ln2By8Hi

// |x| from 709.7392578125 up, infinities and NaNs
constexpr int flaggedHighWord = 0x40862dea;

constexpr int lastOctave = 31;  // of the table

using V = Lanes4;

// What the first pass finds of the elements of a strip.
template <int64_t length>
struct Strip {
  alignas(32) Float64 r[length];         // the remainder, or a where n is 0 or 1
  alignas(32) Float64 u[length];         // the polynomial's variable: r, or a^2 where n is 0 or 1
  alignas(32) Float64 scale[length];     // the power of 2, with the sign of x
  alignas(16) uint32_t offsets[length];  // of the rows, in bytes
};

// Gives all ones where n is 0 or 1.
template <int64_t length>
INLINE V reduce(V x, Strip<length>& strip, int64_t i) {
  const V a = magnitude(x), t = a * invLn2By8 + shifter, n = t - shifter;
  const V small = _mm256_cmp_pd(n, _mm256_set1_pd(1.0), _CMP_LE_OQ);
  const V remainder = (a - n * ln2By8Hi) - n * ln2By8Lo;
  store(strip.r + i, select(small, a, remainder));
  store(strip.u + i, select(small, a * a, remainder));

  // Row n up to 255; above, the row of the last octave, and the octaves that are left
  const __m128i whole = reinterpret_cast<__m128i>(lowWords(t));
  const Words4 octave = reinterpret_cast<Words4>(_mm_max_epi32(_mm_srli_epi32(whole, 3), _mm_set1_epi32(lastOctave)));
  const Words4 offset = (reinterpret_cast<Words4>(whole) << 6) - ((octave - lastOctave) << 9);
  storeWords(strip.offsets + i, offset);
  store(strip.scale + i, orBits(fromHighWords<V>((octave + (1023 - lastOctave)) << 20), signOf(x)));
  return small;
}

// The second pass in steps. Each loads the columns that the next one uses.
struct UpperColumns {
  V e4, e5, e6, e7;
};
struct LowerColumns {
  V p, e2, e3;
};
struct LastColumns {
  V p, e0, e1;
};
template <int64_t length>
INLINE UpperColumns upperColumns(const Strip<length>& strip, int64_t i) {
  const auto rows = rowsAt<V>(strip.offsets + i);
  const auto [e6, e7] = twoColumns<V>(sinhPolyTable[0] + 6, rows);
  const auto [e4, e5] = twoColumns<V>(sinhPolyTable[0] + 4, rows);
  return {e4, e5, e6, e7};
}
template <int64_t length>
INLINE LowerColumns upperTerms(UpperColumns c, const Strip<length>& strip, int64_t i) {
  const auto [e2, e3] = twoColumns<V>(sinhPolyTable[0] + 2, rowsAt<V>(strip.offsets + i));
  const V u = load<V>(strip.u + i);
  return {((c.e7 * u + c.e6) * u + c.e5) * u + c.e4, e2, e3};
}
template <int64_t length>
INLINE LastColumns lowerTerms(LowerColumns c, const Strip<length>& strip, int64_t i) {
  const auto [e0, e1] = twoColumns<V>(sinhPolyTable[0], rowsAt<V>(strip.offsets + i));
  const V u = load<V>(strip.u + i);
  return {((c.p * u + c.e3) * u + c.e2) * u, e0, e1};
}

// e0 of the rows 0 and 1 is added first, that of the others last.
INLINE V core(V x) {
  Strip<4> strip;
  const V small = reduce(x, strip, 0), r = load<V>(strip.r);
  const auto [p, e0, e1] = lowerTerms(upperTerms(upperColumns(strip, 0), strip, 0), strip, 0);
  const V early = andBits(small, e0), late = withoutBits(e0, small);
  return ((e1 * r + (p * r + early)) + late) * load<V>(strip.scale);  // the last product is exact
}

constexpr auto isFlagged = [](auto x) INLINED { return anyMagnitudeFrom(x, flaggedHighWord); };

// Any argument. In a block with flagged elements the others have the bits that they have elsewhere.
Element sinhFixLane(Float64 x) {
  if (!isFlagged(x)) return {core(broadcast<V>(x))[0]};
  if ((highWord(x) & 0x7ff00000) == 0x7ff00000) return {x + x};
  if (magnitude(x) >= firstOverflow) return {opaque(x) * opaque(largestFinite), nuvStatusOverflow};
  return {orBits(halfExponential(magnitude(x)), signOf(x))};
}

// A strip without flagged elements, their number a multiple of four, in round-to-nearest: e0 of the
// rows 0 and 1 is below half a unit in the last place of both terms that it could be added to, so
// it may come last too.
INLINE void evaluate(const Float64* src, Float64* dst, int64_t count) {
  Strip<longestStrip> strip;
  for (int64_t i = 0; i < count; i += 4) reduce(load<V>(src + i), strip, i);
  UpperColumns upper;
  LowerColumns lower;
  LastColumns last;
  pipeline<4>(
      count, [&](int64_t i) INLINED { upper = upperColumns(strip, i); },
      [&](int64_t i) INLINED { lower = upperTerms(upper, strip, i); },
      [&](int64_t i) INLINED { last = lowerTerms(lower, strip, i); },
      [&](int64_t i) INLINED {
        const V r = load<V>(strip.r + i);
        store(dst + i, ((last.e1 * r + last.p * r) + last.e0) * load<V>(strip.scale + i));
      });
}

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  constexpr uint32_t roundingControl = 0x6000;
  const bool toNearest = len >= shortestStrip && (readMxcsr() & roundingControl) == 0;
  return stretchLoop<longestStrip, shortestStrip, 4>(
      len,
      [=](int64_t count, const Float64* x, Float64* y) INLINED {
        const bool fits = toNearest && !anyMagnitudeFrom(x, count, flaggedHighWord);
        if (fits) evaluate(x, y, count);
        return fits;
      },
      [](int64_t count, const Float64* x, Float64* y)
          INLINED { return guardedUnaryLoop<V, Raises::yes>(x, y, count, core, isFlagged, sinhFixLane); },
      src, dst);
}

}  // namespace

nuvStatus sinhAvx(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, loop>(len, src, dst);
}

}  // namespace qorvane
