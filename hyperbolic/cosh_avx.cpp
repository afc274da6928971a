// cosh(x), level 5.
//
// Method: with a = |x|, 128a / ln 2 = n + rest with an integer n = 128k + j, so that a = n ln 2 /
// 128 + r with |r| <= ln 2 / 256. A + B = e^(a-r)/2 and C = e^(r-a)/2 come from tables of
// 2^(j/128)/2 as high + low part and of 2^(-j/128)/2; k is added to their exponent fields. Then
// cosh a = (A + B + C) cosh r + (A - C) sinh r, where cosh r - 1 and sinh r - r are polynomials,
// and A is added last.
//
// Error: at most 0.751 ulp, near 0.002, in round-to-nearest (docs/accuracy.md has the arguments);
// 5/4 of a unit in the last place in directed rounding.
//
// Special values: a NaN gives the NaN quieted, infinities +Inf; from 710.475860073944 up +Inf and
// overflow, which raises its flag. Rounding mode, FTZ and DAZ are the caller's.
#include "frame/kernel_frame.h"
#include "hyperbolic/sinh_cosh_avx.h"

namespace qorvane {
namespace {

#include "hyperbolic/cosh_tables.inc"

constexpr Float64 invLn2By128 = fromBits(0x40671547652b82fe);  // 184.66496523378731 = 128 / ln 2
constexpr Float64 shifter = fromBits(0x4338000000000000);      // 1.5 * 2^52
constexpr Float64 ln2By128Hi = fromBits(0x3f762e42fefa0000);   // 0.0054152123481117087: n * ln2By128Hi is exact
constexpr Float64 ln2By128Lo = fromBits(0x3d0cf79abc9e3b3a);   // 1.2864023111638346e-14: ln 2 / 128 - ln2By128Hi

// sinh r = r + r z (k3 + k5 z), cosh r = 1 + z (k2 + k4 z) with z = r^2
constexpr Float64 k5 = fromBits(0x3f81111121a1cf67);  // 0.0083333338154500513
constexpr Float64 k4 = fromBits(0x3fa55555acca171d);  // 0.041666676847894581
constexpr Float64 k3 = fromBits(0x3fc55555555555e6);  // 0.16666666666667068
constexpr Float64 k2 = fromBits(0x3fdfffffffffff58);  // 0.49999999999999067

// |x| from 707.7001953125 up, infinities and NaNs
constexpr int flaggedHighWord = 0x40861d9a;

// n is kept as the pattern of n + keyShifter: its lowest byte is 2j, so that one load a lane gives
// the places in the tables, and above it stands k.
constexpr Float64 keyShifter = fromBits(0x4328000000000000);  // 1.5 * 2^51

using V = Lanes4;

// The first pass: r and the keys of four elements.
INLINE void reduce(V a, Float64* r, Float64* keys) {
  const V t = a * invLn2By128 + shifter, n = t - shifter;
  store(keys, n + keyShifter);
  store(r, (a - n * ln2By128Hi) - n * ln2By128Lo);
}

// The second pass in two steps: sinh r and cosh r - 1, and the sum.
struct Series {
  V sinh, even;
};
INLINE Series series(V r) {
  const V z = r * r, odd = (k5 * z + k3) * z, even = (k4 * z + k2) * z;
  return {odd * r + r, even};
}

struct Exponentials {
  V A, B, C;
};
INLINE Exponentials exponentials(const Float64* keys) {
  struct Half {
    Bits2 A, B, C;
  };
  const auto half = [&](int first) INLINED {
    const auto twiceJ = [&](int lane) INLINED {
      return uint64_t{reinterpret_cast<const unsigned char*>(keys + first + lane)[0]};
    };
    const auto [high, low] = twoColumns<Lanes2>(coshTable128, [&](int lane) INLINED { return 8 * twiceJ(lane); });
    const auto inverse = column<Lanes2>(coshInverseTable128, [&](int lane) INLINED { return 4 * twiceJ(lane); });
    const Bits2 exponent = (bitsOf(load<Lanes2>(keys + first)) << 44) & 0x7ff0000000000000;
    return Half{bitsOf(high) + exponent, bitsOf(low) + exponent, bitsOf(inverse) - exponent};
  };
  const Half low = half(0), high = half(2);
  return {valueOf<V>({{low.A, high.A}}), valueOf<V>({{low.B, high.B}}), valueOf<V>({{low.C, high.C}})};
}

INLINE V sum(const Series& s, const Exponentials& e) {
  return (((s.sinh * (e.A - e.C)) + (s.even * (e.A + e.C) + e.B)) + e.C) + e.A;
}

INLINE V core(V x) {
  alignas(32) Float64 r[4], keys[4];
  reduce(magnitude(x), r, keys);
  return sum(series(load<V>(r)), exponentials(keys));
}

constexpr auto isFlagged = [](auto x) INLINED { return anyMagnitudeFrom(x, flaggedHighWord); };

// Any argument. In a block with flagged elements the others have the bits that they have elsewhere.
Element coshFixLane(Float64 x) {
  if (!isFlagged(x)) return {core(broadcast<V>(x))[0]};
  if ((highWord(x) & 0x7ff00000) == 0x7ff00000) return {x * x};
  if (magnitude(x) >= firstOverflow) return {opaque(largestFinite) * opaque(largestFinite), nuvStatusOverflow};
  return {halfExponential(magnitude(x))};
}

// A strip without flagged elements, their number a multiple of four.
INLINE void strip(const Float64* src, Float64* dst, int64_t count) {
  alignas(32) Float64 r[longestStrip], keys[longestStrip];
  for (int64_t i = 0; i < count; i += 4) reduce(magnitude(load<V>(src + i)), r + i, keys + i);
  Series s;
  pipeline<4>(
      count, [&](int64_t i) INLINED { s = series(load<V>(r + i)); },
      [&](int64_t i) INLINED { store(dst + i, sum(s, exponentials(keys + i))); });
}

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  return shortOrLongLoop<longestStrip, shortestStrip, 4>(
      len,
      [](int64_t count, const Float64* x, Float64* y) INLINED {
        const bool fits = !anyMagnitudeFrom(x, count, flaggedHighWord);
        if (fits) strip(x, y, count);
        return fits;
      },
      [](int64_t count, const Float64* x, Float64* y)
          INLINED { return guardedUnaryLoop<V, Raises::yes>(x, y, count, core, isFlagged, coshFixLane); },
      src, dst);
}

}  // namespace

nuvStatus coshAvx(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, loop>(len, src, dst);
}

}  // namespace qorvane
