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

// In e = 1 - x y^2:
// (1 - e)^(-1/2) = 1 + e (p1 + p2 e + p3 e^2 + p4 e^3), |e| <= 3 * 2^-12: error 2^-58.0
constexpr Float64 p4 = fromBits(0x3fd1800032338cbb);  // 0.27343754675366555
constexpr Float64 p3 = fromBits(0x3fd40000b13001d9);  // 0.31250016501874495
constexpr Float64 p2 = fromBits(0x3fd80000000000f6);  // 0.37500000000001366
constexpr Float64 p1 = fromBits(0x3fdffffffffffe71);  // 0.49999999999997785

template <class V>
INLINE V upperPart(V x) {
  return andBits(x, broadcast<V>(fromBits(0xfffffffff8000000)));
}
constexpr auto begin = []<class V>(V x, V y) INLINED {
  const V y2 = y * y, high = upperPart(x), e = (1.0 - high * y2) - (x - high) * y2;
  return Partial<V>{e, p4 * e + p3};
};
constexpr auto series = [](auto p) INLINED { return ((p.sum * p.e + p2) * p.e + p1) * p.e; };
constexpr auto root = []<class V>(V s, V x, V y) INLINED {
  const V high = upperPart(x);
  return y * high + (y * (x - high) + x * (s * y));
};

[[gnu::noinline, gnu::cold]] Element sqrtFixLane(Float64 x) {
  const uint64_t b = toBits(x);
  if ((b & 0x7ff0000000000000) == 0x7ff0000000000000 && b != 0xfff0000000000000) return {opaque(x) + opaque(x)};
  if (b == 0xfff0000000000000) return {opaque(0.0) / opaque(0.0), nuvStatusOutOfDomain};
  if (x == 0.0) return {x};
  if (b >> 63 != 0) return {opaque(0.0) / opaque(0.0), nuvStatusOutOfDomain};

  if (b >= 0x0010000000000000) {
    const Float64 estimate = _mm_cvtss_f32(_mm_rsqrt_ps(reducedSingles(_mm_set_sd(x), _mm_set_sd(x))));
    const Float64 seed = estimate * fromBits((0xbfefffffffffffff - b) >> 1 & 0x7ff0000000000000);
    return {root(series(begin(x, seed)), x, seed)};
  }

  // A subnormal number, scaled by 2^200. x = v * 2^(2h) with v in [1, 4).
  const uint64_t scaled = toBits(x * 0x1p200);
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

[[gnu::noinline]] nuvStatus inStages(const Float64* src, Float64* dst, int64_t len) {
  return seededLoop<allBits, Raises::yes>(src, dst, len, begin, series, root, sqrtFixLane);
}

// The seed is short enough for its products with the parts of x to be exact: y times such a product
// is what y^2, exact too, times the part would be, if that isn't subnormal.
bool stretch(const Float64* src, Float64* dst, int64_t count) {
  using V = Part;
  Scratch c;
  V y, high, low, highY, lowY, e0, e1, sum0, sum1, s, xs, all = broadcast<V>(0.0);
  pipeline<vector>(
      count, [&](int64_t i) INLINED { storeEstimates<allBits>(c.estimates + i, load<V>(src + i)); }, pause, pause,
      pause,
      [&](int64_t i) INLINED {
        const V x = load<V>(src + i), upper = upperPart(x);
        y = seedsFrom(c.estimates + i);
        high = y * upper, low = y * (x - upper);
        store(c.seeds + i, y), store(c.high + i, high), store(c.low + i, low);
      },
      [&](int64_t) INLINED { highY = y * high, lowY = y * low; },
      [&](int64_t) INLINED {
        e0 = (1.0 - highY) - lowY;
        all = all + e0;
        sum0 = p4 * e0 + p3;
      },
      [&](int64_t) INLINED { e1 = e0, sum1 = sum0 * e0 + p2; }, [&](int64_t) INLINED { s = (sum1 * e1 + p1) * e1; },
      [&](int64_t i) INLINED { xs = load<V>(src + i) * (s * load<V>(c.seeds + i)); },
      [&](int64_t i) INLINED { store(dst + i, load<V>(c.high + i) + (load<V>(c.low + i) + xs)); });
  return allInRange(all);
}

}  // namespace

nuvStatus sqrtAvx(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, rootLoop<stretch, inStages>>(len, src, dst);
}

}  // namespace qorvane
