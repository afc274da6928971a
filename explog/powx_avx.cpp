// x^y with one exponent for all elements, level 5.
//
// Method: explog/pow_core.h, with the long program at every level; a group of four elements that
// has one outside the fast range goes to powFixLane whole. The exponent is split once, and y = 2 is
// a plain square of anything. See explog/pow_sse3.cpp for the error and the special values.
//
// With a fixed exponent the fast range is a range of x: stretches of elements that all stand safely
// within it need no test of P, and no results but the last are looked at. They run through three
// loops, each a software pipeline; anything else runs through the stages of explog/pow_stages.h.
// The bits are the same.
#include "explog/pow_stages.h"
#include "frame/kernel_frame.h"
#include "frame/pipeline.h"

namespace qorvane {
namespace {

using namespace power;
using V = Lanes4;
constexpr int64_t longestStretch = 256, shortestStretch = 32;
constexpr int64_t vector = laneCount<V>;

struct StretchScratch {
  alignas(32) Float64 high[longestStretch], low[longestStretch], t[longestStretch];
  alignas(32) uint32_t logRow[longestStretch];  // byte offsets in powRcpTable
  alignas(32) int k[longestStretch];
};

// High words of x from `first` up to, but not including, `end` give |y log2 x| < 963.1, a normal
// result. With T = 963 / |y| and its integer and its fraction a + f: a high word read as a number
// with 20 fraction bits, less 1023, is never above log2 x, so that -T is a lower end; 2^f >= 1 + f
// ln 2 gives the upper one.
struct HighWordRange {
  unsigned first, end;
};
HighWordRange safeRange(Float64 y) {
  const Float64 magnitudeOfY = magnitude(y), all = 1022.0;
  const Float64 T = magnitudeOfY * all < 963.0 ? all : 963.0 / magnitudeOfY;
  const unsigned units = static_cast<unsigned>(static_cast<int>(T * 0x1p20)), a = units >> 20, f = units & 0xfffff;
  return {(1023u << 20) - units, ((1023u + a) << 20) + ((f * 11u) >> 4)};  // 11/16 < ln 2
}

// The rows of the stretch; whether all of x is in the range.
INLINE bool findRows(const Float64* x, int64_t n, HighWordRange range, StretchScratch& c) {
  using Block = Pack<Lanes2, 4>;
  const unsigned toLowest = 0x80000000u - range.first;  // compared as signed numbers
  const int limit = static_cast<int>(range.end - range.first + 0x80000000u) - 1;
  auto outside = highWords(Block{}) & 0;
  for (int64_t i = 0; i < n; i += 8) {
    const int64_t at = i + 8 <= n ? i : n - 8;
    const auto w = highWords(load<Block>(x + at));
    storeWords(c.logRow + at, rowOffset(w));
    storeWords(c.k + at, exponentOf(w));
    outside = outside | (wrappingSum(w, toLowest) > limit);
  }
  return !any(outside);
}

// n = 128 e + j is kept as the pattern of a key: its lowest byte is 2j, so that one load a lane
// gives the address of a row, and above it stands e + 1023.
constexpr Float64 keyShifter =
    fromBits(0x42b8000000000000 + 2 * 128 * 1023);  // 1.5 * 2^44 + 1023; a unit is worth 2^-8
INLINE TwoColumns<V> exp2Rows(const Float64* keys) {
  return twoColumns<V>(powExp2Table, [&](int lane) INLINED {
    return uint64_t{8} * reinterpret_cast<const unsigned char*>(keys + lane)[0];
  });
}
INLINE V powerOfTwo(const Float64* keys) {
  const BitsOf<V> shifted = bitsOf(load<Pack<Lanes2, 2>>(keys)) << 44;
  return _mm256_and_pd(valueOf<V>(shifted), _mm256_set1_pd(fromBits(0x7ff0000000000000)));
}

// The chain of a whole element takes some 140 cycles; n is a multiple of the vector's length.
template <Split split>
[[gnu::noinline]] void pipelines(const Float64* x, Exponent<Float64> y, Float64* dst, int64_t n, StretchScratch& c) {
  LogRow<V> row;
  V big, lo;
  ReducedArgument<V> u;
  pipeline<vector>(
      n, [&](int64_t i) INLINED { row = logRowAt<V>(c.logRow + i, c.k + i); },
      [&](int64_t i) INLINED {
        u = reduceArgument(load<V>(x + (i < n ? i : 0)), row.rcp);
        big = row.k + row.hi;
        lo = row.lo;
      },
      [&](int64_t i) INLINED {
        const auto sum = leadingSum(big, u, lo);
        store(c.high + i, sum.a2), store(c.low + i, sum.low), store(c.t + i, sum.t);
      });

  // The arrays `low` and `t` take r and the keys, when they have been read.
  V t, first, q, w, yLow;
  Log2<V> log;
  LeadingProduct<V> leading;
  pipeline<vector>(
      n,
      [&](int64_t i) INLINED {
        t = load<V>(c.t + i);
        first = (c8 * t + c7) * t + c6;
      },
      [&](int64_t) INLINED { q = (first * t + c5) * t + c4; },
      [&](int64_t i) INLINED {
        const V tAgain = load<V>(c.t + i);
        w = load<V>(c.low + i) + (((q * tAgain + c3) * tAgain + c2) * tAgain);
      },
      [&](int64_t i) INLINED { log = log2From(load<V>(c.high + i), w); },
      [&](int64_t) INLINED {
        yLow = y.all * log.low;
        leading = leadingProduct<split>(log.high, y);
      },
      [&](int64_t i) INLINED {
        const auto product = completeProduct(leading, yLow);
        store(c.t + i, product.rounded + keyShifter), store(c.low + i, product.r);
      });

  PowerTerms<V> terms;
  TwoColumns<V> exp2Row;
  pipeline<vector>(
      n,
      [&](int64_t i) INLINED {
        terms = powerTerms<Program::longer>(load<V>(c.low + i));
        exp2Row = exp2Rows(c.t + i);
      },
      [&](int64_t i) INLINED { store(dst + i, powerFrom(terms, exp2Row.first, exp2Row.second, powerOfTwo(c.t + i))); });
}

nuvStatus loop(const Float64* src, Float64 value, Float64* dst, int64_t len, uint32_t mxcsr) {
  const uint64_t magnitudeBits = toBits(value) << 1;
  const bool isUsual =
      toBits(value) != toBits(2.0) && magnitudeBits != 0 && magnitudeBits < toBits(__builtin_inf()) << 1;
  if (len < shortestStretch || !isUsual) return fixedExponentLoop<V>(src, value, dst, len, mxcsr);
  const Exponent<Float64> y = splitExponent(value);
  const HighWordRange range = safeRange(value);
  if (range.first == range.end) return fixedExponentLoop<V>(src, value, dst, len, mxcsr);

  StretchScratch c;
  return stretchLoop<longestStretch, shortestStretch, vector>(
      len,
      [&](int64_t count, const Float64* x, Float64* z) INLINED {
        const bool fits = findRows(x, count, range, c);
        if (fits) (y.rest == 0 ? pipelines<Split::shortExponent> : pipelines<Split::full>)(x, y, z, count, c);
        return fits;
      },
      [&](int64_t count, const Float64* x, Float64* z)
          INLINED { return fixedExponentLoop<V>(x, value, z, count, mxcsr); },
      src, dst);
}

}  // namespace

nuvStatus powxAvx(const Float64* src, Float64 value, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, src, value, dst);
}

}  // namespace qorvane
