// What Sinh and Cosh share at level 5: the test of a strip, and e^a / 2 next to overflow.
#pragma once
#include "hyperbolic/strips.h"

namespace qorvane {
namespace {

#include "explog/exp_tables.inc"

// Whether a high word without its sign is at least `limit` among at least 8 elements.
INLINE bool anyMagnitudeFrom(const Float64* x, int64_t count, int limit) {
  for (int64_t i = 0; i < count; i += 8)
    if (anyMagnitudeFrom(load<Pack<Lanes4, 2>>(x + (i < count - 8 ? i : count - 8)), limit)) return true;
  return false;
}

constexpr Float64 firstOverflow = fromBits(0x408633ce8fb9f87e);  // 710.475860073944
constexpr Float64 largestFinite = fromBits(0x7fefffffffffffff);

// e^a / 2 for a below `firstOverflow`, so great that e^-a doesn't matter.
INLINE Float64 halfExponential(Float64 a) {
  constexpr Float64 invLn2By64 = fromBits(0x40571547652b82fe);  // 92.332482616893657 = 64 / ln 2
  constexpr Float64 shifter = fromBits(0x4338000000000000);     // 1.5 * 2^52
  constexpr Float64 ln2By64Hi = fromBits(0x3f862e42fefa0000);   // 0.010830424696223417: n * ln2By64Hi is exact
  constexpr Float64 ln2By64Lo = fromBits(0x3d1cf79abc9e3b3a);   // 2.5728046223276691e-14: ln 2 / 64 - ln2By64Hi
  // e^r = 1 + r + r^2 (1/2 + g3 r + ... + g6 r^4)
  constexpr Float64 g6 = fromBits(0x3f56c16a1c2a3ffd);  // 0.0013888870459233254
  constexpr Float64 g5 = fromBits(0x3f8111123aaf20d3);  // 0.0083333419951404971
  constexpr Float64 g4 = fromBits(0x3fa5555555558fcc);  // 0.041666666666770519
  constexpr Float64 g3 = fromBits(0x3fc55555555548f8);  // 0.16666666666657881

  const Float64 t = a * invLn2By64 + shifter, n = t - shifter;
  const Float64 r = (a - n * ln2By64Hi) - n * ln2By64Lo;
  const Float64 q = ((((g6 * r + g5) * r + g4) * r + g3) * r + 0.5) * r * r + r;
  const int integer = lowWords(t);
  const auto [hi, lo] = twoColumns<Float64>(expTableNearest, static_cast<uint64_t>(integer & 63) << 4);
  const Float64 v = hi + (hi * q + lo);
  const auto power = [](int field) { return fromBits(static_cast<uint64_t>(field) << 52); };
  const int field = (integer >> 6) + 0x3fe;
  return field <= 0x7fe ? v * power(field) : (v * power(field - 1)) * 2.0;
}

}  // namespace
}  // namespace qorvane
