// atan2(y, x), levels 1 to 4.
//
// Method: atan2_core.h.
//
// Error: largest found 0.747 ulp, for negative x and y not far from x; subnormal results 2.0 units
// of 2^-1074 (docs/accuracy.md has the arguments). The kernel runs in round-to-nearest with
// subnormals honoured, whatever the caller's mode.
//
// Special values: atan2_special_lane.cpp, as C has them.
#include "frame/kernel_frame.h"
#include "invtrig/atan2_core.h"
#include "invtrig/atan2_special_lane.h"

namespace qorvane {
namespace {

#include "invtrig/atan_tables.inc"

// Mask of a > b.
INLINE int above(int a, int b) { return -int{a > b}; }
INLINE Words4 above(Words4 a, Words4 b) { return a > b; }
template <int K>
INLINE Pack<Words4, K> above(Pack<Words4, K> a, Pack<Words4, K> b) {
  return a > b;
}

constexpr auto intervalOf = [](auto a, auto b) INLINED {
  using V = decltype(a);
  const auto high = highWords(a);
  const auto isAbove = [&](Float64 bound) INLINED { return above(high, highWords(b * bound)); };
  const auto count = (isAbove(0.4375) + isAbove(0.6875)) + (isAbove(1.1875) + isAbove(2.4375));
  const auto [c, mask, hi, lo] = columns<4, V>(atanRows, (count + 4) << 5).of;
  return Interval<V>{c, mask, hi, lo};
};

template <class V>
INLINE bool isFlagged(V y, V x) {
  const auto ofY = outsideQuotients(highWords(magnitude(y))), ofX = outsideQuotients(highWords(magnitude(x)));
  return any(ofY | ofX);
}

// A group of four with a flagged element goes through atan2SpecialLane whole.
[[gnu::noinline, gnu::cold]] void specialGroup(const Float64* y, const Float64* x, Float64* dst, int64_t count) {
  for (int64_t i = 0; i < count; ++i) dst[i] = atan2SpecialLane(y[i], x[i]).value;
}
constexpr auto groups = [](int64_t len, const Float64* srcA, const Float64* srcB, Float64* dst) {
  int64_t i = 0;
  using Eight = Pack<Lanes2, 4>;  // two groups side by side
  for (; i + laneCount<Eight> <= len; i += laneCount<Eight>) {
    const Eight y = load<Eight>(srcA + i), x = load<Eight>(srcB + i);
    if (isFlagged(y, x)) [[unlikely]]
      break;
    store(dst + i, atan2Core(y, x, intervalOf));
  }
  for (; i + laneCount<Four> <= len; i += laneCount<Four>) {
    const Four y = load<Four>(srcA + i), x = load<Four>(srcB + i);
    if (isFlagged(y, x)) [[unlikely]]
      specialGroup(srcA + i, srcB + i, dst + i, laneCount<Four>);
    else
      store(dst + i, atan2Core(y, x, intervalOf));
  }
  // What remains are groups of one, of which ordinary ones may still be computed together.
  if (len - i == 3) {
    const Four y = loadPart<Four>(srcA + i, 3), x = loadPart<Four>(srcB + i, 3);
    if (!isFlagged(y, x)) [[likely]]
      return storePart(dst + i, atan2Core(y, x, intervalOf), 3), nuvStatusOk;
  }
  for (int64_t count; i < len; i += count) {
    const bool isAlone = i + 1 == len || isFlagged(load<Lanes2>(srcA + i), load<Lanes2>(srcB + i));
    count = isAlone ? 1 : 2;
    const Lanes2 y = loadPart<Lanes2>(srcA + i, count), x = loadPart<Lanes2>(srcB + i, count);
    if (isAlone && isFlagged(y, x)) [[unlikely]]
      specialGroup(srcA + i, srcB + i, dst + i, 1);
    else
      storePart(dst + i, atan2Core(y, x, intervalOf), count);
  }
  return nuvStatusOk;
};

// Numbers from 2^-120 up to 2^120.
constexpr auto stretch = [](int64_t count, const Float64* srcA, const Float64* srcB, Float64* dst) {
  constexpr int lowest = 0x38700000, range = 0x0f000000;  // of high words
  Words4 outside{};
  eachVector(count, [&](int64_t i) INLINED {
    for (const Float64* src : {srcA, srcB}) {
      const Words4 high = highWords(magnitude(load<Four>(src + i))).part[0];
      outside |= (lowest > high) | (high > lowest + range - 1);
    }
  });
  if (any(outside)) return false;
  atan2Stages(count, srcA, srcB, dst, [&](Stages& s) INLINED {
    eachVector(count, [&](int64_t i) INLINED {
      const auto [c, kept, hi, lo] = intervalOf(magnitude(load<Four>(srcA + i)), magnitude(load<Four>(srcB + i)));
      store(s.c() + i, c), store(s.kept() + i, kept), store(s.hi + i, hi), store(s.lo + i, lo);
    });
    eachVector(count, [&](int64_t i) INLINED {
      const Four a = magnitude(load<Four>(srcA + i)), b = magnitude(load<Four>(srcB + i));
      const Four c = load<Four>(s.c() + i), mask = load<Four>(s.kept() + i);
      const auto kept = [&](Four v) INLINED { return andBits(v, mask); };
      const Four ah = upperPart(a), al = a - ah, bh = upperPart(b), bl = b - bh;
      storeFraction(s, i,
                    fractionInStretch(kept(ah) - c * bh, kept(al) - c * bl, kept(bh) + c * ah, kept(bl) + c * al));
    });
  });
  return true;
};

nuvStatus loop(const Float64* srcA, const Float64* srcB, Float64* dst, int64_t len) {
  if (len == 1 && !isFlagged(*srcA, *srcB)) return *dst = atan2Core(*srcA, *srcB, intervalOf), nuvStatusOk;
  return shortOrLongLoop<longestStretch, shortestStretch, vector>(len, stretch, groups, srcA, srcB, dst);
}

}  // namespace

nuvStatus atan2Sse3(const Float64* srcA, const Float64* srcB, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, srcA, srcB, dst);
}

}  // namespace qorvane
