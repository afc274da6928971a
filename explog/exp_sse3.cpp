// exp(x), levels 1 to 4.
//
// Method: 64x / ln 2 = k + rest with the integer k = 64m + j, so that exp(x) = 2^m * 2^(j/64) *
// exp(r) with |r| <= ln 2 / 128. exp(r) - 1 is a polynomial of degree 5, 2^(j/64) comes from a
// table as high + low, 2^m is a factor made from k.
//
// Error: at most 0.530 ulp for normal results, 0.76 ulp for subnormal ones (docs/accuracy.md has
// the arguments). The kernel runs in round-to-nearest with subnormals honoured, whatever the
// caller's mode.
//
// Special values: NaN gives the NaN of all ones, +Inf +Inf, -Inf +0; above 709.78271289338397 +Inf
// and overflow; below -708.39641853226408 a subnormal result or +0, and underflow. Statuses raise
// no flag but those of the arithmetic.
#include "frame/kernel_frame.h"
#include "frame/loops.h"

namespace qorvane {
namespace {

#include "explog/exp_tables.inc"

constexpr Float64 invLn2By64 = fromBits(0x40571547652b82fe);  // 92.332482616893657 = 64 / ln 2
constexpr Float64 shifter = 0x1.8p52;
constexpr Float64 ln2By64Hi = fromBits(0x3f862e42fef00000);  // 0.010830424695086549: k * ln2By64Hi is exact
constexpr Float64 ln2By64Lo = fromBits(0x3d7473de6af278ed);  // 1.162596423439437e-12: ln 2 / 64 - ln2By64Hi

// exp(r) = 1 + r + r^2 (c2 + c3 r + c4 r^2 + c5 r^3), |r| <= ln 2 / 128: error 2^-59.2
constexpr Float64 c5 = fromBits(0x3f81111276409c2c);  // 0.0083333437288058629
constexpr Float64 c4 = fromBits(0x3fa555574bc3a1be);  // 0.041666725157316162
constexpr Float64 c3 = fromBits(0x3fc55555555542a1);  // 0.16666666666653376
constexpr Float64 c2 = fromBits(0x3fdfffffffffd97c);  // 0.49999999999945266

// |x| from 708.39599609375 up, infinities and NaNs: the results there aren't y * 2^m with a normal
// 2^m.
constexpr int flaggedHighWord = 0x4086232b;

// exp(x) = y * 2^m; the low 32 bits of `shifted` are k.
template <class V>
struct Core {
  V y;
  BitsOf<V> shifted;
};

template <class V>
INLINE Core<V> core(V x) {
  const V s = (x * invLn2By64) + shifter;
  const V k = s - shifter;
  const BitsOf<V> shifted = bitsOf(s);
  const auto row = twoColumns<V>(expTableSplit, (shifted & 63) << 4);
  const V r = (x - (k * ln2By64Hi)) - (k * ln2By64Lo);
  const V z = ((c5 * r + c4) * r + c3) * r + c2;
  const V q = r + (z * (r * r));
  return {((q * (row.first + row.second)) + row.second) + row.first, shifted};
}

// 2^m for a normal result
template <class V>
INLINE V scale(BitsOf<V> shifted) {
  return valueOf<V>(((shifted + 1023 * 64) << 46) & 0x7ff0000000000000);
}

[[gnu::noinline, gnu::cold]] Element expSpecialLane(Float64 x) {
  constexpr uint64_t infinity = 0x7ff0000000000000;
  const uint64_t b = toBits(x);

  if ((b & ~(uint64_t{1} << 63)) > infinity) return {fromBits(0xffffffffffffffff)};
  if (b == infinity) return {x};
  if (b == 0xfff0000000000000) return {0.0};
  if (b >= 0xc0874910d52d3052) return {0.0, nuvStatusUnderflow};  // from -745.1332191019412 down: below 2^-1075
  if (b >= 0x40862e42fefa39f0 && b < infinity)
    return {fromBits(infinity), nuvStatusOverflow};  // from 709.7827128933841 up

  const Core<Float64> c = core(x);
  const int m = static_cast<int32_t>(c.shifted) >> 6;
  if (b >= 0xc086232bdd7abcd3) {  // from -708.3964185322642 down: the last product rounds to a subnormal number
    const uint64_t exponent = ((static_cast<uint64_t>(static_cast<int64_t>(m)) + 2046) & 0x7ff) - 1;  // of 2^(m + 1022)
    return {(c.y * fromBits(exponent << 52)) * 0x1p-1022, nuvStatusUnderflow};
  }
  if (m >= 1024) return {(c.y * 0x1p1023) * 2.0};  // from 709.7772976810359 up
  return {c.y * scale<Float64>(c.shifted)};
}

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  return oneOrSeveral<Pack<Lanes2, 4>, Raises::no>(
      src, dst, len,
      [](auto x) INLINED {
        const auto c = core(x);
        return c.y * scale<decltype(x)>(c.shifted);
      },
      [](auto x) INLINED { return anyMagnitudeFrom(x, flaggedHighWord); }, expSpecialLane);
}

}  // namespace

nuvStatus expSse3(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::pointersFirst, Mode::clearMode, loop>(len, src, dst);
}

}  // namespace qorvane
