// cbrt(x) and 1/cbrt(x), every level: the program that cbrt_sse3.cpp and cbrt_avx.cpp compile for
// their registers.
//
// Method: E = 3q + r for the biased exponent E, so that |x| = 2^(3(q - 341)) * 2^r * 1.m. The top 5
// bits of m give c, the centre of their row, and r one of three sections with the root of 2^r c as
// high + low. The root of 1 + v, v = (1.m - c)/c, |v| < 1/64, is a polynomial of degree 8.
//
// Error: the largest found are 0.5202 ulp (cbrt, just below 1.0625 * 2^(3k + 2)) and 0.5510 ulp
// (1/cbrt, just below 1.03125 * 2^(3k)), at edges of rows, where v is largest. The kernels run in
// round-to-nearest with subnormals honoured, whatever the caller's mode.
//
// Special values: NaN gives the NaN, quiet. cbrt gives zeros and infinities back; 1/cbrt gives
// zeros with their sign for infinities, and infinities with their sign, and a pole, for zeros,
// without a flag.
#pragma once
#include "algebraic/staged_loop.h"
#include "frame/kernel_frame.h"

namespace qorvane {
namespace {

#include "algebraic/cbrt_tables.inc"

// What makes one function of the method: its table, the exponent of its scale and the coefficients,
// from the highest on.
struct Cbrt {
  static constexpr bool inverse = false;
  static constexpr const Float64 (*table)[4] = cbrtTable;
  // (1 + v)^(1/3) = 1 + v (c1 + ... + c8 v^7), |v| <= 2^-6: error 2^-59.7
  static constexpr Float64 c[8] = {
      fromBits(0xbf9036de5c9cc8e7),  // c8 = -0.015834307100882319
      fromBits(0x3f93750ad588f115),  // c7 = 0.019001168521058782
      fromBits(0xbf98090d6221a247),  // c6 = -0.023472031702484377
      fromBits(0x3f9ee7113506ac12),  // c5 = 0.03017832647462277
      fromBits(0xbfa511e8d2b3183b),  // c4 = -0.041152263374485597
      fromBits(0x3faf9add3c0ca458),  // c3 = 0.061728395061728392
      fromBits(0xbfbc71c71c71c71c),  // c2 = -0.1111111111111111
      fromBits(0x3fd5555555555555),  // c1 = 0.33333333333333331
  };
};
struct InvCbrt {
  static constexpr bool inverse = true;
  static constexpr const Float64 (*table)[4] = invCbrtTable;
  // (1 + v)^(-1/3) = 1 + v (d1 + ... + d8 v^7), |v| <= 2^-6: error 2^-57.4
  static constexpr Float64 c[8] = {
      fromBits(0x3fb791d4f50a7b47),  // d8 = 0.092068967651795494
      fromBits(0xbfb9b33ca7a65562),  // d7 = -0.10039118855487097
      fromBits(0x3fbc67c9dd3d11bb),  // d6 = 0.11095868731815177
      fromBits(0xbfbff4c33f90ef5f),  // d5 = -0.12482853223712941
      fromBits(0x3fc26fabb85d0196),  // d4 = 0.14403292181124233
      fromBits(0xbfc61f9add3c0ca3),  // d3 = -0.17283950617283947
      fromBits(0x3fcc71c71c71c71c),  // d2 = 0.22222222222222221
      fromBits(0xbfd5555555555555),  // d1 = -0.33333333333333331
  };
};

// The places of a chunk's elements: byte offsets into the table, and the high words of the powers
// of two, signed like x, that results are multiplied with.
struct Scratch {
  alignas(16) uint32_t offset[chunkSize];
  alignas(16) int32_t scale[chunkSize];
};
template <class F>
INLINE Words4 storePlaces(Lanes2 a, Lanes2 b, Scratch& scratch, int64_t i) {
  const Words4 highWords = packHighWords(a, b);
  const __m128i words = reinterpret_cast<__m128i>(highWords);
  // n = 32E + j, and its quotient by 96 is q: (n * 43691) >> 22 for all n below 2^16. The remainder
  // is 32r + j.
  const __m128i n = _mm_srli_epi32(_mm_slli_epi32(words, 1), 16);
  const __m128i q = _mm_srli_epi32(_mm_mulhi_epu16(n, _mm_set1_epi32(43691)), 6);
  const __m128i row = _mm_sub_epi16(n, _mm_mullo_epi16(q, _mm_set1_epi32(96)));
  const __m128i exponents = _mm_slli_epi32(q, 20), sign = _mm_and_si128(words, _mm_set1_epi32(INT32_MIN));
  const __m128i powers = F::inverse ? _mm_sub_epi32(_mm_set1_epi32(0x55400000), exponents)
                                    : _mm_add_epi32(exponents, _mm_set1_epi32(0x2aa00000));
  _mm_store_si128(reinterpret_cast<__m128i*>(scratch.offset + i), _mm_slli_epi32(row, 5));
  _mm_store_si128(reinterpret_cast<__m128i*>(scratch.scale + i), _mm_or_si128(powers, sign));
  // Zeros, subnormal numbers, infinities and NaNs: 0x7ff00000 and 0x7fe00000 here.
  return (((highWords & 0x7ff00000) - 0x00100000) & 0x7ff00000) > 0x7fdfffff;
}

template <class F>
INLINE Words4 storePlaces(const Float64* x, Scratch& scratch, int64_t i) {
  return storePlaces<F>(load<Lanes2>(x), load<Lanes2>(x + 2), scratch, i);
}
template <class F>
INLINE Words4 storePlaces(Four x, Scratch& scratch, int64_t i) {
  return storePlaces<F>(lowHalf(x), highHalf(x), scratch, i);
}

// Two columns of the rows of four elements, from `first` on.
template <class F>
INLINE TwoColumns<Four> columns(const Scratch& scratch, int64_t i, int first) {
  return twoColumns<Four>(F::table[0] + first, [&](int lane) INLINED { return scratch.offset[i + lane]; });
}

// The steps on four elements, cut in three for the loop: the relative distance v from the centre,
// half the polynomial, the rest.
struct HalfPolynomial {
  Four v, sum;
};
template <class F>
INLINE Four distance(Four x, const Scratch& scratch, int64_t i) {
  const auto [reciprocal, centre] = columns<F>(scratch, i, 0);
  return reciprocal * (orBits(andBits(x, broadcast<Four>(fromBits(0x000fffffffffffff))), broadcast<Four>(-1.0)) -
                       centre);  // -1.m and -c
}
template <class F>
INLINE HalfPolynomial halfPolynomial(Four v) {
  return {v, (((F::c[0] * v + F::c[1]) * v + F::c[2]) * v + F::c[3]) * v + F::c[4]};
}
template <class F>
INLINE Four finish(HalfPolynomial h, const Scratch& scratch, int64_t i) {
  const Four v = h.v, p = ((h.sum * v + F::c[5]) * v + F::c[6]) * v + F::c[7];
  const auto [high, low] = columns<F>(scratch, i, 2);
  return ((p * (high * v) + low) + high) *
         fromHighWords<Four>(loadWords<Four>(scratch.scale + i));  // the scale is exact
}

template <class F>
Float64 ofNormal(Float64 x) {
  Scratch scratch;
  alignas(32) Float64 four[4] = {x, x, x, x};
  storePlaces<F>(load<Lanes2>(four), load<Lanes2>(four), scratch, 0);
  store(four, finish<F>(halfPolynomial<F>(distance<F>(load<Four>(four), scratch, 0)), scratch, 0));
  return four[0];
}

template <class F>
[[gnu::noinline, gnu::cold]] Element cbrtFixLane(Float64 x) {
  const uint64_t b = toBits(x), magnitude = b & 0x7fffffffffffffff, sign = b ^ magnitude;
  if (magnitude == 0) return F::inverse ? Element{fromBits(sign | 0x7ff0000000000000), nuvStatusPole} : Element{x};
  if (F::inverse && magnitude == 0x7ff0000000000000) return {fromBits(sign)};
  if (magnitude >= 0x7ff0000000000000) return {opaque(x) + opaque(x)};
  if (magnitude >= 0x0010000000000000) return {ofNormal<F>(x)};
  constexpr Float64 scale = 0x1p996;
  constexpr Float64 rootScale = F::inverse ? 0x1p332 : 0x1p-332;
  return {ofNormal<F>(x * scale) * rootScale};
}

template <class F>
nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  Scratch scratch;
  return stagedLoop<Raises::no>(
      src, dst, len, [&](auto x, int64_t i) INLINED { return storePlaces<F>(x, scratch, i); },
      [&](const Float64* x, int64_t i) INLINED { return distance<F>(load<Four>(x), scratch, i); },
      [](const auto& v) INLINED { return halfPolynomial<F>(v); },
      [&](const auto& h, const Float64*, int64_t i) INLINED { return finish<F>(h, scratch, i); }, cbrtFixLane<F>);
}

}  // namespace
}  // namespace qorvane
