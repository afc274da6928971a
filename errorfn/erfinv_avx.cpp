// erfinv(x), level 5.
#include "errorfn/erfinv.h"
#include "frame/kernel_frame.h"

namespace qorvane {
namespace {

#include "errorfn/element.inc"

[[gnu::noinline, gnu::cold]] Element erfInvSpecialLane(Float64 x) {
  constexpr Float64 up = 0x1p256, down = 0x1p-256;
  constexpr Float64 slopeHi = 0.88623046875;                 // sqrt(pi) / 2 = slopeHi + slopeLo
  constexpr Float64 slopeLo = fromBits(0xbecdb92c4255618f);  // -3.543297241986351e-06
  constexpr Float64 smallestNormal = 0x1p-766;               // scaled up
  constexpr Float64 tiny = 0x1p-1000;
  constexpr Float64 splitter = 103079215104.0;  // 3 * 2^35
  const auto head = [](Float64 v) { return fromBits(toBits(v) & toBits(erfInvHead)); };

  const Float64 a = magnitude(x);
  const uint64_t sign = toBits(x) & toBits(-0.0), pattern = toBits(a);
  if (pattern > 0x7ff0000000000000) return {x + x, nuvStatusOk};
  if (pattern > toBits(1.0)) return {opaque(0.0) / opaque(0.0), nuvStatusOutOfDomain};
  if (pattern == toBits(1.0)) return {x / opaque(0.0), nuvStatusPole};
  if (pattern == 0) return {x, nuvStatusOk};

  const Float64 s = x * up, sh = head(s);
  const Float64 hi = slopeHi * sh, lo = slopeHi * (s - sh) + slopeLo * s, result = hi + lo;
  if (magnitude(result) >= smallestNormal) return {result * down, nuvStatusOk};
  // Next to 2^-766 the last bit is that of a subnormal result: the sum with it rounds once, and its fraction is the result. The
  // square of `tiny` raises the flags of a subnormal result.
  const Float64 c = fromBits(toBits(smallestNormal) | sign) + opaque(tiny) * opaque(tiny);
  const Float64 v = result + c, h = (splitter + 1) * v - splitter * v, u = h - c, rounded = h + ((hi - u) + lo);
  return {fromBits(toBits(rounded) & 0x800fffffffffffff), nuvStatusOk};
}

INLINE bool areFlagged(Lanes4 inside) { return _mm256_movemask_pd(inside) != 15; }

INLINE Lanes4 core(Lanes4 x) {
  const Lanes4 a = magnitude(x);
  const auto r = erfInvReduce(andBits(a, highWordWithin(a, erfInvFastFrom, erfInvFastTo)));
  alignas(16) int offsets[4];
  store(offsets, r.offset);
  const Rows rows = {erfInvRows, offsets};
  const Lanes4 p = erfInvFourTerms<6>(erfInvFourTerms<10>(erfInvTopTerms(r.t, rows), r.t, rows), r.t, rows);
  return erfInvSum(p, r.t0, r.t, x, rows);
}

constexpr int64_t longestStretch = 256, shortestStretch = 16, ahead = 12;
struct Stretch {
  alignas(32) Float64 t0[longestStretch + ahead], t[longestStretch + ahead];
  alignas(32) int offsets[longestStretch + ahead];
};

// False if there are flagged elements.
INLINE bool reduceStretch(const Float64* x, int64_t count, Stretch& c) {
  Lanes4 inside = _mm256_cmp_pd(Lanes4{}, Lanes4{}, _CMP_EQ_OQ);
  for (int64_t i = 0; i < count; i += 4) {
    const Lanes4 a = magnitude(load<Lanes4>(x + i)), mask = highWordWithin(a, erfInvFastFrom, erfInvFastTo);
    inside = andBits(inside, mask);
    const auto r = erfInvReduce(andBits(a, mask));
    store(c.t0 + i, r.t0), store(c.t + i, r.t), store(c.offsets + i, r.offset);
  }
  // The pipeline begins three vectors more than there are.
  store(c.t + count, Pack<Lanes4, 3>{});
  for (int k = 0; k < ahead; k += 4) store(c.offsets + count + k, Words4{});
  return _mm256_movemask_pd(inside) == 15;
}

INLINE void pipeline(const Float64* src, Float64* dst, int64_t count, const Stretch& c) {
  Lanes4 p1, p2, p3;
  const auto t = [&](int64_t i) INLINED { return load<Lanes4>(c.t + i); };
  const auto rows = [&](int64_t i) INLINED { return Rows{erfInvRows, c.offsets + i}; };
  const auto stage1 = [&](int64_t i) INLINED { p1 = erfInvTopTerms(t(i), rows(i)); };
  const auto stage2 = [&](int64_t i) INLINED { p2 = erfInvFourTerms<10>(p1, t(i), rows(i)); };
  const auto stage3 = [&](int64_t i) INLINED { p3 = erfInvFourTerms<6>(p2, t(i), rows(i)); };
  const auto stage4 = [&](int64_t i) INLINED {
    return erfInvSum(p3, load<Lanes4>(c.t0 + i), t(i), load<Lanes4>(src + i), rows(i));
  };
  stage1(0), stage2(0), stage3(0), stage1(4), stage2(4), stage1(8);
  for (int64_t i = 0; i < count; i += 4) {
    const Lanes4 y = stage4(i);
    stage3(i + 4);
    stage2(i + 8);
    stage1(i + 12);
    store(dst + i, y);
  }
}

[[gnu::noinline]] nuvStatus shortLoop(const Float64* src, Float64* dst, int64_t len) {
  return unaryLoop<Lanes4, Raises::yes>(
      src, dst, len, [](Lanes4 x) INLINED { return core(x); },
      [](auto x) INLINED { return anyHighWordOutside(x, erfInvFastFrom, erfInvFastTo); },
      [](Float64 x, Float64* y) {
        const Element e = erfInvSpecialLane(x);
        return *y = e.value, e.status;
      });
}
[[gnu::noinline]] nuvStatus longLoop(const Float64* src, Float64* dst, int64_t len) {
  nuvStatus status = nuvStatusOk;
  Stretch c;
  for (int64_t count; len > 0; src += count, dst += count, len -= count) {
    count = len < longestStretch ? len : longestStretch;
    if (count >= shortestStretch && reduceStretch(src, count & ~int64_t{3}, c))
      pipeline(src, dst, count &= ~int64_t{3}, c);
    else
      takeStatus<Raises::no>(status, shortLoop(src, dst, count));  // which raises the flags
  }
  return status;
}
[[gnu::noinline]] nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  return len < shortestStretch ? shortLoop(src, dst, len) : longLoop(src, dst, len);
}

}  // namespace

nuvStatus erfInvAvx(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, loop>(len, src, dst);
}

}  // namespace qorvane
