// cbrt(x) and 1/cbrt(x), every level: the program that cbrt_sse3.cpp and cbrt_avx.cpp compile for their registers.
//
// Method: E = 3q + r for the biased exponent E, so that |x| = 2^(3(q - 341)) * 2^r * 1.m. The top 5 bits of m give c, the centre of their row, and r one of three
// sections with the root of 2^r c as high + low. The root of 1 + v, v = (1.m - c)/c, |v| < 1/64, is a polynomial of degree 8.
//
// Error: cbrt at most 0.516 ulp, 1/cbrt 0.538 ulp. The kernels run in round-to-nearest with subnormals honoured, whatever the caller's mode.
//
// Special values: NaN gives the NaN, quiet. cbrt gives zeros and infinities back; 1/cbrt gives zeros with their sign for infinities, and infinities with their
// sign, and a pole, for zeros, without a flag.
#pragma once
#include "frame/kernel_frame.h"
#include "frame/loops.h"

namespace qorvane {
namespace {

#include "algebraic/cbrt_tables.inc"

// What makes one function of the method: its table, the exponent of its scale and the coefficients, from the highest on.
struct Cbrt {
  static constexpr bool inverse = false;
  static constexpr const Float64 (*table)[4] = cbrtTable;
  static constexpr Float64 c[8] = {
      fromBits(0xbf9036de5c9cc8e7),  // -0.015834307100882319
      fromBits(0x3f93750ad588f115),  // 0.019001168521058782
      fromBits(0xbf98090d6221a247),  // -0.023472031702484377
      fromBits(0x3f9ee7113506ac12),  // 0.03017832647462277
      fromBits(0xbfa511e8d2b3183b),  // -0.041152263374485597
      fromBits(0x3faf9add3c0ca458),  // 0.061728395061728392
      fromBits(0xbfbc71c71c71c71c),  // -0.1111111111111111
      fromBits(0x3fd5555555555555),  // 0.33333333333333331
  };
};
struct InvCbrt {
  static constexpr bool inverse = true;
  static constexpr const Float64 (*table)[4] = invCbrtTable;
  static constexpr Float64 c[8] = {
      fromBits(0x3fb791d4f50a7b47),  // 0.092068967651795494
      fromBits(0xbfb9b33ca7a65562),  // -0.10039118855487097
      fromBits(0x3fbc67c9dd3d11bb),  // 0.11095868731815177
      fromBits(0xbfbff4c33f90ef5f),  // -0.12482853223712941
      fromBits(0x3fc26fabb85d0196),  // 0.14403292181124233
      fromBits(0xbfc61f9add3c0ca3),  // -0.17283950617283947
      fromBits(0x3fcc71c71c71c71c),  // 0.22222222222222221
      fromBits(0xbfd5555555555555),  // -0.33333333333333331
  };
};

// The row of each lane, and the power of two with the sign of x that its result is multiplied with.
template <class V>
struct Row {
  V reciprocal, centre, high, low, scale;
};

// The same before the table is read: byte offsets into it, and the high words of the scales.
struct Place {
  uint64_t offsets01, offsets23;  // of two lanes each
  __m128i scales;
};
template <class F>
[[gnu::always_inline]] inline Place placeOf(Lanes2 a, Lanes2 b) {
  const __m128i words = reinterpret_cast<__m128i>(packHighWords(a, b));
  // n = 32E + j, and its quotient by 96 is q: (n * 43691) >> 22 for all n below 2^16. The remainder is 32r + j.
  const __m128i n = _mm_srli_epi32(_mm_slli_epi32(words, 1), 16);
  const __m128i q = _mm_srli_epi32(_mm_mulhi_epu16(n, _mm_set1_epi32(43691)), 6);
  const __m128i offsets = _mm_slli_epi32(_mm_sub_epi16(n, _mm_mullo_epi16(q, _mm_set1_epi32(96))), 5);
  const __m128i exponents = _mm_slli_epi32(q, 20), sign = _mm_and_si128(words, _mm_set1_epi32(INT32_MIN));
  const __m128i scales = F::inverse ? _mm_sub_epi32(_mm_set1_epi32(0x55400000), exponents) : _mm_add_epi32(exponents, _mm_set1_epi32(0x2aa00000));
  return {static_cast<uint64_t>(_mm_cvtsi128_si64(offsets)), static_cast<uint64_t>(_mm_cvtsi128_si64(_mm_unpackhi_epi64(offsets, offsets))),
          _mm_or_si128(scales, sign)};
}

using TwoPairs = Pack<Lanes2, 2>;
[[gnu::always_inline]] inline TwoPairs fromHighWords(__m128i words) {
  const __m128i zero = _mm_setzero_si128();
  return {{reinterpret_cast<Lanes2>(_mm_unpacklo_epi32(zero, words)), reinterpret_cast<Lanes2>(_mm_unpackhi_epi32(zero, words))}};
}
template <class F>
[[gnu::always_inline]] inline Row<TwoPairs> rowsOfFour(Lanes2 a, Lanes2 b) {
  const Place place = placeOf<F>(a, b);
  const auto columns = [&](int first, uint64_t offsets) __attribute__((always_inline))->TwoColumns<Lanes2> {
    const __m128d row0 = rowAt(F::table[0] + first, static_cast<uint32_t>(offsets)), row1 = rowAt(F::table[0] + first, offsets >> 32);
    return {_mm_unpacklo_pd(row0, row1), _mm_unpackhi_pd(row0, row1)};
  };
  const auto before01 = columns(0, place.offsets01), before23 = columns(0, place.offsets23);
  const auto root01 = columns(2, place.offsets01), root23 = columns(2, place.offsets23);
  return {{{before01.first, before23.first}},
          {{before01.second, before23.second}},
          {{root01.first, root23.first}},
          {{root01.second, root23.second}},
          fromHighWords(place.scales)};
}

// The row of every lane of V: get(member) makes a V of one of its numbers.
template <class V, class Get>
[[gnu::always_inline]] inline Row<V> makeRow(Get get) {
  using From = Row<TwoPairs>;
  return {get(&From::reciprocal), get(&From::centre), get(&From::high), get(&From::low), get(&From::scale)};
}
template <class F, class V>
[[gnu::always_inline]] inline Row<V> rowOf(V x) {
  if constexpr (laneCount<V> == 1) {
    const auto four = rowsOfFour<F>(_mm_set1_pd(x), _mm_set1_pd(x));
    return makeRow<V>([&](auto member) __attribute__((always_inline)) { return (four.*member).part[0][0]; });
  } else if constexpr (laneCount<V> == 2) {
    const auto four = rowsOfFour<F>(x, x);
    return makeRow<V>([&](auto member) __attribute__((always_inline)) { return (four.*member).part[0]; });
#ifdef __AVX__
  } else if constexpr (packSize<V> == 0) {
    const auto four = rowsOfFour<F>(_mm256_castpd256_pd128(x), _mm256_extractf128_pd(x, 1));
    return makeRow<V>([&](auto member) __attribute__((always_inline))->V {
      return _mm256_insertf128_pd(_mm256_castpd128_pd256((four.*member).part[0]), (four.*member).part[1], 1);
    });
#endif
  } else if constexpr (laneCount<PartOf<V>> == 2) {
    const auto fours = makePack<packSize<V> / 2>([&](int i) __attribute__((always_inline)) { return rowsOfFour<F>(x.part[2 * i], x.part[2 * i + 1]); });
    return makeRow<V>([&](auto member) __attribute__((always_inline)) {
      return makePack<packSize<V>>([&](int i) __attribute__((always_inline)) { return (fours.part[i / 2].*member).part[i % 2]; });
    });
  } else {
    const auto rows = makePack<packSize<V>>([&](int i) __attribute__((always_inline)) { return rowOf<F>(x.part[i]); });
    const auto get = [&](auto member) __attribute__((always_inline)) {
      return makePack<packSize<V>>([&](int i) __attribute__((always_inline)) { return rows.part[i].*member; });
    };
    using From = Row<PartOf<V>>;
    return {get(&From::reciprocal), get(&From::centre), get(&From::high), get(&From::low), get(&From::scale)};
  }
}

template <class F, class V>
[[gnu::always_inline]] inline V core(V x) {
  const Row<V> row = rowOf<F>(x);
  const V fraction = orBits(andBits(x, broadcast<V>(fromBits(0x000fffffffffffff))), broadcast<V>(-1.0));  // -1.m
  const V v = row.reciprocal * (fraction - row.centre);
  const V p = ((((((F::c[0] * v + F::c[1]) * v + F::c[2]) * v + F::c[3]) * v + F::c[4]) * v + F::c[5]) * v + F::c[6]) * v + F::c[7];
  return ((p * (row.high * v) + row.low) + row.high) * row.scale;  // the scale is exact
}

// Whether any lane is a zero, subnormal, infinite or not a number.
template <class V>
[[gnu::always_inline]] inline bool anyNotNormal(V x) {
  const auto exponents = ((highWords(x) & 0x7ff00000) - 0x00100000) & 0x7ff00000;  // 0x7ff00000 and 0x7fe00000 for these
  if constexpr (laneCount<V> == 1)
    return exponents > 0x7fdfffff;
  else
    return any(exponents > 0x7fdfffff);
}

template <class F>
[[gnu::noinline, gnu::cold]] nuvStatus cbrtLane(Float64 x, Float64* result) {
  const uint64_t b = toBits(x), magnitude = b & 0x7fffffffffffffff, sign = b ^ magnitude;
  const auto give = [&](Float64 value, nuvStatus status) { return *result = value, status; };
  if (magnitude == 0) return F::inverse ? give(fromBits(sign | 0x7ff0000000000000), nuvStatusPole) : give(x, nuvStatusOk);
  if (F::inverse && magnitude == 0x7ff0000000000000) return give(fromBits(sign), nuvStatusOk);
  if (magnitude >= 0x7ff0000000000000) return give(opaque(x) + opaque(x), nuvStatusOk);
  if (magnitude >= 0x0010000000000000) return give(core<F>(x), nuvStatusOk);
  constexpr Float64 scale = fromBits(0x7e30000000000000);                                        // 2^996
  constexpr Float64 rootScale = fromBits(F::inverse ? 0x54b0000000000000 : 0x2b30000000000000);  // 2^332, 2^-332
  return give(core<F>(x * scale) * rootScale, nuvStatusOk);
}

template <class F, class V>
[[gnu::noinline]] nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  return guardedUnaryLoop<V, Raises::no>(
      src, dst, len, [](auto x) __attribute__((always_inline)) { return core<F>(x); }, [](auto x) __attribute__((always_inline)) { return anyNotNormal(x); },
      cbrtLane<F>);
}

}  // namespace
}  // namespace qorvane
