// Strips of a long array, and rows of a table for the elements of a strip. A kernel first reduces a whole strip of
// arguments and then runs through it again with one table row an element; what the first pass finds is kept on the
// stack. A vector's chain of operations is longer than the processor looks ahead, so the second pass is a pipeline.
#pragma once
#include "frame/lanes.h"
#include "frame/loops.h"

namespace qorvane {
namespace {

// Two neighbouring columns of a table's rows, for each lane's row.
template <class V>
struct Columns {
  V first, second;
};

// The rows of the lanes. The offsets are read anew for every step of a pipeline: a compiler that knew that two steps
// read the same ones would keep them, in registers that it doesn't have.
template <class V>
struct Rows {
  const char* row[laneCount<V>];
};
template <class V>
INLINE Rows<V> rowsAt(const void* table, const uint32_t* offsets) {
  const auto row = [&](int lane) INLINED {
    return static_cast<const char*>(table) + const_cast<const volatile uint32_t*>(offsets)[lane];
  };
  if constexpr (laneCount<V> == 2)
    return {{row(0), row(1)}};
  else
    return {{row(0), row(1), row(2), row(3)}};
}

// Columns `column`, an even number, and the next.
template <class V>
INLINE Columns<V> columns(const Rows<V>& rows, int column) {
  const auto pair = [&](int lane)
                        INLINED { return _mm_load_pd(reinterpret_cast<const Float64*>(rows.row[lane]) + column); };
  if constexpr (laneCount<V> == 2) {
    const __m128d row0 = pair(0), row1 = pair(1);
    return {_mm_unpacklo_pd(row0, row1), _mm_unpackhi_pd(row0, row1)};
#ifdef __AVX__
  } else {
    const __m256d rows02 = _mm256_insertf128_pd(_mm256_castpd128_pd256(pair(0)), pair(2), 1);
    const __m256d rows13 = _mm256_insertf128_pd(_mm256_castpd128_pd256(pair(1)), pair(3), 1);
    return {_mm256_unpacklo_pd(rows02, rows13), _mm256_unpackhi_pd(rows02, rows13)};
#endif
  }
}

struct Element {
  Float64 value;
  nuvStatus status;
};

// Whether a high word without its sign is at least `limit` in an array of at least 8 elements.
template <class V>
INLINE bool anyMagnitudeFrom(const Float64* x, int64_t count, int limit) {
  using Block = Pack<V, 8 / laneCount<V>>;
  for (int64_t i = 0; i < count; i += 8)
    if (anyMagnitudeFrom(load<Block>(x + (i < count - 8 ? i : count - 8)), limit)) return true;
  return false;
}

// A vector with an element that `special` serves; the others have the bits that they have in any vector.
template <class V, class Core, class Special>
[[gnu::noinline, gnu::cold]] nuvStatus specialLanes(V x, Float64* dst, int64_t lanes, nuvStatus status, int limit,
                                                    Core core, Special special) {
  alignas(32) Float64 xs[laneCount<V>];
  store(xs, x);
  for (int64_t i = 0; i < lanes; ++i) {
    const bool isSpecial = anyMagnitudeFrom(xs[i], limit);
    const Element e = isSpecial ? special(xs[i]) : Element{core(broadcast<V>(xs[i]))[0], nuvStatusOk};
    dst[i] = e.value;
    takeStatus<Raises::yes>(status, e.status);
  }
  return status;
}

// Magnitudes whose high word is at least `limit` are for `special`: Element(Float64). Strips without them go through
// `pipeline`: void(src, dst, count), with a multiple of four elements; the rest by vectors through `core`: V(V). No
// arithmetic but that of `special` is made on special elements, so they raise no other flags.
constexpr int64_t longestStrip = 256, shortestStrip = 16;
template <class V, class Pipeline, class Core, class Special>
INLINE nuvStatus stripLoop(const Float64* src, Float64* dst, int64_t len, int limit, bool byStrips, Pipeline pipeline,
                           Core core, Special special) {
  nuvStatus status = nuvStatusOk;
  while (len > 0) {
    int64_t count = len < longestStrip ? len : longestStrip;
    const int64_t whole = count & ~int64_t{3};
    if (byStrips && count >= shortestStrip && !anyMagnitudeFrom<V>(src, whole, limit)) {
      count = whole;
      pipeline(src, dst, count);
    } else {
      for (int64_t i = 0; i < count; i += laneCount<V>) {
        const int64_t lanes = count - i < laneCount<V> ? count - i : laneCount<V>;
        const V x = loadPart<V>(src + i, lanes);
        if (anyMagnitudeFrom(x, limit)) [[unlikely]]
          status = specialLanes(x, dst + i, lanes, status, limit, core, special);
        else
          storePart(dst + i, core(x), lanes);
      }
    }
    src += count, dst += count, len -= count;
  }
  return status;
}

}  // namespace
}  // namespace qorvane
