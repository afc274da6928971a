// What the sine and the cosine of level 5 are made of: the step of 2 pi / 512, the polynomials, and
// the terms at a row of the table of 512 points.
#pragma once
#include "trig/sin_cos.h"

namespace qorvane {
namespace {

#include "trig/sin_cos_512_tables.inc"

constexpr int quarterTurn = 128;

// 2 pi / 512 in three parts; a count times the first is exact up to |x| = 65536, times the second
// to 2^-73 at worst.
constexpr Step step = {
    fromBits(0x40545f306dc9c883),  // 81.48733086305042 = 512 / (2 pi)
    fromBits(0x3f8921fb54400000),  // 0.012271846302610356
    fromBits(0x3d60b4611a600000),  // 4.747734770549973e-13
    fromBits(0x3b33198a2e037073),  // 1.5798955068718364e-23
};
constexpr Float64 largestFast = 65536.0;  // beyond it an odd count times step.part1 has more than 53 bits

// sin r - r = r z (q0 + q1 z) with z = r^2, |r| <= pi / 512: error 2^-40.3;
// cos r - 1 = z (r0 + r1 z + r2 z^2) with z = r^2, |r| <= pi / 512: error 2^-63.0
constexpr Float64 q1 = fromBits(0x3f81110fabb3551c);  // 0.008333322932609515
constexpr Float64 q0 = fromBits(0xbfc5555555554448);  // -0.1666666666665455
constexpr Float64 r2 = fromBits(0xbf56c16ab163b2d7);  // -0.0013888875887985619
constexpr Float64 r1 = fromBits(0x3fa5555555554ccf);  // 0.041666666666651524
constexpr Float64 r0 = fromBits(0xbfe0000000000000);  // -0.5

// Whether any |x| is too large for the fast path; a NaN isn't.
template <class V>
INLINE bool isLarge(V x) {
  constexpr int parts = laneCount<V> / 4;
  const auto isAbove = [](Lanes4 a)
                           INLINED { return _mm256_cmp_pd(magnitude(a), broadcast<Lanes4>(largestFast), _CMP_GT_OQ); };
  Lanes4 all = isAbove(partOf(x, 0));
  for (int i = 1; i < parts; ++i) all = _mm256_or_pd(all, isAbove(partOf(x, i)));
  return _mm256_movemask_pd(all) != 0;
}

template <class V>
INLINE Terms<V> expandAt(int firstRow, BitsOf<V> offsets, V r, V e, V sinPoly, V cosPoly) {
  const auto row = columns<4, V>(trigTable512[firstRow], offsets);
  return expand(SplitSine<V>{row.of[0], row.of[1], row.of[2], row.of[3]}, r, e, sinPoly, cosPoly);
}

template <class V>
struct Polynomials {
  V sinPoly, cosPoly;
};
template <class V>
INLINE Polynomials<V> polynomials(V r) {
  const V z = r * r;
  return {(q1 * z + q0) * z, ((r2 * z + r1) * z + r0) * z};
}

}  // namespace
}  // namespace qorvane
