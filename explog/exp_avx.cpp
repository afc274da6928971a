// exp(x), level 5.
//
// Method: 64x / ln 2 = k + rest with the integer k = 64m + j, so that exp(x) = 2^m * 2^(j/64) *
// exp(r) with |r| <= ln 2 / 128. exp(r) - 1 is a polynomial of degree 5, 2^(j/64) comes from a
// table as high + low, m is added to the exponent field.
//
// Error: at most 0.528 ulp for normal results, 0.51 ulp for subnormal ones (docs/accuracy.md has
// the arguments), in round-to-nearest; rounding mode, FTZ and DAZ are the caller's.
//
// Special values: NaN gives the NaN, +Inf +Inf, -Inf +0; above 709.78271289338397 +Inf and
// overflow; below -708.39641853226408 a subnormal result or +0, and underflow. Statuses raise their
// flags.
#include "frame/kernel_frame.h"
#include "frame/pipeline.h"

namespace qorvane {
namespace {

#include "explog/exp_tables.inc"

constexpr Float64 invLn2By64 = fromBits(0x40571547652b82fe);  // 92.332482616893657 = 64 / ln 2
constexpr Float64 shifter = 0x1.8p52;
constexpr Float64 ln2By64Hi = fromBits(0x3f862e42fefa0000);  // 0.010830424696223417: k * ln2By64Hi is exact
constexpr Float64 ln2By64Lo = fromBits(0x3d1cf79abc9e3b3a);  // 2.5728046223276691e-14: ln 2 / 64 - ln2By64Hi

// exp(r) = 1 + r + r^2 (c2 + c3 r + c4 r^2 + c5 r^3), |r| <= ln 2 / 128: error 2^-59.3
constexpr Float64 c5 = fromBits(0x3f8111112d9f549b);  // 0.0083333341644141103
constexpr Float64 c4 = fromBits(0x3fa555573f218b93);  // 0.041666723686623851
constexpr Float64 c3 = fromBits(0x3fc555555555653e);  // 0.16666666666677971
constexpr Float64 c2 = fromBits(0x3fdfffffffffdb3b);  // 0.49999999999947747

// |x| from 708.39599609375 up, infinities and NaNs: the results there may leave the normal range.
constexpr int flaggedHighWord = 0x4086232b;

constexpr Float64 keyShifter =
    fromBits(0x4318000000000000 + 4 * 1023 * 64);  // 1.5 * 2^50 + 1023 * 64; a unit is worth 4 in the pattern

// The reduction: k as s - shifter, and r.
template <class V>
INLINE V shiftedOf(V x) {
  return (x * invLn2By64) + shifter;
}
template <class V>
INLINE V remainder(V x, V k) {
  return (x - (k * ln2By64Hi)) - (k * ln2By64Lo);
}

template <class V>
INLINE V core(V x) {
  const V s = shiftedOf(x), r = remainder(x, s - shifter);
  const auto n = lowWords(s);
  const auto row = twoColumns<V>(expTableNearest, (n & 63) << 4);
  const V z = ((c5 * r + c4) * r + c3) * r + c2;
  const V q = (z * (r * r)) + r;
  const V y = ((q * row.first) + row.second) + row.first;
  return y * fromHighWords<V>(((n + 1023 * 64) << 14) & 0x7ff00000);  // exact: the product is a normal number
}

// The number with this exponent field, 2^(field - 1023).
Float64 powerOfTwo(int field) { return fromBits(static_cast<uint64_t>(field) << 52); }

[[gnu::noinline, gnu::cold]] Element expSpecialLane(Float64 x) {
  // One degree more than the fast path's:
  // exp(r) = 1 + r + r^2 (p2 + p3 r + p4 r^2 + p5 r^3 + p6 r^4), |r| <= ln 2 / 128: error 2^-70.1
  constexpr Float64 p6 = fromBits(0x3f56c16a1c2a3ffd);  // 0.0013888870459233254
  constexpr Float64 p5 = fromBits(0x3f8111123aaf20d3);  // 0.0083333419951404971
  constexpr Float64 p4 = fromBits(0x3fa5555555558fcc);  // 0.041666666666770519
  constexpr Float64 p3 = fromBits(0x3fc55555555548f8);  // 0.16666666666657881
  constexpr Float64 p2 = 0.5;
  constexpr Float64 largestFinite =
      fromBits(0x40862e42fefa39ef);  // 709.78271289338397: the largest x with a finite result
  constexpr Float64 smallestNonZero =
      fromBits(0xc0874910d52d3051);  // -745.13321910194111: the smallest x with a result above +0
  constexpr Float64 smallestNormal =
      fromBits(0xc086232bdd7abcd2);  // -708.39641853226408: the smallest x with a normal result
  constexpr Float64 largest = fromBits(0x7fefffffffffffff), aboveSmallest = fromBits(0x0010000000000001);

  if ((highWord(x) & 0x7ff00000) == 0x7ff00000) return {toBits(x) == 0xfff0000000000000 ? 0.0 : x * x};
  if (x > largestFinite) return {opaque(largest) * opaque(largest), nuvStatusOverflow};
  if (x < smallestNonZero) return {opaque(aboveSmallest) * opaque(aboveSmallest), nuvStatusUnderflow};

  const Float64 s = shiftedOf(x), r = remainder(x, s - shifter);
  const int n = lowWords(s), m = n >> 6;
  const auto [hi, relativeLo] = twoColumns<Float64>(expTableRelative, (n & 63) << 4);
  const Float64 p = ((((((p6 * r + p5) * r + p4) * r + p3) * r + p2) * r) * r) + r;
  const Float64 t = (p + relativeLo) * hi;
  if (x >= smallestNormal) {
    const Float64 v = t + hi;
    if (m == 1024) return {(v * powerOfTwo(0x7fe)) * 2.0};
    return {v * powerOfTwo(m + 0x3ff)};
  }

  // The result is subnormal or nearly so: t + hi, scaled by 2^(m + 60), is brought down in two
  // parts so that it rounds but once. `high` is the sum cut to the bits that a subnormal result
  // keeps, `rest` what remains of it, with its rounding error.
  const int field = m + 0x43b;
  const Float64 scaledT = t * powerOfTwo(field), scaledHi = powerOfTwo(field) * hi, sum = scaledT + scaledHi;
  constexpr Float64 down = 0x1p-60;
  if (field <= 0x32) return {sum * down, nuvStatusUnderflow};
  const Float64 rest = (scaledHi - sum) + scaledT;
  const Float64 cut = sum * 0x1.8p32;
  const Float64 upper = (sum + cut) - cut, lower = (sum - upper) + rest;
  return {(upper * down) + (lower * down), nuvStatusUnderflow};
}

constexpr auto isFlagged = [](auto x) INLINED { return anyMagnitudeFrom(x, flaggedHighWord); };

// Any argument. In a block with flagged elements the others have the bits that they have elsewhere.
Element expFixLane(Float64 x) { return isFlagged(x) ? expSpecialLane(x) : Element{core(x)}; }

INLINE bool anyFlagged(const Float64* x, int64_t count) {
  constexpr int64_t step = 16;
  for (int64_t i = 0; i < count; i += step)
    if (isFlagged(load<Pack<Lanes4, 4>>(x + (i < count - step ? i : count - step)))) return true;
  return false;
}

// The factors 2^m for keys.
template <class V>
INLINE V powersAt(const Float64* keys) {
  if constexpr (isPack<V>)
    return makePack<packSize<V>>([&](int i) INLINED { return powersAt<PartOf<V>>(keys + i * laneCount<PartOf<V>>); });
  else
    return andBits(valueOf<V>(bitsOf(load<Pack<Lanes2, 2>>(keys)) << 44), broadcast<V>(fromBits(0x7ff0000000000000)));
}

// A stretch without flagged elements, its length a multiple of 4. One vector's chain of operations
// takes some seventy cycles, so it is cut into loops with short chains. The operations are those of
// `core`, and so are the bits. k goes through memory, as the key k + keyShifter: the lowest byte of
// its pattern is 4j, so that one load a lane gives the address of a row, and above it stands m + 1023.
constexpr int64_t longestStretch = 512, shortestStretch = 32;
INLINE void stages(const Float64* src, Float64* dst, int64_t count) {
  using Two = Pack<Lanes4, 2>;
  alignas(32) Float64 keys[longestStretch], remainders[longestStretch], series[longestStretch];
  eachGroup<Two, Lanes4>(count, [&]<class V>(V, int64_t i) INLINED {
    const V x = load<V>(src + i), k = shiftedOf(x) - shifter;
    store(keys + i, k + keyShifter);
    store(remainders + i, remainder(x, k));
  });
  eachGroup<Two, Lanes4>(count, [&]<class V>(V, int64_t i) INLINED {
    const V r = load<V>(remainders + i), z = ((c5 * r + c4) * r + c3) * r + c2;
    store(series + i, (z * (r * r)) + r);
  });
  eachGroup<Two, Lanes4>(count, [&]<class V>(V, int64_t i) INLINED {
    const auto row = twoColumns<V>(expTableNearest, [&](int lane) INLINED {
      return uint64_t{4} * reinterpret_cast<const unsigned char*>(keys + i + lane)[0];
    });
    const V q = load<V>(series + i), y = ((q * row.first) + row.second) + row.first;
    store(dst + i, y * powersAt<V>(keys + i));
  });
}

nuvStatus loop(const Float64* src, Float64* dst, int64_t len) {
  if (len == 1 && !isFlagged(*src)) return *dst = core(*src), nuvStatusOk;
  return shortOrLongLoop<longestStretch, shortestStretch, 4>(
      len,
      [](int64_t count, const Float64* x, Float64* y) INLINED {
        const bool fits = !anyFlagged(x, count);
        if (fits) stages(x, y, count);
        return fits;
      },
      [](int64_t count, const Float64* x, Float64* y) INLINED {
        const auto evaluate = [](auto v) INLINED { return core(v); };
        return guardedUnaryLoop<Pack<Lanes4, 2>, Raises::yes>(x, y, count, evaluate, isFlagged, expFixLane);
      },
      src, dst);
}

}  // namespace

nuvStatus expAvx(const Float64* src, Float64* dst, int32_t len) {
  return runKernel<Check::lengthFirst, Mode::none, loop>(len, src, dst);
}

}  // namespace qorvane
