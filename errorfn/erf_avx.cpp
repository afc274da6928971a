// erf(x), level 5.
#include "errorfn/erf.h"
#include "frame/kernel_frame.h"

namespace qorvane {
namespace {

constexpr int fastFrom = 0x1ff00000, fastTo = 0x7ff00000;  // the high words of 2^-512 and infinity

// NaNs and |x| below 2^-512.
[[gnu::noinline, gnu::cold]] Float64 erfSpecialLane(Float64 x) {
  constexpr Float64 oneSlope = fromBits(0x3ff20dd750429b6d);    // 1.1283791670955126 = 2 / sqrt(pi)
  constexpr Float64 slopeHi = fromBits(0x3ff20dd750000000);     // 1.1283791661262512
  constexpr Float64 slopeLo = fromBits(0x3e10a6db446b8ea4);     // 9.692613531930338e-10
  constexpr Float64 splitter = 134217729.0;                     // 2^27 + 1
  constexpr Float64 normalFrom = fromBits(0x000e2dfc48da77b5);  // 1.971920364530142e-308: the results are normal
  constexpr Float64 splitFrom = fromBits(0x0000010000000000);   // 5.43230922487e-312
  constexpr Float64 up = 0x1p200, down = 0x1p-200;
  const auto high = [](Float64 s) {
    const Float64 c = s * splitter;
    return c - (c - s);
  };

  const Float64 a = magnitude(x);
  if (toBits(a) > 0x7ff0000000000000) return x + x;
  if (toBits(a) == 0x7ff0000000000000) return fromBits((toBits(x) & toBits(-0.0)) | toBits(1.0));
  if (toBits(a) == 0) return x;
  const Float64 s = x * up, sh = high(s), sl = s - sh;
  const Float64 t = (sh * slopeLo + sl * slopeLo) + slopeHi * sl;
  if (a >= normalFrom) return (t + slopeHi * sh) * down;
  if (a < splitFrom) return x * oneSlope;
  const Float64 m = sh * slopeHi, mh = high(m);
  return mh * down + ((m - mh) + t) * down;
}

INLINE Lanes4 inFastRange(Lanes4 a) { return _mm256_cmp_pd(a, _mm256_set1_pd(0x1p-512), _CMP_GE_OQ); }

INLINE Lanes4 core(Lanes4 x) {
  const Lanes4 a = magnitude(x);
  const ErfReduced<Lanes4> reduced = erfReduce(andBits(a, inFastRange(a)));
  alignas(16) int offsets[4];
  store(offsets, reduced.row);
  const Rows rows = {erfRows, offsets};
  const Lanes4 u = reduced.u, q = erfMiddleTerms(erfHighTerms(u, rows), u, rows);
  return orBits(erfSum(q, u, rows), signOf(x));
}

constexpr int64_t longestStretch = 256, shortestStretch = 16;
struct Stretch {
  alignas(32) Float64 u[longestStretch + 8];
  alignas(32) int offsets[longestStretch + 8];
};

// False if there are flagged elements.
INLINE bool reduceStretch(const Float64* x, int64_t count, Stretch& c) {
  Lanes4 inside = _mm256_cmp_pd(Lanes4{}, Lanes4{}, _CMP_EQ_OQ);
  for (int64_t i = 0; i < count; i += 4) {
    const Lanes4 a = magnitude(load<Lanes4>(x + i)), mask = inFastRange(a);
    inside = andBits(inside, mask);
    const ErfReduced<Lanes4> reduced = erfReduce(andBits(a, mask));
    store(c.u + i, reduced.u);
    store(c.offsets + i, reduced.row);
  }
  // The pipeline begins two vectors more than there are.
  store(c.u + count, Pack<Lanes4, 2>{});
  store(c.offsets + count, Words4{}), store(c.offsets + count + 4, Words4{});
  return _mm256_movemask_pd(inside) == 15;
}

INLINE void pipeline(const Float64* src, Float64* dst, int64_t count, const Stretch& c) {
  Lanes4 high, middle;
  const auto rows = [&](int64_t i) INLINED { return Rows{erfRows, c.offsets + i}; };
  const auto stage1 = [&](int64_t i) INLINED { high = erfHighTerms(load<Lanes4>(c.u + i), rows(i)); };
  const auto stage2 = [&](int64_t i) INLINED { middle = erfMiddleTerms(high, load<Lanes4>(c.u + i), rows(i)); };
  const auto stage3 = [&](int64_t i) INLINED { return erfSum(middle, load<Lanes4>(c.u + i), rows(i)); };
  stage1(0), stage2(0), stage1(4);
  for (int64_t i = 0; i < count; i += 4) {
    const Lanes4 y = stage3(i);
    stage2(i + 4);
    stage1(i + 8);
    store(dst + i, orBits(y, signOf(load<Lanes4>(src + i))));
  }
}

[[gnu::noinline]] nuvStatus shortLoop(const Float64* src, Float64* dst, int64_t len) {
  return unaryLoop<Lanes4, Raises::no>(
      src, dst, len, [](Lanes4 x) INLINED { return core(x); },
      [](auto x) INLINED { return anyHighWordOutside(x, fastFrom, fastTo); },
      [](Float64 x, Float64* y) { return *y = erfSpecialLane(x), nuvStatusOk; });
}
[[gnu::noinline]] nuvStatus longLoop(const Float64* src, Float64* dst, int64_t len) {
  Stretch c;
  for (int64_t count; len > 0; src += count, dst += count, len -= count) {
    count = len < longestStretch ? len : longestStretch;
    if (count >= shortestStretch && reduceStretch(src, count & ~int64_t{3}, c))
      pipeline(src, dst, count &= ~int64_t{3}, c);
    else
      shortLoop(src, dst, count);
  }
  return nuvStatusOk;
}
[[gnu::noinline]] nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  return len < shortestStretch ? shortLoop(src, dst, len) : longLoop(src, dst, len);
}

}  // namespace

nuvStatus erfAvx(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, loop>(len, src, dst);
}

}  // namespace qorvane
