// What asin and acos share at levels 1 to 4: the argument of the polynomial, and the loop.
//
// Up to 1/2 asin(a) = A + A Q(z) with A = a and z = a^2. Above, with z = (1 - a) / 2, it is
// pi/2 - 2 asin(sqrt z), and 2 asin(sqrt z) = sqrt(4z) (1 + Q(z)): the same polynomial, and
// A = -sqrt(4z) in two parts. That root is taken from the processor's approximation of its
// reciprocal and the binomial series, without a division or a square root.
#pragma once
#include "frame/pipeline.h"
#include "invtrig/inverse_constants.h"

namespace qorvane {
namespace {

// |x| from 1 up, infinities and NaNs.
constexpr int outlierHighWord = 0x3ff00000;

template <class V>
struct ArcTerms {
  V big;     // mask: |x| is above 1/2
  V hi, lo;  // A
  V tail;    // A Q(z)
};

INLINE Words4 reciprocalRoots(Words4 singles) {
  return reinterpret_cast<Words4>(_mm_rsqrt_ps(reinterpret_cast<__m128>(singles)));
}
INLINE int reciprocalRoots(int single) { return reciprocalRoots(Words4{single})[0]; }
template <int K>
INLINE Pack<Words4, K> reciprocalRoots(Pack<Words4, K> singles) {
  return makePack<K>([&](int i) INLINED { return reciprocalRoots(singles.part[i]); });
}

// About -1/sqrt(s), to 12 bits and with a low word of zero, for s from 2^-200 to 4. The processor is
// asked for the root of s times an even power of 2, between 1 and 4, cut to single precision.
// With `scale` the argument is s 2^scale, and the seed is multiplied by the inverse, 2^-scale.
template <int scale = 0, class V>
INLINE V negativeSeed(V s) {
  // The exponent's lowest bit, extended by its sign, makes the exponent of 1 or that of 2.
  const auto fraction = highWords(valueOf<V>(bitsOf(s) << 11)) >> 8;
  const auto root = reciprocalRoots(wrappingSum(fraction, 0x40000000));
  // Half the even power, with the bias of the root's exponent and the sign.
  const auto exponent =
      ((wrappingDifference(highWords(s), 0x30100000 - scale * 0x100000) >> 1) ^ -1) & static_cast<int>(0xbff00000);
  return fromHighWords<V>(wrappingSum(root >> 3, exponent));
}

// sqrt(s) negated, in two parts: with the seed n and e = s n^2 - 1 it is s n (1 + e)^(-1/2).
template <class V>
struct Root {
  V hi, lo;
};
template <class V>
INLINE Root<V> negativeRoot(V s, V n) {
  // (1 + e)^(-1/2) - 1 = b1 e + ... + b5 e^5
  constexpr Float64 b5 = fromBits(0xbfcf800000000000);  // -0.24609375
  constexpr Float64 b4 = fromBits(0x3fd1800000000000);  // 0.2734375
  constexpr Float64 b3 = fromBits(0xbfd4000000000000);  // -0.3125
  constexpr Float64 b2 = fromBits(0x3fd8000000000000);  // 0.375
  constexpr Float64 b1 = fromBits(0xbfe0000000000000);  // -0.5
  const V sh = andBits(s, broadcast<V>(fromBits(0xffffffff00000000))), sl = s - sh;
  const V n2 = n * n;
  const V e = (sh * n2 - 1.0) + sl * n2;
  const V p = (((((b5 * e + b4) * e + b3) * e + b2) * e + b1) * e) * n * s;
  return {sh * n, p + sl * n};
}

// Q(z) = asin(A) / A - 1, as an even and an odd polynomial: z E(z^2) + z^2 O(z^2)
template <class V>
INLINE V arcSeries(V z) {
  constexpr Float64 e6 = fromBits(0x3fa0d60d1986aec6);  // 0.032883081158253301
  constexpr Float64 e5 = fromBits(0x3f96825c16316f03);  // 0.021981657144006888
  constexpr Float64 e4 = fromBits(0x3f8622cb270118b0);  // 0.010808550868862719
  constexpr Float64 e3 = fromBits(0x3f8ca247eb6664e5);  // 0.013981402239894405
  constexpr Float64 e2 = fromBits(0x3f96e8be19f6199d);  // 0.022372216611713909
  constexpr Float64 e1 = fromBits(0x3fa6db6db724fe19);  // 0.044642857293512459
  constexpr Float64 e0 = fromBits(0x3fc5555555555579);  // 0.16666666666666766
  constexpr Float64 o5 = fromBits(0xbf95e9019191be85);  // -0.021396660213127319
  constexpr Float64 o4 = fromBits(0x3f6d768b20a865ac);  // 0.0035965650241584879
  constexpr Float64 o3 = fromBits(0x3f8755bdefc292c9);  // 0.011394009545108617
  constexpr Float64 o2 = fromBits(0x3f91c49bd43e63f7);  // 0.017351564797437606
  constexpr Float64 o1 = fromBits(0x3f9f1c71a7cedd43);  // 0.030381942612839411
  constexpr Float64 o0 = fromBits(0x3fb333333332dc42);  // 0.074999999999938
  const V z2 = z * z;
  const V even = (((((e6 * z2 + e5) * z2 + e4) * z2 + e3) * z2 + e2) * z2 + e1) * z2 + e0;
  const V odd = ((((o5 * z2 + o4) * z2 + o3) * z2 + o2) * z2 + o1) * z2 + o0;
  return even * z + odd * z2;
}

template <class V>
INLINE V isBig(V a) {
  return lessLanes(broadcast<V>(0.5), a);
}
template <class V>
INLINE ArcTerms<V> arcTerms(V a, Root<V> root, V series) {
  const V big = isBig(a), hi = select(big, root.hi, a), lo = andBits(big, root.lo);
  return {big, hi, lo, series * (hi + lo)};
}
template <class V>
INLINE ArcTerms<V> arcTerms(V a) {
  const V t = (1.0 - a) * 0.5, s = 4.0 * t;  // the root is of no use where a isn't big
  return arcTerms(a, negativeRoot(s, negativeSeed(s)), arcSeries(smallerLanes(t, a * a)));
}
// A single number goes one of the two ways.
INLINE ArcTerms<Float64> arcTerms(Float64 a) {
  if (a <= 0.5) return {0.0, a, 0.0, arcSeries(a * a) * a};
  const Float64 t = (1.0 - a) * 0.5, s = 4.0 * t;
  const auto [hi, lo] = negativeRoot(s, negativeSeed(s));
  return {fromBits(~uint64_t{0}), hi, lo, arcSeries(t) * (hi + lo)};
}

// Eight elements without outliers. A vector's chain of operations takes a hundred cycles, and the
// processor doesn't look far enough ahead to fill them with other vectors. So the roots of all four
// vectors go side by side, and the polynomial's steps stand between theirs, of two vectors first and
// then of the other two: all registers are in use, and few numbers go through memory. The operations
// are those of negativeRoot, for -sqrt(4t) with n four times the seed and e four times as large, and
// of arcSeries; powers of 2 change nothing else, so the bits are theirs.
using Eight = Pack<Lanes2, 4>;
using HalfOfEight = Pack<Lanes2, 2>;
INLINE HalfOfEight half(Eight v, int i) { return {{v.part[2 * i], v.part[2 * i + 1]}}; }

constexpr Lanes2 twice(uint64_t pattern) { return Lanes2{fromBits(pattern), fromBits(pattern)}; }
struct Coefficients {
  Lanes2 even[7] = {twice(0x3fa0d60d1986aec6), twice(0x3f96825c16316f03), twice(0x3f8622cb270118b0),
                    twice(0x3f8ca247eb6664e5), twice(0x3f96e8be19f6199d), twice(0x3fa6db6db724fe19),
                    twice(0x3fc5555555555579)};  // e6 to e0 of arcSeries
  Lanes2 odd[6] = {twice(0xbf95e9019191be85), twice(0x3f6d768b20a865ac), twice(0x3f8755bdefc292c9),
                   twice(0x3f91c49bd43e63f7), twice(0x3f9f1c71a7cedd43), twice(0x3fb333333332dc42)};  // o5 to o0
  Lanes2 b5 = twice(0xbf2f800000000000);  // -0.000240325927734375, b5 / 4^5 of negativeRoot
  Lanes2 b4 = twice(0x3f51800000000000);  // 0.001068115234375
  Lanes2 b3 = twice(0xbf74000000000000);  // -0.0048828125
  Lanes2 b2 = twice(0x3f98000000000000);  // 0.0234375
  Lanes2 b1 = twice(0xbfc0000000000000);  // -0.125
  Lanes2 minusFour = twice(0xc010000000000000);
};
constexpr Coefficients coefficients;

struct Series {
  HalfOfEight z, z2, even, odd;
};
INLINE void begin(const Coefficients& c, Series& s) {
  s.z2 = s.z * s.z;
  s.even = c.even[0] * s.z2 + c.even[1], s.odd = c.odd[0] * s.z2 + c.odd[1];
}
template <int k>
INLINE void step(const Coefficients& c, Series& s) {
  s.even = s.even * s.z2, s.odd = s.odd * s.z2;
  s.even = s.even + c.even[k], s.odd = s.odd + c.odd[k];
}
INLINE void lastStep(const Coefficients& c, Series& s) { s.even = s.even * s.z2 + c.even[6]; }
INLINE HalfOfEight sum(const Series& s) { return s.even * s.z + s.odd * s.z2; }

template <auto finish>
INLINE bool eightElements(const Coefficients& c, const Float64* src, Float64* dst) {
  const Eight a = magnitude(load<Eight>(src));
  // The highest quarters of the patterns are enough to tell, and as signed 16-bit integers have a maximum.
  __m128i most = _mm_castpd_si128(a.part[0]);
  for (int i = 1; i < 4; ++i) most = _mm_max_epi16(most, _mm_castpd_si128(a.part[i]));
  if (_mm_movemask_pd(_mm_castsi128_pd(_mm_cmpgt_epi16(most, _mm_set1_epi16((outlierHighWord >> 16) - 1)))) != 0)
      [[unlikely]]
    return false;

  const Eight t = (1.0 - a) * 0.5, n = negativeSeed<-2>(t), z = smallerLanes(t, a * a);
  const Eight th = andBits(t, broadcast<Eight>(fromBits(0xffffffff00000000))), tl = t - th;
  Series first{half(z, 0), {}, {}, {}}, second{half(z, 1), {}, {}, {}};
  begin(c, first);
  const Eight n2 = n * n;
  step<2>(c, first);
  const Eight product = th * n2, rest = tl * n2;
  step<3>(c, first);
  const Eight e = (product + c.minusFour) + rest;
  step<4>(c, first);
  Eight p = c.b5 * e + c.b4;
  step<5>(c, first);
  p = p * e + c.b3;
  lastStep(c, first);
  const HalfOfEight firstSeries = sum(first);
  begin(c, second);
  p = p * e + c.b2;
  step<2>(c, second);
  step<3>(c, second);
  p = p * e + c.b1;
  step<4>(c, second);
  p = p * e;
  step<5>(c, second);
  p = p * n;
  const Eight hi = th * n, lo = tl * n;
  lastStep(c, second);
  p = p * t + lo;
  const auto result = [&](int i, HalfOfEight series) INLINED {
    const HalfOfEight x = load<HalfOfEight>(src + 4 * i);
    return finish(x, arcTerms(magnitude(x), {half(hi, i), half(p, i)}, series));
  };
  store(dst, result(0, firstSeries));
  store(dst + 4, result(1, sum(second)));
  return true;
}

template <auto finish>
INLINE bool stretch(int64_t, const Float64* src, Float64* dst) {
  // Where the compiler knows the numbers it loads one and doubles it, with two instructions, and
  // lacks the register. It isn't told that they are these.
  const Coefficients* c = &coefficients;
  asm("" : "+r"(c));
  return eightElements<finish>(*c, src, dst);
}

// Five to seven elements take longer than eight, so where so many are left they get company.
template <class Loop>
[[gnu::noinline]] nuvStatus inCopies(int64_t len, const Float64* src, Float64* dst, Loop loop) {
  const int64_t rest = len % laneCount<Eight>, whole = len - rest;
  const nuvStatus status = whole == 0 ? nuvStatusOk : loop(whole, src, dst);
  src += whole, dst += whole;
  alignas(16) Float64 copies[laneCount<Eight>];
  store(copies, load<Four>(src));
  store(copies + 4, loadPart<Four>(src + 4, rest - 4));
  const nuvStatus ofRest = loop(laneCount<Eight>, copies, copies);
  store(dst, load<Four>(copies));
  storePart(dst + 4, load<Four>(copies + 4), rest - 4);
  return ofRest == nuvStatusOk ? status : ofRest;
}

// finish(V x, ArcTerms<V>) -> V; atOne and ofNan(Float64 x) give the results of 1 and -1 and of
// NaNs.
template <auto finish, auto atOne, auto ofNan>
INLINE nuvStatus arcLoop(const Float64* src, Float64* dst, int64_t len) {
  static constexpr auto fast = [](auto x) INLINED { return finish(x, arcTerms(magnitude(x))); };
  static constexpr auto isOutlier = [](auto x) INLINED { return anyMagnitudeFrom(x, outlierHighWord); };
  static constexpr auto lane = [](Float64 x) -> Element {
    if (x != x) return {ofNan(x)};
    if (magnitude(x) == 1.0) return {atOne(x)};
    if (magnitude(x) > 1.0) return {fromBits(0xfff8000000000000), nuvStatusOutOfDomain};
    return {fast(x)};
  };
  static constexpr auto blocks = [](int64_t count, const Float64* x, Float64* y) INLINED {
    return guardedUnaryLoop<Pack<Lanes2, 2>, Raises::no>(x, y, count, fast, isOutlier, lane);
  };
  static constexpr auto inEights = [](int64_t count, const Float64* x, Float64* y) INLINED {
    constexpr int64_t eight = laneCount<Eight>;
    return shortOrLongLoop<eight, eight, eight>(
        count, [](int64_t n, const Float64* p, Float64* q) INLINED { return stretch<finish>(n, p, q); }, blocks, x, y);
  };
  if (len == 1 && !isOutlier(*src)) return *dst = fast(*src), nuvStatusOk;
  return len % laneCount<Eight> > 4 ? inCopies(len, src, dst, inEights) : inEights(len, src, dst);
}

}  // namespace
}  // namespace qorvane
