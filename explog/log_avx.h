// What ln and log10 share at level 5: the loop and the results outside the functions' domain.
//
// The loop goes over chunks of elements in two stages: the first finds each element's row, the
// second evaluates, and between them the numbers stand in memory. The row's address hangs on a long
// chain of conversions. Where a single loop does it all, the processor's schedulers fill up with
// arithmetic that waits for it.
#pragma once
#include "frame/loops.h"

namespace qorvane {
namespace {

constexpr int chunkSize = 64;

// What the first stage leaves to the second, for a chunk. Of x = 2^(E - 1013) * f with the biased exponent E and f in [2^-10, 2^-9): R is an integer near
// scale / f.
struct Scratch {
  alignas(32) Float64 f[chunkSize];
  alignas(32) float R[chunkSize];
  alignas(32) int E[chunkSize];
};

template <class V>
struct Reduced {
  V f, R, E, high, low;  // high, low: the columns of R's row
};

// What differs in the first stage of the two functions. The pattern of R in single precision,
// shifted right, is the byte offset of R's row plus that of firstR. `scale` times the processor's
// estimate of a reciprocal is exact in single precision: estimates have 12 to 14 significant bits,
// the scale at most 7.
struct Reduction {
  float scale;
  int shift;
  float firstR;  // the integer of the table's first row
  const Float64 (*table)[2];
};

// Positive normal finite numbers, the fast range, have these high words.
constexpr int fastRangeFrom = 0x00100000, fastRangeLength = 0x7fe00000;
INLINE bool outsideFastRange(Float64 x) { return highWord(x) - fastRangeFrom >= fastRangeLength; }

template <const Reduction& reduction>
INLINE __m128 estimateOf(__m128 f) {
  __m128 estimate = _mm_rcp_ps(f);
  if (reduction.scale != 1) estimate = _mm_mul_ps(estimate, _mm_set1_ps(reduction.scale));
  return _mm_round_ps(estimate, _MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC);
}
// From R in single precision to the byte offset of its row.
template <const Reduction& reduction>
INLINE uint64_t rowOf(float R) {
  constexpr uint64_t first = __builtin_bit_cast(uint32_t, reduction.firstR) >> reduction.shift;
  return (__builtin_bit_cast(uint32_t, R) >> reduction.shift) - first;
}

// Four elements of the first stage. The result is, as unsigned numbers, how far their high words
// are up from the fast range's lower end.
template <const Reduction& reduction>
INLINE __m128i reduce(const Float64* x, Scratch& scratch, int64_t i) {
  const Lanes4 mantissa = _mm256_and_pd(load<Lanes4>(x), broadcast<Lanes4>(fromBits(0x000fffffffffffff)));
  const Lanes4 f = _mm256_or_pd(mantissa, broadcast<Lanes4>(0x1p-10));
  const __m128 R = estimateOf<reduction>(_mm256_cvtpd_ps(f));
  const __m128i words = reinterpret_cast<__m128i>(packHighWords(load<Lanes2>(x), load<Lanes2>(x + 2)));
  store<Lanes4>(scratch.f + i, f);
  _mm_store_ps(scratch.R + i, R);
  _mm_store_si128(reinterpret_cast<__m128i*>(scratch.E + i), _mm_srli_epi32(words, 20));
  return _mm_sub_epi32(words, _mm_set1_epi32(fastRangeFrom));
}

// Four elements for the second stage.
template <const Reduction& reduction>
INLINE Reduced<Lanes4> reduced(const Scratch& scratch, int64_t i) {
  const auto row =
      twoColumns<Lanes4>(reduction.table, [&](int lane) INLINED { return rowOf<reduction>(scratch.R[i + lane]); });
  return {load<Lanes4>(scratch.f + i), _mm256_cvtps_pd(_mm_load_ps(scratch.R + i)), numbersAt<Lanes4>(scratch.E + i),
          row.first, row.second};
}

// Both stages of one element.
template <const Reduction& reduction>
INLINE Reduced<Float64> reduced(Float64 x) {
  const Float64 f = fromBits((toBits(x) & 0x000fffffffffffff) | toBits(0x1p-10));
  const float R = _mm_cvtss_f32(estimateOf<reduction>(_mm_cvtpd_ps(broadcast<Lanes2>(f))));
  const Float64* row = addressAt(reduction.table, rowOf<reduction>(R));
  return {f, R, static_cast<Float64>(static_cast<int>(highWord(x) >> 20)), row[0], row[1]};
}

// evaluate(Reduced<V>) -> V; special(Float64 x) -> Element, for an element outside the fast range.
template <const Reduction& reduction, class Evaluate, class Special>
[[gnu::noinline, gnu::flatten]] nuvStatus chunkLoop(const Float64* src, Float64* dst, int64_t len, Evaluate evaluate,
                                                    Special special) {
  nuvStatus status = nuvStatusOk;
  Scratch scratch;
  for (int64_t count; len > 0; src += count, dst += count, len -= count) {
    count = len < chunkSize ? len : chunkSize;
    const int64_t whole = count & ~int64_t{3}, rest = count - whole;
    __m128i farthest = _mm_setzero_si128();
    for (int64_t i = 0; i < whole; i += 4) farthest = _mm_max_epu32(farthest, reduce<reduction>(src + i, scratch, i));
    if (rest != 0) {
      alignas(32) Float64 last[4];
      store(last, loadPart<Lanes4>(src + whole, rest));
      farthest = _mm_max_epu32(farthest, reduce<reduction>(last, scratch, whole));
    }
    const __m128i inside =
        _mm_cmplt_epi32(_mm_min_epu32(farthest, _mm_set1_epi32(fastRangeLength)), _mm_set1_epi32(fastRangeLength));
    const bool flagged = _mm_movemask_epi8(inside) != 0xffff;
    Float64 arguments[1][chunkSize];
    if (flagged) [[unlikely]]
      __builtin_memcpy(arguments[0], src, static_cast<size_t>(count) * sizeof *src);
    for (int64_t i = 0; i < whole; i += 4) store(dst + i, evaluate(reduced<reduction>(scratch, i)));
    if (rest != 0) storePart(dst + whole, evaluate(reduced<reduction>(scratch, whole)), rest);
    if (flagged) [[unlikely]]
      status = repair<Raises::yes>(std::integer_sequence<int, 0>{}, arguments, dst, count, status, outsideFastRange,
                                   special);
  }
  return status;
}

template <const Reduction& reduction, class Evaluate, class Special>
INLINE nuvStatus logLoop(const Float64* src, Float64* dst, int64_t len, Evaluate evaluate, Special special) {
  if (len == 1 && !outsideFastRange(*src)) return *dst = evaluate(reduced<reduction>(*src)), nuvStatusOk;
  return chunkLoop<reduction>(src, dst, len, evaluate, special);
}

// For what isn't a positive number: the results raise their flags. With DAZ subnormal numbers come
// here too, as zeros.
INLINE Element specialFault(Float64 x) {
  if ((highWord(x) & 0x7ff00000) == 0x7ff00000 && toBits(x) != 0xfff0000000000000) return {x * x};
  if (x == 0) return {(opaque(0.0) - 1.0) / opaque(0.0), nuvStatusPole};
  return {opaque(0.0) / opaque(0.0), nuvStatusOutOfDomain};
}

// A positive subnormal number in the steps of the special lanes: x = 2^e * y with y in [1, 2), y =
// yh + yl with yh rounded by the shifter, and i the integer nearest 64 (y - 1).
struct SpecialReduced {
  Float64 e, yh, yl;
  uint64_t i;
};
INLINE SpecialReduced reduceSubnormal(Float64 x, Float64 shifter) {
  const Float64 scaled = x * 0x1p60;
  const Float64 y = fromBits((toBits(scaled) & 0x000fffffffffffff) | 0x3ff0000000000000);
  const Float64 yh = (y + shifter) - shifter;
  return {static_cast<Float64>(static_cast<int>(highWord(scaled) >> 20) - 1023 - 60), yh, y - yh,
          toBits(y + fromBits(0x42d0000000000040)) & 0x7f};
}

}  // namespace
}  // namespace qorvane
