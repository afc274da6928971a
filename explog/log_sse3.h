// What ln and log10 share at levels 1 to 4: the test for arguments outside the fast range and their
// results, the terms before the polynomial, and the loop.
#pragma once
#include "frame/loops.h"

namespace qorvane {
namespace {

// Whether any lane is anything but a positive normal finite number. The difference moves those
// numbers to the bottom of the signed range.
template <class V>
INLINE bool anyOutsideFastRange(V x) {
  return any(wrappingDifference(highWords(x), 0x80100000) > static_cast<int>(0xffdfffff));
}

INLINE bool isPositiveSubnormal(Float64 x) { return toBits(x) - 1 < 0x000fffffffffffff; }

// Everything but positive finite numbers. The results are constants or the argument itself: no flag
// is raised.
INLINE Element specialFault(Float64 x) {
  constexpr uint64_t infinity = 0x7ff0000000000000, sign = uint64_t{1} << 63;
  const uint64_t b = toBits(x), magnitude = b & ~sign;
  if (magnitude > infinity || b == infinity) return {x};
  if (magnitude == 0) return {fromBits(sign | infinity), nuvStatusPole};
  return {fromBits(0xfff8000000000000), nuvStatusOutOfDomain};
}

// The bits of x under the mask, with the exponent of 1.
template <class V>
INLINE V significand(V x, uint64_t mask) {
  return valueOf<V>((bitsOf(x) & mask) | uint64_t{0x3ff0000000000000});
}

// What a logarithm is summed up from: rest + T, where rest still lacks r times a polynomial in r.
template <class V>
struct LeadingTerms {
  V r, low, T;  // T: the leading terms; low: the low parts, to be added after the polynomial
  V elsewhere;
};

// From k and the mantissa f, its upper part fh and the row's reciprocal and logarithm; f *
// reciprocal - scale is r, and k * (unitHi + unitLo) the exponent's term.
template <class V>
INLINE LeadingTerms<V> leadingTerms(V k, V f, V fh, V reciprocal, TwoColumns<V> row, Float64 scale, Float64 unitHi,
                                    Float64 unitLo) {
  const V fl = f - fh;
  const V uh = (fh * reciprocal) - scale, ul = fl * reciprocal, r = ul + uh;
  const V A = (unitHi * k) + row.first, C = (unitLo * k) + row.second;
  // With C = 0, near 1, A is 0 too and ul belongs to the leading term; elsewhere it would be lost
  // in T and joins the low terms.
  const V nearOne = equalLanes(C, broadcast<V>(0.0));
  return {r, C, (uh + A) + andBits(nearOne, ul), withoutBits(ul, nearOne)};
}

// The logarithm in two parts, with its polynomial p.
template <class V>
struct TwoTerms {
  V rest, T;
};
template <class V>
INLINE TwoTerms<V> withPolynomial(LeadingTerms<V> t, V p) {
  return {((t.r * p) + t.low) + t.elsewhere, t.T};
}

// core(V x) -> TwoTerms<V>; special(Float64 x) -> Element, for an element outside the fast range.
template <class CoreFunction, class Special>
INLINE nuvStatus logLoop(const Float64* src, Float64* dst, int64_t len, CoreFunction core, Special special) {
  return oneOrSeveral<Pack<Lanes2, 4>, Raises::no>(
      src, dst, len,
      [=](auto x) INLINED {
        const auto c = core(x);
        return c.rest + c.T;
      },
      [](auto x) INLINED { return anyOutsideFastRange(x); }, special);
}

// The positive subnormal numbers go through the same core, times 2^52; logOf2To52 is what that
// adds.
template <class CoreFunction>
INLINE Element specialLane(Float64 x, CoreFunction core, Float64 logOf2To52) {
  if (!isPositiveSubnormal(x)) return specialFault(x);
  const TwoTerms<Float64> c = core(x * 0x1p52);
  return {(c.rest - logOf2To52) + c.T};
}

}  // namespace
}  // namespace qorvane
