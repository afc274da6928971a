// erfinv(x), levels 1 to 4.
//
// Method: x times a polynomial on a quarter binade of 1 - |x| (erfinv.h); up to 2^-53 the product
// with sqrt(pi) / 2, which is made as high + low far from the subnormal numbers and brought down.
//
// Error: at most 0.51 ulp, near 0.494, subnormal results 0.50; in round-to-nearest. Rounding mode,
// FTZ and DAZ are the caller's.
//
// Special values: zeros give themselves; 1 and -1 infinities, and a pole; beyond them, infinities
// included, the default NaN, and out-of-domain; a NaN gives itself, quiet. Statuses raise their
// flags.
#include "errorfn/erfinv.h"
#include "frame/kernel_frame.h"

namespace qorvane {
namespace {

[[gnu::noinline, gnu::cold]] Element erfInvSpecialLane(Float64 x) {
  constexpr Float64 up = 0x1p256, down = 0x1p-256;
  constexpr Float64 slopeHi = 0.88623046875;                 // sqrt(pi) / 2 = slopeHi + slopeLo
  constexpr Float64 slopeLo = fromBits(0xbecdb92c4255618f);  // -3.543297241986351e-06
  constexpr Float64 smallestNormal = 0x1p-766;               // scaled up
  const auto head = [](Float64 v) { return fromBits(toBits(v) & toBits(erfInvHead)); };

  const Float64 a = magnitude(x);
  const uint64_t sign = toBits(x) & toBits(-0.0), pattern = toBits(a);
  if (pattern > 0x7ff0000000000000) return {x * x};
  if (pattern > toBits(1.0)) return {opaque(fromBits(0x7ff0000000000000)) * opaque(0.0), nuvStatusOutOfDomain};
  if (pattern == toBits(1.0)) return {x / opaque(0.0), nuvStatusPole};
  if (pattern == 0) return {x};

  const Float64 s = x * up, sh = head(s);
  const Float64 hi = slopeHi * sh, lo = slopeHi * (s - sh) + slopeLo * s, result = hi + lo;
  if (magnitude(result) >= smallestNormal) return {result * down};
  // Next to 2^-766 the last bit is that of a subnormal result: the sum with it rounds once, and its
  // fraction is the result.
  const Float64 c = fromBits(toBits(smallestNormal) | sign);
  const Float64 h = head(result + c), u = h - c, rounded = h + ((hi - u) + lo);
  return {fromBits(toBits(rounded) & 0x800fffffffffffff)};
}

// Each stage is a loop of its own.
constexpr auto evaluate = [](const Float64* src, Float64* dst, int64_t count, const Stretch& c) INLINED {
  alignas(16) Float64 ps[longestStretch];
  const auto p = [&](int64_t i) INLINED { return load<Four>(ps + i); };
  const auto t = [&](int64_t i) INLINED { return load<Four>(c.t + i); };
  const auto rows = [&](int64_t i) INLINED { return Rows{erfInvRows, c.offsets + i}; };
  for (int64_t i = 0; i < count; i += vector) store(ps + i, erfInvTopTerms(t(i), rows(i)));
  for (int64_t i = 0; i < count; i += vector) store(ps + i, erfInvFourTerms<10>(p(i), t(i), rows(i)));
  for (int64_t i = 0; i < count; i += vector) store(ps + i, erfInvFourTerms<6>(p(i), t(i), rows(i)));
  for (int64_t i = 0; i < count; i += vector)
    store(dst + i, erfInvSum(p(i), load<Four>(c.t0 + i), t(i), load<Four>(src + i), rows(i)));
};

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  return erfInvLoop<8, evaluate, erfInvSpecialLane>(src, dst, len);
}

}  // namespace

nuvStatus erfInvSse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, loop>(len, src, dst);
}

}  // namespace qorvane
