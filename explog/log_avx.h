// The loop of ln and log10 at level 5, in two stages over chunks of elements. The first stage finds each element's row, the second evaluates; between them the
// numbers stand in memory. The row's address hangs on a long chain of conversions: where a single loop does it all, the processor's schedulers fill up with
// arithmetic that waits for it.
#pragma once
#include "explog/log_lanes.h"
#include "frame/loops.h"

namespace qorvane {
namespace {

constexpr int chunkSize = 64;

// Of x = 2^(E - 1013) * f with the biased exponent E and f in [2^-10, 2^-9): R is near scale / f, an integer, and `offset` the byte offset of R's row.
struct Chunk {
  alignas(32) Float64 f[chunkSize];
  alignas(32) float R[chunkSize];
  alignas(32) int E[chunkSize];
  alignas(32) uint32_t offset[chunkSize];
};

struct Reduced {
  Lanes4 f, R, E, high, low;  // high, low: the row's columns
};

// What differs in the two functions' first stage. `shift` takes the mantissa of R's pattern in single precision to the row's offset. `scale` times the
// processor's estimate is exact in single precision: estimates have 12 to 14 significant bits, both scales at most 7.
struct Reduction {
  float scale;
  int shift;
  float firstR;  // the integer of the table's first row
  const Float64 (*table)[2];
};

// Four elements of the first stage; the result is set in lanes outside the fast range.
template <const Reduction& reduction>
[[gnu::always_inline]] inline Words4 reduce(const Float64* x, Chunk& chunk, int64_t i) {
  const Lanes4 f = withBits(load<Lanes4>(x), 0x000fffffffffffff, 0x3f50000000000000);
  __m128 estimate = _mm_rcp_ps(_mm256_cvtpd_ps(f));
  if (reduction.scale != 1) estimate = _mm_mul_ps(estimate, _mm_set1_ps(reduction.scale));
  const __m128 R = _mm_round_ps(estimate, _MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC);
  const Words4 words = packHighWords(load<Lanes2>(x), load<Lanes2>(x + 2));
  store<Lanes4>(chunk.f + i, f);
  _mm_store_ps(chunk.R + i, R);
  _mm_store_si128(reinterpret_cast<__m128i*>(chunk.E + i), reinterpret_cast<__m128i>(words >> 20));
  _mm_store_si128(reinterpret_cast<__m128i*>(chunk.offset + i), _mm_srli_epi32(_mm_castps_si128(R), reduction.shift));
  return outsideFastRange(words);
}

// Four elements for the second stage.
template <const Reduction& reduction>
[[gnu::always_inline]] inline Reduced reduced(const Chunk& chunk, int64_t i) {
  constexpr uint64_t origin = __builtin_bit_cast(uint32_t, reduction.firstR) >> reduction.shift;
  const auto row = [&](int lane) __attribute__((always_inline)) { return rowAt(reduction.table, chunk.offset[i + lane] - origin); };
  const Lanes4 rows02 = _mm256_insertf128_pd(_mm256_castpd128_pd256(row(0)), row(2), 1);
  const Lanes4 rows13 = _mm256_insertf128_pd(_mm256_castpd128_pd256(row(1)), row(3), 1);
  return {load<Lanes4>(chunk.f + i), _mm256_cvtps_pd(_mm_load_ps(chunk.R + i)),
          _mm256_cvtepi32_pd(_mm_load_si128(reinterpret_cast<const __m128i*>(chunk.E + i))), _mm256_unpacklo_pd(rows02, rows13),
          _mm256_unpackhi_pd(rows02, rows13)};
}

// evaluate(Reduced) -> Lanes4, special(Float64 x, Float64* y) -> status for an element outside the fast range.
template <const Reduction& reduction, class Evaluate, class Special>
[[gnu::always_inline]] inline nuvStatus logLoop(const Float64* src, Float64* dst, int64_t len, Evaluate evaluate, Special special) {
  nuvStatus status = nuvStatusOk;
  Chunk chunk;
  for (int64_t count; len > 0; src += count, dst += count, len -= count) {
    count = len < chunkSize ? len : chunkSize;
    const int64_t whole = count & ~int64_t{3}, rest = count - whole;
    Words4 outside{};
    for (int64_t i = 0; i < whole; i += 4) outside |= reduce<reduction>(src + i, chunk, i);
    if (rest != 0) {
      alignas(32) Float64 last[4];
      store(last, loadPart<Lanes4>(src + whole, rest));
      outside |= reduce<reduction>(last, chunk, whole);
    }
    Float64 arguments[chunkSize];
    const bool flagged = any(outside);
    if (flagged) [[unlikely]]
      __builtin_memcpy(arguments, src, static_cast<size_t>(count) * sizeof *src);
    for (int64_t i = 0; i < whole; i += 4) store(dst + i, evaluate(reduced<reduction>(chunk, i)));
    if (rest != 0) storePart(dst + whole, evaluate(reduced<reduction>(chunk, whole)), rest);
    if (flagged) [[unlikely]]
      status = repairUnary<Raises::yes>(arguments, dst, count, status, anyOutsideFastRange<Float64>, special);
  }
  return status;
}

}  // namespace
}  // namespace qorvane
