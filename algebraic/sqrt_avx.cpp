// sqrt(x), level 5.
//
// Method: a seed y for 1/sqrt(x) from the processor's approximation, all of its bits, then sqrt(x)
// = x y (1 + e p(e)) with the residual e = 1 - x y^2 and a polynomial fitted to its range, |e| <
// 2^-10. x stands in a part of 26 bits and a rest, so that the largest term of the sum is exact.
//
// Error: at most 0.530 ulp in round-to-nearest; the largest stand just below 2^(2k). Rounding mode,
// FTZ and DAZ are the caller's: with FTZ or DAZ the square of the seed is lost from 2^1022 up and
// the result is wrong there, and under DAZ subnormal numbers are zeros and give themselves.
//
// Special values: NaN gives the NaN, quiet, +Inf, +0 and -0 give themselves; negative numbers and
// -Inf give the default NaN, and out of domain, with its flag.
#include "algebraic/root_loop.h"
#include "frame/kernel_frame.h"

namespace qorvane {
namespace {

#include "algebraic/sqrt_tables.inc"

// (1 - e)^(-1/2) = 1 + e (p1 + p2 e + p3 e^2 + p4 e^3) in e = 1 - x y^2.
struct Steps : RootSteps<0xfffffffff8000000> {
  static constexpr std::array coefficients = {
      fromBits(0x3fd1800032338cbb),  // p4 = 0.27343754675366555
      fromBits(0x3fd40000b13001d9),  // p3 = 0.31250016501874495
      fromBits(0x3fd80000000000f6),  // p2 = 0.37500000000001366
      fromBits(0x3fdffffffffffe71),  // p1 = 0.49999999999997785
  };
  template <class V>
  INLINE static V residual(Halves<V> terms) {
    return (1.0 - terms.high) - terms.low;
  }
};

[[gnu::noinline, gnu::cold]] Element sqrtFixLane(Float64 x) {
  const uint64_t b = toBits(x);
  if ((b & 0x7ff0000000000000) == 0x7ff0000000000000 && b != 0xfff0000000000000) return {opaque(x) + opaque(x)};
  if (b == 0xfff0000000000000) return {opaque(0.0) / opaque(0.0), nuvStatusOutOfDomain};
  if (x == 0.0) return {x};
  if (b >> 63 != 0) return {opaque(0.0) / opaque(0.0), nuvStatusOutOfDomain};

  if (b >= 0x0010000000000000) {
    const Float64 root = _mm_cvtss_f32(_mm_rsqrt_ps(reducedSingles(_mm_set_sd(x), _mm_set_sd(x))));
    const Float64 seed = root * fromBits((0xbfefffffffffffff - b) >> 1 & 0x7ff0000000000000);
    return {rootOf<Steps>(x, seed)};
  }

  // A subnormal number, scaled by 2^200. x = v * 2^(2h) with v in [1, 4).
  const uint64_t scaled = toBits(x * fromBits(0x4c70000000000000));
  const int exponent = static_cast<int>(scaled >> 52) - 1023, odd = exponent & 1, half = (exponent - odd) / 2 - 100;
  const Float64 v = fromBits((scaled & 0x000fffffffffffff) | 0x3ff0000000000000) * (odd ? 2.0 : 1.0);
  const Float64 s = sqrtSeedTable[(scaled >> 44 & 255) + 256u * static_cast<unsigned>(odd)];

  // g goes to sqrt(v), h to 1 / (2 sqrt(v)). Then one more step with the exact residual v - g^2, g
  // in halves.
  Float64 h = 0.5 * s, g = s * v;
  for (int i = 0; i < 3; ++i) {
    const Float64 r = 0.5 - g * h;
    g = g + g * r;
    h = h + h * r;
  }
  const Float64 t = g * fromBits(0x41a0000002000000), u = t - g, gh = t - u, gl = g - gh;  // 2^27 + 1
  const Float64 rest = ((v - gh * gh) - (gh * gl) * 2.0) - gl * gl;
  return {(g + rest * h) * fromBits(static_cast<uint64_t>(half + 1023) << 52)};
}

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  return rootLoop<Steps, 0xffffffff, Raises::yes>(src, dst, len, sqrtFixLane);
}

}  // namespace

nuvStatus sqrtAvx(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, loop>(len, src, dst);
}

}  // namespace qorvane
