// atan2(y, x), level 5.
//
// Method: atan2_core.h.
//
// Error: largest found 0.747 ulp, for negative x and y not far from x; subnormal results 2.0 units
// of 2^-1074 (docs/accuracy.md has the arguments), in round-to-nearest; rounding mode, FTZ and DAZ
// are the caller's.
//
// Special values: atan2_special_lane.cpp, as C has them.
#include "frame/kernel_frame.h"
#include "invtrig/atan2_core.h"
#include "invtrig/atan2_special_lane.h"
#include "invtrig/paired_rows.h"

namespace qorvane {
namespace {

// The angles of the points 1/2, 1 and 3/2: atan c rounded and the rest of it.
constexpr Float64 atanHalf = fromBits(0x3fddac670561bb4f);           // 0.46364760900080609
constexpr Float64 atanHalfLo = fromBits(0x3c7a2b7f222f65e2);         // 2.2698777452961687e-17
constexpr Float64 quarterPiLo = fromBits(0x3c81a62633145c07);        // 3.061616997868383e-17
constexpr Float64 atanThreeHalves = fromBits(0x3fef730bd281f69b);    // 0.98279372324732905
constexpr Float64 atanThreeHalvesLo = fromBits(0x3c7007887af0cbbd);  // 1.3903311031230998e-17

// The interval of a / b, by comparing the high word of a with those of multiples of b. A number of
// 20 fraction bits is above another one's high word if it is above the number.
constexpr auto intervalOf = [](auto a, auto b) INLINED {
  using V = decltype(a);
  const V high = andBits(a, broadcast<V>(fromBits(0xffffffff00000000)));
  const auto isAbove = [&](Float64 bound) INLINED { return quietlyLess(b * bound, high); };
  const V m1 = isAbove(0.4375), m2 = isAbove(0.6875), m3 = isAbove(1.1875);
  const V kept = quietlyNotLess(b * 2.4375, high);
  const auto pick = [&](Float64 v1, Float64 v2, Float64 v3, Float64 v4) INLINED {
    const V low = select(m2, broadcast<V>(v2), andBits(m1, broadcast<V>(v1)));
    return select(kept, select(m3, broadcast<V>(v3), low), broadcast<V>(v4));
  };
  return Interval<V>{pick(0.5, 1.0, 1.5, 1.0), kept, pick(atanHalf, quarterPi, atanThreeHalves, halfPi),
                     pick(atanHalfLo, quarterPiLo, atanThreeHalvesLo, halfPiLo)};
};

constexpr auto isFlagged = [](auto y, auto x) INLINED {
  const auto ofY = outsideQuotients(highWords(magnitude(y))), ofX = outsideQuotients(highWords(magnitude(x)));
  return any(ofY | ofX);
};

INLINE Float64 element(Float64 y, Float64 x) {
  return isFlagged(y, x) ? atan2SpecialLane(y, x).value : atan2Core(y, x, intervalOf);
}
[[gnu::noinline, gnu::cold]] void eachElement(const Float64* y, const Float64* x, Float64* dst, int64_t count) {
  for (int64_t i = 0; i < count; ++i) dst[i] = element(y[i], x[i]);
}
template <class V>
INLINE void block(V y, V x, const Float64* srcA, const Float64* srcB, Float64* dst, int64_t count) {
  if (isFlagged(y, x)) [[unlikely]]
    eachElement(srcA, srcB, dst, count);
  else
    storePart(dst, atan2Core(y, x, intervalOf), count);
}
constexpr auto blocks = [](int64_t len, const Float64* srcA, const Float64* srcB, Float64* dst) {
  int64_t i = 0;
  using Eight = Pack<Lanes4, 2>;
  for (; i + laneCount<Eight> <= len; i += laneCount<Eight>)
    block(load<Eight>(srcA + i), load<Eight>(srcB + i), srcA + i, srcB + i, dst + i, laneCount<Eight>);
  const int64_t rest = len - i;
  if (rest > vector)
    block(loadPart<Eight>(srcA + i, rest), loadPart<Eight>(srcB + i, rest), srcA + i, srcB + i, dst + i, rest);
  else if (rest > 0)
    block(loadPart<Lanes4>(srcA + i, rest), loadPart<Lanes4>(srcB + i, rest), srcA + i, srcB + i, dst + i, rest);
  return nuvStatusOk;
};

// For stretches u = (p - c q) / (q + c p) with p = a and q = b, and in the last interval p = -b and q = a,
// where c is 0. There it is -0: the sign tells.
constexpr PairedRows rows = pairRows([](Float64 c, bool isLast) { return PointAndKept{isLast ? -0.0 : c, 0}; });

INLINE void findRows(int64_t count, const Float64* srcA, const Float64* srcB, RowOffsets& offsets) {
  eachEight(count, [&](int64_t i, int64_t k) INLINED {
    constexpr Float64 bounds[] = {0.4375, 0.6875, 1.1875, 2.4375};
    const Lanes4 b0 = magnitude(load<Lanes4>(srcB + i)), b1 = magnitude(load<Lanes4>(srcB + k));
    const __m256 a = _mm256_and_ps(eightHighWords(srcA, i, k), singlesOf(0x7fffffff));
    storeOffsets(offsets.of + i, [&](int bound) INLINED {
      return _mm256_cmp_ps(eightHighWords(b0 * bounds[bound], b1 * bounds[bound]), a, _CMP_LT_OQ);
    });
  });
}

// Numbers from 2^-111 up to 2^113.
constexpr auto stretch = [](int64_t count, const Float64* srcA, const Float64* srcB, Float64* dst) {
  HighWordRange range = emptyRange();
  eachEight(count, [&](int64_t i, int64_t k)
                       INLINED { take(range, eightHighWords(srcA, i, k)), take(range, eightHighWords(srcB, i, k)); });
  if (!isWithin(range, 0x39000000, 0x47000000)) return false;
  RowOffsets offsets;
  findRows(count, srcA, srcB, offsets);
  atan2Stages(count, srcA, srcB, dst, [&](Stages& s) INLINED {
    beginQuotients(s, count, rows, offsets, [&]<class V>(V, int64_t i, V c, V) INLINED {
      const V a = magnitude(load<V>(srcA + i)), b = load<V>(srcB + i);
      const V p = select(c, orBits(b, broadcast<V>(-0.0)), a), q = select(c, a, magnitude(b));
      const V ph = upperPart(p), pl = p - ph, qh = upperPart(q), ql = q - qh;
      return fractionInStretch(ph - c * qh, pl - c * ql, qh + c * ph, ql + c * pl);
    });
  });
  return true;
};

nuvStatus loop(const Float64* srcA, const Float64* srcB, Float64* dst, int64_t len) {
  if (len == 1) return *dst = element(*srcA, *srcB), nuvStatusOk;
  return shortOrLongLoop<longestStretch, shortestStretch, vector>(len, stretch, blocks, srcA, srcB, dst);
}

}  // namespace

nuvStatus atan2Avx(const Float64* srcA, const Float64* srcB, Float64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, loop>(len, srcA, srcB, dst);
}

}  // namespace qorvane
