// The reduction of any argument modulo 2 pi to a point of the table of 512 rows, in lanes, by
// whole-number arithmetic; for sources of level 5.
//
// Method: the 53-bit significand of x times the 192 bits of 1/(2 pi) that matter to its exponent
// gives the fraction of a revolution. Its leading 128 bits are read as three floating-point numbers
// u + g + h; u is rounded to 512ths, and what remains is multiplied by 2 pi as a sum of two
// numbers.
//
// Error: the fraction lacks at most 2^-126 of a revolution. The nearest that a number above 2^-20
// comes to a multiple of pi/2 is 2^-61, so that even there 62 bits of the remainder are good; at
// the hardest arguments of all exponents and their neighbours the largest error is 2^-64.4 of the
// remainder.
#pragma once
#include "trig/sin_cos.h"

namespace qorvane {
namespace {

#include "trig/revolutions_tables.inc"

constexpr Float64 rowShifter = 0x1.8p43;                   // rounds to a multiple of 1/512
constexpr Float64 twoPi = fromBits(0x401921fb54442d18);    // 6.2831853071795862
constexpr Float64 twoPiHi = fromBits(0x401921fb54000000);  // 6.283185303211212
constexpr Float64 twoPiLo = fromBits(0x3e310b4611a62633);  // 3.968374318722162e-09: 2 pi - twoPiHi
constexpr Float64 fixedPointFrom =
    0x1p-20;  // up to here x is its own remainder: a fixed-point fraction would lose its last bits
constexpr uint64_t low32 = 0xffffffff, signBit = 0x8000000000000000;

// The 128-bit fraction of a revolution, top first.
struct Fraction {
  Bits2 top, low;
};

// The products of 32-bit limbs are added up from the lowest one that counts; each sum carries what
// it has above 32 bits into the next. What whole revolutions and the lowest 64 bits would take is
// left out.
INLINE Fraction fractionOfRevolution(Bits2 x) {
  const auto times = [](Bits2 a, Bits2 b) INLINED {
    return reinterpret_cast<Bits2>(_mm_mul_epu32(reinterpret_cast<__m128i>(a), reinterpret_cast<__m128i>(b)));
  };
  const auto rowOf = [](uint64_t element) INLINED {
    return reinterpret_cast<const Float64 *>(invTwoPiByExponent[(element >> 52) & 0x7ff]);
  };
  const Float64 *row0 = rowOf(x[0]), *row1 = rowOf(x[1]);
  const __m128d w01Of0 = _mm_loadu_pd(row0), w01Of1 = _mm_loadu_pd(row1);
  const Bits2 w0 = reinterpret_cast<Bits2>(_mm_unpacklo_pd(w01Of0, w01Of1)), w0h = w0 >> 32;
  const Bits2 w1 = reinterpret_cast<Bits2>(_mm_unpackhi_pd(w01Of0, w01Of1)), w1h = w1 >> 32;
  const Bits2 w2 = reinterpret_cast<Bits2>(_mm_loadh_pd(_mm_load_sd(row0 + 2), row1 + 2)), w2h = w2 >> 32;

  // A multiplication reads the lower half of a word only.
  const Bits2 a = ((x >> 32) & 0xfffff) | 0x100000, b = x;
  const Bits2 bw1 = times(b, w1), bw1h = times(b, w1h), bw0 = times(b, w0);
  const Bits2 g2 = (times(a, w2) >> 32) + (bw1 & low32) + times(a, w2h) + (times(b, w2h) >> 32);
  const Bits2 g3 = (g2 >> 32) + (bw1h & low32) + times(a, w1) + (bw1 >> 32);
  const Bits2 g4 = (g3 >> 32) + (bw0 & low32) + times(a, w1h) + (bw1h >> 32);
  const Bits2 g5 = (g4 >> 32) + times(b, w0h) + times(a, w0) + (bw0 >> 32);  // only the lower half is used
  return {(g5 << 32) + (g4 & low32), (g3 << 32) + (g2 & low32)};
}

// x is finite; for others the result has no meaning, but `shifted` is still within its bounds and
// no flag is raised.
INLINE Remainder<Lanes4> reduceRevolutions(Lanes4 x) {
  using Bits4 = BitsOf<Lanes4>;
  const Bits4 bits = bitsOf(x), sign = bits & signBit;
  const auto fractions = makePack<2>([&](int i) INLINED { return fractionOfRevolution(bits.part[i]); });
  const Bits4 top{{fractions.part[0].top, fractions.part[1].top}}, low{{fractions.part[0].low, fractions.part[1].low}};

  // 1 + the first 52 bits, the next 52 bits, the last 24 bits, all with the sign of x.
  const Lanes4 u = valueOf<Lanes4>((top >> 12) | (sign ^ 0x3ff0000000000000u));
  const Bits4 unitOfG = sign ^ 0x3cb0000000000000u, unitOfH = sign ^ 0x3970000000000000u;  // 2^-52, 2^-104
  const Lanes4 g = valueOf<Lanes4>(((top & 0xfffu) << 40) | (low >> 24) | unitOfG) - valueOf<Lanes4>(unitOfG);
  const Lanes4 h = valueOf<Lanes4>(((low & 0xffffffu) << 28) | unitOfH) - valueOf<Lanes4>(unitOfH);

  const Lanes4 v = rowShifter + u;
  const Lanes4 u1 = u - (v - rowShifter);
  const Lanes4 sum = u1 + g;
  const Lanes4 high = valueOf<Lanes4>(bitsOf(sum) & ~uint64_t{0x7ffffff}), rest = sum - high;
  const Lanes4 c = (g + (u1 - sum)) + h;
  const Lanes4 t1 = twoPiHi * high;
  const Lanes4 t2 = (twoPiHi * rest + twoPiLo * high) + (twoPi * c + twoPiLo * rest);
  const Lanes4 r = t1 + t2;
  const Lanes4 isSmall = _mm256_cmp_pd(magnitude(x), broadcast<Lanes4>(fixedPointFrom), _CMP_LE_OQ);
  // With a directed rounding mode of the caller the sum v of a small x can be one row off 0, and
  // the row must belong to the remainder.
  return {select(isSmall, x, r), withoutBits((t1 - r) + t2, isSmall), bitsOf(withoutBits(v, isSmall))};
}

}  // namespace
}  // namespace qorvane
