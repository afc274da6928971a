// erfinv(x), levels 1 to 4.
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
  const auto head = [](Float64 v) { return fromBits(toBits(v) & toBits(erfInvHead)); };

  const Float64 a = magnitude(x);
  const uint64_t sign = toBits(x) & toBits(-0.0), pattern = toBits(a);
  if (pattern > 0x7ff0000000000000) return {x * x, nuvStatusOk};
  if (pattern > toBits(1.0)) return {opaque(fromBits(0x7ff0000000000000)) * opaque(0.0), nuvStatusOutOfDomain};
  if (pattern == toBits(1.0)) return {x / opaque(0.0), nuvStatusPole};
  if (pattern == 0) return {x, nuvStatusOk};

  const Float64 s = x * up, sh = head(s);
  const Float64 hi = slopeHi * sh, lo = slopeHi * (s - sh) + slopeLo * s, result = hi + lo;
  if (magnitude(result) >= smallestNormal) return {result * down, nuvStatusOk};
  // Next to 2^-766 the last bit is that of a subnormal result: the sum with it rounds once, and its fraction is the result.
  const Float64 c = fromBits(toBits(smallestNormal) | sign);
  const Float64 h = head(result + c), u = h - c, rounded = h + ((hi - u) + lo);
  return {fromBits(toBits(rounded) & 0x800fffffffffffff), nuvStatusOk};
}

template <class V>
INLINE V core(V x) {
  const V a = magnitude(x);
  const ErfInvReduced<V> r = erfInvReduce(andBits(a, highWordWithin(a, erfInvFastFrom, erfInvFastTo)));
  alignas(16) int offsets[4];
  store(offsets, r.offset);
  const Rows rows = {erfInvRows, offsets};
  const V p = erfInvFourTerms<6>(erfInvFourTerms<10>(erfInvTopTerms(r.t, rows), r.t, rows), r.t, rows);
  return erfInvSum(p, r.t0, r.t, x, rows);
}

[[gnu::noinline]] nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  return unaryLoop<Pack<Lanes2, 2>, Raises::yes>(
      src, dst, len, [](auto x) INLINED { return core(x); },
      [](auto x) INLINED { return anyHighWordOutside(x, erfInvFastFrom, erfInvFastTo); },
      [](Float64 x, Float64* y) {
        const Element e = erfInvSpecialLane(x);
        return *y = e.value, e.status;
      });
}

}  // namespace

nuvStatus erfInvSse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, loop>(len, src, dst);
}

}  // namespace qorvane
